#include "template/parse_view.h"

#include "automation/array.h"
#include "automation/conversions.h"
#include "automation/text.h"
#include "engine/fill_tag.h"
#include "engine/report.h"
#include "field/views.h"
#include "template/evaluation.h"

#include <algorithm>
#include <vector>

namespace tabrixdb {

namespace {

constexpr std::string_view kNoView = "NORMAL";
constexpr std::string_view kValueTag = "#~field_value~#";
constexpr std::string_view kCheckedTag = "#~checked~#";

// What a control is made for.
struct Control {
    const DbSource& source;
    const DbField& field;
    const ShownValue& value;
};

// --- Lists ---------------------------------------------------------------------------------------------

std::string option(std::string_view text, std::string_view attribute = "") {
    return "<option" + std::string(attribute) + ">" + std::string(text) + "</option>";
}

// A value that is in the list is marked there, and the empty entry is left out; any other takes the place of
// the empty entry.
void select_option(std::string& view, const Control& control) {
    const std::string empty = option("");
    for (const std::string& listed : {control_text(control.value.plain), control.value.plain}) {
        if (listed.empty() || !contains_ignore_case(view, option(listed)))
            continue;
        fill_tag(view, empty, "");
        const std::size_t at = find_ignore_case(view, option(listed));
        view.replace(at, option(listed).size(), option(listed, " selected"));
        return;
    }
    fill_tag(view, empty, option(control_text(control.value.plain), " selected"));
}

// --- Choices and check boxes -----------------------------------------------------------------------------

// The items that are chosen: the value's parts between commas. Blanks around them do not count, as browsers'
// several values arrive with ", " between them.
class Chosen {
public:
    explicit Chosen(std::string_view value) : items_(split(value, ',')) {
        if (items_.empty())
            items_.emplace_back(); // an item without a value is chosen by an empty value
    }

    bool has(std::string_view item) const {
        return std::ranges::any_of(items_, [&](std::string_view chosen) {
            return equal_ignore_case(trimmed(chosen), trimmed(item));
        });
    }

private:
    std::vector<std::string_view> items_;
};

bool has_value(std::string_view control, std::string_view value) {
    return contains_ignore_case(control, "value=\"" + std::string(value) + "\"");
}

void check_box(std::string& view, const Control& control) {
    const bool checked =
        has_value(view, control.value.plain) || has_value(view, control_text(control.value.plain));
    fill_tag(view, kCheckedTag, checked ? "checked" : "");
}

// What stands in the control's value attribute.
std::string_view value_of_control(std::string_view control) {
    constexpr std::string_view kStart = "value=\"";
    const std::size_t from = find_ignore_case(control, kStart);
    if (from == std::string_view::npos)
        return {};
    const std::string_view rest = control.substr(from + kStart.size());
    return rest.substr(0, rest.find('"'));
}

// CheckList as texts, at least one; a single text is a list of one.
std::vector<std::string> check_list(const DbField& field) {
    std::vector<std::string> items;
    if (field.check_list.is_array())
        for (const Variant& item : field.check_list.array()->elements())
            items.push_back(to_text(item).str());
    else
        items.push_back(to_text(field.check_list).str());
    if (items.empty())
        throw Error(kErrorSubscript);
    return items;
}

// One control an item of CheckList, those checked that the value names.
void check_listed(std::string& view, const Control& control) {
    const Chosen chosen(control.value.plain);
    view.clear();
    for (std::string& item : check_list(control.field)) {
        fill_tag(item, kCheckedTag, chosen.has(value_of_control(item)) ? "checked" : "");
        view += item;
    }
}

// The text of the column that the view names ("name" or "#~name~#") in the current record.
std::string items_of_record(std::string_view name, const DbSource& source) {
    if (const std::size_t from = name.find("#~"); from != std::string_view::npos) {
        name.remove_prefix(from + 2);
        name = name.substr(0, name.find("~#"));
    }
    platform::Recordset& records = source.records();
    std::string items;
    if (records.bof() || records.eof())
        return items; // an add form over an empty source
    const auto& columns = records.columns();
    const auto column =
        std::ranges::find_if(columns, [&](const auto& known) { return equal_ignore_case(known.name, name); });
    if (column == columns.end())
        throw Error(kErrorCall, "The record has no column '" + std::string(name) + "'");
    records.append_value(static_cast<std::size_t>(column - columns.begin()), items);
    return items;
}

// One control an item of another column of the record, "value~label" or a value that is its own label.
void check_from_field(std::string& view, const Control& control) {
    const Chosen chosen(control.value.plain);
    const std::string items = items_of_record(trimmed(view), control.source);
    const std::vector<std::string> shapes = check_list(control.field);
    view.clear();
    for (const std::string_view item : split(items, ',')) {
        const std::vector<std::string_view> parts = split(item, '~');
        const std::string_view value = parts.empty() ? std::string_view() : trimmed(parts[0]);
        std::string made = shapes[0];
        fill_tag(made, kValueTag, control_text(value));
        fill_tag(made, kCheckedTag, chosen.has(value) ? "checked" : "");
        view += made + control_text(parts.size() > 1 ? parts[1] : value);
    }
}

// --- Kinds ---------------------------------------------------------------------------------------------

void fill_value(std::string& view, const Control& control) {
    const std::string& value = control.value.plain;
    // A browser drops the line break that a text area begins with.
    const bool begins_broken = value.starts_with('\n') || value.starts_with('\r');
    if (begins_broken && contains_ignore_case(view, "<textarea"))
        return fill_tag(view, kValueTag, "\r\n" + control_text(value));
    fill_tag(view, kValueTag, control_text(value));
}

// The link text of an upload into the database, which may be an image.
void fill_content(std::string& view, const Control& control) {
    fill_tag(view, kValueTag, control.value.content);
}

struct Kind {
    std::string_view name;
    void (*fill)(std::string& view, const Control& control);
};

constexpr Kind kKinds[] = {
    {"SELECT", select_option},
    {"UPLOADDB", fill_content},
    {"UPLOADDBIMAGE", fill_content},
    {"CHECKBOX", check_box},
    {"CHOICE", check_listed},
    {"CHECKBOX_LIST", check_listed},
    {"GETCHOICE_FROMFIELD", check_from_field},
    {"GETCHECKBOX_FROMFIELD", check_from_field},
};

void fill_by_kind(std::string& view, std::string_view kind, const Control& control) {
    const Kind* const known = std::ranges::find(kKinds, kind, &Kind::name);
    (known == std::end(kKinds) ? fill_value : known->fill)(view, control);
}

} // namespace

bool shows_content(const DbField& field, FormMode mode) {
    const std::string& kind = field.view_kind(mode);
    return field.view(mode) == kNoView || kind == "UPLOADDB" || kind == "UPLOADDBIMAGE";
}

bool read_attribute(std::string_view tag, std::string_view name, std::string_view& value) {
    const std::size_t at = find_ignore_case(tag, " " + std::string(name) + "=");
    if (at == std::string_view::npos)
        return false;
    value = tag.substr(at + name.size() + 2);
    const bool quoted = value.starts_with('"') || value.starts_with('\'');
    const char quote = quoted ? value[0] : ' ';
    value.remove_prefix(quoted ? 1 : 0);
    value = value.substr(0, quoted ? value.find(quote) : value.find_first_of(" \t\r\n>"));
    return true;
}

std::vector<std::string> box_values(const DbSource& source, const DbField& field, FormMode mode) {
    const std::string& kind = field.view_kind(mode);
    const std::string& view = field.view(mode);
    std::vector<std::string> values;
    const auto add_value_of = [&](std::string_view box) {
        std::string_view value;
        read_attribute(box, "value", value);
        values.emplace_back(value);
    };
    if (kind == "CHECKBOX")
        add_value_of(view);
    if (kind == "CHOICE" || kind == "CHECKBOX_LIST")
        for (const std::string& item : check_list(field))
            add_value_of(item);
    if (kind == "GETCHOICE_FROMFIELD" || kind == "GETCHECKBOX_FROMFIELD")
        for (const std::string& items = items_of_record(trimmed(view), source);
             const auto item : split(items, ','))
            values.emplace_back(trimmed(item.substr(0, item.find('~'))));
    return values;
}

std::string parse_view(Pro& pro, FormMode mode, const DbSource& source, std::string_view column,
                       std::int16_t row, const ShownValue& value) {
    return guard("Parse View", [&] {
        const Ref<DbField> held(&source.field_of(column)); // an expression may take it from the source
        DbField& field = *held;
        std::string view = field.view(mode);
        const std::string kind = field.view_kind(mode);
        if (contains_ignore_case(view, kEvaluationTag)) {
            HeldValues none(true); // a view is the page's text alone
            parse_evaluation(pro, view, none);
            field.keep_view(mode, view); // later rows start from here
        }
        if (view == kNoView)
            return value.content;
        const bool proposes = mode == FormMode::Add && !field.default_value.empty() && !value.typed;
        const ShownValue shown = proposes ? ShownValue{field.default_value, field.default_value} : value;
        fill_by_kind(view, kind, {source, field, shown});
        fill_tag(view, "#~field_name~#", posted_name(column, row));
        return view;
    });
}

} // namespace tabrixdb
