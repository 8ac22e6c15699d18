#include "asp/code_page.h"

#include "automation/text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <numeric>
#include <optional>
#include <unordered_map>

#include <iconv.h>

namespace tabrixdb::asp {

namespace {

struct CodePage {
    std::uint32_t number;
    std::string_view charset; // also iconv's name of it
};

constexpr CodePage kCodePages[] = {
    {437, "ibm437"},        {850, "ibm850"},        {874, "windows-874"},   {932, "shift_jis"},
    {936, "gbk"},           {949, "euc-kr"},        {950, "big5"},          {1200, "utf-16le"},
    {1250, "windows-1250"}, {1251, "windows-1251"}, {1252, "windows-1252"}, {1253, "windows-1253"},
    {1254, "windows-1254"}, {1255, "windows-1255"}, {1256, "windows-1256"}, {1257, "windows-1257"},
    {1258, "windows-1258"}, {20127, "us-ascii"},    {20866, "koi8-r"},      {21866, "koi8-u"},
    {28591, "iso-8859-1"},  {28592, "iso-8859-2"},  {28593, "iso-8859-3"},  {28594, "iso-8859-4"},
    {28595, "iso-8859-5"},  {28596, "iso-8859-6"},  {28597, "iso-8859-7"},  {28598, "iso-8859-8"},
    {28599, "iso-8859-9"},  {28605, "iso-8859-15"}, {50220, "iso-2022-jp"}, {51932, "euc-jp"},
    {54936, "gb18030"},     {kUtf8, "utf-8"},
};

const CodePage* find(std::uint32_t number) noexcept {
    const auto found = std::ranges::find(kCodePages, number, &CodePage::number);
    return found == std::end(kCodePages) ? nullptr : found;
}

// U+FFFD is what the reader gives for a byte that belongs to no character; one that stands in the text is
// three bytes long, a malformed byte is one.
bool is_valid_utf8(std::string_view text) noexcept {
    for (std::size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            ++at;
            continue;
        }
        const std::size_t start = at;
        const char32_t c = next_code_point(text, at);
        if ((c == 0xFFFD && at == start + 1) || (c >= 0xD800 && c <= 0xDFFF))
            return false;
    }
    return true;
}

std::string with_valid_utf8(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 16);
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = next_code_point(text, at);
        append_utf8(out, c >= 0xD800 && c <= 0xDFFF ? U'\xFFFD' : c);
    }
    return out;
}

class Converter {
public:
    Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}

    ~Converter() {
        if (valid())
            iconv_close(handle_);
    }

    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool valid() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    // `skip`: how many bytes of the input one that can't be converted takes.
    template <class Skip>
    std::string convert(std::string_view in, std::string_view replacement, Skip skip) {
        std::string out;
        out.reserve(in.size() * 2);
        char* from = const_cast<char*>(in.data()); // iconv does not write there
        std::size_t left = in.size();
        char buffer[4096];
        while (left > 0) {
            char* to = buffer;
            std::size_t room = sizeof buffer;
            const std::size_t result = iconv(handle_, &from, &left, &to, &room);
            const int error = errno;
            out.append(buffer, static_cast<std::size_t>(to - buffer));
            if (result != static_cast<std::size_t>(-1) || error == E2BIG)
                continue;
            out += replacement;
            const std::size_t skipped = std::min(left, skip(from, left));
            from += skipped;
            left -= skipped;
        }
        return out;
    }

private:
    iconv_t handle_;
};

constexpr std::size_t kBytes = 256;
constexpr char32_t kUnreadable = 0xFFFD;

// The characters of the bytes of a code page; nullopt when it has characters of several bytes.
std::optional<std::array<char32_t, kBytes>> characters_of(std::uint32_t code_page) {
    if (code_page == kUtf8)
        return std::nullopt;
    std::string bytes(kBytes, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    const std::string text = decode_bytes(std::move(bytes), code_page);
    std::array<char32_t, kBytes> characters{};
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) {
        const char32_t c = next_code_point(text, at);
        if (count < kBytes)
            characters[count] = c == kUnreadable ? static_cast<char32_t>(count) : c;
    }
    return count == kBytes ? std::optional(characters) : std::nullopt;
}

std::array<char32_t, kBytes> single_characters(std::uint32_t code_page) {
    constexpr std::uint32_t kWestern = 1252;
    const auto characters = characters_of(code_page);
    return characters ? *characters : *characters_of(kWestern);
}

} // namespace

bool is_code_page(std::uint32_t code_page) noexcept {
    return find(code_page) != nullptr;
}

std::string_view charset_name(std::uint32_t code_page) noexcept {
    const CodePage* found = find(code_page);
    return found ? found->charset : "utf-8";
}

std::optional<std::uint32_t> code_page_of(std::string_view charset) noexcept {
    const auto found = std::ranges::find_if(
        kCodePages, [&](const CodePage& page) { return equal_ignore_case(page.charset, charset); });
    return found == std::end(kCodePages) ? std::nullopt : std::optional(found->number);
}

std::string decode_bytes(std::string bytes, std::uint32_t code_page) {
    const CodePage* page = find(code_page);
    if (page && code_page != kUtf8) {
        Converter converter("UTF-8", std::string(page->charset).c_str());
        if (converter.valid())
            return converter.convert(bytes, "\xEF\xBF\xBD",
                                     [](const char*, std::size_t) { return std::size_t{1}; });
    }
    return is_valid_utf8(bytes) ? std::move(bytes) : with_valid_utf8(bytes);
}

std::string encode_text(std::string_view text, std::uint32_t code_page) {
    const CodePage* page = find(code_page);
    if (page && code_page != kUtf8) {
        Converter converter(std::string(page->charset).c_str(), "UTF-8");
        if (converter.valid())
            return converter.convert(text, "?", [](const char* at, std::size_t left) {
                std::size_t length = 0;
                next_code_point(std::string_view(at, left), length);
                return length;
            });
    }
    return std::string(text);
}

std::string decode_single_bytes(std::string_view bytes, std::uint32_t code_page) {
    const auto characters = single_characters(code_page);
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes)
        append_utf8(text, characters[static_cast<unsigned char>(byte)]);
    return text;
}

std::string encode_single_bytes(std::string_view text, std::uint32_t code_page) {
    const auto characters = single_characters(code_page);
    std::unordered_map<char32_t, char> bytes;
    for (std::size_t i = 0; i < kBytes; ++i)
        bytes.emplace(characters[i], static_cast<char>(i));
    std::string encoded;
    encoded.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto found = bytes.find(next_code_point(text, at));
        encoded += found == bytes.end() ? '?' : found->second;
    }
    return encoded;
}

std::string decode_file(std::string bytes, std::uint32_t code_page) {
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.erase(0, 3);
        return decode_bytes(std::move(bytes), kUtf8);
    }
    if (bytes.starts_with("\xFF\xFE"))
        return decode_bytes(bytes.substr(2), 1200);
    if (code_page == kUtf8 && !is_valid_utf8(bytes))
        code_page = 1252;
    return decode_bytes(std::move(bytes), code_page);
}

} // namespace tabrixdb::asp
