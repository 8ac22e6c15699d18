#include "vbscript/machine.h"

#include "automation/conversions.h"
#include "vbscript/instance.h"
#include "vbscript/machine_state.h"
#include "vbscript/place.h"

#include <algorithm>
#include <exception>
#include <new>

namespace tabrixdb::vbscript {

// --- Machine ---------------------------------------------------------------------------------------

Machine::Machine(Environment& environment, Interrupt& interrupt, Limits limits)
    : state_(std::make_shared<State>(environment, interrupt, limits)) {}

Machine::~Machine() {
    state_->close();
}

Outcome Machine::run(std::shared_ptr<const Program> program) {
    return state_->run(std::move(program));
}

std::optional<Variant> Machine::call(std::string_view procedure, Arguments arguments) {
    return state_->call(procedure, arguments);
}

bool Machine::has_procedure(std::string_view name) const {
    return state_->procedure(name) != nullptr;
}

Variant Machine::eval(std::string_view expression, const ExpressionVariables& variables) {
    return state_->eval(expression, variables);
}

void Machine::add_object(std::string_view name, Ref<Object> object, bool members) {
    state_->add_object(name, std::move(object), members);
}

bool Machine::is_running() const noexcept {
    return state_->is_running();
}

std::optional<Whereabouts> Machine::whereabouts() const {
    return state_->whereabouts();
}

// --- State: entrances ------------------------------------------------------------------------------

Machine::State::State(Environment& environment, Interrupt& interrupt, Limits limits)
    : environment_(environment),
      interrupt_(interrupt),
      limits_(limits),
      err_(make_ref<ErrObject>()) {
    Global& err = global("Err");
    err.kind = Global::Kind::Object;
    err.value = Variant(err_);
    global("CreateObject").kind = Global::Kind::CreateObject;
    global("Eval").kind = Global::Kind::Eval;
    global("Execute").kind = Global::Kind::Execute;
    global("ExecuteGlobal").kind = Global::Kind::ExecuteGlobal;
    global("GetRef").kind = Global::Kind::GetRef;
}

Machine::State::~State() {
    Interrupt::let_go(held_bytes_);
}

void Machine::State::close() noexcept {
    for (Global* name : names_in_order_) {
        if (name->kind != Global::Kind::Variable)
            continue;
        try {
            name->value = Variant();
            run_terminations();
        } catch (const std::exception&) { // there is no statement left that it could fail
        }
    }
    dying_.clear();
    release_instances();
}

Outcome Machine::State::run(std::shared_ptr<const Program> program) {
    const bool is_new = !units_.contains(program.get());
    LoadedUnit& unit = load(std::move(program));

    struct Unload { // nothing refers to a unit without procedures once its statements have run
        State& state;
        LoadedUnit* unit;

        ~Unload() {
            if (unit)
                state.unload(*unit);
        }
    } const unload{*this, is_new && !unit.program->is_referred_to() ? &unit : nullptr};

    declare_procedures(unit);
    declare_names(unit);
    const auto value = execute(unit, unit.program->main, {});
    return value ? Outcome::Finished : Outcome::Stopped;
}

const Global* Machine::State::procedure(std::string_view name) const {
    const auto found = globals_.find(name);
    const bool has = found != globals_.end() && found->second.kind == Global::Kind::Procedure;
    return has ? &found->second : nullptr;
}

std::optional<Variant> Machine::State::call(std::string_view name, Arguments arguments) {
    const Global* found = procedure(name);
    return found ? execute(*found->unit, *found->procedure, arguments) : std::nullopt;
}

Variant Machine::State::eval(std::string_view expression, const ExpressionVariables& variables) {
    return evaluate(expression, nullptr, variables);
}

void Machine::State::add_object(std::string_view name, Ref<Object> object, bool members) {
    Global& named = global(name);
    named.kind = Global::Kind::Object;
    named.value = Variant(object);
    if (!members)
        return;
    member_holders_.push_back(std::move(object));
    for (auto& [other, found] : globals_) // names that units are linked to already
        if (found.kind == Global::Kind::Undefined)
            resolve(found, other);
}

// --- Names and units -------------------------------------------------------------------------------

Global& Machine::State::global(std::string_view name) {
    const auto found = globals_.find(name);
    if (found != globals_.end())
        return found->second;
    if (!Interrupt::hold(kBytesOfName))
        throw Error(7);
    held_bytes_ += kBytesOfName;
    Global& made = globals_[std::string(name)];
    names_in_order_.push_back(&made);
    return made;
}

// A name that no unit declares: the host's, then the library's, then a member of an object of its own.
void Machine::State::resolve(Global& global, std::string_view name) {
    if (Object* object = environment_.global_object(name)) {
        global.kind = Global::Kind::Object;
        global.value = Variant(Ref<Object>(object));
    } else if (const LibraryFunction* function = find_library_function(name)) {
        global.kind = Global::Kind::Library;
        global.library = function;
    } else {
        for (const Ref<Object>& holder : member_holders_) {
            global.member = holder->find(name);
            if (global.member < 0)
                continue;
            global.kind = Global::Kind::Member;
            global.value = Variant(holder);
            return;
        }
    }
}

LoadedUnit& Machine::State::load(std::shared_ptr<const Program> program) {
    const auto found = units_.find(program.get());
    if (found != units_.end())
        return *found->second;
    const std::size_t bytes = program->bytes();
    if (!Interrupt::hold(bytes))
        throw Error(7);
    held_bytes_ += bytes;
    const Program* const key = program.get();
    return *units_.emplace(key, link(std::move(program), nullptr, {})).first->second;
}

void Machine::State::unload(const LoadedUnit& unit) noexcept {
    const std::size_t bytes = unit.program->bytes();
    Interrupt::let_go(bytes);
    held_bytes_ -= bytes;
    units_.erase(unit.program.get());
}

std::unique_ptr<LoadedUnit> Machine::State::link(std::shared_ptr<const Program> program, Frame* scope,
                                                 const ExpressionVariables& variables) {
    auto unit = std::make_unique<LoadedUnit>();
    unit->program = std::move(program);
    unit->scope = scope;
    unit->caches.resize(unit->program->caches);
    unit->class_keys = new_class_keys(unit->program->classes.size());
    for (const Program::Link& wanted : unit->program->links) {
        if (lend(*unit, variables, wanted.name) || (scope && borrow(*unit, *scope, wanted)))
            continue;
        Global& found = global(wanted.name);
        if (found.kind == Global::Kind::Undefined && wanted.declared == Program::Declared::No)
            resolve(found, wanted.name);
        unit->links.push_back({&found, &found.value});
    }
    return unit;
}

void Machine::State::declare_names(LoadedUnit& unit) {
    const Program& program = *unit.program;
    for (std::size_t i = 0; i < program.links.size(); ++i) {
        const Program::Link& wanted = program.links[i];
        Global& found = *unit.links[i].global;
        switch (wanted.declared) {
        case Program::Declared::Implicit:
            if (found.kind == Global::Kind::Constant || found.kind == Global::Kind::Procedure ||
                found.kind == Global::Kind::Member || found.kind == Global::Kind::Class)
                throw located(named_error(501, wanted.name), program.source, {});
            found.kind = Global::Kind::Variable;
            break;
        case Program::Declared::Variable:
            if (found.kind != Global::Kind::Variable)
                found.value = Variant();
            found.kind = Global::Kind::Variable;
            break;
        case Program::Declared::Constant:
            found.kind = Global::Kind::Constant;
            found.value = program.constants[wanted.index];
            break;
        default:
            break;
        }
    }
}

void Machine::State::declare_procedures(LoadedUnit& unit) {
    const Program& program = *unit.program;
    for (std::size_t i = 0; i < program.links.size(); ++i) {
        const Program::Link& wanted = program.links[i];
        Global& found = *unit.links[i].global;
        if (wanted.declared == Program::Declared::Procedure) {
            found.kind = Global::Kind::Procedure;
            found.procedure = &program.procedures[wanted.index];
        } else if (wanted.declared == Program::Declared::Class) {
            found.kind = Global::Kind::Class;
            found.declared = &program.classes[wanted.index];
        } else {
            continue;
        }
        found.unit = &unit;
    }
}

// --- Frames ----------------------------------------------------------------------------------------

namespace {

// Procedures called by objects, and Eval, take the thread's own stack: at most this many inside each other,
// whichever machines they belong to.
class Entrance {
public:
    Entrance() {
        if (depth == kMost)
            throw Error(28);
        ++depth;
    }

    ~Entrance() { --depth; }

    Entrance(const Entrance&) = delete;
    Entrance& operator=(const Entrance&) = delete;

private:
    static constexpr int kMost = 100;
    static inline thread_local int depth = 0;
};

} // namespace

std::optional<Variant> Machine::State::execute(LoadedUnit& unit, const Procedure& procedure,
                                               Arguments arguments, Instance* me) {
    if (arguments.size() != procedure.parameters.size())
        raise_named(kErrorArguments, procedure.name);
    const Entrance entrance;
    const Ref<Object> owner(environment_.owner());
    const std::size_t base = frames_.size();
    Frame& frame = push_frame(unit, procedure, {}, me);
    frame.is_base = true;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Procedure::Parameter& parameter = procedure.parameters[i];
        if (parameter.by_value)
            frame.slots[parameter.at.index()] = *arguments[i];
        else
            frame.references[parameter.at.index()] = arguments[i];
    }
    if (!run_frames(base))
        return std::nullopt;
    Variant result = std::exchange(returned_, Variant());
    if (base == 0)
        run_terminations();
    return result;
}

Frame& Machine::State::push_frame(LoadedUnit& unit, const Procedure& procedure, Operand result, Instance* me,
                                  std::size_t copies) {
    if (frames_.size() > limits_.recursion)
        throw Error(28);
    Frame frame;
    frame.unit = &unit;
    frame.procedure = &procedure;
    frame.result = result;
    frame.slot_mark = slots_.mark();
    frame.reference_mark = references_.mark();
    frame.slot_count = static_cast<std::uint32_t>(procedure.slots + copies);
    frame.slots = slots_.push(frame.slot_count);
    frame.references = references_.push(procedure.references);
    frame.at = unit.program->code.data() + procedure.first;
    if (me) {
        frame.slots[0] = Variant(Ref<Object>(me));
        frame.fields = me->fields();
    }
    frames_.push_back(frame);
    return frames_.back();
}

void Machine::State::pop_frame() {
    const Frame frame = frames_.back();
    for (std::uint32_t i = 0; i < frame.slot_count; ++i)
        frame.slots[i] = Variant();
    if (frame.has_names)
        names_of_frames_.erase(&frames_.back());
    frames_.pop_back();
    slots_.pop(frame.slot_mark);
    references_.pop(frame.reference_mark);
}

namespace {

// Operands that stand before the arguments of a call that pushes a frame; -1: it has no list.
int before_arguments(OpCode code) noexcept {
    switch (code) {
    case OpCode::CallMethod:
        return 0;
    case OpCode::CallName:
        return 1;
    case OpCode::GetMember:
    case OpCode::StoreMember:
        return 2;
    default:
        return -1;
    }
}

} // namespace

void Machine::State::return_from_frame() {
    const Frame& frame = frames_.back();
    const bool is_base = frame.is_base;
    const Operand to = frame.result;
    Variant result;
    if (frame.procedure->result.exists())
        result = std::move(frame[frame.procedure->result]);
    pop_frame();
    if (is_base) {
        returned_ = std::move(result);
        return;
    }
    const Frame& caller = frames_.back();
    const Instruction& call = *caller.at;
    const int before = before_arguments(call.code);
    if (before >= 0 && !(call.flags & Instruction::kKeepArguments)) {
        const Operand* const arguments = caller.list(call.c) + before;
        for (std::size_t i = 0; i < call.count; ++i)
            if (arguments[i].is_temporary())
                caller[arguments[i]] = Variant();
    }
    if (to.exists())
        caller[to] = std::move(result);
}

void Machine::State::unwind(std::size_t base) {
    while (frames_.size() > base)
        pop_frame();
}

bool Machine::State::must_stop() noexcept {
    if (limits_.steps != 0 && ++steps_ > limits_.steps)
        interrupt_.stop(Interrupt::Reason::TimedOut);
    return interrupt_.poll();
}

// --- Errors ----------------------------------------------------------------------------------------

bool Machine::State::run_frames(std::size_t base) {
    const auto failed = [&](const Error& error) {
        const Frame& frame = frames_.back();
        const Program& program = *frame.unit->program;
        const Place place = program.place_of(frame.code_index());
        if (hold(error, base))
            return;
        throw located(error, program.source, place);
    };
    for (;;) {
        try {
            if (interpret(base))
                return true;
            unwind(base);
        } catch (const ScriptError& error) { // has its place already: of a callback's script, or of Eval
            if (!hold(error, base))
                throw;
        } catch (const Error& error) {
            failed(error);
        } catch (const std::bad_alloc&) {
            failed(Error(7));
        } catch (const std::exception&) { // nothing of an object's C++ may leave the frames as they are
            failed(Error(51));
        }
        if (frames_.size() == base)
            return false;
    }
}

// Goes on behind the failed statement in the innermost procedure that asked for it; false, with all frames
// left, when none did. A stopped run is left whatever the page says about errors.
bool Machine::State::hold(const Error& error, std::size_t base) {
    if (interrupt_.stopped()) {
        unwind(base);
        return true;
    }
    std::size_t holder = frames_.size();
    while (holder > base && !frames_[holder - 1].resume_next)
        --holder;
    unwind(holder);
    if (holder == base)
        return false;
    err_->set(error);
    Frame& frame = frames_.back();
    const Program& program = *frame.unit->program;
    frame.at = program.code.data() + program.next_statement(frame.code_index());
    return true;
}

// What Eval and Execute run stands in no file: the statement that called them does.
std::optional<Whereabouts> Machine::State::whereabouts() const {
    for (auto frame = frames_.rbegin(); frame != frames_.rend(); ++frame) {
        const Program& program = *frame->unit->program;
        const Position at = position_of(program.source, program.place_of(frame->code_index()));
        if (const std::string& file = program.source.files[at.file]; !file.empty())
            return Whereabouts{file, at.line, at.column};
    }
    return std::nullopt;
}

Error named_error(std::int32_t number, std::string_view name) {
    return Error(number, std::string(error_text(number)) + ": '" + std::string(name) + "'");
}

void raise_named(std::int32_t number, std::string_view name) {
    throw named_error(number, name);
}

std::string describe(const Variant& value) {
    if (value.is_string())
        return "[string: \"" + value.text().str() + "\"]";
    if (value.is_number())
        return "[number: " + to_text(value).str() + "]";
    if (value.is_empty())
        return "[undefined]";
    if (value.is_null())
        return "[null]";
    return {};
}

namespace {

// The call whose result the temporary holds: looked for only when a message needs it.
const Instruction* maker_of(const Frame& frame, Operand temporary) {
    const Instruction* const first = frame.unit->program->code.data() + frame.procedure->first;
    for (const Instruction* at = frame.at; at != first;)
        if ((--at)->a == temporary)
            return at;
    return nullptr;
}

std::string name_of_call(const Frame& frame, const Instruction& call) {
    const Program& program = *frame.unit->program;
    std::string name;
    switch (call.code) {
    case OpCode::GetName:
    case OpCode::CallName:
        name = program.links[call.b.index()].name;
        break;
    case OpCode::GetMember:
        name = name_of(frame, call.b) + "." + program.members[frame.list(call.c)->number()];
        break;
    case OpCode::Index:
        name = name_of(frame, call.b);
        break;
    default:
        return {};
    }
    return call.count > 0 ? name + "(...)" : name;
}

} // namespace

std::string name_of(const Frame& frame, Operand operand) {
    if (operand.kind() == Operand::Kind::Global)
        return frame.unit->program->links[operand.index()].name;
    if (operand.is_temporary()) {
        Frame before = frame;
        before.at = maker_of(frame, operand);
        return before.at ? name_of_call(before, *before.at) : std::string();
    }
    if (operand.kind() == Operand::Kind::Field) {
        for (const Class::Member& member : frame.procedure->owner->members)
            if (member.field == static_cast<std::int32_t>(operand.index()))
                return member.name;
    }
    for (const Procedure::Named& named : frame.procedure->names)
        if (named.at == operand)
            return named.name;
    return {};
}

} // namespace tabrixdb::vbscript
