#include "automation/array.h"
#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

// CInt and its like, and the questions about a value's type.
namespace tabrixdb::vbscript {

namespace {

template <Type To>
Variant convert_to(Arguments arguments) {
    return convert(*arguments[0], To);
}

// What an object's default member says, as IsNull(rs("x")) expects. An object that has none, or whose
// default asks for arguments, stands for itself.
Variant peek(const Variant& argument) {
    if (!argument.is_object() || !argument.object())
        return argument;
    try {
        return value_of(argument);
    } catch (const Error&) {
        return argument;
    }
}

Variant is_array_value(Arguments arguments) {
    const Variant value = peek(*arguments[0]);
    return value.is_array() || value.is_byte_array();
}

Variant is_date_value(Arguments arguments) {
    const Variant value = peek(*arguments[0]);
    return !value.is_object() && is_date(value);
}

Variant is_empty_value(Arguments arguments) {
    return peek(*arguments[0]).is_empty();
}

Variant is_null_value(Arguments arguments) {
    return peek(*arguments[0]).is_null();
}

Variant is_numeric_value(Arguments arguments) {
    const Variant value = peek(*arguments[0]);
    return !value.is_object() && is_numeric(value);
}

Variant is_object_value(Arguments arguments) {
    return arguments[0]->is_object();
}

Variant type_name(Arguments arguments) {
    const Variant& value = *arguments[0];
    switch (value.type()) {
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
    case Type::Object:
        return value.object() ? Variant(value.object()->type_name()) : Variant("Nothing");
    case Type::Error:
        return "Error";
    case Type::Boolean:
        return "Boolean";
    case Type::Byte:
        return "Byte";
    case Type::ByteArray:
        return "Byte()";
    default:
        return "Variant()";
    }
}

Variant var_type(Arguments arguments) {
    return static_cast<std::int16_t>(peek(*arguments[0]).type());
}

constexpr LibraryFunction kFunctions[] = {
    {"CBool", 1, 1, convert_to<Type::Boolean>},
    {"CByte", 1, 1, convert_to<Type::Byte>},
    {"CInt", 1, 1, convert_to<Type::Integer>},
    {"CLng", 1, 1, convert_to<Type::Long>},
    {"CSng", 1, 1, convert_to<Type::Single>},
    {"CDbl", 1, 1, convert_to<Type::Double>},
    {"CCur", 1, 1, convert_to<Type::Currency>},
    {"CDate", 1, 1, convert_to<Type::Date>},
    {"CStr", 1, 1, convert_to<Type::String>},
    {"IsArray", 1, 1, is_array_value},
    {"IsDate", 1, 1, is_date_value},
    {"IsEmpty", 1, 1, is_empty_value},
    {"IsNull", 1, 1, is_null_value},
    {"IsNumeric", 1, 1, is_numeric_value},
    {"IsObject", 1, 1, is_object_value},
    {"TypeName", 1, 1, type_name},
    {"VarType", 1, 1, var_type},
};

} // namespace

std::span<const LibraryFunction> conversion_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
