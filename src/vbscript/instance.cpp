#include "vbscript/instance.h"

#include "automation/conversions.h"
#include "automation/member.h"

#include <new>

namespace tabrixdb::vbscript {

Instance::Instance(Machine::State& machine, LoadedUnit& unit, const Class& declared)
    : machine_(&machine),
      unit_(&unit),
      class_(&declared),
      key_(unit.class_keys[static_cast<std::size_t>(&declared - unit.program->classes.data())]),
      program_(unit.program),
      fields_(declared.fields.size()) {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const Class::Field& field = declared.fields[i];
        if (field.is_array)
            fields_[i] =
                Variant(field.bounds.empty() ? make_ref<Array>() : make_ref<Array>(field.bounds, true));
    }
    held_bytes_ = sizeof(Instance) + fields_.size() * sizeof(Variant);
    if (!Interrupt::hold(held_bytes_))
        throw Error(7);
    machine_->enlist(*this);
    ++alive_;
}

Instance::Instance(Instance& dying)
    : machine_(dying.machine_),
      unit_(dying.unit_),
      class_(dying.class_),
      key_(dying.key_),
      program_(dying.program_),
      fields_(std::move(dying.fields_)),
      held_bytes_(std::exchange(dying.held_bytes_, 0)),
      terminated_(true) {
    machine_->enlist(*this);
    ++alive_;
}

Instance::~Instance() {
    if (machine_ && class_->terminate >= 0 && !terminated_) {
        try {
            machine_->terminate_later(Ref<Instance>(new Instance(*this)));
        } catch (const std::bad_alloc&) { // it ends without a word
        }
    }
    if (machine_)
        machine_->dismiss(*this);
    Interrupt::let_go(held_bytes_);
    --alive_;
}

void Instance::detach() noexcept {
    machine_ = nullptr;
    const std::vector<Variant> fields = std::move(fields_);
}

const ClassInfo& Instance::class_info() const {
    static const ClassInfo info("Object", "", {}); // its members are the script's
    return info;
}

int Instance::find(std::string_view name) const {
    if (name.empty())
        return class_->default_member;
    const std::int32_t member = class_->find(name);
    return member < 0 || class_->members[static_cast<std::size_t>(member)].is_private ? -1 : member;
}

const Procedure& Instance::procedure(int member, Access access) const {
    const Class::Member& asked = class_->members[static_cast<std::size_t>(member)];
    const std::int32_t index = access == Access::Get   ? asked.get
                               : access == Access::Let ? asked.let
                                                       : asked.set;
    if (index < 0)
        raise_named(kErrorNoMember, asked.name);
    return program_->procedures[static_cast<std::size_t>(index)];
}

Variant Instance::invoke(int member, Access access, Arguments arguments) {
    if (!machine_)
        throw Error(440, "The script that made this object has ended");
    const std::int32_t field = class_->members[static_cast<std::size_t>(member)].field;
    const Ref<Instance> self(this);
    if (field >= 0)
        return ask_field(fields_[static_cast<std::size_t>(field)], access, arguments);
    return machine_->call_method(*this, procedure(member, access), arguments);
}

// A variable, or, with arguments, the element of an array or the default member of an object in it.
Variant Instance::ask_field(Variant& field, Access access, Arguments arguments) {
    const Arguments subscripts = arguments.first(arguments.size() - (access != Access::Get));
    if (subscripts.empty()) {
        if (access == Access::Get)
            return field;
        if (access == Access::Set && !arguments.back()->is_object())
            throw Error(kErrorObjectRequired);
        field = access == Access::Set ? *arguments.back() : value_of(*arguments.back());
        return {};
    }
    if (field.is_object())
        return tabrixdb::invoke(field.object() ? *Ref<Object>(field.object()) : throw Error(kErrorNothing),
                                {}, access, arguments);
    if (!field.is_array())
        throw Error(kErrorArguments);
    std::vector<std::int32_t> at;
    for (const Variant* subscript : subscripts)
        at.push_back(to_long(*subscript));
    if (!field.is_array()) // a subscript's own script has put something else there
        throw Error(kErrorSubscript);
    if (access == Access::Get)
        return std::as_const(*field.array()).at(at);
    Variant value = access == Access::Set ? *arguments.back() : value_of(*arguments.back());
    if (!field.is_array())
        throw Error(kErrorSubscript);
    field.unique_array().at(at) = std::move(value);
    return {};
}

} // namespace tabrixdb::vbscript
