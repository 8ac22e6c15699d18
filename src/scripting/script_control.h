#pragma once

#include "automation/interrupt.h"
#include "platform/host.h"
#include "vbscript/machine.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace tabrixdb::scripting {

// Evaluates expressions of the script language: its operators and its library, and nothing else. There is no
// object to create, no page and no file in sight, and an expression that takes too long is stopped.
class ScriptControl final : public platform::ScriptControl {
public:
    // An expression is worked out for one cell of one row; it has no business taking longer.
    static constexpr std::chrono::seconds kTimeLimit{5};

    explicit ScriptControl(std::chrono::milliseconds time_limit = kTimeLimit) : time_limit_(time_limit) {}

    const ClassInfo& class_info() const override;

    // "VBScript", ignoring case; Error 380 for any other.
    void set_language(std::string_view language) override;

    // Kept for pages that set it: there is no user interface to show.
    void set_allow_ui(bool allow) override { allow_ui_ = allow; }

    // Raises what the expression raises, compile errors too; Error 440 when it was stopped.
    Variant eval(std::string_view expression) override;

private:
    // An engine of its own for this control; a new one after a stop.
    struct Engine {
        Engine();
        Interrupt interrupt;
        std::unique_ptr<vbscript::Environment> environment;
        vbscript::Machine machine;
    };

    const std::string& language() const { return language_; }

    void put_language(const std::string& language) { set_language(language); }

    bool allow_ui() const { return allow_ui_; }

    void put_allow_ui(bool allow) { set_allow_ui(allow); }

    Variant eval_text(const std::string& expression) { return eval(expression); }

    std::string language_ = "VBScript";
    bool allow_ui_ = false;
    std::chrono::milliseconds time_limit_;
    std::optional<Engine> engine_;
};

} // namespace tabrixdb::scripting
