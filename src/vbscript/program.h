#pragma once

#include "automation/variant.h"
#include "vbscript/source.h"
#include "vbscript/token.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabrixdb::vbscript {

// What an instruction reads or writes: a variable where it stands, or a constant. Nothing is copied to be
// worked with. A temporary is read once, and emptied by whatever reads it as a call's target or argument,
// so that no object or array is held longer than the page says.
class Operand {
public:
    enum class Kind : std::uint8_t {
        Local,     // a slot of the frame that belongs to a name
        Temporary, // a slot of the frame that holds a value between two instructions
        Reference, // a slot of the frame that points to a variable (ByRef parameters)
        Field,     // a variable of the object whose method runs
        Global,    // by the unit's links
        Constant,
        None,
    };

    Operand() noexcept = default;

    Operand(Kind kind, std::size_t index) noexcept
        : bits_(static_cast<std::uint32_t>(kind) << kIndexBits | static_cast<std::uint32_t>(index)) {}

    // Not an operand: a number that stands in an operand's place (a jump's target, a name, ...).
    static Operand number(std::size_t value) noexcept {
        Operand result;
        result.bits_ = static_cast<std::uint32_t>(value);
        return result;
    }

    Kind kind() const noexcept { return static_cast<Kind>(bits_ >> kIndexBits); }

    std::uint32_t index() const noexcept { return bits_ & ((1U << kIndexBits) - 1); }

    std::uint32_t number() const noexcept { return bits_; }

    bool exists() const noexcept { return kind() != Kind::None; }

    bool is_temporary() const noexcept { return kind() == Kind::Temporary; }

    friend bool operator==(Operand a, Operand b) noexcept = default;

private:
    static constexpr int kIndexBits = 29;
    std::uint32_t bits_ = static_cast<std::uint32_t>(Kind::None) << kIndexBits;
};

// `list` is `count` operands of Program::operands from index c on.
enum class OpCode : std::uint8_t {
    Move,  // a = b, whatever it is
    Let,   // a = value of b: objects give their default member
    Set,   // a = b, which has to be an object
    Clear, // a = Empty, releasing what it held

    Add, // a = b op c, for all to Imp
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Power,
    And,
    Or,
    Xor,
    Eqv,
    Imp,
    Is,
    Equal, // comparisons: flags kLeftLiteral, kRightLiteral
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Negate, // a = op b
    Not,
    Concatenate, // a = list joined
    Append,      // a = a & list joined

    Jump,      // to a
    LoopBack,  // to a, with a look at the interrupt
    JumpIf,    // to b when the condition a is true; kWhenFalse: when it is not
    JumpEqual, // to c when a = b, and so on; flags as the comparisons, and kWhenFalse
    JumpNotEqual,
    JumpLess,
    JumpLessEqual,
    JumpGreater,
    JumpGreaterEqual,

    GetName,      // a = the value or result of link b; undefined: of the local c
    BindName,     // reference a to the variable of link b; undefined: to the local c
    BindArgument, // as BindName, but what is no variable is evaluated into the slot `count`;
                  // kOnlyVariables: that slot stays empty then
    CallName,     // a = link b (list); the local for what is undefined stands before the list
    CallMethod,   // a = procedure b of the own class (list)
    New,          // a = a new object of the class of link b
    Index,        // a = b(list)
    GetMember,    // a = b.name(list); name and cache stand before the list
    StoreMember,  // b.name(list) = a; likewise. kByReference: Set
    StoreElement, // b(...)(...) = a; `count` groups, each its length and its subscripts. kByReference: Set
    WriteBack,    // b(list) = a, when b is an array: the element was passed by reference

    ForStart,     // operands at c: from, to, step, exit, held step; a: held limit; b: the variable
    ForNext,      // next value of b, and to c when it is in the limits; a: limit, slot `count`: step
    ForEachStart, // operands at c: variable, exit; a: the enumerator; b: the collection
    ForEachNext,  // next item to b, and to c when there is one
    WithStart,    // a = b, which has to be an object

    ReDim,    // a(list); kPreserve
    DimArray, // a = a new array; `count` bounds at c, as numbers; none: dynamic
    Erase,    // a

    OnError, // kResumeNext, or else GoTo 0
    ClearError,
    Return,
    Raise,        // Error a, with the name b
    WriteLiteral, // the text of piece a
    WriteValue,   // a
};

struct Instruction {
    // Flags.
    static constexpr std::uint8_t kLeftLiteral = 1;
    static constexpr std::uint8_t kRightLiteral = 2;
    static constexpr std::uint8_t kWhenFalse = 4;
    static constexpr std::uint8_t kLetsGo = 8; // objects in its temporaries end with the instruction
    static constexpr std::uint8_t kByReference = 1;
    static constexpr std::uint8_t kKeepArguments = 2; // temporaries in the list are used once more
    static constexpr std::uint8_t kOnlyVariables = 1;
    static constexpr std::uint8_t kPreserve = 1;
    static constexpr std::uint8_t kResumeNext = 1;

    OpCode code;
    std::uint8_t flags = 0;
    std::uint16_t count = 0;
    Operand a = {};
    Operand b = {};
    Operand c = {};
};

static_assert(sizeof(Instruction) == 16);

// From here on the code belongs to this place of the source, until the next mark. After an error that is
// held, the next mark of a statement is where the run goes on.
struct Mark {
    std::uint32_t code;
    Place place;
    bool is_statement;
};

struct Class;

struct Procedure {
    struct Parameter {
        bool by_value;
        Operand at; // Local or Reference
    };

    // The name of a variable of the frame, for messages and for Eval.
    struct Named {
        std::string name;
        Operand at;
        bool is_declared; // else it is this variable only when nothing global has the name
    };

    std::string name;
    const Class* owner = nullptr; // a method's: it has Me in its first slot
    std::vector<Parameter> parameters;
    std::vector<Named> names;
    std::uint32_t first = 0; // of its code
    std::uint32_t slots = 0;
    std::uint32_t references = 0;
    Operand result; // None for a Sub
};

// A class that a script declares.
struct Class {
    // A variable of its objects, a method, or a property. A member's index is its handle.
    struct Member {
        std::string name;
        bool is_private = false;
        std::int32_t field = -1; // index into fields
        // Indexes into Program::procedures, -1 without one. A method has `get` only; the value that is
        // assigned is the last argument of `let` and `set`.
        std::int32_t get = -1;
        std::int32_t let = -1;
        std::int32_t set = -1;
    };

    struct Field {
        bool is_array = false;
        std::vector<std::int32_t> bounds; // none: dynamic
    };

    // -1 when it has none.
    std::int32_t find(std::string_view member) const noexcept;

    std::string name;
    std::vector<Member> members;
    std::unordered_map<std::string, std::int32_t, IgnoreCaseHash, IgnoreCaseEqual> index;
    std::vector<Field> fields;
    std::int32_t default_member = -1;
    std::int32_t initialize = -1; // procedures
    std::int32_t terminate = -1;
};

// A compiled unit. Immutable once built: what a run changes is in the Machine.
class Program {
public:
    enum class Declared : std::uint8_t {
        No,
        Variable,
        Implicit, // assigned at global level without a declaration
        Constant,
        Procedure,
        Class,
    };

    // A global name that the unit uses or declares.
    struct Link {
        std::string name;
        Declared declared = Declared::No;
        std::uint32_t index = 0; // of the constant, procedure or class
    };

    Source source;
    bool option_explicit = false;
    std::vector<Instruction> code;
    std::vector<Operand> operands;
    std::vector<Variant> constants; // strings and plain values only: they are shared between threads
    std::vector<Link> links;
    std::vector<std::string> members; // names after a dot
    std::vector<Procedure> procedures;
    std::vector<Class> classes;
    std::vector<Mark> marks; // by code
    Procedure main;          // the global statements
    std::uint32_t caches = 0;

    // Whether it declares what may be called when its own statements have run.
    bool is_referred_to() const noexcept { return !procedures.empty() || !classes.empty(); }

    // What it takes in memory, about.
    std::size_t bytes() const noexcept;
    // The place of an instruction.
    Place place_of(std::uint32_t code_index) const noexcept;
    // The first instruction of the next statement, where On Error Resume Next goes on.
    std::uint32_t next_statement(std::uint32_t code_index) const noexcept;
};

// Compiles a source of one expression (Eval): the value is the result of Program::main.
std::shared_ptr<const Program> compile_expression(Source source);
// Compiles statements that may run inside a method (Execute), so that Me means something.
std::shared_ptr<const Program> compile_inner(Source source);

} // namespace tabrixdb::vbscript
