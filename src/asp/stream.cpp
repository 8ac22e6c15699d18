#include "asp/stream.h"

#include "ado/errors.h"
#include "asp/code_page.h"
#include "automation/conversions.h"
#include "automation/interrupt.h"
#include "automation/member.h"
#include "platform/host.h"

#include <algorithm>

namespace tabrixdb::asp {

namespace {

using ado::Code;

constexpr std::string_view kSource = "ADODB.Stream";

constexpr std::int32_t kBinary = 1;
constexpr std::int32_t kText = 2;
constexpr std::int32_t kReadAll = -1;
constexpr std::int32_t kReadLine = -2;
constexpr std::int32_t kWriteLine = 1;
constexpr std::int32_t kCreateNotExist = 1;
constexpr std::int32_t kCreateOverwrite = 2;

constexpr std::size_t kPartBytes = std::size_t{64} * 1024;
// A stream's size is a Long of the page.
constexpr std::size_t kMaxBytes = kMaxTextBytes;

constexpr std::uint32_t kUtf16 = 1200;

Error fail(Code code) {
    return ado::error(code, kSource);
}

platform::FileSystem& files() {
    return platform::Host::current().file_system();
}

// The bytes of the first `count` UTF-16 units of text in a code page.
std::size_t bytes_of_units(std::string_view text, std::size_t count, std::uint32_t code_page) {
    if (code_page == kUtf16)
        return std::min(text.size(), count > kMaxBytes ? text.size() : count * 2);
    if (code_page == kUtf8)
        return byte_of_unit(text, count);
    return std::min(text.size(), count);
}

} // namespace

const ClassInfo& Stream::class_info() const {
    static const ClassInfo info(
        "Stream", "ADODB.Stream",
        {method<&Stream::open>("Open", {{"Source", Variant::missing()},
                                        {"Mode", std::int32_t{0}},
                                        {"Options", std::int32_t{-1}},
                                        {"UserName", ""},
                                        {"Password", ""}}),
         method<&Stream::close>("Close"),
         method<&Stream::read>("Read", {{"NumBytes", kReadAll}}),
         method<&Stream::read_text>("ReadText", {{"NumChars", kReadAll}}),
         method<&Stream::skip_line>("SkipLine"),
         method<&Stream::write>("Write", {"Buffer"}),
         method<&Stream::write_text>("WriteText", {"Data", {"Options", std::int32_t{0}}}),
         method<&Stream::copy_to>("CopyTo", {"DestStream", {"CharNumber", kReadAll}}),
         method<&Stream::set_eos>("SetEOS"),
         method<&Stream::flush>("Flush"),
         method<&Stream::load_from_file>("LoadFromFile", {"FileName"}),
         method<&Stream::save_to_file>("SaveToFile", {"FileName", {"Options", kCreateNotExist}}),
         property<&Stream::type, &Stream::set_type>("Type"),
         property<&Stream::charset, &Stream::set_charset>("Charset"),
         property<&Stream::line_separator, &Stream::set_line_separator>("LineSeparator"),
         property<&Stream::mode, &Stream::set_mode>("Mode"),
         property<&Stream::position, &Stream::set_position>("Position"),
         property<&Stream::size>("Size"),
         property<&Stream::eos>("EOS"),
         property<&Stream::state>("State")});
    return info;
}

Stream::~Stream() {
    Interrupt::let_go(held_);
}

// --- State -----------------------------------------------------------------------------------------

void Stream::check_open() const {
    if (!open_)
        throw fail(Code::ObjectClosed);
}

void Stream::check_type(std::int32_t type) const {
    check_open();
    if (type_ != type)
        throw fail(Code::IllegalOperation);
}

// Type and charset say how what lies before the position was read.
void Stream::check_start() const {
    if (position_ != 0)
        throw fail(Code::IllegalOperation);
}

// A stream of its own in memory is the only kind: a source would be an address of another provider.
void Stream::open(const Variant& source, std::int32_t mode, std::int32_t, const std::string&,
                  const std::string&) {
    if (open_)
        throw fail(Code::ObjectOpen);
    if (!source.is_missing() && !source.is_empty() && !to_text(source).empty())
        throw fail(Code::FeatureNotAvailable);
    set_mode(mode);
    open_ = true;
}

void Stream::close() {
    check_open();
    bytes_ = {};
    Interrupt::let_go(std::exchange(held_, 0));
    position_ = 0;
    open_ = false;
}

void Stream::set_type(std::int32_t type) {
    if (type != kBinary && type != kText)
        throw fail(Code::InvalidArgument);
    check_start();
    type_ = type;
}

void Stream::set_charset(const std::string& charset) {
    const bool is_unicode = equal_ignore_case(charset, "unicode") || equal_ignore_case(charset, "utf-16");
    const auto known = is_unicode ? std::optional(kUtf16) : code_page_of(charset);
    if (!known)
        throw fail(Code::InvalidArgument);
    check_start();
    charset_ = charset;
    code_page_ = *known;
}

void Stream::set_line_separator(std::int32_t code) {
    if (code != -1 && code != 10 && code != 13)
        throw fail(Code::InvalidArgument);
    line_separator_ = code;
}

// Kept for pages that set it: a stream in memory can always be read and written.
void Stream::set_mode(std::int32_t mode) {
    if (mode < 0 || mode > 16)
        throw fail(Code::InvalidArgument);
    mode_ = mode;
}

std::int32_t Stream::position() const {
    check_open();
    return static_cast<std::int32_t>(position_);
}

// Behind the end, the stream grows.
void Stream::set_position(std::int32_t position) {
    check_open();
    if (position < 0)
        throw fail(Code::InvalidArgument);
    if (static_cast<std::size_t>(position) > bytes_.size())
        resize(static_cast<std::size_t>(position));
    position_ = static_cast<std::size_t>(position);
}

std::int32_t Stream::size() const {
    check_open();
    return static_cast<std::int32_t>(bytes_.size());
}

bool Stream::eos() const {
    check_open();
    return position_ == bytes_.size();
}

void Stream::set_eos() {
    check_open();
    bytes_.resize(position_);
}

void Stream::resize(std::size_t size) {
    if (size > held_) {
        if (size > kMaxBytes || !Interrupt::hold(size - held_))
            throw Error(14);
        held_ = size;
    }
    bytes_.resize(size);
}

void Stream::put(std::string_view bytes) {
    if (bytes.size() > bytes_.size() - position_)
        resize(position_ + bytes.size());
    bytes.copy(bytes_.data() + position_, bytes.size());
    position_ += bytes.size();
}

// --- Bytes -----------------------------------------------------------------------------------------

Variant Stream::read(std::int32_t count) {
    check_type(kBinary);
    if (count < kReadAll)
        throw fail(Code::InvalidArgument);
    if (eos())
        return Variant::null();
    const std::string_view taken = rest().substr(0, static_cast<std::size_t>(count)); // -1: all
    position_ += taken.size();
    return Variant::byte_array(taken);
}

void Stream::write(const Variant& bytes) {
    check_type(kBinary);
    if (!bytes.is_byte_array())
        throw fail(Code::InvalidArgument);
    put(bytes.text());
}

void Stream::copy_to(const Ref<Stream>& target, std::int32_t count) {
    check_open();
    if (!target || count < kReadAll || target.get() == this)
        throw fail(Code::InvalidArgument);
    target->check_type(type_);
    if (type_ == kText)
        return target->write_text(read_text(count), 0);
    const std::string_view taken = rest().substr(0, static_cast<std::size_t>(count));
    target->put(taken);
    position_ += taken.size();
}

// --- Text ------------------------------------------------------------------------------------------

std::string_view Stream::mark() const {
    return code_page_ == kUtf8 ? "\xEF\xBB\xBF" : code_page_ == kUtf16 ? "\xFF\xFE" : "";
}

std::string_view Stream::separator() const {
    return line_separator_ == 10 ? "\n" : line_separator_ == 13 ? "\r" : "\r\n";
}

std::string Stream::read_text(std::int32_t count) {
    check_type(kText);
    if (count < kReadLine)
        throw fail(Code::InvalidArgument);
    if (position_ == 0 && rest().starts_with(mark()))
        position_ = mark().size();
    std::string_view taken = rest();
    std::size_t passed = 0;
    if (count == kReadLine) {
        const std::string wanted = encode_text(separator(), code_page_);
        std::size_t end = taken.find(wanted);
        while (code_page_ == kUtf16 && end != std::string_view::npos && end % 2 != 0)
            end = taken.find(wanted, end + 1);
        passed = end == std::string_view::npos ? 0 : wanted.size();
        taken = taken.substr(0, end);
    } else if (count != kReadAll) {
        taken = taken.substr(0, bytes_of_units(taken, static_cast<std::size_t>(count), code_page_));
    }
    std::string text = decode_bytes(std::string(taken), code_page_);
    position_ += taken.size() + passed;
    return text;
}

void Stream::skip_line() {
    read_text(kReadLine);
}

void Stream::write_text(const std::string& text, std::int32_t options) {
    check_type(kText);
    if (bytes_.empty())
        put(mark());
    put(encode_text(text, code_page_));
    if (options == kWriteLine)
        put(encode_text(separator(), code_page_));
}

// --- Files -----------------------------------------------------------------------------------------

void Stream::load_from_file(const std::string& path) {
    check_open();
    try {
        const auto file = files().open(path);
        position_ = 0;
        bytes_.clear();
        for (std::string part; !(part = file->read(kPartBytes)).empty();)
            put(part);
    } catch (const Error& error) {
        if (error.number() == 14)
            throw;
        throw fail(Code::FileNotOpened);
    }
    position_ = 0;
}

void Stream::save_to_file(const std::string& path, std::int32_t options) {
    check_open();
    if (options != kCreateNotExist && options != kCreateOverwrite)
        throw fail(Code::InvalidArgument);
    try {
        const auto file = files().create(path);
        file->write(bytes_);
        if (options == kCreateOverwrite)
            file->finish();
        else if (!file->finish_new())
            throw fail(Code::FileNotWritten);
    } catch (const Error&) {
        throw fail(Code::FileNotWritten);
    }
    position_ = 0;
}

} // namespace tabrixdb::asp
