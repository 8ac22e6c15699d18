#include "ado/expression.h"

#include "ado/errors.h"
#include "automation/text.h"

#include <algorithm>
#include <utility>

namespace tabrixdb::ado {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\f\v";

class FilterParser {
public:
    explicit FilterParser(std::string_view text) : text_(text) {
        if (text.size() > kMaxExpressionBytes)
            fail("The filter is too long.");
    }

    FilterExpression filter() {
        FilterExpression result;
        skip_blanks();
        if (at_ == text_.size())
            return result;
        result = alternatives(0);
        expect_end();
        return result;
    }

    Clause criterion() {
        Clause result = clause();
        expect_end();
        return result;
    }

private:
    FilterExpression alternatives(int depth) {
        FilterExpression result;
        do {
            FilterExpression term = conjunction(depth);
            for (auto& alternative : term.alternatives)
                result.alternatives.push_back(std::move(alternative));
        } while (take_word("OR"));
        return result;
    }

    FilterExpression conjunction(int depth) {
        FilterExpression result = factor(depth);
        while (take_word("AND")) {
            FilterExpression next = factor(depth);
            if (result.alternatives.size() > 1 || next.alternatives.size() > 1)
                fail("Clauses joined by OR in brackets cannot be joined to another clause by AND: write "
                     "(a AND c) OR (b AND c).");
            auto& clauses = result.alternatives.front();
            for (auto& one : next.alternatives.front())
                clauses.push_back(std::move(one));
        }
        return result;
    }

    FilterExpression factor(int depth) {
        skip_blanks();
        if (!take_sign('(')) {
            FilterExpression single;
            single.alternatives.emplace_back().push_back(clause());
            return single;
        }
        if (depth == kMaxBracketDepth)
            fail("The filter nests brackets too deep.");
        FilterExpression group = alternatives(depth + 1);
        skip_blanks();
        if (!take_sign(')'))
            fail_here("\")\" was expected");
        return group;
    }

    Clause clause() {
        if (++clauses_ > kMaxClauses)
            fail("The filter has too many clauses.");
        Clause result;
        result.name = name();
        result.op = comparison();
        result.value = literal();
        return result;
    }

    std::string name() {
        skip_blanks();
        if (take_sign('[')) {
            const std::size_t end = text_.find(']', at_);
            if (end == std::string_view::npos)
                fail_here("\"]\" was expected");
            std::string result(text_.substr(at_, end - at_));
            at_ = end + 1;
            return result;
        }
        const std::string_view word = take_until(" \t\r\n\f\v<>=()[]'#,");
        if (word.empty())
            fail_here("a field name was expected");
        return std::string(word);
    }

    Operator comparison() {
        skip_blanks();
        static constexpr std::pair<std::string_view, Operator> kSigns[] = {
            {"<=", Operator::LessOrEqual}, {">=", Operator::GreaterOrEqual}, {"<>", Operator::NotEqual},
            {"<", Operator::Less},         {">", Operator::Greater},         {"=", Operator::Equal}};
        for (const auto& [sign, op] : kSigns)
            if (text_.substr(at_).starts_with(sign)) {
                at_ += sign.size();
                return op;
            }
        if (take_word("LIKE"))
            return Operator::Like;
        fail_here("an operator (=, <>, <, <=, >, >= or LIKE) was expected");
    }

    Literal literal() {
        skip_blanks();
        if (at_ == text_.size())
            fail_here("a value was expected");
        if (text_[at_] == '\'')
            return {Literal::Kind::Text, quoted('\'')};
        if (text_[at_] == '#')
            return {Literal::Kind::Date, quoted('#')};
        const std::string_view word = take_until(" \t\r\n\f\v()[]'#");
        if (word.empty())
            fail_here("a value was expected");
        if (equal_ignore_case(word, "NULL"))
            fail_here("Null cannot be compared with; a value was expected");
        return {Literal::Kind::Number, std::string(word)};
    }

    std::string quoted(char sign) {
        std::string result;
        for (++at_; at_ < text_.size(); ++at_) {
            if (text_[at_] == sign) {
                ++at_;
                const bool doubled = sign == '\'' && at_ < text_.size() && text_[at_] == sign;
                if (!doubled)
                    return result;
            }
            result.push_back(text_[at_]);
        }
        fail_here(std::string("a closing ") + sign + " was expected");
    }

    void skip_blanks() { at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size()); }

    bool take_sign(char sign) {
        if (at_ == text_.size() || text_[at_] != sign)
            return false;
        ++at_;
        return true;
    }

    std::string_view take_until(std::string_view ends) {
        const std::size_t end = std::min(text_.find_first_of(ends, at_), text_.size());
        return text_.substr(std::exchange(at_, end), end - at_);
    }

    // A word stands by itself: "ORDERS" does not begin with OR.
    bool take_word(std::string_view word) {
        skip_blanks();
        if (!equal_ignore_case(text_.substr(at_, word.size()), word))
            return false;
        const std::size_t end = at_ + word.size();
        if (end < text_.size() &&
            std::string_view(" \t\r\n\f\v('[#").find(text_[end]) == std::string_view::npos)
            return false;
        at_ = end;
        return true;
    }

    void expect_end() {
        skip_blanks();
        if (at_ != text_.size())
            fail_here("AND, OR or the end was expected");
    }

    [[noreturn]] void fail_here(std::string_view what) const {
        fail("Filter, character " + std::to_string(utf16_length(text_.substr(0, at_)) + 1) + ": " +
             std::string(what) + ".");
    }

    [[noreturn]] static void fail(std::string_view detail) {
        throw error(Code::InvalidArgument, kRecordsetSource, detail);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t clauses_ = 0;
};

// Takes a trailing ASC or DESC from `item`; whether it was there and was DESC.
bool take_direction(std::string_view& item) {
    const std::size_t blank = item.find_last_of(kBlanks);
    const std::size_t bracket = item.rfind(']');
    const std::size_t before = bracket != std::string_view::npos ? bracket : blank;
    if (before == std::string_view::npos)
        return false;
    const std::string_view word = trimmed(item.substr(before + 1), kBlanks);
    const bool descending = equal_ignore_case(word, "DESC");
    if (descending || equal_ignore_case(word, "ASC"))
        item = trimmed(item.substr(0, before + 1), kBlanks);
    return descending;
}

[[noreturn]] void fail_sort(std::string_view detail) {
    throw error(Code::InvalidArgument, kRecordsetSource, detail);
}

// The end of the item that starts at `at`: the next comma outside brackets.
std::size_t item_end(std::string_view text, std::size_t at) {
    for (bool bracketed = false; at < text.size(); ++at) {
        if (text[at] == '[')
            bracketed = true;
        else if (text[at] == ']')
            bracketed = false;
        else if (text[at] == ',' && !bracketed)
            break;
    }
    return at;
}

} // namespace

FilterExpression parse_filter(std::string_view text) {
    return FilterParser(text).filter();
}

Clause parse_criterion(std::string_view text) {
    return FilterParser(text).criterion();
}

std::vector<SortTerm> parse_sort(std::string_view text) {
    if (text.size() > kMaxExpressionBytes)
        fail_sort("The sort order is too long.");
    std::vector<SortTerm> terms;
    if (trimmed(text, kBlanks).empty())
        return terms;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = item_end(text, at);
        std::string_view item = trimmed(text.substr(at, end - at), kBlanks);
        const bool descending = take_direction(item);
        if (item.starts_with('[') && item.ends_with(']'))
            item = item.substr(1, item.size() - 2);
        if (item.empty())
            fail_sort("The sort order names no field between two commas or at its end.");
        if (terms.size() == kMaxSortKeys)
            fail_sort("The sort order has too many fields.");
        terms.push_back({std::string(item), descending});
        at = end + 1;
    }
    return terms;
}

} // namespace tabrixdb::ado
