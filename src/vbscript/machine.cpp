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
    : state_(std::make_unique<State>(environment, interrupt, limits)) {}

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

Variant Machine::eval(std::string_view expression) {
    return state_->eval(expression);
}

void Machine::add_object(std::string_view name, Ref<Object> object, bool members) {
    state_->add_object(name, std::move(object), members);
}

bool Machine::is_running() const noexcept {
    return state_->is_running();
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
}

Machine::State::~State() {
    Interrupt::let_go(names_in_order_.size() * kBytesOfName);
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
    LoadedUnit& unit = load(std::move(program));
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

Variant Machine::State::eval(std::string_view expression) {
    return evaluate(expression, nullptr);
}

Variant Machine::State::evaluate(std::string_view expression, const Frame* scope) {
    const std::unique_ptr<LoadedUnit> unit = link(compiled(expression), scope);
    return execute(*unit, unit->program->main, {}).value_or(Variant());
}

namespace {

// Expressions that a machine keeps compiled. A page has few that come again, unlike those that are put
// together from a record's values, which go when there are too many.
constexpr std::size_t kKeptExpressions = 64;
constexpr std::size_t kMaxKeptLength = 4096;

} // namespace

std::shared_ptr<const Program> Machine::State::compiled(std::string_view expression) {
    std::string text(expression);
    if (const auto found = expressions_.find(text); found != expressions_.end())
        return found->second;
    std::shared_ptr<const Program> program = compile_expression(Source::of_code(text));
    if (text.size() > kMaxKeptLength)
        return program;
    if (expressions_.size() == kKeptExpressions)
        expressions_.clear();
    return expressions_.emplace(std::move(text), std::move(program)).first->second;
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
    std::unique_ptr<LoadedUnit>& unit = units_[program.get()];
    if (!unit)
        unit = link(std::move(program), nullptr);
    declare(*unit);
    return *unit;
}

namespace {

// For Eval in a method: a variable or another member of the method's class, and Me.
bool borrow_member(LoadedUnit& unit, const Frame& scope, std::string_view name) {
    const Class* const owner = scope.procedure->owner;
    if (!owner)
        return false;
    const std::int32_t member = owner->find(name);
    const bool is_me = equal_ignore_case(name, "Me");
    if (member < 0 && !is_me)
        return false;
    Global& stand_in = unit.borrowed.emplace_back();
    stand_in.value = scope.slots[0];
    unit.links.push_back({&stand_in, &stand_in.value});
    const std::int32_t field = is_me ? -1 : owner->members[static_cast<std::size_t>(member)].field;
    if (field >= 0) {
        stand_in.kind = Global::Kind::Variable;
        unit.links.back().value = &scope.fields[field];
    } else {
        stand_in.kind = is_me ? Global::Kind::Object : Global::Kind::Member;
        stand_in.member = member;
    }
    return true;
}

} // namespace

std::unique_ptr<LoadedUnit> Machine::State::link(std::shared_ptr<const Program> program, const Frame* scope) {
    auto unit = std::make_unique<LoadedUnit>();
    unit->program = std::move(program);
    unit->caches.resize(unit->program->caches);
    unit->class_keys = new_class_keys(unit->program->classes.size());
    for (const Program::Link& wanted : unit->program->links) {
        if (scope) {
            const auto& names = scope->procedure->names;
            const auto local = std::ranges::find_if(names, [&](const Procedure::Named& named) {
                return equal_ignore_case(named.name, wanted.name) &&
                       (named.is_declared || global(wanted.name).kind == Global::Kind::Undefined);
            });
            if (local != names.end()) {
                Global& stand_in = unit->borrowed.emplace_back();
                stand_in.kind = Global::Kind::Variable;
                unit->links.push_back({&stand_in, &(*scope)[local->at]});
                continue;
            }
            if (borrow_member(*unit, *scope, wanted.name))
                continue;
        }
        Global& found = global(wanted.name);
        if (found.kind == Global::Kind::Undefined && wanted.declared == Program::Declared::No)
            resolve(found, wanted.name);
        unit->links.push_back({&found, &found.value});
    }
    return unit;
}

void Machine::State::declare(LoadedUnit& unit) {
    const Program& program = *unit.program;
    for (std::size_t i = 0; i < program.links.size(); ++i) {
        const Program::Link& wanted = program.links[i];
        Global& found = *unit.links[i].global;
        switch (wanted.declared) {
        case Program::Declared::No:
            break;
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
        case Program::Declared::Procedure:
            found.kind = Global::Kind::Procedure;
            found.unit = &unit;
            found.procedure = &program.procedures[wanted.index];
            break;
        case Program::Declared::Class:
            found.kind = Global::Kind::Class;
            found.unit = &unit;
            found.declared = &program.classes[wanted.index];
            break;
        }
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
