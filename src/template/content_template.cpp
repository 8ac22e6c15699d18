#include "template/content_template.h"

#include "blob/blob_tags.h"
#include "engine/fill_tag.h"
#include "engine/page.h"
#include "engine/report.h"
#include "graph/bar_graph.h"
#include "template/evaluation.h"
#include "template/positions.h"
#include "web/page_address.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace tabrixdb {

namespace {

constexpr std::string_view kNestedTag = "#~grid_";

std::string tag_of(std::string_view name) {
    return "#~" + std::string(name) + "~#";
}

std::string encoded_tag_of(std::string_view name) {
    return "$~" + std::string(name) + "~$";
}

// The page's own address, without and with its query string.
void fill_addresses(std::string& text, HeldValues& held) {
    for (const bool with_query : {false, true}) {
        const std::string_view name = with_query ? "full_url" : "url";
        const bool plain = contains_ignore_case(text, tag_of(name));
        if (!plain && !contains_ignore_case(text, encoded_tag_of(name)))
            continue;
        const std::string address = page_address(request(), with_query);
        fill_tag(text, tag_of(name), held.hold({address, {}}));
        fill_tag(text, encoded_tag_of(name), held.hold({server().url_encode(address), {}}));
    }
}

// Fills each tag that begins so by itself, with the values in it, and holds what it becomes.
template <class Fill>
void fill_apart(std::string& text, const std::string& start, HeldValues& held, const Fill& fill) {
    if (held.trusted())
        return fill(text);
    constexpr std::string_view kEnd = "~#";
    for (std::size_t at = 0; (at = find_ignore_case(text, start, at)) != std::string::npos;) {
        const std::size_t end = text.find(kEnd, at + start.size() - 1);
        if (end == std::string::npos || page_ended())
            return;
        const std::size_t size = end + kEnd.size() - at;
        std::string tag = text.substr(at, size);
        held.release(tag);
        std::string filled = tag;
        fill(filled);
        if (filled == tag) { // another tag that begins like it
            at += size;
            continue;
        }
        const std::string mark = held.hold({std::move(filled), {}});
        text.replace(at, size, mark);
        at += mark.size();
    }
}

// Whether every `start` begins one of the tags that are filled after the columns: anything else could be
// completed to a column's tag by a value.
bool begins_late_tags(std::string_view text, std::string_view start,
                      std::initializer_list<std::string_view> late) {
    for (std::size_t at = 0; (at = text.find(start, at)) != std::string_view::npos; at += start.size()) {
        const std::string_view rest = text.substr(at + start.size());
        if (std::ranges::none_of(late, [&](std::string_view tag) {
                return equal_ignore_case(rest.substr(0, tag.size()), tag);
            }))
            return false;
    }
    return true;
}

// Names with which the late tags could be taken for a column's.
bool is_late_name(std::string_view name) {
    return equal_ignore_case(name.substr(0, 5), "eval:");
}

} // namespace

ContentTemplate::ContentTemplate(std::string text, std::size_t column, const std::vector<ColumnValue>& values,
                                 Pro& pro, NestedGrids& nested)
    : text_(std::move(text)),
      column_(column),
      values_(values),
      pro_(pro),
      nested_(nested),
      columns_(compile()) {}

// Replaces the tags by slots, one column after another as the step-by-step form does. Empty for a text that
// can't be compiled.
SlottedText ContentTemplate::compile() {
    std::string text = text_;
    if (text.find(SlottedText::kMark) != std::string::npos)
        return {};
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const std::string& name = values_[i].name();
        if (is_late_name(name))
            return {};
        if (!contains_ignore_case(text, tag_of(name)))
            continue;
        const int slot = static_cast<int>(i) * 2;
        fill_tag(text, tag_of(name), SlottedText::mark(slot));
        fill_tag(text, encoded_tag_of(name), SlottedText::mark(slot + 1));
    }
    if (!begins_late_tags(text, "#~", {"eval:", "url~#", "full_url~#"}) ||
        !begins_late_tags(text, "$~", {"url~$", "full_url~$"}))
        return {};
    late_tags_ = text.find("#~") != std::string::npos || text.find("$~") != std::string::npos;
    return SlottedText(text);
}

bool ContentTemplate::is_plain() const noexcept {
    return !columns_.empty() && !contains_ignore_case(text_, kEvaluationTag) &&
           !contains_ignore_case(text_, kNestedTag) && !contains_ignore_case(text_, kBlobResponse);
}

void ContentTemplate::append(std::string& out, std::int16_t row, HeldValues* held) const {
    if (!late_tags_ && append_compiled(out, held))
        return;
    std::string text;
    if (held) {
        fill(text, row, *held);
    } else {
        HeldValues own(pro_.trust_values);
        fill(text, row, own);
        own.release(text);
    }
    out += text;
}

void ContentTemplate::fill(std::string& text, std::int16_t row, HeldValues& held) const {
    Nested nested = find_nested();
    if (!append_compiled(text, &held))
        text = fill_columns(nested, held);
    if (!page_ended())
        parse_evaluation(pro_, text, held);
    if (page_ended())
        return;
    if (nested.source)
        fill_tag(text, std::string(kNestedTag) + nested.grid + "~#", held.hold({render(nested, row), {}}));
    fill_addresses(text, held);
}

// False, with nothing appended, when this record has to be filled step by step.
bool ContentTemplate::append_compiled(std::string& out, HeldValues* held) const {
    if (columns_.empty())
        return false;
    std::vector<std::string> marks(held && !held->trusted() ? values_.size() * 2 : 0);
    return columns_.append(out, [&](int slot, std::string& to) {
        const ColumnValue& column = values_[static_cast<std::size_t>(slot / 2)];
        const auto put = [&](std::string& text) {
            const std::size_t start = text.size();
            column.append(text);
            const bool has_tags = text.find_first_of("#~$", start) != std::string::npos;
            if (slot % 2 != 0)
                text.replace(start, std::string::npos,
                             server().url_encode(std::string_view(text).substr(start)));
            return !has_tags;
        };
        if (marks.empty())
            return put(to) || !pro_.trust_values;
        // One value has one mark, so that texts with it are equal.
        std::string& mark = marks[static_cast<std::size_t>(slot)];
        if (mark.empty()) {
            put(mark);
            mark = held->hold({std::move(mark), column.name(), column.is_computed()});
        }
        to += mark;
        return true;
    });
}

std::string ContentTemplate::fill_columns(Nested& nested, HeldValues& held) const {
    std::string text = held.hold_marks(text_);
    std::string query = nested.source ? held.hold_marks(nested.source->dynamic_sql) : std::string();
    std::string raw;
    values_[column_].append_plain(raw);
    std::string value = held.hold({raw, values_[column_].name(), values_[column_].is_computed()});
    for (const ColumnValue& column : values_) {
        const std::string tag = tag_of(column.name());
        if (contains_ignore_case(text, tag)) {
            raw.clear();
            column.append(raw);
            value = held.hold({raw, column.name(), column.is_computed()});
            fill_tag(text, tag, value);
            if (const std::string encoded = encoded_tag_of(column.name());
                contains_ignore_case(text, encoded))
                fill_tag(text, encoded, held.hold({server().url_encode(raw), column.name()}));
        }
        // Deliberately the value last computed, when this column's tag is not in the content itself.
        if (nested.source)
            fill_tag(query, tag, value);
        fill_special_tags(text, column, held);
        if (page_ended())
            break;
    }
    if (nested.source)
        nested.query = held.trusted() ? BoundCode{query, {}} : bind_query(query, held);
    return text;
}

// The tags of a column that have more than its name: its blob and its graphs.
void ContentTemplate::fill_special_tags(std::string& text, const ColumnValue& column,
                                        HeldValues& held) const {
    if (!contains_ignore_case(text, "#~" + column.name() + ";"))
        return;
    const auto fill_blob = [&](std::string& in) { fill_blob_tags(in, column.source(), column.position()); };
    if (const std::string bytes = "#~" + column.name() + ";blob_content_blob~#";
        contains_ignore_case(text, bytes))
        fill_apart(text, bytes.substr(0, bytes.size() - 1), held, fill_blob);
    else
        fill_blob(text);
    if (!pro_.bar_graph || page_ended())
        return;
    GraphedValue graphed{column.name(), column.source().records().value(column.position()), {}};
    column.append(graphed.shown);
    fill_apart(text, "#~" + column.name() + ";graph", held,
               [&](std::string& in) { fill_bar_graphs(in, column.field(), graphed); });
}

ContentTemplate::Nested ContentTemplate::find_nested() const {
    return guard("IsDynamicGrid", [&]() -> Nested {
        const std::size_t from = find_short(text_, kNestedTag);
        const std::size_t to = from == kNotFound ? kNotFound : find_short(text_, "~#", from);
        if (to == kNotFound)
            return {};
        Nested nested{text_.substr(from + kNestedTag.size(), to - from - kNestedTag.size()), {}, {}};
        nested.source = nested_.source_of(nested.grid);
        return nested;
    });
}

// Lends the filled query to the nested grid's source.
std::string ContentTemplate::render(Nested& nested, std::int16_t row) const {
    struct Lend {
        DbSource& source;
        BoundCode& query;

        Lend(DbSource& to, BoundCode& lent) : source(to), query(lent) { exchange(); }

        ~Lend() { exchange(); }

        void exchange() {
            std::swap(source.dynamic_sql, query.text);
            std::swap(source.dynamic_values, query.values);
        }
    } lend(*nested.source, nested.query);

    return nested_.render(nested.grid, row);
}

} // namespace tabrixdb
