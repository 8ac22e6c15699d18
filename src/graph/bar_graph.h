#pragma once

#include "field/db_field.h"

#include <string>
#include <string_view>

namespace tabrixdb {

// What a column shows in the current record.
struct GraphedValue {
    std::string_view name; // of the column
    Variant value;
    std::string shown; // the value as it is displayed
};

// Replaces the graph tags of one column in a content by horizontal bars: "#~name;graph~#", or with settings
// "#~name;graph;width=200;height=12;color=#3366cc;label=none~#". A bar is as wide as the value stands between
// the field's Min and Max; Null has none. Failures are reported as "Get Graph From Content", "Get BarGraph"
// (a setting that is not known or out of range) and "CalculateWidth" (a value that is no number).
void fill_bar_graphs(std::string& text, const DbField& field, const GraphedValue& value);

// The width in pixels of the bar of a value that reaches from `min` (1) to `max` (`full`). A value beyond
// them is taken for the nearer one; when they are equal, any value is the greatest. Error 13 for no number.
int bar_width(const Variant& value, double min, double max, int full);

} // namespace tabrixdb
