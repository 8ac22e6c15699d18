#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

#include <limits>

// The ...B functions: a text as the bytes of its UTF-16 form, a byte string as it is.
namespace tabrixdb::vbscript {

namespace {

class BytesArgument {
public:
    explicit BytesArgument(const Variant& argument) : value_(argument) {
        if (value_->is_null())
            return;
        text_ = to_text(*value_);
        if (!text_.is_bytes() && text_.units() > kMaxTextBytes / 2)
            throw Error(14);
        if (!text_.is_bytes())
            encoded_ = to_utf16(text_.view());
    }

    bool is_null() const { return value_->is_null(); }

    std::string_view view() const {
        if (is_null())
            throw Error(kErrorNull);
        return text_.is_bytes() ? text_.view() : encoded_;
    }

    // A part of the bytes; of a text it is text again when it holds whole units.
    Variant part(std::size_t start, std::size_t count) const {
        if (start >= view().size())
            return text_.is_bytes() ? Text::bytes({}) : Text();
        const std::string_view bytes = view().substr(start, count);
        if (text_.is_bytes() || bytes.size() % 2 != 0)
            return Text::bytes(bytes);
        std::string decoded;
        append_utf16(decoded, bytes);
        return decoded;
    }

private:
    Value value_;
    Text text_;
    std::string encoded_;
};

Variant len_b(Arguments arguments) {
    const Value value(*arguments[0]);
    if (value->is_null())
        return Variant::null();
    const Text text = to_text(*value);
    const std::size_t size = text.is_bytes() ? text.size() : text.units() * 2;
    return static_cast<std::int32_t>(size); // a text has at most kMaxTextBytes, so this holds it
}

Variant left_b(Arguments arguments) {
    const BytesArgument bytes(*arguments[0]);
    return bytes.is_null() ? Variant::null() : bytes.part(0, count_argument(*arguments[1], 0));
}

Variant right_b(Arguments arguments) {
    const BytesArgument bytes(*arguments[0]);
    if (bytes.is_null())
        return Variant::null();
    const std::size_t count = std::min(count_argument(*arguments[1], 0), bytes.view().size());
    return bytes.part(bytes.view().size() - count, count);
}

Variant mid_b(Arguments arguments) {
    const BytesArgument bytes(*arguments[0]);
    if (bytes.is_null())
        return Variant::null();
    const std::size_t start = count_argument(*arguments[1], 1);
    const std::size_t count =
        given(arguments, 2) ? count_argument(*arguments[2], 0) : std::numeric_limits<std::size_t>::max();
    return bytes.part(start - 1, count);
}

Variant in_str_b(Arguments arguments) {
    const bool has_start = arguments.size() > 2;
    const std::size_t start = has_start && given(arguments, 0) ? count_argument(*arguments[0], 1) : 1;
    const BytesArgument text(*arguments[has_start]), wanted(*arguments[has_start + 1U]);
    if (text.is_null() || wanted.is_null())
        return Variant::null();
    if (text.view().empty() || start > text.view().size())
        return std::int32_t{0};
    const std::size_t found = text.view().find(wanted.view(), start - 1);
    return static_cast<std::int32_t>(found == std::string_view::npos ? 0 : found + 1);
}

Variant asc_b(Arguments arguments) {
    const BytesArgument bytes(*arguments[0]);
    if (bytes.view().empty())
        throw Error(kErrorCall);
    return static_cast<std::int16_t>(static_cast<unsigned char>(bytes.view()[0]));
}

Variant chr_b(Arguments arguments) {
    const std::int32_t code = to_long(*arguments[0]);
    if (code < 0 || code > 255)
        throw Error(kErrorCall);
    const auto byte = static_cast<char>(code);
    return Text::bytes({&byte, 1});
}

constexpr LibraryFunction kFunctions[] = {
    {"LenB", 1, 1, len_b}, {"LeftB", 2, 2, left_b},    {"RightB", 2, 2, right_b}, {"MidB", 2, 3, mid_b},
    {"AscB", 1, 1, asc_b}, {"InStrB", 2, 4, in_str_b}, {"ChrB", 1, 1, chr_b},
};

} // namespace

std::span<const LibraryFunction> byte_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
