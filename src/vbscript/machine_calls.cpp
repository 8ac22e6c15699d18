#include "automation/conversions.h"
#include "vbscript/call_arguments.h"
#include "vbscript/instance.h"
#include "vbscript/machine_state.h"

namespace tabrixdb::vbscript {

namespace {

// Errors of the library's functions carry the function's name.
[[noreturn]] void rethrow_named(const Error& error, std::string_view name) {
    if (error.source().empty() && error.description() == error_text(error.number()))
        raise_named(error.number(), name);
    throw error;
}

const std::string& link_name(const Frame& frame, Operand link) {
    return frame.unit->program->links[link.index()].name;
}

} // namespace

void Machine::State::raise_undefined(const Frame& frame, std::string_view name,
                                     std::int32_t otherwise) const {
    raise_named(frame.unit->program->option_explicit ? 500 : otherwise, name);
}

bool Machine::State::get_name(Frame& frame, const Instruction& instruction) {
    const Link& link = frame.unit->links[instruction.b.index()];
    if (link.global->is_readable()) {
        frame[instruction.a] = *link.value;
        return false;
    }
    if (link.global->kind != Global::Kind::Undefined)
        return call_link(frame, instruction, instruction.a, nullptr, 0, {});
    if (instruction.c.exists())
        frame[instruction.a] = frame[instruction.c];
    else if (frame.unit->program->option_explicit)
        raise_named(500, link_name(frame, instruction.b));
    else
        frame[instruction.a] = Variant();
    return false;
}

void Machine::State::bind_name(Frame& frame, const Instruction& instruction) {
    const Link& link = frame.unit->links[instruction.b.index()];
    Variant*& reference = frame.references[instruction.a.index()];
    switch (link.global->kind) {
    case Global::Kind::Variable:
        reference = link.value;
        return;
    case Global::Kind::Undefined:
        if (frame.unit->program->option_explicit)
            raise_named(500, link_name(frame, instruction.b));
        if (instruction.c.exists()) {
            reference = &frame[instruction.c];
        } else {
            link.global->kind = Global::Kind::Variable;
            reference = link.value;
        }
        return;
    default:
        raise_named(501, link_name(frame, instruction.b));
    }
}

bool Machine::State::bind_argument(Frame& frame, const Instruction& instruction) {
    const Link& link = frame.unit->links[instruction.b.index()];
    const Global::Kind kind = link.global->kind;
    if (kind == Global::Kind::Variable || kind == Global::Kind::Undefined) {
        bind_name(frame, instruction);
        return false;
    }
    const Operand value(Operand::Kind::Local, instruction.count);
    frame.references[instruction.a.index()] = &frame[value];
    if (instruction.flags & Instruction::kOnlyVariables) {
        frame[value] = Variant();
        return false;
    }
    if (link.global->is_readable()) {
        frame[value] = *link.value;
        return false;
    }
    return call_link(frame, instruction, value, nullptr, 0, {});
}

bool Machine::State::call_name(Frame& frame, const Instruction& instruction) {
    const Operand* const list = frame.list(instruction.c);
    if (call_link(frame, instruction, instruction.a, list + 1, instruction.count, list[0]))
        return true; // its temporaries are emptied when it returns
    if (!(instruction.flags & Instruction::kKeepArguments))
        empty_temporaries(frame, list + 1, instruction.count);
    return false;
}

bool Machine::State::call_link(Frame& frame, const Instruction& instruction, Operand result,
                               const Operand* list, std::size_t count, Operand local) {
    const Link& link = frame.unit->links[instruction.b.index()];
    const std::string& name = link_name(frame, instruction.b);
    Variant value;
    switch (link.global->kind) {
    case Global::Kind::Procedure:
        call_procedure(frame, *link.global->unit, *link.global->procedure, result, list, count);
        return true;
    case Global::Kind::Member:
        value = call_global_member(frame, *link.global, list, count, name);
        break;
    case Global::Kind::Library:
        value = call_library(frame, *link.global->library, list, count);
        break;
    case Global::Kind::CreateObject:
        value = create_object(frame, list, count);
        break;
    case Global::Kind::Eval:
    case Global::Kind::Execute:
    case Global::Kind::ExecuteGlobal:
    case Global::Kind::GetRef:
        value = call_text_function(frame, link.global->kind, list, count, name);
        break;
    case Global::Kind::Undefined:
        if (!local.exists())
            raise_undefined(frame, name, kErrorMismatch);
        value = element(frame, Variant(frame[local]), list, count, name);
        break;
    default:
        value = element(frame, Variant(*link.value), list, count, name);
    }
    if (result.exists())
        frames_.back()[result] = std::move(value);
    return false;
}

void Machine::State::call_procedure(Frame& frame, LoadedUnit& unit, const Procedure& procedure,
                                    Operand result, const Operand* list, std::size_t count, Instance* me,
                                    Variant* value) {
    if (count + (value != nullptr) != procedure.parameters.size())
        raise_named(kErrorArguments, procedure.name);
    if (must_stop())
        return;
    const Frame& callee = push_frame(unit, procedure, result, me, me ? procedure.parameters.size() : 0);
    Variant* const copies = callee.slots + procedure.slots;
    const auto pass = [&](std::size_t i, Variant& argument, bool may_change) {
        const Procedure::Parameter& parameter = procedure.parameters[i];
        if (parameter.by_value) {
            callee.slots[parameter.at.index()] = argument;
        } else if (may_change) {
            callee.references[parameter.at.index()] = &argument;
        } else {
            copies[i] = argument;
            callee.references[parameter.at.index()] = &copies[i];
        }
    };
    for (std::size_t i = 0; i < count; ++i)
        pass(i, frame[list[i]], !me || list[i].kind() != Operand::Kind::Constant);
    if (value)
        pass(count, *value, false);
}

void Machine::State::call_own_method(Frame& frame, const Instruction& instruction) {
    LoadedUnit& unit = *frame.unit;
    call_procedure(frame, unit, unit.program->procedures[instruction.b.number()], instruction.a,
                   frame.list(instruction.c), instruction.count,
                   static_cast<Instance*>(frame.slots[0].object()));
}

Variant Machine::State::call_global_member(Frame& frame, const Global& global, const Operand* list,
                                           std::size_t count, const std::string& name) {
    const Ref<Object> object(global.value.object());
    const CallArguments arguments(references_, slots_, frame, list, count);
    try {
        return object->invoke(global.member, Access::Get, arguments.span());
    } catch (const ScriptError&) {
        throw;
    } catch (const Error& error) {
        rethrow_named(error, name);
    }
}

Variant Machine::State::call_library(Frame& frame, const LibraryFunction& function, const Operand* list,
                                     std::size_t count) {
    const bool too_many = function.most >= 0 && count > static_cast<std::size_t>(function.most);
    if (too_many || count < static_cast<std::size_t>(function.least))
        raise_named(kErrorArguments, function.name);
    const CallArguments arguments(CallArguments::Of::Function, references_, slots_, frame, list, count);
    try {
        return function.call(arguments.span());
    } catch (const Error& error) {
        rethrow_named(error, function.name);
    }
}

Variant Machine::State::create_object(Frame& frame, const Operand* list, std::size_t count) {
    if (count < 1 || count > 2) // a second one names another computer, which there is none of
        raise_named(kErrorArguments, "CreateObject");
    const Text program_id = to_text(frame[list[0]]);
    try {
        return Variant(environment_.create_object(program_id));
    } catch (const Error& error) {
        rethrow_named(error, program_id);
    }
}

} // namespace tabrixdb::vbscript
