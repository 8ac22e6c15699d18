#include "field/views.h"

#include "automation/array.h"
#include "automation/conversions.h"
#include "automation/text.h"
#include "engine/report.h"
#include "platform/host.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tabrixdb {

namespace {

constexpr std::string_view kTextBox =
    "<input type=\"text\" name=\"#~field_name~#\" value=\"#~field_value~#\" size=";
constexpr std::string_view kHiddenBox = "<input type=\"hidden\" name=\"#~field_name~#\" value=\"\" >\r\n";

bool given(ViewElements elements, std::size_t index) {
    return index < elements.size();
}

std::string element_or(ViewElements elements, std::size_t index, std::string_view otherwise) {
    return given(elements, index) ? elements[index] : std::string(otherwise);
}

void take_default(DbField& field, ViewElements elements, std::size_t index) {
    if (given(elements, index))
        field.default_value = elements[index];
}

// The constraint element "a,b": a is "R" (required) or the least number of characters, b the greatest, which
// gives the attribute that is returned.
std::string constraint(DbField& field, ViewElements elements, std::size_t index) {
    if (!given(elements, index))
        return {};
    const std::vector<std::string_view> parts = split(elements[index], ',');
    if (parts.empty())
        return {};
    if (equal_ignore_case(parts[0], "R"))
        field.required = -1;
    else if (is_numeric(parts[0]))
        field.required = to_integer(parts[0]);
    return parts.size() > 1 && is_numeric(parts[1]) ? " MaxLength=\"" + std::string(parts[1]) + "\" " : "";
}

// --- Text ----------------------------------------------------------------------------------------------

std::string text_view(DbField& field, ViewElements elements) {
    std::string view(kTextBox);
    view += element_or(elements, 1, "10") + " ";
    take_default(field, elements, 2);
    return view + constraint(field, elements, 3) + " >\r\n";
}

std::string memo_view(DbField& field, ViewElements elements) {
    std::string view = "<textarea name=\"#~field_name~#\" ";
    view += " rows=" + element_or(elements, 1, "5") + " ";
    view += " cols=" + element_or(elements, 2, "10") + " ";
    take_default(field, elements, 3);
    return view + constraint(field, elements, 4) + " >#~field_value~#</textarea>\r\n";
}

// --- Lists ---------------------------------------------------------------------------------------------

std::vector<std::string> item_list(const DbField& field) {
    if (!field.item_list.is_array())
        throw Error(kErrorMismatch);
    std::vector<std::string> items;
    for (const Variant& item : field.item_list.array()->elements())
        items.push_back(to_text(item).str());
    return items;
}

Variant array_of(const std::vector<std::string>& items) {
    return Variant(make_ref<Array>(std::vector<Variant>(items.begin(), items.end())));
}

// Closes a list: an empty first choice always leads. ItemList becomes the option lines.
std::string options(DbField& field, ViewElements elements, std::string view, std::vector<std::string> items) {
    for (std::string& item : items)
        item = "<option>" + item + "</option>\r\n";
    field.item_list = array_of(items);
    take_default(field, elements, 4);
    view += constraint(field, elements, 5) + " > \r\n<option></option>\r\n";
    for (const std::string& item : items)
        view += item;
    return view + "</select>\r\n";
}

std::string select_normal_view(DbField& field, ViewElements elements) {
    // Deliberately the sub-keyword: a normal list never takes its size from the specification.
    std::string view = "<select name=\"#~field_name~#\" size=" + element_or(elements, 1, "1") + " ";
    std::vector<std::string> items;
    if (given(elements, 3))
        for (const std::string_view item : split(elements[3], ','))
            items.emplace_back(item);
    else
        items = item_list(field);
    return options(field, elements, std::move(view), std::move(items));
}

// Every row of the query as one entry; the last row's delimiter deliberately leaves an empty entry behind.
std::vector<std::string> lookup(const DbField& field, std::string_view query) {
    constexpr std::string_view kRowEnd = "#~~#";
    if (!field.connection)
        throw Error(kErrorNothing);
    const Ref<platform::Recordset> rows = platform::Host::current().create_recordset();
    rows->set_cursor_location(platform::CursorLocation::Client);
    rows->open_query(query, {}, *field.connection, platform::CursorType::ForwardOnly,
                     platform::LockType::Unspecified, -1);
    const std::string text = rows->eof() ? std::string() : rows->get_string(-1, ";", kRowEnd, "NULL");
    rows->close();
    std::vector<std::string> items;
    std::size_t at = 0;
    for (std::size_t end; (end = text.find(kRowEnd, at)) != std::string::npos; at = end + kRowEnd.size())
        items.push_back(text.substr(at, end - at));
    items.push_back(text.substr(at));
    return items;
}

// What a query gives is text, in which nothing is HTML or a tag.
std::vector<std::string> encoded(std::vector<std::string> items) {
    for (std::string& item : items)
        item = control_text(item);
    return items;
}

std::string select_lookup_view(DbField& field, ViewElements elements) {
    std::string view = "<select name=\"#~field_name~#\" size=" + element_or(elements, 2, "1") + " ";
    std::vector<std::string> items =
        given(elements, 3) ? encoded(lookup(field, elements[3])) : item_list(field);
    for (std::string& item : items)
        if (item.empty())
            item = " ";
    return options(field, elements, std::move(view), std::move(items));
}

// --- Choices and check boxes -----------------------------------------------------------------------------

std::string choice_template(std::string_view type, ViewElements elements, std::string_view line_end) {
    const std::string item =
        "<input type=\"" + std::string(type) +
        "\" name=\"#~field_name~#\" value=\"#~field_value~#\" #~checked~# #~attributes~# >" +
        std::string(line_end);
    return replace_all(item, "#~attributes~#", element_or(elements, 3, ""));
}

// Deliberately loose: any r in the attributes marks the column as required.
void require_by_attributes(DbField& field, ViewElements elements) {
    if (given(elements, 3) && contains_ignore_case(elements[3], "r"))
        field.required = -1;
}

// One control an item of element 1; an item is "value~label" or a value that is its own label.
std::string item_controls(DbField& field, ViewElements elements, std::string item_template) {
    std::vector<std::string> controls;
    const std::string list = element_or(elements, 1, "");
    for (const std::string_view item : split(list, ',')) {
        const std::vector<std::string_view> parts = split(item, '~');
        const std::string_view value = parts.empty() ? std::string_view() : parts[0];
        controls.push_back(replace_ignore_case(item_template, "#~field_value~#", value));
        controls.back() += parts.size() > 1 ? parts[1] : value;
    }
    field.check_list = array_of(controls);
    take_default(field, elements, 2);
    return item_template;
}

std::string choice_view(DbField& field, ViewElements elements) {
    require_by_attributes(field, elements);
    return item_controls(field, elements, choice_template("radio", elements, ""));
}

std::string checkbox_list_view(DbField& field, ViewElements elements) {
    return item_controls(field, elements, choice_template("checkbox", elements, "\r\n"));
}

// The items come from another column of the record; the view is that column's name.
std::string from_field(DbField& field, ViewElements elements, std::string_view type) {
    field.check_list = Variant(choice_template(type, elements, "\r\n"));
    take_default(field, elements, 2);
    return element_or(elements, 1, "");
}

std::string choice_from_field_view(DbField& field, ViewElements elements) {
    require_by_attributes(field, elements);
    return from_field(field, elements, "radio");
}

std::string checkbox_from_field_view(DbField& field, ViewElements elements) {
    return from_field(field, elements, "checkbox");
}

std::string checkbox_view(DbField& field, ViewElements elements) {
    std::string view = "<input type=\"checkbox\" name=\"#~field_name~#\" value=\"";
    // Deliberately no closing quote after the default value.
    view += given(elements, 1) ? elements[1] + "\" " : "ON ";
    take_default(field, elements, 2);
    return view + element_or(elements, 3, "") + "#~checked~#  >\r\n";
}

// --- Dates and files ---------------------------------------------------------------------------------------

std::string box_size(ViewElements elements) {
    constexpr std::string_view kDefaultSize = "5";
    if (!given(elements, 1) || !is_numeric(elements[1]))
        return std::string(kDefaultSize);
    return std::to_string(to_integer(elements[1]));
}

std::string box_with_link(ViewElements elements, std::size_t attributes, const std::string& call,
                          const std::string& caption) {
    return std::string(kTextBox) + box_size(elements) + " " + element_or(elements, attributes, " ") +
           " >\r\n" + "<a href=\"javascript:" + call + "\" >" + caption + "</a>\r\n";
}

std::string date_view(DbField& field, ViewElements elements) {
    take_default(field, elements, 2);
    return box_with_link(elements, 3, "show_date('#~grid_name~#','#~field_name~#')", field.date_caption);
}

std::string upload_view(DbField& field, ViewElements elements) {
    take_default(field, elements, 3);
    return box_with_link(
        elements, 4, "upload_file('#~grid_name~#','#~field_name~#','" + element_or(elements, 2, "") + "')",
        field.upload_caption);
}

std::string upload_image_view(DbField&, ViewElements elements) {
    const std::string prefix = element_or(elements, 1, "");
    const auto number = [&](std::size_t index, std::int16_t otherwise) {
        return std::to_string(given(elements, index) ? to_integer(elements[index]) : otherwise);
    };
    return std::string(kHiddenBox) + "<a href=\"javascript:upload_image('#~grid_name~#','#~field_name~#','" +
           prefix + "')\" ><img name=\"#~field_name~#_image\" src='" + prefix +
           "#~field_value~#' width=" + number(2, 10) + " height=" + number(3, 10) +
           " border=" + number(4, 0) + " ></a>";
}

std::string upload_db_view(DbField& field, ViewElements) {
    return std::string(kHiddenBox) +
           "<a href=\"javascript:upload_to_db('#~grid_name~#','#~field_name~#')\" >" +
           field.upload_db_caption + "</a>";
}

std::string upload_db_image_view(DbField& field, ViewElements elements) {
    field.upload_db_caption = "#~field_value~#"; // deliberately for good
    if (given(elements, 1)) {
        std::string image = "<img name=\"#~field_name~#_image\" src=\"" + elements[1] + "\" border=0 ";
        if (given(elements, 2))
            image += " width = " + elements[2] + " ";
        if (given(elements, 3))
            image += " height = " + elements[3] + " ";
        if (given(elements, 4))
            image += " alt = \"" + elements[4] + "\" ";
        field.default_value = image + " >";
    } else {
        field.default_value.clear();
    }
    return std::string(kHiddenBox) +
           "<a href=\"javascript:upload_to_dbimage('#~grid_name~#','#~field_name~#')\" >#~field_value~#</a>";
}

// --- The table ---------------------------------------------------------------------------------------------

constexpr auto kKinds = std::to_array<ViewKind>({
    // Text boxes deliberately record the kind of an ordinary text column.
    {"TEXT", "NORMAL", "", text_view, "GetText_View"},
    {"MEMO", "NORMAL", "", memo_view, "GetMemo_View"},
    {"SELECT", "SELECT", "LOOKUP", select_lookup_view, "GetSelectLookup_View"},
    {"SELECT", "SELECT", "NORMAL", select_normal_view, "GetSelectNormal_View"},
    {"DATE", "DATE", "", date_view, "GetDate_View"},
    {"CHECKBOX", "CHECKBOX", "", checkbox_view, "GetCheckBox_View"},
    {"CHECKBOX_LIST", "CHECKBOX_LIST", "", checkbox_list_view, "GetCheckBox List_View"},
    {"GETCHECKBOX_FROMFIELD", "GETCHECKBOX_FROMFIELD", "", checkbox_from_field_view,
     "GetCheckBox From Field"},
    {"GETCHOICE_FROMFIELD", "GETCHOICE_FROMFIELD", "", choice_from_field_view, "GetChoice From Field"},
    // The same two under the names that templates know them by.
    {"CHECKBOX_FROMFIELD", "GETCHECKBOX_FROMFIELD", "", checkbox_from_field_view, "GetCheckBox From Field"},
    {"CHOICE_FROMFIELD", "GETCHOICE_FROMFIELD", "", choice_from_field_view, "GetChoice From Field"},
    {"CHOICE", "CHOICE", "", choice_view, "GetChoice_View"},
    {"UPLOAD", "UPLOAD", "", upload_view, "GetUpload_View"},
    {"UPLOADDB", "UPLOADDB", "", upload_db_view, "GetUpload DB View"},
    {"UPLOADDBIMAGE", "UPLOADDBIMAGE", "", upload_db_image_view, "GetUpload DB Image View"},
    {"UPLOADIMAGE", "UPLOADIMAGE", "", upload_image_view, "GetUpload Image View"},
});

} // namespace

const ViewKind* find_view_kind(ViewElements elements) {
    const auto matches = [&](const ViewKind& kind) {
        return kind.keyword == elements[0] &&
               (kind.sub_keyword.empty() || equal_ignore_case(kind.sub_keyword, element_or(elements, 1, "")));
    };
    const auto found = std::ranges::find_if(kKinds, matches);
    return found == kKinds.end() ? nullptr : &*found;
}

std::string control_text(std::string_view value) {
    // The sign of marks in templates, too.
    return replace_all(replace_all(replace_all(html_encode(value), "'", "&#39;"), "#~", "&#35;~"), "\x01",
                       "&#1;");
}

} // namespace tabrixdb
