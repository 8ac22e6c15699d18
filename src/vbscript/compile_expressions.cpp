#include "automation/error.h"
#include "automation/operators.h"
#include "vbscript/compiler.h"

#include <algorithm>

namespace tabrixdb::vbscript {

namespace {

// Operands of one Concatenate; longer chains are joined in steps, which keeps the frame small.
constexpr std::size_t kJoinedAtOnce = 64;

OpCode operator_code(Operator operation) noexcept {
    switch (operation) {
    case Operator::Imp:
        return OpCode::Imp;
    case Operator::Eqv:
        return OpCode::Eqv;
    case Operator::Xor:
        return OpCode::Xor;
    case Operator::Or:
        return OpCode::Or;
    case Operator::And:
        return OpCode::And;
    case Operator::Not:
        return OpCode::Not;
    case Operator::Equal:
        return OpCode::Equal;
    case Operator::NotEqual:
        return OpCode::NotEqual;
    case Operator::Less:
        return OpCode::Less;
    case Operator::LessEqual:
        return OpCode::LessEqual;
    case Operator::Greater:
        return OpCode::Greater;
    case Operator::GreaterEqual:
        return OpCode::GreaterEqual;
    case Operator::Is:
        return OpCode::Is;
    case Operator::Concatenate:
        return OpCode::Concatenate;
    case Operator::Add:
        return OpCode::Add;
    case Operator::Subtract:
        return OpCode::Subtract;
    case Operator::Modulo:
        return OpCode::Modulo;
    case Operator::IntegerDivide:
        return OpCode::IntegerDivide;
    case Operator::Multiply:
        return OpCode::Multiply;
    case Operator::Divide:
        return OpCode::Divide;
    case Operator::Negate:
        return OpCode::Negate;
    case Operator::Power:
        return OpCode::Power;
    case Operator::Plus:
        return OpCode::Let;
    }
    return OpCode::Let;
}

bool is_comparison(const Expression& expression) noexcept {
    return expression.kind == Expression::Kind::Binary && expression.operation >= Operator::Equal &&
           expression.operation <= Operator::GreaterEqual;
}

OpCode jump_code(Operator comparison) noexcept {
    const int offset = static_cast<int>(comparison) - static_cast<int>(Operator::Equal);
    return static_cast<OpCode>(static_cast<int>(OpCode::JumpEqual) + offset);
}

// Which operands stand in the source as literals: they compare by other rules than variables.
std::uint8_t literal_flags(const Expression& comparison) noexcept {
    std::uint8_t flags = 0;
    if (comparison.left->kind == Expression::Kind::Literal)
        flags |= Instruction::kLeftLiteral;
    if (comparison.right->kind == Expression::Kind::Literal)
        flags |= Instruction::kRightLiteral;
    return flags;
}

// What a call gives may be an object, which an operator reads and lets go.
std::uint8_t object_flags(const Expression& operand) noexcept {
    const Expression* at = &operand;
    while (at->kind == Expression::Kind::Group)
        at = at->left;
    const bool is_call = at->kind == Expression::Kind::Call || at->kind == Expression::Kind::Member ||
                         at->kind == Expression::Kind::Name || at->kind == Expression::Kind::New ||
                         at->kind == Expression::Kind::Me;
    return is_call ? Instruction::kLetsGo : std::uint8_t{0};
}

std::uint8_t operand_flags(const Expression& binary) noexcept {
    const std::uint8_t literals = is_comparison(binary) ? literal_flags(binary) : std::uint8_t{0};
    return static_cast<std::uint8_t>(literals | object_flags(*binary.left) | object_flags(*binary.right));
}

bool is_variable(Operand operand) noexcept {
    return operand.kind() == Operand::Kind::Local || operand.kind() == Operand::Kind::Reference ||
           operand.kind() == Operand::Kind::Field || operand.kind() == Operand::Kind::Global;
}

bool is_concatenation(const Expression& expression) noexcept {
    return expression.kind == Expression::Kind::Binary && expression.operation == Operator::Concatenate;
}

bool is_operation(const Expression& expression) noexcept {
    const Expression* at = &expression;
    while (at->kind == Expression::Kind::Group)
        at = at->left;
    return at->kind == Expression::Kind::Binary || at->kind == Expression::Kind::Unary;
}

// The operands of a & b & c, in order.
std::vector<const Expression*> joined_operands(const Expression& chain) {
    std::vector<const Expression*> operands;
    const Expression* at = &chain;
    for (; is_concatenation(*at); at = at->left)
        operands.push_back(at->right);
    operands.push_back(at);
    std::ranges::reverse(operands);
    return operands;
}

} // namespace

Operand Compiler::evaluate(const Expression& expression, Operand into) {
    switch (expression.kind) {
    case Expression::Kind::Literal:
        return builder_.constant(*expression.literal);
    case Expression::Kind::Name:
        return evaluate_name(expression);
    case Expression::Kind::Member:
        return call_member(expression, {}, body_->frame.temporary());
    case Expression::Kind::Call:
        return call(expression, body_->frame.temporary());
    case Expression::Kind::Unary:
        return evaluate_unary(expression, into);
    case Expression::Kind::Binary:
        return is_concatenation(expression) ? evaluate_joined(expression, into)
                                            : evaluate_binary(expression, into);
    case Expression::Kind::Group:
        return evaluate(*expression.left, into);
    case Expression::Kind::Omitted:
        return builder_.constant(Variant::missing());
    case Expression::Kind::New: {
        const Operand made = body_->frame.temporary();
        builder_.emit({.code = OpCode::New, .a = made, .b = builder_.link(expression.name)});
        return made;
    }
    case Expression::Kind::Me: // a copy: the slot itself is nobody's to assign to
        return body_->me.exists() ? held_now(body_->me) : outer_me();
    }
    return {};
}

// Me of the method that the code runs in.
Operand Compiler::outer_me() {
    const Operand me = body_->frame.temporary();
    builder_.emit({.code = OpCode::GetName, .a = me, .b = builder_.link("Me")});
    return me;
}

Operand Compiler::evaluate_name(const Expression& expression) {
    const Meaning name = meaning(expression.name);
    if (name.kind == Meaning::Kind::Variable || name.kind == Meaning::Kind::Constant)
        return name.at;
    const Operand result = body_->frame.temporary();
    if (name.kind == Meaning::Kind::Method)
        return call_method(name.at.number(), {}, result);
    if (name.kind == Meaning::Kind::Dynamic)
        builder_.emit({.code = OpCode::GetName, .a = result, .b = name.at, .c = name.local});
    else
        finish_call({.code = OpCode::CallName, .a = result, .b = name.at}, {}, {name.local});
    return result;
}

Operand Compiler::evaluate_unary(const Expression& expression, Operand into) {
    if (expression.operation == Operator::Plus)
        return evaluate(*expression.left);
    const Operand result = result_in(into);
    const Temporaries temporaries(body_->frame);
    const Operand operand = evaluate(*expression.left);
    if (operand.kind() == Operand::Kind::Constant && expression.operation == Operator::Negate) {
        const Variant& value = program_.constants[operand.index()];
        if (value.is_number())
            return builder_.constant(negate(value));
    }
    builder_.emit({.code = operator_code(expression.operation),
                   .flags = object_flags(*expression.left),
                   .a = result,
                   .b = operand});
    return result;
}

// Chains such as a + b + c lean to the left; they are followed down in a loop, however long they are.
Operand Compiler::evaluate_binary(const Expression& expression, Operand into) {
    std::vector<const Expression*> chain;
    const Expression* at = &expression;
    for (; at->kind == Expression::Kind::Binary && !is_concatenation(*at); at = at->left)
        chain.push_back(at);
    const Operand own = body_->frame.temporary();
    Operand left = evaluate_before(*at, *chain.back()->right);
    for (std::size_t i = chain.size(); i-- > 0;) {
        const Expression& node = *chain[i];
        const Temporaries temporaries(body_->frame);
        const Operand right = evaluate(*node.right);
        if (const auto value = folded(node.operation, left, right)) {
            left = builder_.constant(*value);
            continue;
        }
        const Operand result = i == 0 && into.exists() ? into : own;
        builder_.emit({.code = operator_code(node.operation),
                       .flags = operand_flags(node),
                       .a = result,
                       .b = left,
                       .c = right});
        left = result;
    }
    return left;
}

Operand Compiler::evaluate_joined(const Expression& expression, Operand into) {
    const std::vector<const Expression*> expressions = joined_operands(expression);
    std::size_t last_call = 0; // operands before it are read before it
    for (std::size_t i = 0; i < expressions.size(); ++i)
        if (may_call(*expressions[i]))
            last_call = i;
    const Operand result = result_in(into);
    const Operand partial = into.exists() ? body_->frame.temporary() : result;
    std::vector<Operand> operands;
    std::optional<Text> literal; // neighbouring literals are joined here and now
    auto temporaries = std::make_optional<Temporaries>(body_->frame);
    const auto join = [&](Operand to) {
        builder_.emit({.code = OpCode::Concatenate,
                       .count = list_size(operands.size()),
                       .a = to,
                       .c = builder_.list(operands)});
    };
    const auto end_literal = [&] {
        if (literal)
            operands.push_back(builder_.constant(Variant(*literal)));
        literal.reset();
    };
    for (std::size_t i = 0; i < expressions.size(); ++i) {
        Operand operand = evaluate(*expressions[i]);
        const bool is_constant = operand.kind() == Operand::Kind::Constant;
        if (is_constant && program_.constants[operand.index()].is_string()) {
            if (!literal)
                literal.emplace();
            literal->append(program_.constants[operand.index()].text());
            continue;
        }
        end_literal();
        operands.push_back(i < last_call ? held_now(operand) : operand);
        if (operands.size() >= kJoinedAtOnce) {
            join(partial);
            operands.assign(1, partial);
            temporaries.emplace(body_->frame);
        }
    }
    end_literal();
    if (operands.size() == 1 && operands.front().kind() == Operand::Kind::Constant)
        return operands.front();
    join(result);
    return result;
}

Operand Compiler::evaluate_before(const Expression& expression, const Expression& next) {
    const Operand operand = evaluate(expression);
    return is_variable(operand) && may_call(next) ? held_now(operand) : operand;
}

Operand Compiler::held_now(Operand variable) {
    if (!is_variable(variable))
        return variable;
    const Operand held = body_->frame.temporary();
    builder_.emit({.code = OpCode::Move, .a = held, .b = variable});
    return held;
}

// Arithmetic on literal numbers is done once. Whatever depends on the locale, or fails, stays for the run.
std::optional<Variant> Compiler::folded(Operator operation, Operand left, Operand right) const {
    if (left.kind() != Operand::Kind::Constant || right.kind() != Operand::Kind::Constant)
        return std::nullopt;
    const Variant& a = program_.constants[left.index()];
    const Variant& b = program_.constants[right.index()];
    if (!a.is_number() || !b.is_number())
        return std::nullopt;
    try {
        switch (operation) {
        case Operator::Add:
            return add(a, b);
        case Operator::Subtract:
            return subtract(a, b);
        case Operator::Multiply:
            return multiply(a, b);
        case Operator::Divide:
            return divide(a, b);
        default:
            return std::nullopt;
        }
    } catch (const Error&) {
        return std::nullopt;
    }
}

std::uint32_t Compiler::jump_on(const Expression& condition, bool when) {
    const std::uint8_t flags = when ? std::uint8_t{0} : Instruction::kWhenFalse;
    if (!is_comparison(condition)) {
        const Operand value = evaluate(condition);
        return builder_.emit({.code = OpCode::JumpIf,
                              .flags = static_cast<std::uint8_t>(flags | object_flags(condition)),
                              .a = value});
    }
    const Operand left = evaluate_before(*condition.left, *condition.right);
    const Operand right = evaluate(*condition.right);
    return builder_.emit({.code = jump_code(condition.operation),
                          .flags = static_cast<std::uint8_t>(flags | operand_flags(condition)),
                          .a = left,
                          .b = right});
}

// Whether the expression may run script or an object's member, which may change variables.
bool Compiler::may_call(const Expression& expression) {
    const Expression* at = &expression;
    for (; at->kind == Expression::Kind::Binary; at = at->left)
        if (may_call(*at->right))
            return true;
    switch (at->kind) {
    case Expression::Kind::Member:
    case Expression::Kind::New:
        return true;
    case Expression::Kind::Name: {
        const Meaning::Kind kind = meaning(at->name).kind;
        return kind == Meaning::Kind::Procedure || kind == Meaning::Kind::Method ||
               kind == Meaning::Kind::Dynamic;
    }
    case Expression::Kind::Call:
        return at->left->kind != Expression::Kind::Name || may_call(*at->left) ||
               std::ranges::any_of(at->arguments, [&](const Expression* each) { return may_call(*each); });
    case Expression::Kind::Unary:
    case Expression::Kind::Group:
        return may_call(*at->left);
    default:
        return false;
    }
}

// --- s = s & x -------------------------------------------------------------------------------------

// `s = s & x & y` appends to s in place, so that a page built in a loop costs its length. What is appended
// is read first; should a call in it change s, the text that s held before is taken.
bool Compiler::assign_by_appending(Operand target, const Expression& name, const Expression& value) {
    if (!is_concatenation(value))
        return false;
    const std::vector<const Expression*> expressions = joined_operands(value);
    const Expression& first = *expressions.front();
    if (first.kind != Expression::Kind::Name || !equal_ignore_case(first.name, name.name) ||
        expressions.size() > kJoinedAtOnce)
        return false;
    std::size_t last_call = 0;
    for (std::size_t i = 1; i < expressions.size(); ++i)
        if (may_call(*expressions[i]))
            last_call = i;
    Operand before;
    if (last_call > 0) {
        before = body_->frame.temporary();
        builder_.emit({.code = OpCode::Move, .a = before, .b = target});
    }
    std::vector<Operand> operands;
    for (std::size_t i = 1; i < expressions.size(); ++i) {
        const Operand operand = evaluate(*expressions[i]);
        operands.push_back(i < last_call ? held_now(operand) : operand);
    }
    builder_.emit({.code = OpCode::Append,
                   .count = list_size(operands.size()),
                   .a = target,
                   .b = before,
                   .c = builder_.list(operands)});
    return true;
}

void Compiler::assign(const AssignStatement& statement) {
    const Expression& target = *statement.target;
    if (target.kind != Expression::Kind::Name || own_accessor(target))
        return store(target, evaluate(*statement.value), statement.by_reference);
    const Operand at = variable(meaning(target.name), target.name);
    if (statement.by_reference) {
        builder_.emit({.code = OpCode::Set, .a = at, .b = evaluate(*statement.value)});
        return;
    }
    if (assign_by_appending(at, target, *statement.value))
        return;
    const Operand value = evaluate(*statement.value, at);
    if (value != at || !is_operation(*statement.value)) // an operator has stored its result there
        builder_.emit({.code = OpCode::Let, .a = at, .b = value});
}

} // namespace tabrixdb::vbscript
