#include "vbscript/parsing.h"
#include "vbscript/place.h"

#include <algorithm>

namespace tabrixdb::vbscript {

namespace {

// Nodes below one another, see Expression::depth: bounds the recursion of whatever walks a tree.
constexpr int kMaxDepth = 1000;

struct BinaryOperator {
    Operator operation;
    int precedence; // the higher binds the tighter
};

constexpr int kNone = 0;
constexpr int kLoosest = 1;
constexpr int kNot = 6;

BinaryOperator binary_operator(TokenKind kind) noexcept {
    switch (kind) {
    case TokenKind::Imp:
        return {Operator::Imp, kLoosest};
    case TokenKind::Eqv:
        return {Operator::Eqv, 2};
    case TokenKind::Xor:
        return {Operator::Xor, 3};
    case TokenKind::Or:
        return {Operator::Or, 4};
    case TokenKind::And:
        return {Operator::And, 5};
    case TokenKind::Equal:
        return {Operator::Equal, 7};
    case TokenKind::NotEqual:
        return {Operator::NotEqual, 7};
    case TokenKind::Less:
        return {Operator::Less, 7};
    case TokenKind::LessEqual:
        return {Operator::LessEqual, 7};
    case TokenKind::Greater:
        return {Operator::Greater, 7};
    case TokenKind::GreaterEqual:
        return {Operator::GreaterEqual, 7};
    case TokenKind::Is:
        return {Operator::Is, 7};
    case TokenKind::Ampersand:
        return {Operator::Concatenate, 8};
    case TokenKind::Plus:
        return {Operator::Add, 9};
    case TokenKind::Minus:
        return {Operator::Subtract, 9};
    case TokenKind::Mod:
        return {Operator::Modulo, 10};
    case TokenKind::Backslash:
        return {Operator::IntegerDivide, 11};
    case TokenKind::Star:
        return {Operator::Multiply, 12};
    case TokenKind::Slash:
        return {Operator::Divide, 12};
    case TokenKind::Caret:
        return {Operator::Power, 13};
    default:
        return {Operator::Add, kNone};
    }
}

} // namespace

Expression* Parser::make_expression(Expression::Kind kind, Place place) {
    Expression* node = unit_.make<Expression>();
    node->kind = kind;
    node->place = place;
    return node;
}

void Parser::limit_depth(Expression& node) const {
    int depth = 0;
    if (node.left) {
        const bool chain =
            node.kind == Expression::Kind::Binary && node.left->kind == Expression::Kind::Binary;
        depth = node.left->depth - chain;
    }
    if (node.right)
        depth = std::max<int>(depth, node.right->depth);
    for (const Expression* argument : node.arguments)
        depth = std::max<int>(depth, argument->depth);
    if (++depth > kMaxDepth)
        fail_at(node.place, 1001);
    node.depth = static_cast<std::uint16_t>(depth);
}

const Expression* Parser::expression() {
    const Level level(*this);
    return operators_after(operand(), kLoosest);
}

const Expression* Parser::operators_after(const Expression* left, int least) {
    for (;;) {
        const BinaryOperator found = binary_operator(current_.kind);
        if (found.precedence == kNone || found.precedence < least)
            return left;
        const Place place = take().place;
        const Expression* right = operators_after(operand(), found.precedence + 1);
        left = binary(found.operation, left, right, place);
    }
}

const Expression* Parser::binary(Operator operation, const Expression* left, const Expression* right,
                                 Place place) {
    Expression* node = make_expression(Expression::Kind::Binary, place);
    node->operation = operation;
    node->left = left;
    node->right = right;
    limit_depth(*node);
    return node;
}

// Deliberate: a sign binds more tightly than ^, so that -3 ^ 2 is 9.
const Expression* Parser::operand() {
    switch (current_.kind) {
    case TokenKind::Minus:
        return unary(Operator::Negate, kNone);
    case TokenKind::Plus:
        return unary(Operator::Plus, kNone);
    case TokenKind::Not:
        return unary(Operator::Not, kNot);
    default:
        return primary();
    }
}

const Expression* Parser::unary(Operator operation, int least) {
    const Level level(*this);
    Expression* node = make_expression(Expression::Kind::Unary, take().place);
    node->operation = operation;
    node->left = operand();
    if (least != kNone)
        node->left = operators_after(node->left, least);
    limit_depth(*node);
    return node;
}

const Expression* Parser::literal_expression(Variant value) {
    Expression* node = make_expression(Expression::Kind::Literal, take().place);
    node->literal = unit_.literal(std::move(value));
    return node;
}

const Expression* Parser::name_expression() {
    const Token name = expect_name();
    Expression* node = make_expression(Expression::Kind::Name, name.place);
    node->name = name.text;
    return node;
}

const Expression* Parser::me_expression() {
    if (!class_ && !unit_.is_inner)
        fail(1037);
    return make_expression(Expression::Kind::Me, take().place);
}

const Expression* Parser::primary() {
    switch (current_.kind) {
    case TokenKind::Value:
        return literal_expression(current_.value);
    case TokenKind::True:
        return literal_expression(Variant(true));
    case TokenKind::False:
        return literal_expression(Variant(false));
    case TokenKind::Null:
        return literal_expression(Variant::null());
    case TokenKind::EmptyWord:
        return literal_expression(Variant());
    case TokenKind::Nothing:
        return literal_expression(Variant::nothing());
    case TokenKind::Name:
        return postfix(name_expression());
    case TokenKind::Dot:
        return postfix(member_after(nullptr));
    case TokenKind::OpenBracket: {
        Expression* group = make_expression(Expression::Kind::Group, take().place);
        group->left = expression();
        limit_depth(*group);
        expect(TokenKind::CloseBracket, 1006);
        return postfix(group);
    }
    case TokenKind::New: {
        Expression* node = make_expression(Expression::Kind::New, take().place);
        node->name = expect_name().text;
        return node;
    }
    case TokenKind::Me:
        return postfix(me_expression());
    default:
        fail(current_.ends_statement() ? 1023 : 1002);
    }
}

const Expression* Parser::postfix(const Expression* left) {
    for (;;) {
        if (at(TokenKind::Dot))
            left = member_after(left);
        else if (at(TokenKind::OpenBracket))
            left = call_after(left);
        else
            return left;
    }
}

const Expression* Parser::member_after(const Expression* left) {
    expect(TokenKind::Dot, 1002);
    if (!current_.is_word())
        fail(1010);
    const Token& name = take();
    Expression* node = make_expression(Expression::Kind::Member, name.place);
    node->name = name.text;
    node->left = left;
    limit_depth(*node);
    return node;
}

const Expression* Parser::call_after(const Expression* left) {
    Expression* node = make_expression(Expression::Kind::Call, left->place);
    expect(TokenKind::OpenBracket, 1005);
    node->left = left;
    node->arguments = unit_.list(argument_list(TokenKind::CloseBracket));
    limit_depth(*node);
    expect(TokenKind::CloseBracket, 1006);
    return node;
}

bool Parser::ends_arguments(TokenKind end) const {
    if (end == TokenKind::CloseBracket)
        return at(TokenKind::CloseBracket);
    return current_.ends_statement() || at(TokenKind::Else) || at(TokenKind::ElseIf) ||
           at(TokenKind::EndWord);
}

std::vector<const Expression*> Parser::argument_list(TokenKind end, const Expression* first) {
    std::vector<const Expression*> arguments;
    if (!first && ends_arguments(end))
        return arguments;
    for (;;) {
        if (first)
            arguments.push_back(std::exchange(first, nullptr));
        else if (at(TokenKind::Comma) || ends_arguments(end))
            arguments.push_back(make_expression(Expression::Kind::Omitted, current_.place));
        else
            arguments.push_back(expression());
        if (!accept(TokenKind::Comma))
            return arguments;
    }
}

} // namespace tabrixdb::vbscript
