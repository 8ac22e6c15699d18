#include "grid/grid_text.h"

#include "automation/array.h"
#include "automation/conversions.h"
#include "automation/text.h"
#include "data/column_list.h"
#include "engine/report.h"
#include "grid/plain_template.h"
#include "template/column_tag.h"
#include "template/evaluation.h"
#include "template/read_template.h"

#include <algorithm>

namespace tabrixdb {

namespace {

// "#~name~#", or with more than its name: "#~name[tx;]~#", "#~name;graph~#", "$~name~$".
bool shows(std::string_view text, const std::string& column) {
    if (ColumnTag(column).occurs_in(text))
        return true;
    for (const std::string& name : {column, posted_name(column)})
        for (const std::string_view end : {"[", ";"})
            if (contains_ignore_case(text, "#~" + name + std::string(end)))
                return true;
    return contains_ignore_case(text, "$~" + column + "~$");
}

// Moves the expressions of a content to `code`.
std::string without_expressions(std::string content, std::string& code) {
    for (std::size_t at = 0; (at = find_ignore_case(content, kEvaluationTag, at)) != std::string::npos;) {
        const std::size_t end = find_ignore_case(content, kEvaluationEnd, at);
        if (end == std::string::npos)
            break;
        const std::size_t size = end + kEvaluationEnd.size() - at;
        code.append(content, at, size).append("\n");
        content.replace(at, size, " ");
    }
    return content;
}

// A file that is not there is reported where it is shown.
std::string read(std::string_view path) {
    const bool there = !path.empty() && platform::Host::current().file_system().file_exists(path);
    return there ? read_template(path, true) + "\n" : std::string();
}

} // namespace

GridText::GridText(const Pro& pro, const DbSource& source, std::initializer_list<std::string_view> templates,
                   std::string_view add_template)
    : listed_columns_(pro.filter_columns) {
    for (const std::string_view path : templates)
        text_ += read(path);
    if (templates.size() == 0 || templates.begin()->empty())
        text_ += plain_template(source.records());
    find_columns(source, text_ + read(add_template));
    read_contents(source);
    find_offers(pro, source);
}

void GridText::find_columns(const DbSource& source, std::string_view text) {
    for (const platform::Column& column : source.records().columns())
        if (!has_column(column.name) && shows(text, column.name))
            columns_.push_back(column.name);
}

// Of the columns that the templates show; what their contents show is shown, too.
void GridText::read_contents(const DbSource& source) {
    std::string contents;
    for (const std::string& column : columns_) {
        const DbField& field = source.field_of(column);
        contents += field.content + "\n";
        text_ += field.caption + "\n";
    }
    find_columns(source, contents);
    text_ += without_expressions(std::move(contents), code_);
}

void GridText::find_offers(const Pro& pro, const DbSource& source) {
    offers_ = Offers(text_);
    code_offers_ =
        Offers(code_ + source.records().source() + (pro.script && !code_.empty() ? pro.script->code() : ""));
    // The page's own buttons, by what they stand for.
    const Collection& pairs = *pro.header_footer_tags;
    for (std::int32_t i = 1; i <= pairs.count(); ++i) {
        const Variant& pair = pairs.item(i);
        if (!pair.is_array() || pair.array()->size() < 2)
            continue;
        const std::string tag = to_text(pair.array()->elements()[0]).str();
        if (!tag.empty() && contains_ignore_case(text_, tag))
            offers_.add(Offers(to_text(pair.array()->elements()[1]).view()));
    }
}

bool GridText::has_column(std::string_view name) const {
    return lists_column(listed_columns_, name) ||
           std::ranges::any_of(columns_,
                               [&](const std::string& known) { return equal_ignore_case(known, name); });
}

} // namespace tabrixdb
