#pragma once

#include "engine/pro.h"

#include <string>
#include <string_view>

namespace tabrixdb {

inline constexpr std::string_view kEvaluationTag = "#~eval:";

// Replaces the first evaluation tag of a text ("#~eval:" expression ":eval~#"), and every repetition of it,
// by the expression's value as text. A second expression stays as it is written. Failures are reported as
// "Parse_Eval".
void parse_evaluation(Pro& pro, std::string& text);

} // namespace tabrixdb
