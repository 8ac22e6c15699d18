#include "scripting/text_stream.h"

#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/member.h"
#include "platform/host.h"

#include <algorithm>

namespace tabrixdb::scripting {

namespace {

constexpr std::int32_t kErrorMode = 54; // Bad file mode
constexpr std::int32_t kErrorEnd = 62;  // Input past end of file
constexpr std::size_t kPartBytes = std::size_t{64} * 1024;

} // namespace

const ClassInfo& TextStream::class_info() const {
    static const ClassInfo info(
        "TextStream", "",
        {method<&TextStream::read>("Read", {"Characters"}), method<&TextStream::read_line>("ReadLine"),
         method<&TextStream::read_all>("ReadAll"), method<&TextStream::skip>("Skip", {"Characters"}),
         method<&TextStream::skip_line>("SkipLine"), method<&TextStream::write>("Write", {"Text"}),
         method<&TextStream::write_line>("WriteLine", {{"Text", ""}}),
         method<&TextStream::write_blank_lines>("WriteBlankLines", {"Lines"}),
         method<&TextStream::close>("Close"), property<&TextStream::at_end_of_stream>("AtEndOfStream"),
         property<&TextStream::at_end_of_line>("AtEndOfLine"), property<&TextStream::line>("Line")});
    return info;
}

TextStream::~TextStream() {
    try {
        close();
    } catch (const Error&) { // nobody is left to be told
    }
}

void TextStream::check(bool writes) const {
    if (closed_ || writes != writes_)
        throw Error(kErrorMode);
}

std::string TextStream::read(std::int32_t count) {
    check(false);
    if (count < 0)
        throw Error(kErrorCall);
    if (at_ == text_.size())
        throw Error(kErrorEnd);
    const std::string_view rest = std::string_view(text_).substr(at_);
    const std::string_view taken = rest.substr(0, byte_of_unit(rest, static_cast<std::size_t>(count)));
    at_ += taken.size();
    line_ += static_cast<std::int32_t>(std::ranges::count(taken, '\n'));
    return std::string(taken);
}

std::string TextStream::read_line() {
    check(false);
    if (at_ == text_.size())
        throw Error(kErrorEnd);
    const std::size_t end = std::min(text_.find('\n', at_), text_.size());
    std::string line = text_.substr(at_, end - at_);
    if (line.ends_with('\r'))
        line.pop_back();
    at_ = std::min(end + 1, text_.size());
    ++line_;
    return line;
}

std::string TextStream::read_all() {
    check(false);
    if (at_ == text_.size()) // an empty file too
        throw Error(kErrorEnd);
    std::string rest = text_.substr(at_);
    at_ = text_.size();
    return rest;
}

void TextStream::write(const std::string& text) {
    check(true);
    text_ += text;
    line_ += static_cast<std::int32_t>(std::ranges::count(text, '\n'));
    if (text_.size() >= kPartBytes)
        flush();
}

void TextStream::write_line(const std::string& text) {
    write(text + "\r\n");
}

void TextStream::write_blank_lines(std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i)
        write("\r\n");
}

void TextStream::flush() {
    const std::string part = std::exchange(text_, {});
    if (!part.empty())
        platform::Host::current().file_system().write_text(path_, part, true);
}

void TextStream::close() {
    if (closed_)
        return;
    closed_ = true;
    if (writes_)
        flush();
}

bool TextStream::at_end_of_stream() const {
    check(false);
    return at_ == text_.size();
}

bool TextStream::at_end_of_line() const {
    check(false);
    return at_ == text_.size() || text_[at_] == '\n' || text_[at_] == '\r';
}

} // namespace tabrixdb::scripting
