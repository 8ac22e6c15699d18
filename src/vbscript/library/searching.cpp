#include "automation/array.h"
#include "automation/operators.h"
#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"
#include "vbscript/library/units.h"

#include <limits>
#include <vector>

// Comparing, finding, replacing, cutting up and joining texts.
namespace tabrixdb::vbscript {

namespace {

constexpr std::size_t npos = std::string_view::npos;

std::size_t find_text(std::string_view text, std::string_view wanted, std::size_t from, bool ignore_case) {
    return ignore_case ? find_ignore_case(text, wanted, from) : text.find(wanted, from);
}

Variant position(std::size_t unit) {
    return static_cast<std::int32_t>(unit);
}

// InStr([start, ] text, wanted [, compare]): with two arguments they are the texts.
Variant in_str(Arguments arguments) {
    const bool has_start = arguments.size() > 2;
    const std::size_t start = has_start && given(arguments, 0) ? count_argument(*arguments[0], 1) : 1;
    const TextArgument text(*arguments[has_start]), wanted(*arguments[has_start + 1U]);
    const bool ignore_case = ignore_case_argument(arguments, 3);
    if (text.is_null() || wanted.is_null())
        return Variant::null();
    if (text->empty() || start > text->units())
        return position(0);
    if (wanted->empty())
        return position(start);
    const std::size_t found = find_text(text->view(), wanted->view(), byte_of(*text, start - 1), ignore_case);
    return position(found == npos ? 0 : unit_of(*text, found) + 1);
}

// InStrRev(text, wanted [, start [, compare]]): the match must end at or before `start`; -1 is the end.
Variant in_str_rev(Arguments arguments) {
    const TextArgument text(*arguments[0]), wanted(*arguments[1]);
    const std::int32_t start = long_or(arguments, 2, -1);
    const bool ignore_case = ignore_case_argument(arguments, 3);
    if (start == 0 || start < -1)
        throw Error(kErrorCall);
    if (text.is_null() || wanted.is_null())
        return Variant::null();
    const std::size_t last = start == -1 ? text->units() : static_cast<std::size_t>(start);
    if (text->empty() || last > text->units())
        return position(0);
    if (wanted->empty())
        return position(last);
    const std::string_view searched = text->view().substr(0, byte_of(*text, last));
    const std::size_t found =
        ignore_case ? rfind_ignore_case(searched, wanted->view()) : searched.rfind(wanted->view());
    return position(found == npos ? 0 : unit_of(*text, found) + 1);
}

Variant str_comp(Arguments arguments) {
    const TextArgument a(*arguments[0]), b(*arguments[1]);
    const bool ignore_case = ignore_case_argument(arguments, 2);
    if (a.is_null() || b.is_null())
        return Variant::null();
    return static_cast<std::int16_t>(compare(*a, *b, {}, ignore_case));
}

// Replace(text, wanted, with [, start [, count [, compare]]]): what stands before `start` is not in the
// result.
Variant replace(Arguments arguments) {
    const TextArgument text(*arguments[0]), wanted(*arguments[1]), with(*arguments[2]);
    const std::size_t start = given(arguments, 3) ? count_argument(*arguments[3], 1) : 1;
    const std::int32_t limit = long_or(arguments, 4, -1);
    const bool ignore_case = ignore_case_argument(arguments, 5);
    if (limit < -1)
        throw Error(kErrorCall);
    const Text tail = slice_units(*text, start - 1, npos);
    const std::string_view view = tail.view(), from = wanted->view(), to = with->view();
    std::size_t found = from.empty() || limit == 0 ? npos : find_text(view, from, 0, ignore_case);
    if (found == npos)
        return tail;
    std::string out;
    std::size_t done = 0;
    for (std::int32_t left = limit; found != npos && left != 0; --left) {
        append_bounded(out, view.substr(done, found - done));
        append_bounded(out, to);
        done = found + from.size();
        found = find_text(view, from, done, ignore_case);
    }
    append_bounded(out, view.substr(done));
    return out;
}

Variant array_of(std::vector<Variant> elements) {
    return make_ref<Array>(std::move(elements));
}

Variant split(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    const Variant blank(" ");
    const TextArgument delimiter(argument_or(arguments, 1, blank));
    std::int32_t left = long_or(arguments, 2, -1);
    const bool ignore_case = ignore_case_argument(arguments, 3);
    if (left < -1)
        throw Error(kErrorCall);
    std::vector<Variant> parts;
    const std::string_view view = text->view(), separator = delimiter->view();
    if (view.empty() || left == 0)
        return array_of({});
    std::size_t done = 0;
    if (!separator.empty()) {
        for (std::size_t found = find_text(view, separator, 0, ignore_case); found != npos && --left != 0;
             found = find_text(view, separator, done, ignore_case)) {
            if (parts.size() == Array::kMaxElements)
                throw Error(7);
            parts.emplace_back(view.substr(done, found - done));
            done = found + separator.size();
        }
    }
    parts.emplace_back(view.substr(done));
    return array_of(std::move(parts));
}

// The elements of an array of one dimension; one without any yet has none.
std::span<const Variant> list_argument(const Value& value) {
    if (value->is_null())
        throw Error(kErrorNull);
    if (!value->is_array() || value->array()->dimensions() > 1)
        throw Error(kErrorMismatch);
    return value->array()->elements();
}

Variant join(Arguments arguments) {
    const Value list(*arguments[0]);
    const Variant blank(" ");
    const TextArgument delimiter(argument_or(arguments, 1, blank));
    std::string out;
    bool first = true;
    for (const Variant& element : list_argument(list)) {
        if (!std::exchange(first, false))
            append_bounded(out, delimiter->view());
        const TextArgument text(element);
        append_bounded(out, text.is_null() ? std::string_view() : text->view());
    }
    return out;
}

Variant filter(Arguments arguments) {
    const Value list(*arguments[0]);
    const TextArgument wanted(*arguments[1]);
    const bool include = !given(arguments, 2) || to_boolean(*arguments[2]);
    const bool ignore_case = ignore_case_argument(arguments, 3);
    std::vector<Variant> kept;
    for (const Variant& element : list_argument(list)) {
        const TextArgument text(element);
        if ((find_text(text->view(), wanted->view(), 0, ignore_case) != npos) == include)
            kept.emplace_back(*text);
    }
    return array_of(std::move(kept));
}

constexpr LibraryFunction kFunctions[] = {
    {"InStr", 2, 4, in_str},    {"InStrRev", 2, 4, in_str_rev}, {"StrComp", 2, 3, str_comp},
    {"Replace", 3, 6, replace}, {"Split", 1, 4, split},         {"Join", 1, 2, join},
    {"Filter", 2, 4, filter},
};

} // namespace

std::span<const LibraryFunction> search_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
