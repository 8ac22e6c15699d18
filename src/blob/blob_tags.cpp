#include "blob/blob_tags.h"

#include "automation/conversions.h"
#include "automation/text.h"
#include "engine/fill_tag.h"
#include "engine/page.h"
#include "engine/report.h"

namespace tabrixdb {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

// The path of the picture in an image tag; "" when there is none.
std::string picture_path(std::string_view html) {
    constexpr std::string_view kSource = "src=\"";
    const std::size_t start = find_ignore_case(html, kSource);
    const std::size_t end = start == kNone ? kNone : html.find('"', start + kSource.size());
    if (end == kNone)
        return {};
    const std::size_t from = start + kSource.size();
    return std::string(trimmed(replace_all(html.substr(from, end - from), "\r\n", "")));
}

// What serves as the blob of a field that has none. Without a picture it is nothing, which takes the place of
// what an earlier record has left.
Variant default_blob(const DbField& field) {
    const std::string path = picture_path(field.default_value);
    return Variant::byte_array(
        path.empty() ? std::string()
                     : platform::Host::current().file_system().read_bytes(server().map_path(path)));
}

void export_blob(const DbSource& source, std::size_t column, const std::string& key) {
    guard("Export_Blob_To_Session", [&] {
        platform::Recordset& records = source.records();
        const Variant blob = records.actual_size(column) == 0
                                 ? default_blob(source.field_of(records.columns()[column].name))
                                 : records.value(column);
        application().lock();
        application().set_own_value(key, blob);
        application().set_own_value(std::string(kBlobMark) + key, true);
        application().unlock();
    });
}

std::string content_of(platform::Recordset& records, std::size_t column) {
    const Variant value = records.value(column);
    std::string text;
    if (value.is_byte_array())
        text = response().text_of(value.text());
    else
        append_text(text, value);
    return text;
}

void fill_response(std::string& text, const DbSource& source, std::size_t column) {
    constexpr std::string_view kEnd = "_blob~#";
    const std::string& name = source.records().columns()[column].name;
    const std::string start = "#~" + name + std::string(kBlobResponse);
    const std::size_t at = find_ignore_case(text, start);
    const std::size_t end = at == kNone ? kNone : find_ignore_case(text, kEnd, at + start.size());
    if (end == kNone)
        return;
    const std::string address = text.substr(at + start.size(), end - at - start.size());
    const std::string key = name + "_" + std::to_string(source.records().absolute_position());
    fill_tag(text, text.substr(at, end + kEnd.size() - at), address + "?varname=" + key);
    export_blob(source, column, key);
}

} // namespace

void fill_blob_tags(std::string& text, const DbSource& source, std::size_t column) {
    guard("Get Blob", [&] {
        const std::string tag = "#~" + source.records().columns()[column].name + ";blob_content_blob~#";
        if (contains_ignore_case(text, tag))
            fill_tag(text, tag, content_of(source.records(), column));
        else
            fill_response(text, source, column);
    });
}

} // namespace tabrixdb
