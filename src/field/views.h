#pragma once

#include "field/db_field.h"

#include <span>
#include <string>
#include <string_view>

namespace tabrixdb {

// The elements of a view specification: element 0 is the keyword, the others are positional; one that is
// there but empty counts as given.
using ViewElements = std::span<const std::string>;

// Renders one kind of control with its placeholders (#~field_name~#, #~field_value~#, #~checked~#,
// #~grid_name~#) still in it. May set the field's Default_value, Required, ItemList, CheckList and
// UploadDBCaption. A failure is raised.
using ViewRenderer = std::string (*)(DbField& field, ViewElements elements);

struct ViewKind {
    std::string_view keyword;     // element 0 in capitals
    std::string_view kind;        // what the mode's view type records
    std::string_view sub_keyword; // element 1 in capitals, where it decides; else ""
    ViewRenderer render;
    std::string_view label; // under which its failures are reported, after "Class DbField - "
};

// nullptr for a keyword that is not known. SELECT is told apart by element 1 (LOOKUP or NORMAL in any case);
// anything else there gives nullptr.
const ViewKind* find_view_kind(ViewElements elements);

// A value inside a control's HTML: as text that a browser reads back as it was, and that holds no tag.
std::string control_text(std::string_view value);

} // namespace tabrixdb
