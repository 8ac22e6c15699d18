#include "scripting/script_control_error.h"

#include "automation/member.h"
#include "vbscript/source.h"

namespace tabrixdb::scripting {

namespace {

template <auto Field>
Member read_only(std::string_view name) {
    Member member = field<Field>(name);
    member.let = nullptr;
    return member;
}

} // namespace

const ClassInfo& ScriptControlError::class_info() const {
    static const ClassInfo info(
        "Error", "",
        {read_only<&ScriptControlError::number_>("Number").as_default(),
         read_only<&ScriptControlError::source_>("Source"),
         read_only<&ScriptControlError::description_>("Description"),
         read_only<&ScriptControlError::help_file_>("HelpFile"),
         read_only<&ScriptControlError::help_context_>("HelpContext"),
         read_only<&ScriptControlError::text_>("Text"), read_only<&ScriptControlError::line_>("Line"),
         read_only<&ScriptControlError::column_>("Column"), method<&ScriptControlError::clear>("Clear")});
    return info;
}

void ScriptControlError::set(const Error& error) {
    clear();
    number_ = error.number();
    source_ = error.source();
    description_ = error.description();
    if (const auto* placed = dynamic_cast<const vbscript::ScriptError*>(&error)) {
        text_ = placed->source_line;
        line_ = placed->position.line;
        column_ = placed->position.column - 1;
    }
}

void ScriptControlError::clear() {
    number_ = help_context_ = line_ = column_ = 0;
    source_.clear();
    description_.clear();
    text_.clear();
}

} // namespace tabrixdb::scripting
