#include "automation/conversions.h"
#include "automation/member.h"
#include "vbscript/machine_state.h"

#include <algorithm>
#include <charconv>

// Code that a script has as text: Eval, Execute, ExecuteGlobal, and GetRef.
namespace tabrixdb::vbscript {

namespace {

// What a machine keeps compiled. A page has little code that comes again, unlike what is put together from a
// record's values, which goes when there is too much.
constexpr std::size_t kKeptTexts = 64;
constexpr std::size_t kMaxKeptLength = 4096;

// A procedure as an object: its default member calls it.
class ProcedureReference final : public Object {
public:
    ProcedureReference(std::weak_ptr<Machine::State> machine, const Global& procedure)
        : machine_(std::move(machine)),
          procedure_(procedure) {}

    const ClassInfo& class_info() const override {
        static const ClassInfo info("Object", "", {}); // its parameters are the script's
        return info;
    }

    int find(std::string_view name) const override { return name.empty() ? 0 : -1; }

    const void* dispatch_key() const override {
        static const char key = 0;
        return &key;
    }

    Variant invoke(int, Access access, Arguments arguments) override {
        if (access != Access::Get)
            throw Error(kErrorNoMember);
        const std::shared_ptr<Machine::State> machine = machine_.lock();
        if (!machine)
            throw Error(440, "The script of this procedure has ended");
        return machine->call_referred(procedure_, arguments);
    }

private:
    std::weak_ptr<Machine::State> machine_;
    Global procedure_; // as it was when it was asked for
};

} // namespace

// --- Eval and Execute ------------------------------------------------------------------------------

std::shared_ptr<const Program> Machine::State::compiled(Code kind, std::string_view text) {
    std::string key(1, static_cast<char>(kind));
    key += text;
    if (const auto found = kept_code_.find(key); found != kept_code_.end())
        return found->second;
    Source source = Source::of_code(std::string(text));
    std::shared_ptr<const Program> program =
        kind == Code::Expression ? compile_expression(std::move(source)) : compile_inner(std::move(source));
    if (key.size() > kMaxKeptLength)
        return program;
    if (kept_code_.size() == kKeptTexts)
        kept_code_.clear();
    return kept_code_.emplace(std::move(key), std::move(program)).first->second;
}

Frame* Machine::State::scope_of(Frame& frame) noexcept {
    Frame* at = &frame;
    while (at->unit->scope) // Eval in Eval
        at = at->unit->scope;
    return at->procedure == &at->unit->program->main ? nullptr : at;
}

Variant Machine::State::evaluate(std::string_view expression, Frame* scope,
                                 const ExpressionVariables& variables) {
    const std::unique_ptr<LoadedUnit> unit = link(compiled(Code::Expression, expression), scope, variables);
    return execute(*unit, unit->program->main, {}).value_or(Variant());
}

// Procedures and classes are global names wherever they are declared; what they use is, too.
void Machine::State::execute_text(std::string_view statements, Frame* scope) {
    std::shared_ptr<const Program> program = compiled(Code::Statements, statements);
    if (!scope) {
        run(std::move(program));
        return;
    }
    if (program->is_referred_to())
        declare_procedures(load(program));
    const std::unique_ptr<LoadedUnit> unit = link(std::move(program), scope, {});
    declare_names(*unit);
    execute(*unit, unit->program->main, {});
}

Variant Machine::State::call_text_function(Frame& frame, Global::Kind kind, const Operand* list,
                                           std::size_t count, const std::string& name) {
    if (count != 1)
        raise_named(kErrorArguments, name);
    const Variant text = value_of(frame[list[0]]);
    if (kind == Global::Kind::GetRef)
        return reference_to(to_text(text));
    if (!text.is_string()) {
        if (kind == Global::Kind::Eval)
            return text;
        raise_named(kErrorMismatch, name);
    }
    try {
        if (kind == Global::Kind::Eval)
            return evaluate(text.text(), scope_of(frame), {});
        execute_text(text.text(), kind == Global::Kind::Execute ? scope_of(frame) : nullptr);
        return {};
    } catch (const ScriptError& error) {
        if (!error.file.empty())
            throw;
        // The text is nowhere to be seen: its error is at the statement that runs it.
        throw Error(error.number(), error.description(), error.source());
    }
}

// --- Names of the procedure that the text runs in ----------------------------------------------------

namespace {

Variant* local_of(const Frame& scope, std::string_view name, bool is_global) {
    const auto& names = scope.procedure->names;
    const auto local = std::ranges::find_if(names, [&](const Procedure::Named& named) {
        return equal_ignore_case(named.name, name) && (named.is_declared || !is_global);
    });
    return local == names.end() ? nullptr : &scope[local->at];
}

// A variable or another member of the method's class, and Me.
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

// One of the expression's own variables.
bool Machine::State::lend(LoadedUnit& unit, const ExpressionVariables& variables, std::string_view name) {
    const std::size_t length = variables.prefix.size();
    if (variables.values.empty() || !equal_ignore_case(name.substr(0, length), variables.prefix))
        return false;
    const std::string_view digits = name.substr(length);
    std::size_t index = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), index);
    const bool is_number = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
    if (!is_number || index >= variables.values.size() || (digits.front() == '0' && digits.size() > 1))
        return false;
    Global& stand_in = unit.borrowed.emplace_back();
    stand_in.kind = Global::Kind::Variable;
    stand_in.value = variables.values[index];
    unit.links.push_back({&stand_in, &stand_in.value});
    return true;
}

bool Machine::State::borrow(LoadedUnit& unit, Frame& scope, const Program::Link& wanted) {
    if (wanted.declared == Program::Declared::Procedure || wanted.declared == Program::Declared::Class)
        return false;
    const bool is_global = global(wanted.name).kind != Global::Kind::Undefined;
    if (Variant* local = local_of(scope, wanted.name, is_global)) {
        Global& stand_in = unit.borrowed.emplace_back();
        stand_in.kind = Global::Kind::Variable;
        unit.links.push_back({&stand_in, local});
        return true;
    }
    if (borrow_member(unit, scope, wanted.name))
        return true;
    Global* const found = name_in_frame(scope, wanted);
    if (found)
        unit.links.push_back({found, &found->value});
    return found;
}

// A name that such a text declared in the procedure, or that this one declares now.
Global* Machine::State::name_in_frame(Frame& scope, const Program::Link& wanted) {
    if (scope.has_names) {
        Names& names = names_of_frames_[&scope];
        if (const auto found = names.find(wanted.name); found != names.end())
            return &found->second;
    }
    const bool is_implicit =
        wanted.declared == Program::Declared::Implicit && global(wanted.name).kind == Global::Kind::Undefined;
    if (!is_implicit && wanted.declared != Program::Declared::Variable &&
        wanted.declared != Program::Declared::Constant)
        return nullptr;
    scope.has_names = true;
    return &names_of_frames_[&scope][wanted.name];
}

// --- GetRef ----------------------------------------------------------------------------------------

Variant Machine::State::reference_to(std::string_view name) {
    const Global* const found = procedure(name);
    if (!found)
        raise_named(kErrorCall, name);
    return Variant(Ref<Object>(make_ref<ProcedureReference>(weak_from_this(), *found)));
}

Variant Machine::State::call_referred(const Global& procedure, Arguments arguments) {
    return execute(*procedure.unit, *procedure.procedure, arguments).value_or(Variant());
}

} // namespace tabrixdb::vbscript
