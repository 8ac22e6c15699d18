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
void fill_addresses(std::string& text) {
    for (const bool with_query : {false, true}) {
        const std::string_view name = with_query ? "full_url" : "url";
        const bool plain = contains_ignore_case(text, tag_of(name));
        if (!plain && !contains_ignore_case(text, encoded_tag_of(name)))
            continue;
        const std::string address = page_address(request(), with_query);
        fill_tag(text, tag_of(name), address);
        fill_tag(text, encoded_tag_of(name), server().url_encode(address));
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

bool ContentTemplate::is_repeatable() const noexcept {
    return !contains_ignore_case(text_, kEvaluationTag) && !contains_ignore_case(text_, kNestedTag) &&
           !contains_ignore_case(text_, kBlobResponse);
}

void ContentTemplate::append(std::string& out, std::int16_t row) const {
    if (!late_tags_ && append_compiled(out))
        return;
    Nested nested = find_nested();
    std::string text;
    if (!append_compiled(text))
        text = fill_columns(nested);
    if (!page_ended())
        parse_evaluation(pro_, text);
    if (page_ended())
        return;
    if (nested.source)
        fill_tag(text, std::string(kNestedTag) + nested.grid + "~#", render(nested, row));
    fill_addresses(text);
    out += text;
}

// False, with nothing appended, when this record has to be filled step by step.
bool ContentTemplate::append_compiled(std::string& out) const {
    return !columns_.empty() && columns_.append(out, [this](int slot, std::string& to) {
        const ColumnValue& column = values_[static_cast<std::size_t>(slot / 2)];
        const std::size_t start = to.size();
        column.append(to);
        const bool plain = to.find_first_of("#~$", start) == std::string::npos;
        if (slot % 2 != 0)
            to.replace(start, std::string::npos, server().url_encode(std::string_view(to).substr(start)));
        return plain;
    });
}

std::string ContentTemplate::fill_columns(Nested& nested) const {
    std::string text = text_;
    std::string value;
    values_[column_].append_plain(value);
    for (const ColumnValue& column : values_) {
        const std::string tag = tag_of(column.name());
        if (contains_ignore_case(text, tag)) {
            value.clear();
            column.append(value);
            fill_tag(text, tag, value);
            if (const std::string encoded = encoded_tag_of(column.name());
                contains_ignore_case(text, encoded))
                fill_tag(text, encoded, server().url_encode(value));
        }
        // Deliberately the value last computed, when this column's tag is not in the content itself.
        if (nested.source)
            fill_tag(nested.sql, tag, value);
        fill_special_tags(text, column);
        if (page_ended())
            break;
    }
    return text;
}

// The tags of a column that have more than its name: its blob and its graphs.
void ContentTemplate::fill_special_tags(std::string& text, const ColumnValue& column) const {
    if (!contains_ignore_case(text, "#~" + column.name() + ";"))
        return;
    fill_blob_tags(text, column.source(), column.position());
    if (!pro_.bar_graph || page_ended())
        return;
    GraphedValue graphed{column.name(), column.source().records().value(column.position()), {}};
    column.append(graphed.shown);
    fill_bar_graphs(text, column.field(), graphed);
}

ContentTemplate::Nested ContentTemplate::find_nested() const {
    return guard("IsDynamicGrid", [&]() -> Nested {
        const std::size_t from = find_short(text_, kNestedTag);
        const std::size_t to = from == kNotFound ? kNotFound : find_short(text_, "~#", from);
        if (to == kNotFound)
            return {};
        Nested nested{text_.substr(from + kNestedTag.size(), to - from - kNestedTag.size()), {}, {}};
        nested.source = nested_.source_of(nested.grid);
        nested.sql = nested.source->dynamic_sql;
        return nested;
    });
}

// Lends the filled query to the nested grid's source.
std::string ContentTemplate::render(Nested& nested, std::int16_t row) const {
    struct Lend {
        std::string& place;
        std::string& sql;

        Lend(std::string& at, std::string& lent) : place(at), sql(lent) { std::swap(place, sql); }

        ~Lend() { std::swap(place, sql); }
    } lend(nested.source->dynamic_sql, nested.sql);

    return nested_.render(nested.grid, row);
}

} // namespace tabrixdb
