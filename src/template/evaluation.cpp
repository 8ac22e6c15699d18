#include "template/evaluation.h"

#include "automation/conversions.h"
#include "automation/text.h"
#include "engine/fill_tag.h"
#include "engine/report.h"
#include "template/bound_code.h"
#include "template/positions.h"

namespace tabrixdb {

namespace {

platform::ScriptControl& script_of(Pro& pro) {
    if (!pro.script)
        pro.script = platform::Host::current().create_script_control();
    return *pro.script;
}

// The text of the first evaluation tag at or after `from`, and its place; empty when there is none.
std::string_view tag_in(std::string_view text, std::size_t from) {
    const std::size_t start = find_ignore_case(text, kEvaluationTag, from);
    const std::size_t end = start == kNotFound ? kNotFound : find_ignore_case(text, kEvaluationEnd, start);
    return end == kNotFound ? std::string_view() : text.substr(start, end + kEvaluationEnd.size() - start);
}

// With the values in it.
std::string released(std::string_view text, const HeldValues& held) {
    std::string out(text);
    held.release(out);
    return out;
}

// Whether a value in a text could have brought a tag or a call of a button: beside it none is the page's.
bool brings_signs(std::string_view text, const HeldValues& held) {
    for (std::size_t at = 0; (at = text.find(SlottedText::kMark, at)) != kNotFound; ++at)
        if (const auto mark = SlottedText::mark_at(text, at); mark && held.has(mark->slot)) {
            if (HeldValues::has_signs(held.at(mark->slot).text))
                return true;
            at = mark->end - 1;
        }
    return false;
}

struct Result {
    Variant value;
    std::string code; // whose tags in the result are the page's
};

Result evaluate(Pro& pro, std::string_view expression, const HeldValues& held) {
    platform::ScriptControl& script = script_of(pro);
    if (held.trusted())
        return {value_of(script.eval(expression)), {}};
    const BoundCode bound = bind_expression(expression, held);
    const Variant value =
        value_of(bound.values.empty() ? script.eval(bound.text) : script.eval_with(bound.text, bound.values));
    return {value, brings_signs(expression, held) ? std::string() : std::string(expression) + script.code()};
}

// Replaces the evaluation tags that are the same, with their values, as `tag` is.
void fill_repetitions(std::string& text, const std::string& tag, std::string_view result,
                      const HeldValues& held) {
    const std::string wanted = released(tag, held);
    std::size_t at = 0;
    for (std::string_view other; !(other = tag_in(text, at)).empty();) {
        at = static_cast<std::size_t>(other.data() - text.data());
        const std::size_t size = other.size();
        if (equal_ignore_case(released(other, held), wanted)) {
            text.replace(at, size, result);
            at += result.size();
        } else {
            at += size;
        }
        if (text.size() > kMaxFilledBytes)
            throw Error(14);
    }
}

} // namespace

void parse_evaluation(Pro& pro, std::string& text, HeldValues& held) {
    guard("Parse_Eval", [&] {
        const std::size_t from = find_short(text, kEvaluationTag);
        const std::size_t to = from == kNotFound ? kNotFound : find_short(text, kEvaluationEnd, from);
        if (to == kNotFound)
            return;
        const std::string tag = text.substr(from, to + kEvaluationEnd.size() - from);
        const std::string expression =
            tag.substr(kEvaluationTag.size(), tag.size() - kEvaluationTag.size() - kEvaluationEnd.size());
        const auto [value, code] = evaluate(pro, expression, held);
        const std::string result = value.is_null() ? std::string() : to_text(value).str();
        if (held.trusted())
            fill_tag(text, tag, result);
        else
            fill_repetitions(text, tag, held.hold_result(result, code), held);
    });
}

} // namespace tabrixdb
