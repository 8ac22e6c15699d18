#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::ado {

// The texts of Recordset.Filter, Recordset.Find and Recordset.Sort, parsed. Names are not looked up here.
// Each parser raises Error 3001 with a text that says what it expected and where.

// Bounds of what a form may post: far above any real expression, far below what would hurt the database.
inline constexpr std::size_t kMaxExpressionBytes = 65536;
inline constexpr std::size_t kMaxClauses = 256;
inline constexpr int kMaxBracketDepth = 32;
inline constexpr std::size_t kMaxSortKeys = 32;

enum class Operator : std::uint8_t { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual, Like };

struct Literal {
    enum class Kind : std::uint8_t { Text, Number, Date };
    Kind kind = Kind::Text;
    std::string text; // as written, without its quotes; doubled ones undone
};

// `name operator value`
struct Clause {
    std::string name;
    Operator op = Operator::Equal;
    Literal value;
};

// True when all clauses of one of the alternatives are. AND binds closer than OR.
struct FilterExpression {
    std::vector<std::vector<Clause>> alternatives;
};

struct SortTerm {
    std::string name;
    bool descending = false;
};

// Clauses joined by AND and OR, in brackets as ADO allows them: a bracket of alternatives cannot be joined to
// another clause by AND. An expression of blanks only has no alternative: no filter.
FilterExpression parse_filter(std::string_view text);
// One clause.
Clause parse_criterion(std::string_view text);
// `name [ASC|DESC], ...`; blanks only: no order.
std::vector<SortTerm> parse_sort(std::string_view text);

} // namespace tabrixdb::ado
