#pragma once

#include "automation/interrupt.h"
#include "automation/object.h"
#include "vbscript/source.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tabrixdb::vbscript {

// A compiled unit: immutable, shared by any number of machines on any threads.
class Program;

// Compiles a unit. Raises ScriptError (compile_error true) at the first mistake.
std::shared_ptr<const Program> compile(Source source);

// What a machine needs from the world around it.
class Environment {
public:
    virtual ~Environment() = default;
    // CreateObject: raises Error 429 for a class that is not known.
    virtual Ref<Object> create_object(std::string_view program_id) = 0;
    // A name that no script declares (Response, Request, ...); nullptr when the host has none either.
    virtual Object* global_object(std::string_view name) = 0;
    virtual void write(const Variant& value) = 0;          // Piece::Kind::Expression
    virtual void write_literal(std::string_view text) = 0; // Piece::Kind::Literal

    // `New name`, for a class that no script declares; empty when the host has none either.
    virtual Ref<Object> new_object(std::string_view) { return {}; }

    // What must not go while script of its machine runs, or nullptr.
    virtual Object* owner() { return nullptr; }
};

struct Limits {
    std::size_t recursion = 400; // nested procedure calls; one more is Error 28
    std::uint64_t steps = 0;     // loop rounds and procedure calls before the run is stopped; 0: any number
};

// Variables of one expression alone: values[i] is called `prefix` followed by i.
struct ExpressionVariables {
    std::string_view prefix;
    std::span<const Variant> values;
};

// Where something of a script stands: the file as messages show it, line and column from 1.
struct Whereabouts {
    std::string file;
    std::int32_t line = 0;
    std::int32_t column = 0;
};

enum class Outcome : std::uint8_t { Finished, Stopped }; // Stopped: see Interrupt::reason()

// One script engine: the global names of the units that it ran, and Err. Belongs to one thread at a time.
class Machine {
public:
    Machine(Environment& environment, Interrupt& interrupt, Limits limits = {});
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    // Declares the unit's procedures, then runs its global statements. Raises ScriptError for a run-time
    // error that no On Error Resume Next held.
    Outcome run(std::shared_ptr<const Program> program);
    // Calls a procedure of the units that ran; nullopt when none has that name or the run was stopped.
    std::optional<Variant> call(std::string_view procedure, Arguments arguments);
    bool has_procedure(std::string_view name) const;
    // The value of one expression, with the machine's global names in sight; Empty when the run was stopped.
    // Raises ScriptError. What was compiled is kept for expressions that come again.
    // `variables` hide global names of theirs; they are copies, which end with it, and what it calls does not
    // see them.
    Variant eval(std::string_view expression, const ExpressionVariables& variables = {});
    // Makes the object a global name; with `members`, its members, too, where nothing else has their names.
    void add_object(std::string_view name, Ref<Object> object, bool members);
    // Whether any of its script is at work.
    bool is_running() const noexcept;
    // The statement at work, of those that stand in a file; nullopt when there is none.
    std::optional<Whereabouts> whereabouts() const;

    class State; // the engine's own files see inside

private:
    std::shared_ptr<State> state_;
};

} // namespace tabrixdb::vbscript
