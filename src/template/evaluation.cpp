#include "template/evaluation.h"

#include "automation/conversions.h"
#include "engine/fill_tag.h"
#include "engine/report.h"
#include "template/positions.h"

namespace tabrixdb {

namespace {

constexpr std::string_view kEnd = ":eval~#";

platform::ScriptControl& script_of(Pro& pro) {
    if (!pro.script)
        pro.script = platform::Host::current().create_script_control();
    return *pro.script;
}

} // namespace

void parse_evaluation(Pro& pro, std::string& text) {
    guard("Parse_Eval", [&] {
        const std::size_t from = find_short(text, kEvaluationTag);
        const std::size_t to = from == kNotFound ? kNotFound : find_short(text, kEnd, from);
        if (to == kNotFound)
            return;
        const std::string tag = text.substr(from, to + kEnd.size() - from);
        const std::string expression =
            tag.substr(kEvaluationTag.size(), tag.size() - kEvaluationTag.size() - kEnd.size());
        const Variant value = value_of(script_of(pro).eval(expression));
        fill_tag(text, tag, value.is_null() ? Text() : to_text(value));
    });
}

} // namespace tabrixdb
