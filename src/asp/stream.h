#pragma once

#include "automation/object.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tabrixdb::asp {

// ADODB.Stream: bytes in memory, read and written as bytes or as text, from and to files. Errors are ADO's:
// 3001 for wrong arguments, 3002 and 3004 for files, 3219 for what the type of the stream does not have, 3704
// when it is closed.
class Stream final : public Object {
public:
    ~Stream() override;

    const ClassInfo& class_info() const override;

private:
    void open(const Variant& source, std::int32_t mode, std::int32_t options, const std::string& user,
              const std::string& password);
    void close();
    Variant read(std::int32_t count);
    std::string read_text(std::int32_t count);
    void skip_line();
    void write(const Variant& bytes);
    void write_text(const std::string& text, std::int32_t options);
    void copy_to(const Ref<Stream>& target, std::int32_t count);
    void set_eos();
    void load_from_file(const std::string& path);
    void save_to_file(const std::string& path, std::int32_t options);

    void flush() const { check_open(); }

    std::int32_t type() const { return type_; }

    void set_type(std::int32_t type);

    std::string charset() const { return charset_; }

    void set_charset(const std::string& charset);

    std::int32_t line_separator() const { return line_separator_; }

    void set_line_separator(std::int32_t code);

    std::int32_t mode() const { return mode_; }

    void set_mode(std::int32_t mode);
    std::int32_t position() const;
    void set_position(std::int32_t position);
    std::int32_t size() const;
    bool eos() const;

    std::int32_t state() const { return open_ ? 1 : 0; }

    void check_open() const;
    void check_type(std::int32_t type) const;
    void check_start() const;
    // Makes room, counted against what the page may hold.
    void resize(std::size_t size);
    void put(std::string_view bytes);
    std::string_view mark() const; // the byte order mark of the charset
    std::string_view separator() const;

    std::string_view rest() const { return std::string_view(bytes_).substr(position_); }

    std::string bytes_;
    std::size_t position_ = 0;
    std::size_t held_ = 0; // bytes that are counted
    std::int32_t type_ = 2;
    std::string charset_ = "Unicode";
    std::uint32_t code_page_ = 1200;
    std::int32_t line_separator_ = -1;
    std::int32_t mode_ = 0;
    bool open_ = false;
};

} // namespace tabrixdb::asp
