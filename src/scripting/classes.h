#pragma once

#include "automation/object.h"

#include <string_view>

namespace tabrixdb::scripting {

// A new object of the class that a page names (`Scripting.Dictionary`, `Scripting.FileSystemObject`,
// `VBScript.RegExp`, `MSScriptControl.ScriptControl`), ignoring case; empty for any other name.
Ref<Object> create_object(std::string_view program_id);

} // namespace tabrixdb::scripting
