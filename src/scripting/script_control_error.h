#pragma once

#include "automation/error.h"
#include "automation/object.h"

#include <string>

namespace tabrixdb::scripting {

// The Error object of a script control: what its last call raised, and where in the code.
class ScriptControlError final : public Object {
public:
    const ClassInfo& class_info() const override;

    // A place comes with errors of a script (vbscript::ScriptError) only.
    void set(const Error& error);
    void clear();

private:
    std::int32_t number_ = 0;
    std::string source_;
    std::string description_;
    std::string help_file_; // an error of the language has none
    std::int32_t help_context_ = 0;
    std::string text_;        // the line of the code
    std::int32_t line_ = 0;   // from 1
    std::int32_t column_ = 0; // from 0
};

} // namespace tabrixdb::scripting
