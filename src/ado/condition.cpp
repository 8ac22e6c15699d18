#include "ado/query.h"
#include "ado/values.h"
#include "automation/conversions.h"
#include "automation/text.h"

#include <algorithm>

namespace tabrixdb::ado {

namespace {

namespace type = platform::data_type;
using platform::TypeClass;
using Match = BoundClause::Match;

[[noreturn]] void fail(std::string_view detail) {
    throw error(Code::InvalidArgument, kRecordsetSource, detail);
}

bool is_wildcard(char c) {
    return c == '*' || c == '%';
}

// Takes the wildcards from a pattern; says what they ask for.
Match take_wildcards(std::string& pattern) {
    const bool at_start = !pattern.empty() && is_wildcard(pattern.front());
    const bool at_end = pattern.size() > (at_start ? 1u : 0u) && is_wildcard(pattern.back());
    if (at_end)
        pattern.pop_back();
    if (at_start)
        pattern.erase(0, 1);
    if (pattern.find_first_of("*%") != std::string::npos || (at_start && !at_end && !pattern.empty()))
        fail("Filter: a wildcard of LIKE stands at the end, or at both ends.");
    return at_start ? Match::Anywhere : at_end ? Match::Start : Match::Whole;
}

bool is_text(const ColumnInfo& column) {
    return platform::type_class(column.column.type) == TypeClass::Text &&
           column.column.type != type::kBoolean;
}

Variant literal_value(const Literal& literal, const ColumnInfo& column) {
    if (platform::type_class(column.column.type) == TypeClass::Date) {
        if (const auto days = parse_date(literal.text))
            return Variant::date(*days);
    } else if (literal.kind == Literal::Kind::Number ||
               platform::type_class(column.column.type) == TypeClass::Number) {
        if (const auto number = parse_number(literal.text))
            return Variant(*number);
    }
    return Variant(literal.text);
}

// A number keeps its fraction also beside a whole-number column: `a > 2.5` is no `a > 2`.
OwnedCell number_cell(const Literal& literal, const ColumnInfo& column) {
    const auto number = parse_number(literal.text);
    if (!number)
        fail("Filter: \"" + literal.text + "\" is no number, as field " + column.column.name + " is.");
    if (*number == static_cast<double>(static_cast<std::int64_t>(std::clamp(*number, -9e18, 9e18)))) {
        // Exact where a Double is not.
        try {
            return OwnedCell(Cell::integer(to_longlong(Variant(literal.text))));
        } catch (const Error&) {
            return OwnedCell(Cell::of_real(Cell::Kind::Real, *number));
        }
    }
    return OwnedCell(Cell::of_real(Cell::Kind::Real, *number));
}

OwnedCell value_cell(const Literal& literal, const ColumnInfo& column) {
    if (platform::type_class(column.column.type) == TypeClass::Number)
        return number_cell(literal, column);
    if (is_text(column))
        return OwnedCell(Cell::text(literal.text));
    try {
        const OwnedCell cell = from_variant(literal_value(literal, column), column);
        if (!cell.get().is_null())
            return cell;
    } catch (const Error&) {
    }
    fail("Filter: \"" + literal.text + "\" is no value for field " + column.column.name + ".");
}

BoundClause bind_clause(const Clause& clause, const std::vector<ColumnInfo>& columns) {
    const auto column = find_column(columns, clause.name);
    if (!column)
        fail("Filter: there is no field " + clause.name + ".");
    const ColumnInfo& info = columns[*column];
    if (info.column.type == type::kBinary || info.column.type == type::kVarBinary ||
        info.column.type == type::kLongVarBinary)
        fail("Filter: field " + info.column.name + " holds binary data, which cannot be compared.");
    BoundClause bound{*column, clause.op, Match::Whole, {}};
    Literal literal = clause.value;
    if (clause.op == Operator::Like) {
        if (!is_text(info) && info.column.type != type::kBoolean)
            fail("Filter: LIKE is for text, which field " + info.column.name + " is not.");
        if (is_text(info))
            bound.match = take_wildcards(literal.text);
        if (bound.match == Match::Whole)
            bound.op = Operator::Equal;
    }
    bound.value = value_cell(literal, info);
    return bound;
}

bool holds(Operator op, std::weak_ordering order) {
    switch (op) {
    case Operator::NotEqual:
        return order != 0;
    case Operator::Less:
        return order < 0;
    case Operator::LessOrEqual:
        return order <= 0;
    case Operator::Greater:
        return order > 0;
    case Operator::GreaterOrEqual:
        return order >= 0;
    default:
        return order == 0;
    }
}

bool matches(std::string_view text, std::string_view wanted, Match match) {
    return match == Match::Anywhere ? contains_ignore_case(text, wanted)
                                    : equal_ignore_case(text.substr(0, wanted.size()), wanted);
}

} // namespace

std::optional<std::size_t> find_column(const std::vector<ColumnInfo>& columns,
                                       std::string_view name) noexcept {
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (equal_ignore_case(columns[i].column.name, name))
            return i;
    return std::nullopt;
}

Condition bind_filter(const FilterExpression& filter, const std::vector<ColumnInfo>& columns) {
    Condition condition;
    for (const auto& clauses : filter.alternatives) {
        auto& bound = condition.alternatives.emplace_back();
        for (const Clause& clause : clauses)
            bound.push_back(bind_clause(clause, columns));
    }
    return condition;
}

SortOrder bind_sort(const std::vector<SortTerm>& terms, const std::vector<ColumnInfo>& columns) {
    SortOrder order;
    for (const SortTerm& term : terms) {
        const auto column = find_column(columns, term.name);
        if (!column)
            throw error(Code::ItemNotFound, kRecordsetSource, "Sort: there is no field " + term.name + ".");
        order.push_back({*column, term.descending});
    }
    return order;
}

bool meets(const BoundClause& clause, const ColumnInfo& column, const Cell& cell) noexcept {
    if (cell.is_null())
        return false;
    const Cell wanted = clause.value.get();
    if (wanted.kind != Cell::Kind::Text || cell.kind == Cell::Kind::Text || column.declared)
        return clause.op == Operator::Like
                   ? cell.kind == Cell::Kind::Text && matches(cell.view(), wanted.view(), clause.match)
                   : holds(clause.op, compare(cell, wanted));
    // An expression's value may be a number where text is asked for.
    std::string text;
    append_text(text, cell, column.column.type);
    return clause.op == Operator::Like ? matches(text, wanted.view(), clause.match)
                                       : holds(clause.op, compare(Cell::text(text), wanted));
}

} // namespace tabrixdb::ado
