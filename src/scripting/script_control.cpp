#include "scripting/script_control.h"

#include "automation/error.h"
#include "automation/member.h"
#include "scripting/reg_exp.h"

#include <chrono>
#include <vector>

namespace tabrixdb::scripting {

namespace {

constexpr std::int32_t kErrorInvalidValue = 380;
constexpr std::int32_t kErrorBusy = 17;
// Bytes of added code that are told again: a page adds some functions, and not a loop full.
constexpr std::size_t kMaxCode = 65536;
// Arguments that Run passes on; procedures have a few.
constexpr std::size_t kMaxRunArguments = 32;

// What the control itself says, and not the script.
Error own_error(std::int32_t number, std::string description) {
    return Error(number, std::move(description), "ScriptControl");
}

Error own_error(std::int32_t number) {
    return own_error(number, std::string(error_text(number)));
}

Error invalid_value(std::string_view property) {
    return own_error(kErrorInvalidValue, "Invalid property value: '" + std::string(property) + "'");
}

} // namespace

const ClassInfo& ScriptControl::class_info() const {
    static const ClassInfo info = [] {
        Member run{.name = "Run", .parameters = {"ProcedureName"}, .is_method = true};
        run.parameters.insert(run.parameters.end(), kMaxRunArguments, {"Parameter", Variant::missing()});
        run.get = [](Object& self, Arguments arguments) {
            return static_cast<ScriptControl&>(self).run_procedure(arguments);
        };
        return ClassInfo(
            "ScriptControl", "MSScriptControl.ScriptControl",
            {property<&ScriptControl::language, &ScriptControl::put_language>("Language"),
             property<&ScriptControl::allow_ui, &ScriptControl::put_allow_ui>("AllowUI"),
             property<&ScriptControl::timeout, &ScriptControl::set_timeout>("Timeout"),
             property<&ScriptControl::state, &ScriptControl::set_state>("State"),
             field<&ScriptControl::safe_subset_>("UseSafeSubset"), field<&ScriptControl::window_>("SitehWnd"),
             property<&ScriptControl::error>("Error"),
             method<&ScriptControl::eval_text>("Eval", {"Expression"}),
             method<&ScriptControl::run_code>("AddCode", {"Code"}),
             method<&ScriptControl::run_code>("ExecuteStatement", {"Statement"}), std::move(run),
             method<&ScriptControl::add_object>("AddObject", {"Name", "Object", {"AddMembers", false}}),
             method<&ScriptControl::reset>("Reset")});
    }();
    return info;
}

ScriptControl::ScriptControl() : run_(Run::current_) {
    if (run_)
        run_->controls_.insert(this);
}

ScriptControl::~ScriptControl() {
    if (run_)
        run_->controls_.erase(this);
}

ScriptControl::Run::~Run() {
    while (!controls_.empty()) {
        const Ref<ScriptControl> control(*controls_.begin());
        controls_.erase(control.get());
        control->run_ = nullptr;
        control->machine_.reset();
    }
    current_ = outer_;
}

// --- Settings --------------------------------------------------------------------------------------

void ScriptControl::set_language(std::string_view language) {
    if (!equal_ignore_case(language, "VBScript"))
        throw own_error(kErrorInvalidValue, "A script engine for the specified language can not be created");
    language_ = language;
}

void ScriptControl::set_timeout(std::int32_t milliseconds) {
    if (milliseconds < kNoTimeout)
        throw invalid_value("Timeout");
    timeout_ = milliseconds;
}

void ScriptControl::set_state(std::int32_t state) {
    if (state != 0 && state != 1) // initialized, connected; there are no events to connect to
        throw invalid_value("State");
    state_ = state;
}

// --- Running ---------------------------------------------------------------------------------------

Ref<Object> ScriptControl::EmptyWorld::create_object(std::string_view) {
    throw Error(kErrorCannotCreate);
}

Ref<Object> ScriptControl::EmptyWorld::new_object(std::string_view name) {
    return equal_ignore_case(name, "RegExp") ? Ref<Object>(make_ref<RegExp>()) : Ref<Object>();
}

vbscript::Machine& ScriptControl::machine() {
    if (!machine_)
        machine_.emplace(world_, interrupt_);
    return *machine_;
}

template <class Body>
Variant ScriptControl::guarded(const Body& body) {
    using namespace std::chrono;
    const Ref<ScriptControl> self(this); // the script may let go of the last one

    if (!machine().is_running()) // a script may call the control that runs it
        interrupt_.restart(timeout_ == kNoTimeout ? Interrupt::Clock::time_point::max()
                                                  : Interrupt::Clock::now() + milliseconds(timeout_));
    error_->clear();
    try {
        Variant result = body(machine());
        return interrupt_.stopped() ? stopped() : result;
    } catch (const Error& error) {
        if (error.source().empty()) {
            const Error own = own_error(error.number(), error.description());
            error_->set(own);
            throw own;
        }
        error_->set(error);
        // Without its place in this code: the page's error is at the page's call.
        throw Error(error.number(), error.description(), error.source());
    }
}

Variant ScriptControl::stopped() {
    if (const Interrupt* page = Interrupt::current(); page && page->stopped())
        return {};
    throw own_error(440, "The script took longer than Timeout allows");
}

Variant ScriptControl::eval(std::string_view expression) {
    return eval_with(expression, {});
}

Variant ScriptControl::eval_with(std::string_view expression, const std::vector<Variant>& values) {
    return guarded([&](vbscript::Machine& machine) {
        return machine.eval(expression, {.prefix = kValueName, .values = values});
    });
}

void ScriptControl::run_code(const std::string& code) {
    if (code_.size() + code.size() < kMaxCode)
        code_ += code + "\n";
    guarded([&](vbscript::Machine& machine) {
        machine.run(vbscript::compile(vbscript::Source::of_code(code)));
        return Variant();
    });
}

// The script gets copies: what it does to its parameters is not seen in the page.
Variant ScriptControl::run_procedure(Arguments name_and_arguments) {
    const Text name = to_text(*name_and_arguments.front());
    std::vector<Variant> values;
    for (const Variant* argument : name_and_arguments.subspan(1))
        values.push_back(*argument);
    while (!values.empty() && values.back().is_missing())
        values.pop_back();
    std::vector<Variant*> pointers;
    for (Variant& value : values)
        pointers.push_back(&value);
    return guarded([&](vbscript::Machine& machine) {
        if (!machine.has_procedure(name))
            throw own_error(kErrorNoMember,
                            std::string(error_text(kErrorNoMember)) + ": '" + name.str() + "'");
        return machine.call(name, pointers).value_or(Variant());
    });
}

void ScriptControl::add_object(const std::string& name, const Variant& object, bool members) {
    if (!object.is_object() || !object.object())
        throw own_error(kErrorObjectRequired);
    machine().add_object(name, Ref<Object>(object.object()), members);
}

// All code, values and objects go.
void ScriptControl::reset() {
    if (machine_ && machine_->is_running())
        throw own_error(kErrorBusy);
    machine_.reset();
    error_->clear();
    code_.clear();
}

} // namespace tabrixdb::scripting
