#pragma once

#include "automation/variant.h"
#include "template/held_values.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// Code that the page wrote around values of a record, in a form in which the values are no code.
struct BoundCode {
    std::string text;
    std::vector<Variant> values;
};

// A query or an expression of VBScript with held values in it. Each text between quotes that has one becomes
// a parameter ("?"), or in an expression the variable of the next number (ScriptControl::kValueName), whose
// value is the whole text, so that any value arrives as it is. A value that the source's query has made, in
// which every quote is doubled, was prepared for that place: its pairs count once. Between "#" a value must
// be a date. Elsewhere it is put in as it stands, and must be a number, a date, True, False or nothing; in a
// query also numbers with commas between. In comments values are left out.
//
// Error 5, which names the column and TrustValues, for any other value.
BoundCode bind_query(std::string_view marked, const HeldValues& values);
BoundCode bind_expression(std::string_view marked, const HeldValues& values);

} // namespace tabrixdb
