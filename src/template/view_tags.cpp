#include "template/view_tags.h"

#include "automation/text.h"
#include "engine/report.h"
#include "template/positions.h"

#include <array>
#include <utility>

namespace tabrixdb {

namespace {

constexpr auto kShortCodes = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"tx;", "text;"},
    {"me;", "memo;"},
    {"sn;", "select;normal;"},
    {"sl;", "select;lookup;"},
    {"cl;", "choice;"},
    {"cf;", "choice_fromfield;"},
    {"xi;", "checkbox;"},
    {"xf;", "checkbox_fromfield;"},
    {"dt;", "date;"},
    {"un;", "upload;"},
    {"ui;", "uploadimage;"},
    {"ud;", "uploaddb;"},
    {"udi;", "uploaddbimage;"},
});

// Deliberately everywhere in the text, also inside other words.
std::string expand_short_codes(std::string specification) {
    for (const auto& [code, name] : kShortCodes)
        specification = replace_ignore_case(specification, code, name);
    return specification;
}

struct Modes {
    bool edit = false;
    bool add = false;
};

// Drops the mode prefix of a specification. Without one it is for edit mode.
Modes take_modes(std::string& specification) {
    constexpr auto kPrefixes = std::to_array<std::pair<std::string_view, Modes>>({
        {"E;", {.edit = true, .add = false}},
        {"A;", {.edit = false, .add = true}},
        {"EA;", {.edit = true, .add = true}},
    });
    for (const auto& [prefix, modes] : kPrefixes)
        if (equal_ignore_case(std::string_view(specification).substr(0, prefix.size()), prefix)) {
            specification.erase(0, prefix.size());
            return modes;
        }
    return {.edit = true, .add = false};
}

void choose_views(DbField& field, std::string specification) {
    const Modes modes = take_modes(specification);
    const bool edit = modes.edit && field.view(FormMode::Edit) == "NORMAL";
    const bool add = modes.add && field.view(FormMode::Add) == "NORMAL";
    if (edit || add)
        specification = expand_short_codes(std::move(specification));
    if (edit)
        field.set_view(FormMode::Edit, specification);
    if (add)
        field.set_view(FormMode::Add, specification);
}

// Reads the first view tag of a column under one form of its name; another with another specification
// deliberately stays as it is written. False when there is none.
bool parse_view_tag(std::string& text, const std::string& name, DbField& field) {
    const std::string start = "#~" + name + "[";
    constexpr std::string_view kEnd = "]~#";
    const std::size_t from = find_short(text, start);
    const std::size_t to = from == kNotFound ? kNotFound : find_short(text, kEnd, from);
    if (to == kNotFound)
        return false;
    const std::string tag = text.substr(from, to + kEnd.size() - from);
    const std::string specification = text.substr(from + start.size(), to - from - start.size());
    text = replace_ignore_case(text, tag, "#~" + name + "~#");
    choose_views(field, specification);
    return true;
}

} // namespace

void parse_view_tags(std::string& text, const DbSource& source) {
    guard("Parse_ViewTags_From_Template", [&] {
        const auto& columns = source.records().columns();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const std::string& name = columns[i].name;
            if (!parse_view_tag(text, name, source.field_at(i)) && name.find(' ') != std::string::npos)
                parse_view_tag(text, posted_name(name), source.field_at(i));
        }
    });
}

} // namespace tabrixdb
