#pragma once

#include "automation/interrupt.h"
#include "platform/host.h"
#include "scripting/script_control_error.h"
#include "vbscript/machine.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

namespace tabrixdb::scripting {

// MSScriptControl.ScriptControl: a script engine of its own for a page, with the language's operators and
// library and what the page puts into it. There is no object to create, no page and no file in sight, unless
// the page hands an object in. What runs in it ends with the page's time and memory.
//
// What the script raises is raised in the page, with its number and description, and is in Error.
class ScriptControl final : public platform::ScriptControl {
public:
    static constexpr std::int32_t kDefaultTimeout = 10000; // milliseconds, as pages know it
    static constexpr std::int32_t kNoTimeout = -1;

    // A page's run. Controls that were made in it let go of their code and objects at its end, because page
    // and control may hold each other: `db.Script.AddObject "db", db`.
    class Run {
    public:
        Run() noexcept : outer_(std::exchange(current_, this)) {}

        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

    private:
        friend class ScriptControl;
        std::unordered_set<ScriptControl*> controls_;
        Run* outer_;
        static inline thread_local Run* current_ = nullptr;
    };

    ScriptControl();
    ~ScriptControl() override;

    const ClassInfo& class_info() const override;

    // "VBScript", ignoring case, which it is from the beginning; Error 380 for any other.
    void set_language(std::string_view language) override;

    // Kept for pages that set it: there is no user interface to show.
    void set_allow_ui(bool allow) override { allow_ui_ = allow; }

    // Error 440 when it took longer than Timeout; Empty when the page has to stop.
    Variant eval(std::string_view expression) override;

    // The same. What the expression calls does not see the values' names, and they end with it. It is
    // compiled once, whatever the values.
    Variant eval_with(std::string_view expression, const std::vector<Variant>& values) override;

    std::string code() const override { return code_; }

    // Milliseconds for one call; kNoTimeout: as long as the page may. Error 380 for other negative ones.
    void set_timeout(std::int32_t milliseconds);

private:
    // Nothing but the language.
    class EmptyWorld final : public vbscript::Environment {
    public:
        explicit EmptyWorld(ScriptControl& control) : control_(control) {}

        Ref<Object> create_object(std::string_view) override;

        // RegExp belongs to the language.
        Ref<Object> new_object(std::string_view name) override;

        Object* global_object(std::string_view) override { return nullptr; }

        void write(const Variant&) override {}

        void write_literal(std::string_view) override {}

        Object* owner() override { return &control_; }

    private:
        ScriptControl& control_;
    };

    const std::string& language() const { return language_; }

    void put_language(const std::string& language) { set_language(language); }

    bool allow_ui() const { return allow_ui_; }

    void put_allow_ui(bool allow) { set_allow_ui(allow); }

    std::int32_t timeout() const { return timeout_; }

    std::int32_t state() const { return state_; }

    void set_state(std::int32_t state);

    Ref<ScriptControlError> error() const { return error_; }

    Variant eval_text(const std::string& expression) { return eval(expression); }

    void run_code(const std::string& code);
    Variant run_procedure(Arguments name_and_arguments);
    void add_object(const std::string& name, const Variant& object, bool members);
    void reset();

    // Runs `body` in the engine, with the time limit, and keeps what it raises in Error.
    template <class Body>
    Variant guarded(const Body& body);
    vbscript::Machine& machine();
    Variant stopped();

    Run* run_; // that it was made in, while that lasts
    std::string language_ = "VBScript";
    bool allow_ui_ = false;
    bool safe_subset_ = true; // kept for pages that set it: there is no other
    std::int32_t window_ = 0; // likewise
    std::int32_t timeout_ = kDefaultTimeout;
    std::int32_t state_ = 0;
    std::string code_; // that was added, at most kMaxCode of it
    Ref<ScriptControlError> error_ = make_ref<ScriptControlError>();
    EmptyWorld world_{*this};
    Interrupt interrupt_{Interrupt::InsideRun()};
    std::optional<vbscript::Machine> machine_;
};

} // namespace tabrixdb::scripting
