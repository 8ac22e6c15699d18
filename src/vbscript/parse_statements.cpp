#include "vbscript/parser.h"
#include "vbscript/parsing.h"
#include "vbscript/place.h"

#include <algorithm>

namespace tabrixdb::vbscript {

namespace {

bool ends_block(TokenKind kind) noexcept {
    switch (kind) {
    case TokenKind::End:
    case TokenKind::Else:
    case TokenKind::ElseIf:
    case TokenKind::EndWord:
    case TokenKind::Case:
    case TokenKind::Loop:
    case TokenKind::Next:
    case TokenKind::Wend:
        return true;
    default:
        return false;
    }
}

// The error for a word that ends a block where none is open.
std::int32_t stray_end_error(TokenKind kind) noexcept {
    switch (kind) {
    case TokenKind::Loop:
        return 1038;
    case TokenKind::Next:
        return 1055;
    default:
        return 1024;
    }
}

bool is_operator(TokenKind kind) noexcept {
    switch (kind) {
    case TokenKind::NotEqual:
    case TokenKind::Less:
    case TokenKind::LessEqual:
    case TokenKind::Greater:
    case TokenKind::GreaterEqual:
    case TokenKind::Ampersand:
    case TokenKind::Plus:
    case TokenKind::Minus:
    case TokenKind::Star:
    case TokenKind::Slash:
    case TokenKind::Backslash:
    case TokenKind::Caret:
    case TokenKind::And:
    case TokenKind::Eqv:
    case TokenKind::Imp:
    case TokenKind::Is:
    case TokenKind::Mod:
    case TokenKind::Or:
    case TokenKind::Xor:
        return true;
    default:
        return false;
    }
}

bool is_blank_text(std::string_view text) noexcept {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

// --- Tokens ----------------------------------------------------------------------------------------

Parser::Parser(const Source& source, Unit& unit) : source_(source), unit_(unit), lexer_(source) {
    current_ = lexer_.next();
}

const Token& Parser::take() {
    taken_ = std::move(current_);
    current_ = lexer_.next();
    return taken_;
}

bool Parser::accept(TokenKind kind) {
    if (!at(kind))
        return false;
    take();
    return true;
}

void Parser::expect(TokenKind kind, std::int32_t error) {
    if (!accept(kind))
        fail(error);
}

Token Parser::expect_name() {
    if (!at(TokenKind::Name))
        fail(1010);
    return take();
}

void Parser::expect_end(TokenKind what, std::int32_t error) {
    expect(TokenKind::EndWord, 1014);
    expect(what, error);
}

void Parser::expect_end_of(ProcedureKind kind) {
    if (kind == ProcedureKind::Sub)
        return expect_end(TokenKind::Sub, 1016);
    if (kind == ProcedureKind::Function)
        return expect_end(TokenKind::Function, 1015);
    expect(TokenKind::EndWord, 1014);
    if (!at_word("property"))
        fail(1050);
    take();
}

bool Parser::at_word(std::string_view word) const {
    return at(TokenKind::Name) && !current_.bracketed && equal_ignore_case(current_.text, word);
}

void Parser::fail(std::int32_t error) const {
    raise_compile_error(source_, current_.place, error);
}

void Parser::fail_at(Place place, std::int32_t error) const {
    raise_compile_error(source_, place, error);
}

void Parser::end_of_statement() {
    if (current_.ends_statement())
        return;
    const bool ends_line_if = on_one_line_ && (at(TokenKind::Else) || at(TokenKind::EndWord));
    const bool ends_outer_block = at(TokenKind::EndWord) && taken_.kind == TokenKind::Colon;
    if (!ends_line_if && !ends_outer_block)
        fail(1025);
}

void Parser::skip_line_breaks() {
    while (at(TokenKind::LineBreak) || at(TokenKind::Colon))
        take();
}

// --- Blocks ----------------------------------------------------------------------------------------

void Parser::parse_unit() {
    unit_.body = block();
    if (!at(TokenKind::End))
        fail(stray_end_error(current_.kind));
    unit_.end = current_.place;
}

void Parser::parse_single_expression() {
    skip_line_breaks();
    auto* statement = unit_.make<WriteValueStatement>(Statement::Kind::WriteValue, current_.place);
    statement->value = expression();
    end_of_statement();
    skip_line_breaks();
    if (!at(TokenKind::End))
        fail(1025);
    unit_.body = unit_.list(std::vector<const Statement*>{statement});
    unit_.end = current_.place;
}

Block Parser::block() {
    const Level level(*this);
    std::vector<const Statement*> statements;
    for (;;) {
        skip_line_breaks();
        if (ends_block(current_.kind))
            return unit_.list(statements);
        if (at_declaration())
            declaration();
        else if (const Statement* one = statement())
            statements.push_back(one);
        end_of_statement();
    }
}

const Statement* Parser::statement() {
    if (at(TokenKind::Literal))
        return write_literal();
    any_statement_ = true;
    switch (current_.kind) {
    case TokenKind::ExpressionPiece:
        return write_value();
    case TokenKind::Name:
    case TokenKind::Dot:
        return call_or_assignment();
    case TokenKind::Call:
        return call_statement();
    case TokenKind::Set:
        return set_statement();
    case TokenKind::If:
        return if_statement();
    case TokenKind::Select:
        return select_statement();
    case TokenKind::For:
        return for_statement();
    case TokenKind::Do:
        return do_statement();
    case TokenKind::While:
        return while_statement();
    case TokenKind::Exit:
        return exit_statement();
    case TokenKind::With:
        return with_statement();
    case TokenKind::ReDim:
        return redim_statement();
    case TokenKind::Erase:
        return erase_statement();
    case TokenKind::On:
        return on_error_statement();
    case TokenKind::Stop: // there is no debugger to stop in
        take();
        return nullptr;
    case TokenKind::Me:
        return call_or_assignment();
    default:
        fail(1024);
    }
}

const Statement* Parser::write_literal() {
    return unit_.make<WriteLiteralStatement>(Statement::Kind::WriteLiteral, take().place);
}

const Statement* Parser::write_value() {
    auto* statement = unit_.make<WriteValueStatement>(Statement::Kind::WriteValue, take().place);
    statement->value = expression();
    if (!at(TokenKind::LineBreak))
        fail(1025);
    return statement;
}

// --- Calls and assignments -------------------------------------------------------------------------

// Whether brackets after a name hold its arguments or a first operand is known only behind them:
// `S (x)`, `S (x) & y`, `S (x), y`, `a(x) = y`.
const Statement* Parser::call_or_assignment() {
    const Place place = current_.place;
    const Expression* chain = at(TokenKind::Dot)  ? member_after(nullptr)
                              : at(TokenKind::Me) ? me_expression()
                                                  : name_expression();
    for (;;) {
        // In a With block ` .name` after a blank begins an argument: `Add .Name, 1`.
        if (at(TokenKind::Dot) && !(current_.after_blank && inside_.withs > 0))
            chain = member_after(chain);
        else if (at(TokenKind::OpenBracket))
            chain = call_after(chain);
        else
            break;
    }
    if (chain->kind == Expression::Kind::Me)
        fail_at(place, 1037);
    if (at(TokenKind::Equal))
        return assignment(chain, place, false);
    if (chain->kind == Expression::Kind::Call)
        return call_from_brackets(chain, place);
    if (is_operator(current_.kind) && !at(TokenKind::Minus) && !at(TokenKind::Plus))
        fail(1025);
    return call_of(chain, argument_list(TokenKind::LineBreak), place);
}

const Statement* Parser::call_from_brackets(const Expression* chain, Place place) {
    const bool has_rest = at(TokenKind::Comma) || is_operator(current_.kind);
    if (!has_rest && !ends_arguments(TokenKind::LineBreak))
        fail(1025);
    if (chain->arguments.empty() && !has_rest)
        return call_of(chain->left, {}, place);
    if (chain->arguments.size() != 1 || chain->arguments.front()->kind == Expression::Kind::Omitted)
        fail_at(chain->place, 1044);
    Expression* group = make_expression(Expression::Kind::Group, chain->arguments.front()->place);
    group->left = chain->arguments.front();
    limit_depth(*group);
    const Expression* first = operators_after(group, 1);
    return call_of(chain->left, argument_list(TokenKind::LineBreak, first), place);
}

const Statement* Parser::call_of(const Expression* callee, std::vector<const Expression*> arguments,
                                 Place place) {
    Expression* call = make_expression(Expression::Kind::Call, callee->place);
    call->left = callee;
    call->arguments = unit_.list(arguments);
    limit_depth(*call);
    auto* statement = unit_.make<CallStatement>(Statement::Kind::Call, place);
    statement->call = call;
    return statement;
}

const Statement* Parser::call_statement() {
    const Place place = take().place;
    if (!at(TokenKind::Name) && !at(TokenKind::Dot) && !at(TokenKind::Me))
        fail(1010);
    const Expression* call = primary();
    if (call->kind == Expression::Kind::Me)
        fail_at(place, 1037);
    if (call->kind != Expression::Kind::Call)
        return call_of(call, {}, place);
    auto* statement = unit_.make<CallStatement>(Statement::Kind::Call, place);
    statement->call = call;
    return statement;
}

const Statement* Parser::assignment(const Expression* target, Place place, bool by_reference) {
    expect(TokenKind::Equal, 1011);
    auto* statement = unit_.make<AssignStatement>(Statement::Kind::Assign, place);
    statement->target = target;
    statement->by_reference = by_reference;
    statement->value = expression();
    return statement;
}

const Statement* Parser::set_statement() {
    const Place place = take().place;
    if (!at(TokenKind::Name) && !at(TokenKind::Dot) && !at(TokenKind::Me))
        fail(1010);
    const Expression* target = primary();
    if (target->kind == Expression::Kind::Me)
        fail_at(target->place, 1037);
    return assignment(target, place, true);
}

// --- Branches --------------------------------------------------------------------------------------

const Statement* Parser::if_statement() {
    const Level level(*this);
    const Place place = take().place;
    std::vector<IfClause> clauses;
    const Expression* condition = expression();
    expect(TokenKind::Then, 1017);
    const bool one_line = !at(TokenKind::LineBreak);
    const bool outer = std::exchange(on_one_line_, one_line);
    clauses.push_back({condition, place, one_line ? if_line_block() : block()});
    const Statement* statement = finish_if(place, std::move(clauses), one_line);
    on_one_line_ = outer;
    return statement;
}

Block Parser::if_line_block() {
    std::vector<const Statement*> statements;
    for (;;) {
        while (accept(TokenKind::Colon)) {
        }
        if (at(TokenKind::LineBreak) || ends_block(current_.kind))
            return unit_.list(statements);
        if (at_declaration())
            declaration();
        else if (const Statement* one = statement())
            statements.push_back(one);
        end_of_statement();
    }
}

const Statement* Parser::finish_if(Place place, std::vector<IfClause> clauses, bool one_line) {
    auto* statement = unit_.make<IfStatement>(Statement::Kind::If, place);
    while (at(TokenKind::ElseIf)) {
        const Place at_clause = take().place;
        const Expression* condition = expression();
        expect(TokenKind::Then, 1017);
        clauses.push_back({condition, at_clause, one_line ? if_line_block() : block()});
    }
    if (accept(TokenKind::Else))
        statement->otherwise = one_line ? if_line_block() : block();
    if (!one_line)
        expect_end(TokenKind::If, 1012);
    else if (at(TokenKind::EndWord) && taken_.kind != TokenKind::Colon)
        expect_end(TokenKind::If, 1012);
    statement->clauses = unit_.list(clauses);
    return statement;
}

const Statement* Parser::select_statement() {
    const Level level(*this);
    auto* statement = unit_.make<SelectStatement>(Statement::Kind::Select, take().place);
    expect(TokenKind::Case, 1021);
    statement->subject = expression();
    end_of_statement();
    skip_line_breaks();
    // A page may have blanks between the two blocks of script that hold the head and the first Case.
    while (at(TokenKind::Literal) && is_blank_text(source_.pieces[current_.place.piece].text)) {
        take();
        skip_line_breaks();
    }
    std::vector<CaseClause> cases;
    while (at(TokenKind::Case)) {
        CaseClause clause{{}, take().place, {}};
        if (accept(TokenKind::Else)) {
            statement->otherwise = block();
            break;
        }
        std::vector<const Expression*> tests;
        do
            tests.push_back(expression());
        while (accept(TokenKind::Comma));
        clause.tests = unit_.list(tests);
        clause.body = block();
        cases.push_back(clause);
    }
    statement->cases = unit_.list(cases);
    expect_end(TokenKind::Select, 1022);
    return statement;
}

// --- Loops -----------------------------------------------------------------------------------------

const Statement* Parser::for_statement() {
    const Level level(*this);
    const Place place = take().place;
    if (accept(TokenKind::Each))
        return for_each_statement(place);
    auto* statement = unit_.make<ForStatement>(Statement::Kind::For, place);
    statement->variable = name_expression();
    if (at(TokenKind::OpenBracket) || at(TokenKind::Dot))
        fail(1040);
    expect(TokenKind::Equal, 1011);
    statement->from = expression();
    expect(TokenKind::To, 1013);
    statement->to = expression();
    if (at_word("step")) {
        take();
        statement->step = expression();
    }
    end_of_statement();
    ++inside_.for_loops;
    statement->body = block();
    --inside_.for_loops;
    statement->end = current_.place;
    expect(TokenKind::Next, 1020);
    return statement;
}

const Statement* Parser::for_each_statement(Place place) {
    auto* statement = unit_.make<ForEachStatement>(Statement::Kind::ForEach, place);
    statement->variable = name_expression();
    if (at(TokenKind::OpenBracket) || at(TokenKind::Dot))
        fail(1040);
    expect(TokenKind::In, 1046);
    statement->collection = expression();
    end_of_statement();
    ++inside_.for_loops;
    statement->body = block();
    --inside_.for_loops;
    statement->end = current_.place;
    expect(TokenKind::Next, 1020);
    return statement;
}

std::optional<const Expression*> Parser::loop_condition(bool& until) {
    if (current_.ends_statement())
        return std::nullopt;
    until = at(TokenKind::Until);
    if (!until && !at(TokenKind::While)) {
        if (on_one_line_ && (at(TokenKind::Else) || at(TokenKind::EndWord)))
            return std::nullopt;
        fail(1028);
    }
    take();
    return expression();
}

const Statement* Parser::do_statement() {
    const Level level(*this);
    auto* statement = unit_.make<LoopStatement>(Statement::Kind::Loop, take().place);
    const auto at_head = loop_condition(statement->until);
    end_of_statement();
    ++inside_.do_loops;
    statement->body = block();
    --inside_.do_loops;
    statement->end = current_.place;
    expect(TokenKind::Loop, 1019);
    if (at_head) {
        statement->condition = *at_head;
    } else if (const auto at_end = loop_condition(statement->until)) {
        statement->condition = *at_end;
        statement->tested_at_end = true;
    }
    return statement;
}

const Statement* Parser::while_statement() {
    const Level level(*this);
    auto* statement = unit_.make<LoopStatement>(Statement::Kind::Loop, take().place);
    statement->is_do = false;
    statement->condition = expression();
    end_of_statement();
    statement->body = block();
    statement->end = current_.place;
    expect(TokenKind::Wend, 1018);
    return statement;
}

const Statement* Parser::exit_statement() {
    auto* statement = unit_.make<ExitStatement>(Statement::Kind::Exit, take().place);
    bool valid = false;
    if (at(TokenKind::Do)) {
        valid = inside_.do_loops > 0;
        statement->what = ExitKind::Do;
    } else if (at(TokenKind::For)) {
        valid = inside_.for_loops > 0;
        statement->what = ExitKind::For;
    } else if (at(TokenKind::Sub) || at(TokenKind::Function)) {
        const ProcedureKind kind = at(TokenKind::Sub) ? ProcedureKind::Sub : ProcedureKind::Function;
        valid = procedure_ && procedure_->kind == kind;
        statement->what = ExitKind::Procedure;
    } else if (at_word("property")) {
        valid = procedure_ && procedure_->is_property();
        statement->what = ExitKind::Procedure;
    }
    if (!valid)
        fail(1039);
    take();
    return statement;
}

// --- Others ----------------------------------------------------------------------------------------

const Statement* Parser::with_statement() {
    const Level level(*this);
    auto* statement = unit_.make<WithStatement>(Statement::Kind::With, take().place);
    statement->object = expression();
    end_of_statement();
    ++inside_.withs;
    statement->body = block();
    --inside_.withs;
    expect_end(TokenKind::With, 1029);
    return statement;
}

const Statement* Parser::redim_statement() {
    auto* statement = unit_.make<ReDimStatement>(Statement::Kind::ReDim, take().place);
    statement->preserve = accept(TokenKind::Preserve);
    std::vector<ReDimItem> items;
    do {
        const Token name = expect_name();
        expect(TokenKind::OpenBracket, 1005);
        std::vector<const Expression*> bounds;
        do
            bounds.push_back(expression());
        while (accept(TokenKind::Comma));
        expect(TokenKind::CloseBracket, 1006);
        items.push_back({name.text, name.place, unit_.list(bounds)});
    } while (accept(TokenKind::Comma));
    statement->items = unit_.list(items);
    return statement;
}

const Statement* Parser::erase_statement() {
    auto* statement = unit_.make<EraseStatement>(Statement::Kind::Erase, take().place);
    std::vector<const Expression*> arrays;
    do {
        if (!at(TokenKind::Name))
            fail(1010);
        arrays.push_back(primary());
    } while (accept(TokenKind::Comma));
    statement->arrays = unit_.list(arrays);
    return statement;
}

const Statement* Parser::on_error_statement() {
    auto* statement = unit_.make<OnErrorStatement>(Statement::Kind::OnError, take().place);
    if (!at_word("error"))
        fail(1002);
    take();
    if (accept(TokenKind::Resume)) {
        expect(TokenKind::Next, 1020);
        statement->resume_next = true;
        return statement;
    }
    expect(TokenKind::GoTo, 1002);
    if (!at(TokenKind::Value) || !identical(current_.value, Variant(std::int16_t{0})))
        fail(1002);
    take();
    return statement;
}

// --- Entrances -------------------------------------------------------------------------------------

std::unique_ptr<Unit> parse(const Source& source, bool is_inner) {
    auto unit = std::make_unique<Unit>();
    unit->is_inner = is_inner;
    Parser(source, *unit).parse_unit();
    return unit;
}

std::unique_ptr<Unit> parse_expression(const Source& source) {
    auto unit = std::make_unique<Unit>();
    unit->is_inner = true;
    Parser(source, *unit).parse_single_expression();
    return unit;
}

} // namespace tabrixdb::vbscript
