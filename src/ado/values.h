#pragma once

#include "ado/cell.h"
#include "ado/provider.h"
#include "automation/variant.h"

#include <compare>
#include <optional>
#include <string>

namespace tabrixdb::ado {

// Between cells and what a page sees. `type` is the column's ADO type number. A value that does not fit its
// column's type (a database may be loose about it) comes as what it is, never as an error.

Variant to_variant(const Cell& cell, std::int32_t type);

// The text that a page writes for it, Null as nothing; the same as that of the variant.
void append_text(std::string& out, const Cell& cell, std::int32_t type);

// A page's value for that column. "" means Null for a column that is not of text. Error 3421 for a value that
// cannot be one of its type.
OwnedCell from_variant(const Variant& value, const ColumnInfo& column);

// A value for a parameter of a query, as what it is: "" is a text, Empty is Null. Error 13 for an array or an
// object without a value.
OwnedCell parameter_cell(const Variant& value);
// The column type as which such a value is bound: it says that a date without a time of day is written as a
// date alone, and a time of day without a date as a time.
std::int32_t parameter_type(const Cell& value) noexcept;

// The order of two values, as Sort uses it: Null, then numbers (dates and Booleans too), then text ignoring
// case, then bytes.
std::weak_ordering compare(const Cell& a, const Cell& b) noexcept;

// The value in ten-thousandths when four decimals hold it exactly.
std::optional<std::int64_t> exact_currency(double value) noexcept;

// A date to the second, the precision in which dates are compared.
std::int64_t date_seconds(double days) noexcept;

// What Field.ActualSize says: characters of a text twice, as the platform counts its strings in bytes;
// bytes of anything else.
std::int32_t actual_size(const Cell& cell, const ColumnInfo& column) noexcept;

} // namespace tabrixdb::ado
