#include "automation/conversions.h"
#include "automation/member.h"
#include "vbscript/arithmetic.h"
#include "vbscript/call_arguments.h"
#include "vbscript/machine_state.h"

namespace tabrixdb::vbscript {

namespace {

bool is_floating(const Variant& value) noexcept {
    return value.type() == Type::Single || value.type() == Type::Double;
}

// A bound of For as a number of its own type.
Variant bound(const Variant& given) {
    Variant value = value_of(given);
    if (is_small_whole(value) || is_floating(value) || value.type() == Type::Currency ||
        value.type() == Type::Date)
        return value;
    if (value.is_null())
        throw Error(kErrorNull);
    if (value.is_empty() || value.type() == Type::Boolean || value.type() == Type::Byte)
        return convert(value, Type::Integer);
    return convert(value, Type::Double);
}

// The first value in the type that all three bounds have room in.
Variant first_value(Variant from, const Variant& to, const Variant& step) {
    if (!is_small_whole(from))
        return from;
    if (is_floating(to) || is_floating(step))
        return convert(from, Type::Double);
    if (to.type() == Type::Long || step.type() == Type::Long)
        return convert(from, Type::Long);
    return from;
}

bool is_within(const Variant& value, const Variant& limit, const Variant& step) {
    const bool down = fast_compare(step, Variant(std::int16_t{0}), 0) == Order::Less;
    const Order order = fast_compare(value, limit, 0);
    return order == Order::Equal || order == (down ? Order::Greater : Order::Less);
}

// Walks the elements of an array as they were when the loop began.
class ArrayEnumerator final : public Enumerator {
public:
    explicit ArrayEnumerator(Ref<Array> array) : array_(std::move(array)) {}

    bool next(Variant& item) override {
        const std::span<const Variant> elements = std::as_const(*array_).elements();
        if (at_ >= elements.size())
            return false;
        item = elements[at_++];
        return true;
    }

private:
    Ref<Array> array_;
    std::size_t at_ = 0;
};

// An enumerator in a slot of the frame.
class HeldEnumerator final : public Object {
public:
    explicit HeldEnumerator(std::unique_ptr<Enumerator> enumerator) : enumerator_(std::move(enumerator)) {}

    const ClassInfo& class_info() const override {
        static const ClassInfo info("Enumerator", "", {});
        return info;
    }

    bool next(Variant& item) { return enumerator_->next(item); }

private:
    std::unique_ptr<Enumerator> enumerator_;
};

std::unique_ptr<Enumerator> enumerate(const Frame& frame, Operand collection) {
    const Variant& value = frame[collection];
    if (value.is_array())
        return std::make_unique<ArrayEnumerator>(Ref<Array>(value.array()));
    if (!value.is_object())
        throw Error(kErrorNoEnumerator);
    if (!value.object())
        raise_named(kErrorObjectRequired, name_of(frame, collection));
    return Ref<Object>(value.object())->enumerate();
}

bool next_item(const Frame& frame, Operand held, Operand variable) {
    const Variant& holder = frame[held];
    if (!holder.is_object())
        throw Error(92);
    const Ref<HeldEnumerator> enumerator(static_cast<HeldEnumerator*>(holder.object()));
    Variant item;
    if (!enumerator->next(item))
        return false;
    frame[variable] = std::move(item);
    return true;
}

} // namespace

bool Machine::State::for_start(Frame& frame, const Instruction& instruction) {
    const Operand* const list = frame.list(instruction.c);
    Variant from = bound(frame[list[0]]);
    Variant to = bound(frame[list[1]]);
    Variant step = bound(frame[list[2]]);
    empty_temporaries(frame, list, 3);
    Variant& variable = frame[instruction.b];
    variable = first_value(std::move(from), to, step);
    const bool enters = is_within(variable, to, step);
    frame[instruction.a] = std::move(to);
    frame[list[4]] = std::move(step);
    return enters;
}

bool Machine::State::for_next(Frame& frame, const Instruction& instruction) {
    const Variant& step = frame[Operand(Operand::Kind::Local, instruction.count)];
    if (step.is_empty())
        throw Error(92);
    Variant& variable = frame[instruction.b];
    variable = fast_add(variable, step);
    return is_within(variable, frame[instruction.a], step);
}

bool Machine::State::for_each_start(Frame& frame, const Instruction& instruction) {
    auto held = make_ref<HeldEnumerator>(enumerate(frame, instruction.b));
    if (instruction.b.is_temporary())
        frame[instruction.b] = Variant();
    frame[instruction.a] = Variant(held);
    return next_item(frame, instruction.a, frame.list(instruction.c)[0]);
}

bool Machine::State::for_each_next(Frame& frame, const Instruction& instruction) {
    return next_item(frame, instruction.a, instruction.b);
}

void Machine::State::with_start(Frame& frame, const Instruction& instruction) {
    Variant& object = frame[instruction.b];
    if (!object.is_object())
        raise_named(kErrorObjectRequired, name_of(frame, instruction.b));
    if (instruction.b.is_temporary())
        frame[instruction.a] = std::move(object);
    else
        frame[instruction.a] = object;
}

} // namespace tabrixdb::vbscript
