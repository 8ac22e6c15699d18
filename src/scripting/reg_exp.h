#pragma once

#include "automation/object.h"
#include "scripting/pattern.h"

#include <optional>
#include <string>

namespace tabrixdb::scripting {

// VBScript.RegExp, and the class that scripts name RegExp. Errors 5017 to 5021 for a pattern that is none,
// when it is used; Error 5 when the pattern needs too many steps for a text.
class RegExp final : public Object {
public:
    const ClassInfo& class_info() const override;

private:
    const std::string& source() const { return source_; }

    void set_source(const std::string& source);

    bool ignore_case() const { return ignore_case_; }

    void set_ignore_case(bool ignore);

    bool multi_line() const { return multi_line_; }

    void set_multi_line(bool multi_line);

    bool test(const Text& text);
    Ref<Object> execute(const Text& text);
    // In the replacement $1 to $99 are groups, $& the match, $` and $' what is before and behind it, $$ a
    // dollar.
    Text replace(const Text& text, const std::string& replacement);

    const Pattern& pattern();

    std::string source_;
    bool global_ = false;
    bool ignore_case_ = false;
    bool multi_line_ = false;
    std::optional<Pattern> pattern_; // compiled when it is used
};

} // namespace tabrixdb::scripting
