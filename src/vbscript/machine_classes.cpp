#include "vbscript/instance.h"
#include "vbscript/machine_state.h"

#include <atomic>

namespace tabrixdb::vbscript {

// Odd numbers, which are no addresses, and never one twice: a call site may remember what it found for a
// class that is gone.
std::vector<const void*> new_class_keys(std::size_t count) {
    static std::atomic<std::uintptr_t> next{1};
    std::vector<const void*> keys;
    for (std::size_t i = 0; i < count; ++i)
        keys.push_back(reinterpret_cast<const void*>(next.fetch_add(2, std::memory_order_relaxed)));
    return keys;
}

// --- Making ----------------------------------------------------------------------------------------

bool Machine::State::new_object(Frame& frame, const Instruction& instruction) {
    const Link& link = frame.unit->links[instruction.b.index()];
    if (link.global->kind != Global::Kind::Class) {
        const std::string& name = frame.unit->program->links[instruction.b.index()].name;
        const Ref<Object> made = environment_.new_object(name);
        if (!made)
            raise_named(506, name);
        frame[instruction.a] = Variant(made);
        return false;
    }
    const Class& declared = *link.global->declared;
    LoadedUnit& unit = *link.global->unit;
    const auto made = make_ref<Instance>(*this, unit, declared);
    frame[instruction.a] = Variant(Ref<Object>(made));
    if (declared.initialize < 0)
        return false;
    call_procedure(frame, unit, unit.program->procedures[static_cast<std::size_t>(declared.initialize)], {},
                   nullptr, 0, made.get());
    return true;
}

Variant Machine::State::call_method(Instance& instance, const Procedure& procedure, Arguments arguments) {
    return execute(instance.unit(), procedure, arguments, &instance).value_or(Variant());
}

// --- Ending ----------------------------------------------------------------------------------------

void Machine::State::enlist(Instance& instance) noexcept {
    instance.next_ = instances_;
    if (instances_)
        instances_->previous_ = &instance;
    instances_ = &instance;
}

void Machine::State::dismiss(Instance& instance) noexcept {
    (instance.previous_ ? instance.previous_->next_ : instances_) = instance.next_;
    if (instance.next_)
        instance.next_->previous_ = instance.previous_;
    instance.previous_ = instance.next_ = nullptr;
}

void Machine::State::terminate_later(Ref<Instance> instance) {
    dying_.push_back(std::move(instance));
}

// Class_Terminate of objects that nobody holds any more. It runs between two instructions, when no C++ code
// is in the middle of anything that the script could change.
void Machine::State::run_terminations() {
    while (!dying_.empty() && !interrupt_.stopped()) {
        const Ref<Instance> instance = std::move(dying_.front());
        dying_.pop_front();
        const auto index = static_cast<std::size_t>(instance->declared().terminate);
        call_method(*instance, instance->unit().program->procedures[index], {});
    }
}

// What is left lives in cycles, or is held from outside.
void Machine::State::release_instances() noexcept {
    while (instances_) {
        const Ref<Instance> left(instances_);
        dismiss(*left);
        left->detach();
    }
}

} // namespace tabrixdb::vbscript
