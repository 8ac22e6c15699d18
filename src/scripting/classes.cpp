#include "scripting/classes.h"

#include "automation/text.h"
#include "scripting/dictionary.h"
#include "scripting/file_system_object.h"
#include "scripting/reg_exp.h"
#include "scripting/script_control.h"

namespace tabrixdb::scripting {

Ref<Object> create_object(std::string_view program_id) {
    if (equal_ignore_case(program_id, "Scripting.Dictionary"))
        return make_ref<Dictionary>();
    if (equal_ignore_case(program_id, "Scripting.FileSystemObject"))
        return make_ref<FileSystemObject>();
    if (equal_ignore_case(program_id, "VBScript.RegExp") || equal_ignore_case(program_id, "RegExp"))
        return make_ref<RegExp>();
    if (equal_ignore_case(program_id, "MSScriptControl.ScriptControl") ||
        equal_ignore_case(program_id, "ScriptControl"))
        return make_ref<ScriptControl>();
    return {};
}

} // namespace tabrixdb::scripting
