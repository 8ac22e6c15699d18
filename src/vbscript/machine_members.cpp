#include "automation/conversions.h"
#include "vbscript/call_arguments.h"
#include "vbscript/instance.h"
#include "vbscript/machine_state.h"

#include <algorithm>
#include <optional>

namespace tabrixdb::vbscript {

namespace {

// The subscripts of one element, as numbers.
class Subscripts {
public:
    Subscripts(const Frame& frame, const Operand* list, std::size_t count)
        : frame_(frame),
          list_(list),
          count_(count) {
        if (count > Array::kMaxDimensions)
            throw Error(kErrorSubscript);
        for (std::size_t i = 0; i < count; ++i) {
            const Variant& value = frame[list[i]];
            const bool is_plain = value.type() == Type::Integer || value.type() == Type::Long;
            values_[i] = is_plain ? static_cast<std::int32_t>(value.whole()) : to_long(value);
        }
    }

    bool fit(const Array& array) const noexcept { return misfit(array) == kFits; }

    // Error 9 with the name of the subscript that is out of range, or else of the array.
    void check(const Array& array, const std::string& name) const {
        const std::size_t at = misfit(array);
        if (at == kFits)
            return;
        if (at == kWrongNumber)
            raise_named(kErrorSubscript, name);
        const std::string own = name_of(frame_, list_[at]);
        raise_named(kErrorSubscript, own.empty() ? "[number: " + std::to_string(values_[at]) + "]" : own);
    }

    std::span<const std::int32_t> span() const noexcept { return {values_, count_}; }

private:
    static constexpr std::size_t kFits = static_cast<std::size_t>(-1);
    static constexpr std::size_t kWrongNumber = static_cast<std::size_t>(-2);

    std::size_t misfit(const Array& array) const noexcept {
        if (count_ == 0 || array.dimensions() != count_)
            return kWrongNumber;
        for (std::size_t i = 0; i < count_; ++i)
            if (values_[i] < 0 || values_[i] > array.upper_bound(i))
                return i;
        return kFits;
    }

    const Frame& frame_;
    const Operand* list_;
    std::size_t count_;
    std::int32_t values_[Array::kMaxDimensions];
};

// The value to assign: without Set an object's default member, with Set an object.
Variant assigned(const Frame& frame, Operand from, bool by_reference) {
    const Variant& value = frame[from];
    if (!by_reference)
        return value_of(value);
    if (!value.is_object()) {
        const std::string name = name_of(frame, from);
        raise_named(kErrorObjectRequired, name.empty() ? describe(value) : name);
    }
    return value;
}

void empty_temporary(const Frame& frame, Operand operand) {
    if (operand.is_temporary())
        frame[operand] = Variant();
}

const std::string& member_name(const Frame& frame, const Operand* site) {
    return frame.unit->program->members[site[0].number()];
}

// Errors about the way a member was asked carry its name.
[[noreturn]] void rethrow_named(const Error& error, std::string_view name) {
    const std::int32_t number = error.number();
    const bool is_about_call =
        number == kErrorNoMember || number == kErrorNotOptional || number == kErrorArguments;
    if (is_about_call && error.source().empty() && error.description() == error_text(number))
        raise_named(number, name);
    throw error;
}

} // namespace

// --- Assignment ------------------------------------------------------------------------------------

void Machine::State::let(Frame& frame, const Instruction& instruction) {
    Variant& from = frame[instruction.b];
    if (from.is_object()) {
        Variant value = value_of(from);
        empty_temporary(frame, instruction.b);
        frame[instruction.a] = std::move(value);
    } else if (instruction.b.is_temporary()) {
        frame[instruction.a] = std::move(from);
    } else {
        frame[instruction.a] = from;
    }
}

void Machine::State::set(Frame& frame, const Instruction& instruction) {
    Variant value = assigned(frame, instruction.b, true);
    empty_temporary(frame, instruction.b);
    frame[instruction.a] = std::move(value);
}

// --- Members ---------------------------------------------------------------------------------------

namespace {

// The object before the dot; the temporary that held it lets go.
Ref<Object> holder_of(const Frame& frame, Operand target) {
    const Variant& holder = frame[target];
    if (!holder.is_object() || !holder.object())
        raise_named(kErrorObjectRequired, name_of(frame, target));
    Ref<Object> object(holder.object()); // the variable may be assigned to meanwhile
    empty_temporary(frame, target);
    return object;
}

} // namespace

const MemberCache& Machine::State::find_member(Frame& frame, Object& object, const Operand* site) {
    MemberCache& cache = frame.unit->caches[site[1].number()];
    const void* key = object.dispatch_key();
    if (cache.key != key) {
        cache.member = object.find(member_name(frame, site));
        cache.of_script = dynamic_cast<Instance*>(&object) != nullptr;
        cache.key = key;
    }
    if (cache.member < 0)
        raise_named(kErrorNoMember, member_name(frame, site));
    return cache;
}

// The object, when its methods run in frames of this machine.
Instance* Machine::State::own_instance(const MemberCache& found, Object& object) const noexcept {
    if (!found.of_script)
        return nullptr;
    Instance& instance = static_cast<Instance&>(object);
    return instance.belongs_to(*this) ? &instance : nullptr;
}

Variant Machine::State::invoke(Frame& frame, Object& object, int member, Access access, const Operand* site,
                               Arguments arguments) {
    const HeldValues held(slots_, arguments);
    try {
        return object.invoke(member, access, arguments);
    } catch (const ScriptError&) {
        throw;
    } catch (const Error& error) {
        rethrow_named(error, member_name(frame, site));
    }
}

bool Machine::State::get_member(Frame& frame, const Instruction& instruction) {
    const Operand* const site = frame.list(instruction.c);
    const Operand* const list = site + 2;
    const Ref<Object> object = holder_of(frame, instruction.b);
    const MemberCache found = find_member(frame, *object, site);
    Variant result;
    Instance* const own = own_instance(found, *object);
    const std::int32_t field =
        own ? own->declared().members[static_cast<std::size_t>(found.member)].field : -1;
    if (own && field < 0) {
        call_procedure(frame, own->unit(), own->procedure(found.member, Access::Get), instruction.a, list,
                       instruction.count, own);
        return true;
    }
    if (own && instruction.count == 0) {
        result = own->fields()[field];
    } else {
        const CallArguments arguments(references_, slots_, frame, list, instruction.count);
        result = invoke(frame, *object, found.member, Access::Get, site, arguments.span());
    }
    if (!(instruction.flags & Instruction::kKeepArguments))
        empty_temporaries(frame, list, instruction.count);
    if (instruction.a.exists())
        frame[instruction.a] = std::move(result);
    return false;
}

bool Machine::State::store_member(Frame& frame, const Instruction& instruction) {
    const Operand* const site = frame.list(instruction.c);
    const Operand* const list = site + 2;
    const bool by_reference = (instruction.flags & Instruction::kByReference) != 0;
    const Access access = by_reference ? Access::Set : Access::Let;
    Variant value = assigned(frame, instruction.a, by_reference);
    empty_temporary(frame, instruction.a);
    const Ref<Object> object = holder_of(frame, instruction.b);
    const MemberCache found = find_member(frame, *object, site);
    Instance* const own = own_instance(found, *object);
    const std::int32_t field =
        own ? own->declared().members[static_cast<std::size_t>(found.member)].field : -1;
    if (own && field < 0) {
        call_procedure(frame, own->unit(), own->procedure(found.member, access), {}, list, instruction.count,
                       own, &value);
        return true;
    }
    if (own && instruction.count == 0) {
        own->fields()[field] = std::move(value);
        return false;
    }
    {
        const CallArguments arguments(references_, slots_, frame, list, instruction.count, &value);
        invoke(frame, *object, found.member, access, site, arguments.span());
    }
    empty_temporaries(frame, list, instruction.count);
    return false;
}

// --- Elements --------------------------------------------------------------------------------------

// holder(list): an array's element, a byte, or what an object's default member gives.
Variant Machine::State::element(Frame& frame, const Variant& holder, const Operand* list, std::size_t count,
                                const std::string& name) {
    if (holder.is_array()) {
        const Subscripts subscripts(frame, list, count);
        subscripts.check(*holder.array(), name);
        return std::as_const(*holder.array()).at(subscripts.span());
    }
    if (holder.is_object()) {
        if (!holder.object())
            raise_named(kErrorNothing, name);
        const Ref<Object> object(holder.object());
        const CallArguments arguments(references_, slots_, frame, list, count);
        return default_value(object.get(), arguments.span());
    }
    if (holder.is_byte_array() && count == 1) {
        const std::string_view bytes = holder.text().view();
        const std::int32_t at = to_long(frame[list[0]]);
        if (at < 0 || static_cast<std::size_t>(at) >= bytes.size())
            throw Error(kErrorSubscript);
        return Variant::byte(static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(at)]));
    }
    raise_named(kErrorMismatch, name);
}

void Machine::State::index(Frame& frame, const Instruction& instruction) {
    const Operand* const list = frame.list(instruction.c);
    Variant result;
    const Variant& holder = frame[instruction.b];
    if (holder.is_array() && instruction.count > 0) {
        const Subscripts subscripts(frame, list, instruction.count);
        if (!subscripts.fit(*holder.array())) // the name is made only for the message
            subscripts.check(*holder.array(), name_of(frame, instruction.b));
        result = std::as_const(*holder.array()).at(subscripts.span());
    } else {
        result = element(frame, Variant(holder), list, instruction.count, name_of(frame, instruction.b));
    }
    empty_temporary(frame, instruction.b);
    if (!(instruction.flags & Instruction::kKeepArguments))
        empty_temporaries(frame, list, instruction.count);
    if (instruction.a.exists())
        frame[instruction.a] = std::move(result);
}

void Machine::State::store_element(Frame& frame, const Instruction& instruction) {
    const bool by_reference = (instruction.flags & Instruction::kByReference) != 0;
    Variant value = assigned(frame, instruction.a, by_reference);
    empty_temporary(frame, instruction.a);
    const Operand* list = frame.list(instruction.c);
    Variant* at = &frame[instruction.b];
    Ref<Array> array; // `at` lies in it
    Variant held;     // or is this
    for (std::size_t group = 0; group < instruction.count; ++group) {
        const bool is_last = group + 1 == instruction.count;
        const std::size_t count = list++->number();
        if (at->is_array()) {
            const Subscripts subscripts(frame, list, count);
            if (!subscripts.fit(*at->array()))
                subscripts.check(*at->array(), name_of(frame, instruction.b));
            Array& owner = at->unique_array();
            at = &owner.at(subscripts.span());
            array = Ref<Array>(&owner);
        } else if (at->is_object() && is_last) {
            const Ref<Object> object(at->object());
            if (!object)
                raise_named(kErrorNothing, name_of(frame, instruction.b));
            const CallArguments arguments(references_, slots_, frame, list, count, &value);
            tabrixdb::invoke(*object, {}, by_reference ? Access::Set : Access::Let, arguments.span());
            empty_temporaries(frame, list, count);
            empty_temporary(frame, instruction.b);
            return;
        } else {
            held = element(frame, Variant(*at), list, count, name_of(frame, instruction.b));
            at = &held;
        }
        empty_temporaries(frame, list, count);
        list += count;
    }
    *at = std::move(value);
    empty_temporary(frame, instruction.b);
}

// After a call that got an element by reference. The array may have changed: an element that is no longer
// there is nobody's.
void Machine::State::write_back(Frame& frame, const Instruction& instruction) {
    Variant value = std::exchange(frame[instruction.a], Variant());
    Variant& holder = frame[instruction.b];
    if (!holder.is_array())
        return;
    const Subscripts subscripts(frame, frame.list(instruction.c), instruction.count);
    empty_temporaries(frame, frame.list(instruction.c), instruction.count);
    if (!subscripts.fit(*holder.array()))
        return;
    if (!identical(std::as_const(*holder.array()).at(subscripts.span()), value))
        holder.unique_array().at(subscripts.span()) = std::move(value);
}

// --- Arrays ----------------------------------------------------------------------------------------

void Machine::State::redim(Frame& frame, const Instruction& instruction) {
    const Operand* const list = frame.list(instruction.c);
    std::vector<std::int32_t> bounds;
    for (std::size_t i = 0; i < instruction.count; ++i)
        bounds.push_back(to_long(frame[list[i]]));
    const bool preserve = (instruction.flags & Instruction::kPreserve) != 0;
    Variant& variable = frame[instruction.a];
    if (!variable.is_array() && !variable.is_empty())
        raise_named(kErrorMismatch, name_of(frame, instruction.a));
    if (variable.is_array() && variable.array()->fixed())
        throw Error(10);
    if (variable.is_array() && preserve && variable.array()->dimensions() > 0)
        variable.unique_array().redimension(bounds, true);
    else
        variable = Variant(make_ref<Array>(bounds, false));
}

void Machine::State::dim_array(Frame& frame, const Instruction& instruction) {
    std::vector<std::int32_t> bounds;
    const Operand* const list = frame.list(instruction.c);
    for (std::size_t i = 0; i < instruction.count; ++i)
        bounds.push_back(static_cast<std::int32_t>(list[i].number()));
    frame[instruction.a] = Variant(bounds.empty() ? make_ref<Array>() : make_ref<Array>(bounds, true));
}

void Machine::State::erase(Frame& frame, const Instruction& instruction) {
    Variant& variable = frame[instruction.a];
    if (!variable.is_array())
        raise_named(kErrorMismatch, name_of(frame, instruction.a));
    variable.unique_array().erase();
}

} // namespace tabrixdb::vbscript
