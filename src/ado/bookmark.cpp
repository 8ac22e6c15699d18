#include "ado/result.h"
#include "ado/values.h"
#include "automation/conversions.h"

#include <charconv>

// A bookmark is a text: "VIEW.POSITION" or "VIEW.POSITION.KEY.KEY...". VIEW is a trace of source, filter and
// sort; while it is the same, the position is. The key, where the rows have one, finds the record in another
// view, and tells whether the record is still there; it also serves a later request's recordset.

namespace tabrixdb::ado {

namespace {

// FNV-1a: stable over processes, as bookmarks may be kept in a session.
std::uint32_t trace(std::string_view text, std::uint32_t start = 2166136261u) noexcept {
    for (const char c : text)
        start = (start ^ static_cast<std::uint8_t>(c)) * 16777619u;
    return start;
}

std::uint32_t trace(const RunRequest& source) noexcept {
    std::uint32_t result = trace(source.sql);
    for (const OwnedCell& parameter : source.parameters) {
        const Cell value = parameter.get();
        result = trace({reinterpret_cast<const char*>(&value.kind), sizeof value.kind}, result);
        result = trace(value.has_view() ? value.view()
                                        : std::string_view(reinterpret_cast<const char*>(&value.whole),
                                                           sizeof value.whole),
                       result);
    }
    return result;
}

constexpr char kHexDigits[] = "0123456789abcdef";

void append_key(std::string& out, const Cell& cell) {
    out += '.';
    if (cell.kind == Cell::Kind::Integer) {
        out += 'i' + std::to_string(cell.whole);
        return;
    }
    out += 't';
    for (const char c : cell.view()) {
        out += kHexDigits[static_cast<std::uint8_t>(c) >> 4];
        out += kHexDigits[static_cast<std::uint8_t>(c) & 15];
    }
}

template <class T>
bool read_whole(std::string_view text, T& value, int base = 10) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, base);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::optional<OwnedCell> read_key(std::string_view text) {
    if (text.empty())
        return std::nullopt;
    const std::string_view digits = text.substr(1);
    if (text.front() == 'i') {
        std::int64_t value = 0;
        return read_whole(digits, value) ? std::optional(OwnedCell(Cell::integer(value))) : std::nullopt;
    }
    if (text.front() != 't' || digits.size() % 2 != 0)
        return std::nullopt;
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        std::uint8_t byte = 0;
        if (!read_whole(digits.substr(i, 2), byte, 16))
            return std::nullopt;
        bytes += static_cast<char>(byte);
    }
    return OwnedCell(Cell::text(bytes));
}

std::string_view take_part(std::string_view& text) {
    const std::size_t dot = text.find('.');
    const std::string_view part = text.substr(0, dot);
    text.remove_prefix(dot == std::string_view::npos ? text.size() : dot + 1);
    return part;
}

bool same_key(const std::vector<OwnedCell>& a, const std::vector<OwnedCell>& b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (compare(a[i].get(), b[i].get()) != 0)
            return false;
    return true;
}

} // namespace

Result::Result(std::shared_ptr<Session> session, std::unique_ptr<Cursor> cursor, bool writable,
               const RunRequest& source)
    : session_(std::move(session)),
      cursor_(std::move(cursor)),
      writable_(writable),
      source_trace_(trace(source)) {}

std::uint32_t Result::view_trace() const noexcept {
    // A sign between, so that a filter is not taken for a sort.
    return trace(sort_, trace("|", trace(filter_, source_trace_)));
}

std::string Result::text_of(const Mark& mark) {
    std::string text = std::to_string(mark.view) + '.' + std::to_string(mark.position);
    for (const OwnedCell& cell : mark.key)
        append_key(text, cell.get());
    return text;
}

std::optional<Result::Mark> Result::read_mark(std::string_view text) {
    Mark mark;
    if (!read_whole(take_part(text), mark.view) || !read_whole(take_part(text), mark.position) ||
        mark.position < 1)
        return std::nullopt;
    while (!text.empty()) {
        auto cell = read_key(take_part(text));
        if (!cell)
            return std::nullopt;
        mark.key.push_back(std::move(*cell));
    }
    return mark;
}

// Empty where the rows have no key, or one of values that have no exact text.
std::vector<OwnedCell> Result::current_key() {
    std::vector<OwnedCell> key;
    for (const std::size_t column : key_columns(infos())) {
        const Cell value = cell(column);
        if (value.kind != Cell::Kind::Integer && value.kind != Cell::Kind::Text)
            return {};
        key.emplace_back(value);
    }
    return key;
}

Variant Result::bookmark() {
    require_scrolling();
    if (edit_mode_ == EditMode::Add) // the record will be the last one
        return Variant(text_of({view_trace(), cursor_->count() + 1, {}}));
    require_record();
    return Variant(text_of({view_trace(), position_, current_key()}));
}

std::int32_t Result::compare_bookmarks(std::string_view first, std::string_view second) {
    constexpr std::int32_t kNotComparable = 4;
    const auto a = read_mark(first), b = read_mark(second);
    if (!a || !b)
        throw Error(kBadBookmark, "Bookmark was invalid.", std::string(kRecordsetSource));
    if (a->view != b->view)
        return !a->key.empty() && same_key(a->key, b->key) ? 1 : kNotComparable;
    return a->position < b->position ? 0 : a->position == b->position ? 1 : 2;
}

void Result::set_bookmark(const Variant& bookmark) {
    require_scrolling();
    const auto mark = read_mark(to_text(bookmark).view());
    if (mark) {
        before_moving();
        const bool same_view = mark->view == view_trace();
        const bool has_key = !mark->key.empty() && mark->key.size() == key_columns(infos()).size();
        if (same_view && exists(mark->position)) {
            go(mark->position, Place::After);
            if (!has_key || same_key(current_key(), mark->key))
                return;
        }
        if (has_key)
            if (const std::int64_t position = cursor_->locate(mark->key)) {
                go(position, Place::After);
                return;
            }
    }
    throw Error(kBadBookmark, "Bookmark was invalid.", std::string(kRecordsetSource));
}

} // namespace tabrixdb::ado
