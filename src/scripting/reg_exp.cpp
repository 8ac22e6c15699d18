#include "scripting/reg_exp.h"

#include "automation/error.h"
#include "automation/member.h"
#include "scripting/reg_exp_matches.h"

namespace tabrixdb::scripting {

namespace {

using Part = PatternSearch::Part;

std::string_view cut(std::string_view text, Part part) noexcept {
    return part.exists() ? text.substr(part.begin, part.end - part.begin) : std::string_view();
}

bool is_digit(char c) noexcept {
    return c >= '0' && c <= '9';
}

// The number of a group behind a dollar, of as many digits as there are groups for; 0 when it is none.
std::size_t group_at(std::string_view digits, std::size_t groups, std::size_t& length) noexcept {
    std::size_t number = 0;
    length = 0;
    while (length < 2 && length < digits.size() && is_digit(digits[length])) {
        const std::size_t longer = number * 10 + static_cast<std::size_t>(digits[length] - '0');
        if (longer > groups)
            break;
        number = longer;
        ++length;
    }
    return number;
}

void append_replacement(std::string& out, std::string_view replacement, std::string_view text,
                        std::span<const Part> parts) {
    for (std::size_t at = 0; at < replacement.size();) {
        const std::size_t dollar = std::min(replacement.find('$', at), replacement.size());
        out += replacement.substr(at, dollar - at);
        at = dollar;
        if (at == replacement.size())
            return;
        const std::string_view after = replacement.substr(at + 1);
        std::size_t length = 1;
        switch (after.empty() ? '\0' : after.front()) {
        case '$':
            out += '$';
            break;
        case '&':
            out += cut(text, parts[0]);
            break;
        case '`':
            out += text.substr(0, parts[0].begin);
            break;
        case '\'':
            out += text.substr(parts[0].end);
            break;
        default:
            if (const std::size_t group = group_at(after, parts.size() - 1, length)) {
                out += cut(text, parts[group]);
            } else {
                out += '$';
                length = 0;
            }
        }
        at += 1 + length;
        if (out.size() > kMaxTextBytes)
            throw Error(14);
    }
}

} // namespace

const ClassInfo& RegExp::class_info() const {
    static const ClassInfo info(
        "IRegExp2", "VBScript.RegExp",
        {property<&RegExp::source, &RegExp::set_source>("Pattern"), field<&RegExp::global_>("Global"),
         property<&RegExp::ignore_case, &RegExp::set_ignore_case>("IgnoreCase"),
         property<&RegExp::multi_line, &RegExp::set_multi_line>("Multiline"),
         method<&RegExp::test>("Test", {"String"}), method<&RegExp::execute>("Execute", {"String"}),
         method<&RegExp::replace>("Replace", {"String", "Replacement"})});
    return info;
}

void RegExp::set_source(const std::string& source) {
    if (source != source_)
        pattern_.reset();
    source_ = source;
}

void RegExp::set_ignore_case(bool ignore) {
    if (ignore != ignore_case_)
        pattern_.reset();
    ignore_case_ = ignore;
}

void RegExp::set_multi_line(bool multi_line) {
    if (multi_line != multi_line_)
        pattern_.reset();
    multi_line_ = multi_line;
}

const Pattern& RegExp::pattern() {
    if (!pattern_)
        pattern_.emplace(source_, ignore_case_, multi_line_);
    return *pattern_;
}

bool RegExp::test(const Text& text) {
    return PatternSearch(pattern(), text.view()).next();
}

Ref<Object> RegExp::execute(const Text& text) {
    PatternSearch search(pattern(), text.view());
    return make_ref<Matches>(text, search, global_);
}

Text RegExp::replace(const Text& text, const std::string& replacement) {
    PatternSearch search(pattern(), text.view());
    std::string out;
    std::size_t copied = 0;
    while (search.next()) {
        const Part found = search.parts().front();
        out += text.view().substr(copied, found.begin - copied);
        append_replacement(out, replacement, text.view(), search.parts());
        copied = found.end;
        if (!global_)
            break;
    }
    if (copied == 0 && out.empty())
        return text;
    out += text.view().substr(copied);
    return Text(out);
}

} // namespace tabrixdb::scripting
