#pragma once

#include "automation/object.h"
#include "vbscript/machine_state.h"

#include <memory>
#include <vector>

namespace tabrixdb::vbscript {

// An object of a class that a script declares. Belongs to the machine that made it: when that one ends, the
// object lets go of all that it holds, and asking it is Error 440.
class Instance final : public Object {
public:
    // With its variables as they are before Class_Initialize. Error 7 when the run holds too much.
    Instance(Machine::State& machine, LoadedUnit& unit, const Class& declared);
    ~Instance() override;

    const ClassInfo& class_info() const override;
    // Public members only.
    int find(std::string_view name) const override;

    const void* dispatch_key() const override { return key_; }

    Variant invoke(int member, Access access, Arguments arguments) override;

    std::string_view type_name() const override { return class_->name; }

    const Class& declared() const noexcept { return *class_; }

    LoadedUnit& unit() const noexcept { return *unit_; }

    Variant* fields() noexcept { return fields_.data(); }

    bool belongs_to(const Machine::State& machine) const noexcept { return machine_ == &machine; }

    // Error 438 when the member can't be asked that way.
    const Procedure& procedure(int member, Access access) const;

    // Whether there is such an object on this thread: then reading a value may run script.
    static bool any_alive() noexcept { return alive_ > 0; }

private:
    friend class Machine::State; // which links its instances

    // Takes over what a dying one holds, for its Class_Terminate.
    explicit Instance(Instance& dying);
    Variant ask_field(Variant& field, Access access, Arguments arguments);
    void detach() noexcept;

    Machine::State* machine_;
    LoadedUnit* unit_;
    const Class* class_;
    const void* key_;
    std::shared_ptr<const Program> program_; // holds *class_
    std::vector<Variant> fields_;
    std::size_t held_bytes_ = 0;
    bool terminated_ = false;
    Instance* previous_ = nullptr;
    Instance* next_ = nullptr;
    static inline thread_local std::size_t alive_ = 0;
};

} // namespace tabrixdb::vbscript
