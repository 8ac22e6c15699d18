#include "scripting/script_control.h"

#include "automation/error.h"
#include "automation/member.h"

namespace tabrixdb::scripting {

namespace {

class EmptyEnvironment final : public vbscript::Environment {
public:
    Ref<Object> create_object(std::string_view) override { throw Error(kErrorCannotCreate); }

    Object* global_object(std::string_view) override { return nullptr; }

    void write(const Variant&) override {}

    void write_literal(std::string_view) override {}
};

} // namespace

ScriptControl::Engine::Engine()
    : environment(std::make_unique<EmptyEnvironment>()),
      machine(*environment, interrupt) {}

const ClassInfo& ScriptControl::class_info() const {
    static const ClassInfo info(
        "ScriptControl", "MSScriptControl.ScriptControl",
        {
            property<&ScriptControl::language, &ScriptControl::put_language>("Language"),
            property<&ScriptControl::allow_ui, &ScriptControl::put_allow_ui>("AllowUI"),
            method<&ScriptControl::eval_text>("Eval", {"Expression"}),
        });
    return info;
}

void ScriptControl::set_language(std::string_view language) {
    if (!equal_ignore_case(language, "VBScript"))
        throw Error(380, "A script engine for the specified language can not be created");
    language_ = language;
}

Variant ScriptControl::eval(std::string_view expression) {
    if (!engine_)
        engine_.emplace();
    engine_->interrupt.set_deadline(Interrupt::Clock::now() + time_limit_);
    Variant value = engine_->machine.eval(expression);
    if (engine_->interrupt.stopped()) {
        engine_.reset();
        throw Error(440, "The expression took too long");
    }
    return value;
}

} // namespace tabrixdb::scripting
