#pragma once

#include "vbscript/ast.h"
#include "vbscript/code_builder.h"
#include "vbscript/program.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabrixdb::vbscript {

// Turns a syntax tree into a Program. Statements are in compiler.cpp, expressions in
// compile_expressions.cpp, calls and what is assigned to in compile_calls.cpp.
class Compiler {
public:
    // Slots of one frame: what a procedure's variables and operands may take of the machine's stack.
    static constexpr std::uint32_t kMaxSlots = 4096;
    // Arguments, subscripts or joined operands of one instruction.
    static constexpr std::size_t kMaxList = 4096;

    Compiler(Program& program, const Unit& unit) : program_(program), unit_(unit), builder_(program) {}

    void compile_unit();
    void compile_expression(const Expression& expression);

private:
    // What a name means where it is used.
    struct Meaning {
        enum class Kind : std::uint8_t {
            Variable,  // at: where it is
            Constant,  // at: its value
            Procedure, // at: the link; of this unit
            Method,    // at: the member of the own class, as a number; a method or a property
            Library,   // at: the link
            Dynamic,   // at: the link; found out when it is used
        };
        Kind kind;
        Operand at;
        Operand local = {}; // Dynamic: the slot it takes when nothing has that name
    };

    // Temporaries taken during a statement, or a part of one, are free again behind it.
    class Temporaries {
    public:
        explicit Temporaries(FrameLayout& frame) : frame_(frame), mark_(frame.in_use()) {}

        ~Temporaries() { frame_.release(mark_); }

        Temporaries(const Temporaries&) = delete;
        Temporaries& operator=(const Temporaries&) = delete;

    private:
        FrameLayout& frame_;
        std::size_t mark_;
    };

    // An open loop or With: what Exit jumps out of, and what has to be let go on the way.
    struct Enclosing {
        enum class Kind : std::uint8_t { Do, For, Other };
        Kind kind;
        Operand held; // cleared when left from inside
        std::vector<std::uint32_t> exits;
    };

    // The names and the frame of the procedure, or the global statements, at work.
    struct Body {
        const ProcedureDeclaration* declaration = nullptr; // null: global statements
        FrameLayout frame;
        std::unordered_map<std::string_view, Operand, IgnoreCaseHash, IgnoreCaseEqual> names;
        std::unordered_map<std::string_view, Operand, IgnoreCaseHash, IgnoreCaseEqual> undeclared;
        Operand result;
        Operand me;
        std::vector<Enclosing> enclosing;
        std::vector<Operand> withs;
    };

    // An array element that a call may change: stored back after it.
    struct PassedElement {
        Operand value;
        Meaning array;
        std::vector<Operand> subscripts;
    };

    // Arguments made ready for a call.
    struct Prepared {
        std::vector<Operand> operands;
        std::vector<PassedElement> elements;
    };

    // --- Units and procedures
    void declare_globals();
    void find_implicit_names(Block block, bool is_global);
    void dimension(const Scope& scope);
    void compile_class(const ClassDeclaration& declaration, Class& made) const;
    void compile_procedure(const ProcedureDeclaration& declaration);
    void finish_procedure(Procedure& procedure, Place end);
    void name_slots(Procedure& procedure) const;

    // --- Statements
    void block(Block statements);
    void statement(const Statement& statement);
    void assign(const AssignStatement& statement);
    bool assign_by_appending(Operand target, const Expression& name, const Expression& value);
    void if_statement(const IfStatement& statement);
    void select(const SelectStatement& statement);
    void for_loop(const ForStatement& statement);
    void for_each(const ForEachStatement& statement);
    void loop(const LoopStatement& statement);
    void exit(const ExitStatement& statement);
    void with(const WithStatement& statement);
    void redim(const ReDimStatement& statement);
    void erase(const EraseStatement& statement);
    void loop_body(Block body, Place start, Enclosing::Kind kind, Operand held);
    void end_enclosing();
    void raise(std::int32_t number, std::string_view name);

    // --- Expressions
    // Where the value of the expression is: the variable or constant itself, or a temporary. With `into`,
    // operators put their result there.
    Operand evaluate(const Expression& expression, Operand into = {});
    Operand outer_me();
    Operand evaluate_name(const Expression& expression);
    Operand evaluate_unary(const Expression& expression, Operand into);
    Operand evaluate_binary(const Expression& expression, Operand into);
    Operand evaluate_joined(const Expression& expression, Operand into);
    Operand with_object();
    Operand held_object(const Expression& member);
    // As evaluate, but what the variable holds now, when `next` may change it.
    Operand evaluate_before(const Expression& expression, const Expression& next);
    Operand held_now(Operand variable);

    Operand result_in(Operand into) { return into.exists() ? into : body_->frame.temporary(); }

    std::optional<Variant> folded(Operator operation, Operand left, Operand right) const;
    // A jump that is taken when the condition is `when`; to be landed.
    std::uint32_t jump_on(const Expression& condition, bool when);
    bool may_call(const Expression& expression);

    // --- Names, calls, targets
    Meaning meaning(std::string_view name);
    Operand call(const Expression& call, Operand into);
    Operand call_method(std::size_t member, std::span<const Expression* const> arguments, Operand into);
    Operand call_member(const Expression& member, std::span<const Expression* const> arguments, Operand into);
    void call_statement(const Expression& call);
    Prepared prepare(std::span<const Expression* const> arguments);
    Operand prepare_argument(const Expression& argument, Prepared& prepared);
    Operand prepare_element(const Expression& element, const Meaning& array, Prepared& prepared);
    Operand bind_argument(const Meaning& meaning, std::uint8_t flags);
    bool is_own_function(std::string_view name) const noexcept;
    const ClassDeclaration* own_class() const noexcept;
    const ClassMember* own_accessor(const Expression& target);
    void copy_constants(std::vector<Operand>& arguments);
    std::vector<Operand> values(std::span<const Expression* const> expressions);
    void finish_call(Instruction instruction, Prepared prepared, std::vector<Operand> before);
    Operand variable(const Meaning& meaning, std::string_view name);           // to assign to it
    Operand variable_or_value(const Meaning& meaning, const Expression& name); // to reach into it
    void store(const Expression& target, Operand value, bool by_reference);
    void store_element(const Expression& target, Operand value, bool by_reference);
    void store_property(const ClassMember& property, std::span<const Expression* const> arguments,
                        Operand value, bool by_reference);
    void store_member(const Expression& member, std::span<const Expression* const> arguments, Operand value,
                      bool by_reference);
    std::uint16_t list_size(std::size_t size) const;

    Program& program_;
    const Unit& unit_;
    CodeBuilder builder_;
    Body* body_ = nullptr;
    NameIndex implicit_globals_;
    Place place_; // of the statement at work, for errors of size
};

} // namespace tabrixdb::vbscript
