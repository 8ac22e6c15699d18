#pragma once

#include "automation/variant.h"
#include "vbscript/token.h"

#include <deque>
#include <memory_resource>
#include <span>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace tabrixdb::vbscript {

// The syntax tree of one unit. Nodes live in the Unit's arena and are never destroyed one by one, so they
// own nothing; their names point into the Source.

// --- Expressions -----------------------------------------------------------------------------------

enum class Operator : std::uint8_t {
    Imp,
    Eqv,
    Xor,
    Or,
    And,
    Not,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Is,
    Concatenate,
    Add,
    Subtract,
    Modulo,
    IntegerDivide,
    Multiply,
    Divide,
    Negate,
    Plus,
    Power,
};

struct Expression {
    enum class Kind : std::uint8_t {
        Literal,
        Name,
        Member,  // left.name; left null: of the With object
        Call,    // left(arguments): a call, an array element or a default member
        Unary,   // operation left
        Binary,  // left operation right
        Group,   // (left)
        Omitted, // an argument that was left out
        New,     // New name
        Me,
    };
    Kind kind = Kind::Literal;
    Operator operation = Operator::Add;
    // Nesting below this node. Chains of binary operators count as one level: all that walks them goes down
    // their left side in a loop.
    std::uint16_t depth = 1;
    Place place;
    std::string_view name;
    const Variant* literal = nullptr;
    const Expression* left = nullptr;
    const Expression* right = nullptr;
    std::span<const Expression* const> arguments;
};

// --- Statements ------------------------------------------------------------------------------------

struct Statement {
    enum class Kind : std::uint8_t {
        Assign,
        Call,
        If,
        Select,
        For,
        ForEach,
        Loop,
        Exit,
        With,
        ReDim,
        Erase,
        OnError,
        WriteLiteral,
        WriteValue,
    };

    Statement(Kind statement_kind, Place at) : kind(statement_kind), place(at) {}

    Kind kind;
    Place place;
};

using Block = std::span<const Statement* const>;

struct AssignStatement : Statement {
    using Statement::Statement;
    const Expression* target = nullptr; // Name, Member or Call
    const Expression* value = nullptr;
    bool by_reference = false; // Set
};

struct CallStatement : Statement {
    using Statement::Statement;
    const Expression* call = nullptr; // Name, Member or Call
};

struct IfClause {
    const Expression* condition;
    Place place;
    Block body;
};

struct IfStatement : Statement {
    using Statement::Statement;
    std::span<const IfClause> clauses;
    Block otherwise;
};

struct CaseClause {
    std::span<const Expression* const> tests;
    Place place;
    Block body;
};

struct SelectStatement : Statement {
    using Statement::Statement;
    const Expression* subject = nullptr;
    std::span<const CaseClause> cases;
    Block otherwise;
};

struct ForStatement : Statement {
    using Statement::Statement;
    const Expression* variable = nullptr; // Name
    const Expression* from = nullptr;
    const Expression* to = nullptr;
    const Expression* step = nullptr; // null: 1
    Block body;
    Place end;
};

struct ForEachStatement : Statement {
    using Statement::Statement;
    const Expression* variable = nullptr; // Name
    const Expression* collection = nullptr;
    Block body;
    Place end;
};

// Do ... Loop and While ... Wend.
struct LoopStatement : Statement {
    using Statement::Statement;
    const Expression* condition = nullptr; // null: for ever
    bool until = false;
    bool tested_at_end = false;
    bool is_do = true; // Exit Do leaves it
    Block body;
    Place end;
};

enum class ExitKind : std::uint8_t { Do, For, Procedure };

struct ExitStatement : Statement {
    using Statement::Statement;
    ExitKind what = ExitKind::Do;
};

struct WithStatement : Statement {
    using Statement::Statement;
    const Expression* object = nullptr;
    Block body;
};

struct ReDimItem {
    std::string_view name;
    Place place;
    std::span<const Expression* const> bounds;
};

struct ReDimStatement : Statement {
    using Statement::Statement;
    bool preserve = false;
    std::span<const ReDimItem> items;
};

struct EraseStatement : Statement {
    using Statement::Statement;
    std::span<const Expression* const> arrays;
};

struct OnErrorStatement : Statement {
    using Statement::Statement;
    bool resume_next = false;
};

struct WriteLiteralStatement : Statement { // the piece is place.piece
    using Statement::Statement;
};

struct WriteValueStatement : Statement {
    using Statement::Statement;
    const Expression* value = nullptr;
};

// --- Declarations ----------------------------------------------------------------------------------

struct Variable {
    std::string_view name;
    Place place;
    bool is_array = false;
    std::vector<std::int32_t> bounds; // of a fixed array; empty: dynamic
};

using NameIndex = std::unordered_map<std::string_view, std::size_t, IgnoreCaseHash, IgnoreCaseEqual>;

// The names that a procedure, or the unit itself, declares; they exist from its beginning on.
struct Scope {
    std::vector<Variable> variables; // Dim, Public, Private
    NameIndex variable_index;
    std::unordered_map<std::string_view, const Variant*, IgnoreCaseHash, IgnoreCaseEqual> constants;
};

struct ParameterDeclaration {
    std::string_view name;
    bool by_value = false;
};

enum class ProcedureKind : std::uint8_t { Sub, Function, PropertyGet, PropertyLet, PropertySet };

struct ProcedureDeclaration {
    std::string_view name;
    ProcedureKind kind = ProcedureKind::Sub;
    std::vector<ParameterDeclaration> parameters;
    Scope scope;
    Block body;
    Place place;
    Place end;
    std::size_t owner = kNoClass; // the index of its class

    static constexpr std::size_t kNoClass = static_cast<std::size_t>(-1);

    bool is_property() const noexcept { return kind >= ProcedureKind::PropertyGet; }

    bool has_result() const noexcept {
        return kind == ProcedureKind::Function || kind == ProcedureKind::PropertyGet;
    }
};

// A name that a class declares: a variable of its objects, a method (which is its `get`), or a property.
struct ClassMember {
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::string_view name;
    Place place;
    bool is_private = false;
    bool is_method = false;
    std::size_t variable = kNone; // index into ClassDeclaration::variables
    std::size_t get = kNone;      // and into Unit::procedures
    std::size_t let = kNone;
    std::size_t set = kNone;
};

struct ClassDeclaration {
    std::string_view name;
    std::vector<Variable> variables;
    std::vector<ClassMember> members;
    NameIndex member_index;
    std::size_t default_member = ClassMember::kNone;
};

class Unit {
public:
    bool option_explicit = false;
    bool is_inner = false; // Eval and Execute: Me may be that of the method they run in
    Scope scope;
    Block body;
    std::vector<ProcedureDeclaration> procedures; // in source order, those of classes among them
    NameIndex procedure_index;                    // without those; the last of one name counts
    std::vector<ClassDeclaration> classes;
    NameIndex class_index;
    Place end;

    template <class T, class... Arguments>
    T* make(Arguments&&... arguments) {
        static_assert(std::is_trivially_destructible_v<T>);
        return new (arena_.allocate(sizeof(T), alignof(T))) T(std::forward<Arguments>(arguments)...);
    }

    template <class T>
    std::span<const T> list(const std::vector<T>& items) {
        static_assert(std::is_trivially_destructible_v<T>);
        if (items.empty())
            return {};
        T* const first = static_cast<T*>(arena_.allocate(sizeof(T) * items.size(), alignof(T)));
        std::uninitialized_copy(items.begin(), items.end(), first);
        return {first, items.size()};
    }

    const Variant* literal(Variant value) { return &literals_.emplace_back(std::move(value)); }

private:
    std::pmr::monotonic_buffer_resource arena_;
    std::deque<Variant> literals_;
};

} // namespace tabrixdb::vbscript
