#include "automation/operators.h"
#include "vbscript/parsing.h"
#include "vbscript/place.h"

#include <algorithm>

namespace tabrixdb::vbscript {

bool Parser::at_declaration() const {
    switch (current_.kind) {
    case TokenKind::Option:
    case TokenKind::Dim:
    case TokenKind::Const:
    case TokenKind::Public:
    case TokenKind::Private:
    case TokenKind::Sub:
    case TokenKind::Function:
    case TokenKind::Class:
        return true;
    default:
        return false;
    }
}

void Parser::declaration() {
    const bool first = !std::exchange(any_statement_, true);
    if (at(TokenKind::Option)) {
        if (!first)
            fail(1024);
        return option_explicit();
    }
    const bool has_access = at(TokenKind::Public) || at(TokenKind::Private);
    if (has_access) {
        if (procedure_)
            fail(1002);
        take();
    }
    switch (current_.kind) {
    case TokenKind::Sub:
        return procedure(ProcedureKind::Sub);
    case TokenKind::Function:
        return procedure(ProcedureKind::Function);
    case TokenKind::Const:
        return constants();
    case TokenKind::Class:
        if (has_access)
            fail(1010);
        return class_declaration();
    default:
        if (!has_access)
            take(); // Dim
        return variables();
    }
}

void Parser::option_explicit() {
    take();
    if (!at_word("explicit"))
        fail(1002);
    take();
    unit_.option_explicit = true;
}

// A scope declares a name once, whatever it is.
void Parser::check_new_name(const Token& name) const {
    const Scope& scope = procedure_ ? procedure_->scope : unit_.scope;
    bool taken = scope.variable_index.contains(name.text) || scope.constants.contains(name.text);
    if (procedure_) {
        taken = taken || equal_ignore_case(procedure_->name, name.text) ||
                std::ranges::any_of(procedure_->parameters, [&](const ParameterDeclaration& parameter) {
                    return equal_ignore_case(parameter.name, name.text);
                });
    } else {
        taken = taken || unit_.procedure_index.contains(name.text) || unit_.class_index.contains(name.text);
    }
    if (taken)
        fail_at(name.place, 1041);
}

void Parser::variables() {
    Scope& scope = procedure_ ? procedure_->scope : unit_.scope;
    do {
        const Token name = expect_name();
        check_new_name(name);
        Variable variable{name.text, name.place, false, {}};
        if (accept(TokenKind::OpenBracket)) {
            variable.is_array = true;
            variable.bounds = fixed_bounds();
        }
        scope.variable_index.emplace(name.text, scope.variables.size());
        scope.variables.push_back(std::move(variable));
    } while (accept(TokenKind::Comma));
}

std::vector<std::int32_t> Parser::fixed_bounds() {
    std::vector<std::int32_t> bounds;
    if (accept(TokenKind::CloseBracket))
        return bounds;
    do {
        if (!at(TokenKind::Value) || !current_.value.is_whole())
            fail(1026);
        bounds.push_back(static_cast<std::int32_t>(take().value.whole()));
    } while (accept(TokenKind::Comma));
    expect(TokenKind::CloseBracket, 1006);
    return bounds;
}

void Parser::constants() {
    take();
    Scope& scope = procedure_ ? procedure_->scope : unit_.scope;
    do {
        const Token name = expect_name();
        check_new_name(name);
        expect(TokenKind::Equal, 1011);
        scope.constants.emplace(name.text, unit_.literal(constant_value()));
    } while (accept(TokenKind::Comma));
}

// A literal, or a number with a sign.
Variant Parser::constant_value() {
    const bool negative = at(TokenKind::Minus);
    const bool has_sign = negative || at(TokenKind::Plus);
    if (has_sign)
        take();
    Variant value;
    switch (current_.kind) {
    case TokenKind::Value:
        value = current_.value;
        break;
    case TokenKind::True:
        value = Variant(true);
        break;
    case TokenKind::False:
        value = Variant(false);
        break;
    case TokenKind::Null:
        value = Variant::null();
        break;
    case TokenKind::EmptyWord:
        break;
    case TokenKind::Nothing:
        value = Variant::nothing();
        break;
    default:
        fail(1045);
    }
    if (has_sign && !value.is_number())
        fail(1045);
    take();
    return negative ? negate(value) : value;
}

void Parser::procedure(ProcedureKind kind) {
    if (procedure_ || nesting_ > kUnitLevel)
        fail(1002);
    ProcedureDeclaration declared = procedure_declaration(kind);
    unit_.procedure_index.insert_or_assign(declared.name, unit_.procedures.size());
    unit_.procedures.push_back(std::move(declared));
}

// From the word Sub, Function, Get, Let or Set to the end.
ProcedureDeclaration Parser::procedure_declaration(ProcedureKind kind) {
    ProcedureDeclaration declared;
    declared.kind = kind;
    declared.place = take().place;
    const Token name = expect_name();
    declared.name = name.text;
    if (!class_ && (unit_.scope.variable_index.contains(name.text) ||
                    unit_.scope.constants.contains(name.text) || unit_.class_index.contains(name.text)))
        fail_at(name.place, 1041);
    procedure_ = &declared;
    const Inside outer = std::exchange(inside_, Inside());
    if (accept(TokenKind::OpenBracket))
        parameters(declared);
    end_of_statement();
    declared.body = block();
    declared.end = current_.place;
    expect_end_of(kind);
    inside_ = outer;
    procedure_ = nullptr;
    return declared;
}

void Parser::parameters(ProcedureDeclaration& procedure) {
    if (accept(TokenKind::CloseBracket))
        return;
    do {
        ParameterDeclaration parameter;
        if (accept(TokenKind::ByVal))
            parameter.by_value = true;
        else
            accept(TokenKind::ByRef);
        const Token name = expect_name();
        check_new_name(name);
        parameter.name = name.text;
        procedure.parameters.push_back(parameter);
        if (accept(TokenKind::OpenBracket)) // `a()`: says that an array is expected, and no more
            expect(TokenKind::CloseBracket, 1006);
    } while (accept(TokenKind::Comma));
    expect(TokenKind::CloseBracket, 1006);
}

} // namespace tabrixdb::vbscript
