#pragma once

#include "engine/pro.h"
#include "template/held_values.h"

#include <string>
#include <string_view>

namespace tabrixdb {

inline constexpr std::string_view kEvaluationTag = "#~eval:";
inline constexpr std::string_view kEvaluationEnd = ":eval~#";

// Replaces the first evaluation tag of a text ("#~eval:" expression ":eval~#"), and every repetition of it,
// by the expression's value as text. A second expression stays as it is written. `held`: the values in the
// text, which reach the expression as bound_code.h says; what it gives is held there, too. Failures are
// reported as "Parse_Eval".
void parse_evaluation(Pro& pro, std::string& text, HeldValues& held);

} // namespace tabrixdb
