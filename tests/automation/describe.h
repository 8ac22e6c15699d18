#pragma once

#include "automation/array.h"
#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/variant.h"

#include <string>

namespace tabrixdb::testing {

inline std::string type_name(Type type) {
    switch (type) {
    case Type::Empty:
        return "Empty";
    case Type::Null:
        return "Null";
    case Type::Integer:
        return "Integer";
    case Type::Long:
        return "Long";
    case Type::LongLong:
        return "LongLong";
    case Type::Single:
        return "Single";
    case Type::Double:
        return "Double";
    case Type::Currency:
        return "Currency";
    case Type::Date:
        return "Date";
    case Type::String:
        return "String";
    case Type::Boolean:
        return "Boolean";
    case Type::Byte:
        return "Byte";
    case Type::Object:
        return "Object";
    case Type::Error:
        return "Error";
    case Type::ByteArray:
        return "Bytes";
    default:
        return "Array";
    }
}

// "Integer 5", "String abc", "Null", "Array(Integer 1, Empty)": type and value in one comparable text.
inline std::string describe(const Variant& value) {
    std::string out = type_name(value.type());
    if (value.is_empty() || value.is_null() || value.is_missing())
        return value.is_missing() ? "Missing" : out;
    if (value.is_object())
        return value.object() ? out + " " + std::string(value.object()->type_name()) : "Nothing";
    if (value.is_array()) {
        out += '(';
        for (std::size_t i = 0; i < value.array()->size(); ++i)
            out += (i ? ", " : "") + describe(value.array()->elements()[i]);
        return out + ')';
    }
    if ((value.is_string() || value.is_byte_array()) && value.text().is_bytes()) {
        out += " b\"";
        for (const char c : value.text().view())
            out += "0123456789ABCDEF"[(c >> 4) & 15], out += "0123456789ABCDEF"[c & 15];
        return out + '"';
    }
    out += ' ';
    append_text(out, value);
    return out;
}

// What `function` gives, described, or "Error 13" for what it raises.
template <class Function>
std::string outcome(Function function) {
    try {
        return describe(function());
    } catch (const Error& error) {
        return "Error " + std::to_string(error.number());
    }
}

} // namespace tabrixdb::testing
