#pragma once

#include "vbscript/ast.h"
#include "vbscript/lexer.h"

#include <optional>
#include <vector>

namespace tabrixdb::vbscript {

// The recursive descent behind parser.h, one token ahead. Expressions are in parse_expressions.cpp,
// statements in parse_statements.cpp, declarations in parse_declarations.cpp, classes in parse_classes.cpp.
class Parser {
public:
    // How deep brackets, blocks and operands may nest. Everything that walks the tree recurses as deep,
    // so it keeps well inside a thread's stack; pages nest a tenth of it. Beyond: compile error 1001.
    static constexpr int kMaxNesting = 200;

    // The nesting of the unit's own block, the only place for procedures.
    static constexpr int kUnitLevel = 1;

    Parser(const Source& source, Unit& unit);

    void parse_unit();
    void parse_single_expression();

private:
    // --- Expressions
    const Expression* expression();
    // What follows `left` of the operators that bind at least as tightly as `least`.
    const Expression* operators_after(const Expression* left, int least);
    const Expression* operand();
    const Expression* primary();
    const Expression* postfix(const Expression* left);
    const Expression* member_after(const Expression* left);
    const Expression* call_after(const Expression* left);
    const Expression* unary(Operator operation, int least);
    const Expression* binary(Operator operation, const Expression* left, const Expression* right,
                             Place place);
    const Expression* name_expression();
    const Expression* me_expression();
    const Expression* literal_expression(Variant value);
    // Arguments up to a closing bracket or, without brackets, the end of the statement; `first` was read
    // already when it is not null.
    std::vector<const Expression*> argument_list(TokenKind end, const Expression* first = nullptr);
    bool ends_arguments(TokenKind end) const;
    Expression* make_expression(Expression::Kind kind, Place place);
    void limit_depth(Expression& node) const;

    // --- Statements
    Block block();
    const Statement* statement();
    const Statement* call_or_assignment();
    const Statement* assignment(const Expression* target, Place place, bool by_reference);
    const Statement* call_of(const Expression* callee, std::vector<const Expression*> arguments, Place place);
    const Statement* call_from_brackets(const Expression* chain, Place place);
    const Statement* call_statement();
    const Statement* set_statement();
    const Statement* if_statement();
    Block if_line_block();
    const Statement* finish_if(Place place, std::vector<IfClause> clauses, bool one_line);
    const Statement* select_statement();
    const Statement* for_statement();
    const Statement* for_each_statement(Place place);
    const Statement* do_statement();
    const Statement* while_statement();
    const Statement* exit_statement();
    const Statement* with_statement();
    const Statement* redim_statement();
    const Statement* erase_statement();
    const Statement* on_error_statement();
    const Statement* write_literal();
    const Statement* write_value();
    std::optional<const Expression*> loop_condition(bool& until);

    // --- Declarations
    void declaration();
    bool at_declaration() const;
    void option_explicit();
    void variables();
    void constants();
    Variant constant_value();
    void procedure(ProcedureKind kind);
    ProcedureDeclaration procedure_declaration(ProcedureKind kind);
    void class_declaration();
    void class_member();
    void class_variables(bool is_private);
    void class_procedure(bool is_private, bool is_default);
    ProcedureKind class_procedure_kind();
    ClassMember& new_member(std::string_view name, Place place, bool is_private);
    void check_properties() const;
    void parameters(ProcedureDeclaration& procedure);
    void check_new_name(const Token& name) const;
    std::vector<std::int32_t> fixed_bounds();

    // --- Tokens
    const Token& take(); // the current token; moves on
    bool accept(TokenKind kind);
    void expect(TokenKind kind, std::int32_t error);
    Token expect_name();
    void expect_end(TokenKind what, std::int32_t error); // `End What`
    void expect_end_of(ProcedureKind kind);
    void end_of_statement();
    void skip_line_breaks();

    bool at(TokenKind kind) const { return current_.kind == kind; }

    bool at_word(std::string_view word) const;
    [[noreturn]] void fail(std::int32_t error) const;
    [[noreturn]] void fail_at(Place place, std::int32_t error) const;

    // Counts one level of nesting for the time of its scope.
    class Level {
    public:
        explicit Level(Parser& parser) : parser_(parser) {
            if (++parser_.nesting_ > kMaxNesting)
                parser_.fail(1001);
        }

        ~Level() { --parser_.nesting_; }

        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        Parser& parser_;
    };

    // What Exit may leave and what a dot at the start may mean, where the parser stands.
    struct Inside {
        int do_loops = 0;
        int for_loops = 0;
        int withs = 0;
    };

    const Source& source_;
    Unit& unit_;
    Lexer lexer_;
    Token current_;
    Token taken_;
    int nesting_ = 0;
    bool on_one_line_ = false; // in an If that ends with its line
    Inside inside_;
    ProcedureDeclaration* procedure_ = nullptr;
    ClassDeclaration* class_ = nullptr;
    bool any_statement_ = false;
};

} // namespace tabrixdb::vbscript
