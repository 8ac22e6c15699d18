#include "vbscript/arithmetic.h"
#include "vbscript/machine_state.h"

namespace tabrixdb::vbscript {

namespace {

Variant is_same_object(const Variant& a, const Variant& b) {
    if (!a.is_object() || !b.is_object())
        throw Error(kErrorObjectRequired);
    return a.object() == b.object();
}

// Operands are values from here on: an object that only the temporary holds has served.
void let_go(const Frame& frame, Operand operand) {
    if (operand.is_temporary() && frame[operand].is_object())
        frame[operand] = Variant();
}

[[noreturn]] void raise(const Frame& frame, const Instruction& instruction) {
    const auto number = static_cast<std::int32_t>(instruction.a.number());
    const std::string& name = frame.unit->program->members[instruction.b.number()];
    if (name.empty())
        throw Error(number);
    raise_named(number, name);
}

} // namespace

// Carries out instructions until the frames are down to `base`; false when the run has to stop. Errors
// leave by exception, with Frame::at at the instruction that failed.
bool Machine::State::interpret(std::size_t base) {
    while (frames_.size() > base) {
        Frame& frame = frames_.back();
        const Instruction* const code = frame.unit->program->code.data();
        const Instruction* at = frame.at;
        const auto jump = [&](Operand target) { at = code + target.number(); };
        // Leaves the loop to go on in another frame. A caller goes on behind its call.
        bool in_this_frame = true;
        while (in_this_frame) {
            frame.at = at;
            const Instruction& now = *at++;
            switch (now.code) {
            case OpCode::Move:
                frame[now.a] = frame[now.b];
                break;
            case OpCode::Let:
                let(frame, now);
                break;
            case OpCode::Set:
                set(frame, now);
                break;
            case OpCode::Clear:
                frame[now.a] = Variant();
                break;

            case OpCode::Add:
                frame[now.a] = fast_add(frame[now.b], frame[now.c]);
                break;
            case OpCode::Subtract:
                frame[now.a] = fast_subtract(frame[now.b], frame[now.c]);
                break;
            case OpCode::Multiply:
                frame[now.a] = fast_multiply(frame[now.b], frame[now.c]);
                break;
            case OpCode::Divide:
                frame[now.a] = divide(frame[now.b], frame[now.c]);
                break;
            case OpCode::IntegerDivide:
                frame[now.a] = integer_divide(frame[now.b], frame[now.c]);
                break;
            case OpCode::Modulo:
                frame[now.a] = modulo(frame[now.b], frame[now.c]);
                break;
            case OpCode::Power:
                frame[now.a] = power(frame[now.b], frame[now.c]);
                break;
            case OpCode::And:
                frame[now.a] = logical_and(frame[now.b], frame[now.c]);
                break;
            case OpCode::Or:
                frame[now.a] = logical_or(frame[now.b], frame[now.c]);
                break;
            case OpCode::Xor:
                frame[now.a] = logical_xor(frame[now.b], frame[now.c]);
                break;
            case OpCode::Eqv:
                frame[now.a] = logical_eqv(frame[now.b], frame[now.c]);
                break;
            case OpCode::Imp:
                frame[now.a] = logical_imp(frame[now.b], frame[now.c]);
                break;
            case OpCode::Is:
                frame[now.a] = is_same_object(frame[now.b], frame[now.c]);
                break;
            case OpCode::Equal:
            case OpCode::NotEqual:
            case OpCode::Less:
            case OpCode::LessEqual:
            case OpCode::Greater:
            case OpCode::GreaterEqual: {
                const Order order = order_for(now.code, frame[now.b], frame[now.c], now.flags);
                frame[now.a] = order == Order::Unknown ? Variant::null() : Variant(holds(now.code, order));
                break;
            }
            case OpCode::Negate:
                frame[now.a] = negate(frame[now.b]);
                break;
            case OpCode::Not:
                frame[now.a] = logical_not(frame[now.b]);
                break;
            case OpCode::Concatenate:
                concatenate(frame, now);
                break;
            case OpCode::Append:
                append(frame, now);
                break;

            case OpCode::Jump:
                jump(now.a);
                break;
            case OpCode::LoopBack:
                if (must_stop())
                    return false;
                jump(now.a);
                break;
            case OpCode::JumpIf:
                if (fast_is_true(frame[now.a]) != ((now.flags & Instruction::kWhenFalse) != 0))
                    jump(now.b);
                break;
            case OpCode::JumpEqual:
            case OpCode::JumpNotEqual:
            case OpCode::JumpLess:
            case OpCode::JumpLessEqual:
            case OpCode::JumpGreater:
            case OpCode::JumpGreaterEqual:
                if (holds(now.code, order_for(now.code, frame[now.a], frame[now.b], now.flags)) !=
                    ((now.flags & Instruction::kWhenFalse) != 0))
                    jump(now.c);
                break;

            case OpCode::GetName:
                in_this_frame = !get_name(frame, now);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::BindName:
                bind_name(frame, now);
                break;
            case OpCode::BindArgument:
                in_this_frame = !bind_argument(frame, now);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::CallName:
                in_this_frame = !call_name(frame, now);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::Index:
                index(frame, now);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::CallMethod:
                call_own_method(frame, now);
                in_this_frame = false;
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::New:
                in_this_frame = !new_object(frame, now);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::GetMember:
                in_this_frame = !get_member(frame, now);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::StoreMember:
                in_this_frame = !store_member(frame, now);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::StoreElement:
                store_element(frame, now);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::WriteBack:
                write_back(frame, now);
                break;

            case OpCode::ForStart:
                if (!for_start(frame, now))
                    jump(frame.list(now.c)[3]);
                break;
            case OpCode::ForNext:
                if (for_next(frame, now)) {
                    if (must_stop())
                        return false;
                    jump(now.c);
                }
                break;
            case OpCode::ForEachStart:
                if (!for_each_start(frame, now))
                    jump(frame.list(now.c)[1]);
                break;
            case OpCode::ForEachNext:
                if (for_each_next(frame, now)) {
                    if (must_stop())
                        return false;
                    jump(now.c);
                }
                break;
            case OpCode::WithStart:
                with_start(frame, now);
                break;

            case OpCode::ReDim:
                redim(frame, now);
                break;
            case OpCode::DimArray:
                dim_array(frame, now);
                break;
            case OpCode::Erase:
                erase(frame, now);
                break;

            case OpCode::OnError:
                frame.resume_next = (now.flags & Instruction::kResumeNext) != 0;
                err_->clear();
                break;
            case OpCode::ClearError:
                err_->clear();
                break;
            case OpCode::Return:
                return_from_frame();
                in_this_frame = false;
                if (frames_.size() == base)
                    break;
                if (!dying_.empty())
                    run_terminations();
                ++frames_.back().at;
                break;
            case OpCode::Raise:
                raise(frame, now);
            case OpCode::WriteLiteral:
                environment_.write_literal(frame.unit->program->source.pieces[now.a.number()].text);
                if (interrupt_.stopped())
                    return false;
                break;
            case OpCode::WriteValue:
                environment_.write(frame[now.a]);
                if (interrupt_.stopped())
                    return false;
                break;
            }
            if (now.flags & Instruction::kLetsGo) {
                let_go(frame, now.a);
                let_go(frame, now.b);
                let_go(frame, now.c);
            }
            if (!dying_.empty() && in_this_frame)
                run_terminations();
        }
    }
    return true;
}

} // namespace tabrixdb::vbscript
