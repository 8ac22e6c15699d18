#pragma once

#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/object.h"

#include <cstdint>
#include <string>

// How the functions of the library read their arguments.
namespace tabrixdb::vbscript {

inline bool given(Arguments arguments, std::size_t index) {
    return index < arguments.size() && !arguments[index]->is_missing();
}

// An argument as a value: an object's default member, others without a copy.
class Value {
public:
    explicit Value(const Variant& argument) : value_(&argument) {
        if (argument.is_object()) {
            held_ = value_of(argument);
            value_ = &held_;
        }
    }

    explicit Value(Variant&&) = delete; // it is not kept
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    const Variant& operator*() const { return *value_; }

    const Variant* operator->() const { return value_; }

private:
    Variant held_;
    const Variant* value_;
};

// An argument as text: strings without a copy, byte strings as the UTF-16 text that they are. Null raises
// Error 94 when the text is asked for.
class TextArgument {
public:
    explicit TextArgument(const Variant& argument) : value_(argument) {
        if (value_->is_null() || (value_->is_string() && !value_->text().is_bytes()))
            return;
        held_ = to_text(*value_);
        if (held_.is_bytes()) {
            std::string decoded;
            append_utf16(decoded, held_.view());
            held_ = Text(decoded);
        }
        use_held_ = true;
    }

    explicit TextArgument(Variant&&) = delete; // it is not kept

    bool is_null() const { return value_->is_null(); }

    const Text& operator*() const {
        if (is_null())
            throw Error(kErrorNull);
        return use_held_ ? held_ : value_->text();
    }

    const Text* operator->() const { return &**this; }

private:
    Value value_;
    Text held_;
    bool use_held_ = false;
};

inline const Variant& argument_or(Arguments arguments, std::size_t index, const Variant& otherwise) {
    return given(arguments, index) ? *arguments[index] : otherwise;
}

inline std::int32_t long_or(Arguments arguments, std::size_t index, std::int32_t otherwise) {
    return given(arguments, index) ? to_long(*arguments[index]) : otherwise;
}

// vbBinaryCompare or vbTextCompare; true for the latter.
inline bool ignore_case_argument(Arguments arguments, std::size_t index) {
    const std::int32_t compare = long_or(arguments, index, 0);
    if (compare != 0 && compare != 1)
        throw Error(kErrorCall);
    return compare == 1;
}

// A count or position, none less than `least` (Error 5).
inline std::size_t count_argument(const Variant& argument, std::int32_t least) {
    const std::int32_t count = to_long(argument);
    if (count < least)
        throw Error(kErrorCall);
    return static_cast<std::size_t>(count);
}

// vbSunday (1, the default) to vbSaturday (7); 0 is the Locale's own first day.
inline int first_weekday_argument(Arguments arguments, std::size_t index) {
    const std::int32_t first = long_or(arguments, index, 1);
    if (first < 0 || first > 7)
        throw Error(kErrorCall);
    return first == 0 ? Locale::current().first_weekday : first;
}

// Appends to a result that may not pass the largest text (Error 14).
inline void append_bounded(std::string& out, std::string_view more) {
    if (more.size() > kMaxTextBytes - out.size())
        throw Error(14);
    out.append(more);
}

} // namespace tabrixdb::vbscript
