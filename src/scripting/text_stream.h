#pragma once

#include "automation/object.h"

#include <string>
#include <string_view>

namespace tabrixdb::scripting {

// A text file that a page reads or writes, in the site's code page. Reading has the whole text at hand; what
// is written goes to the disk in larger parts, and with Close or the last reference.
class TextStream final : public Object {
public:
    // Reads `text`.
    explicit TextStream(std::string text) : text_(std::move(text)) {}

    // Writes at the end of the file `path`, which is there.
    struct Append {
        std::string path;
    };

    explicit TextStream(Append append) : path_(std::move(append.path)), writes_(true) {}

    ~TextStream() override;

    const ClassInfo& class_info() const override;

private:
    std::string read(std::int32_t count);
    std::string read_line();
    std::string read_all();

    void skip(std::int32_t count) { read(count); }

    void skip_line() { read_line(); }

    void write(const std::string& text);
    void write_line(const std::string& text);
    void write_blank_lines(std::int32_t count);
    void close();
    bool at_end_of_stream() const;
    bool at_end_of_line() const;

    std::int32_t line() const { return line_; }

    void check(bool writes) const;
    void flush();

    std::string text_; // read: all of it; written: what is not on the disk yet
    std::string path_;
    std::size_t at_ = 0;
    std::int32_t line_ = 1;
    bool writes_ = false;
    bool closed_ = false;
};

} // namespace tabrixdb::scripting
