#include "automation/error.h"
#include "automation/text.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

const std::string kHigh = "\xED\xA0\xBD", kLow = "\xED\xB8\x80"; // the halves of U+1F600

TEST(Text, CountsUnits) {
    EXPECT_EQ(Text("").units(), 0u);
    EXPECT_EQ(Text("aé€😀").units(), 5u);
    EXPECT_EQ(Text(kHigh).units(), 1u);
    EXPECT_EQ(Text("\xFF\xC3").units(), 2u);                         // malformed bytes count as one each
    EXPECT_EQ(Text("\xF5\x80\x80\x80\xF4\x90\x80\x80").units(), 8u); // behind the last character
    EXPECT_EQ(Text("\xF0\x80\x80\x80\xE0\x80\x80").units(), 7u);     // longer than needed
    EXPECT_EQ(Text::bytes("abc").units(), 1u);
    EXPECT_TRUE(Text("abc").ascii());
    EXPECT_FALSE(Text("é").ascii());
    EXPECT_FALSE(Text::bytes("abc").ascii());
}

TEST(Text, JoinsHalvesOfAPair) {
    Text text(kHigh);
    text.append(kLow + "!");
    EXPECT_EQ(text.view(), "😀!");
    EXPECT_EQ(text.units(), 3u);
    Text apart(kLow);
    apart.append(kHigh);
    EXPECT_EQ(apart.view(), kLow + kHigh);
}

TEST(Text, SharesUntilOneHolderAppends) {
    Text a("abc");
    Text b = a;
    EXPECT_EQ(a.view().data(), b.view().data());
    a.append("d");
    EXPECT_EQ(b.view(), "abc");
    EXPECT_EQ(a.view(), "abcd");
    a.append(a.view());
    EXPECT_EQ(a.view(), "abcdabcd");
    a.append({});
    EXPECT_EQ(a, Text("abcdabcd"));
}

TEST(Text, RefusesWhatIsTooLong) {
    Text text(std::string(1024, 'x'));
    EXPECT_THROW(text.append({text.view().data(), kMaxTextBytes}), Error);
    EXPECT_EQ(text.size(), 1024u);
}

// Appending piece by piece, with the length asked for or not, against a plain string.
TEST(Text, RandomAppendsKeepBytesAndLength) {
    const std::vector<std::string> pieces{"",  "a",    "bcdefghijk", "é",    "€",
                                          "😀", "\xC3", "\xA9",       "\x80", "\xF0\x9F"};
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        Text text;
        std::string plain;
        for (int i = 0; i < 20; ++i) {
            const std::string& piece = pieces[random() % pieces.size()];
            text.append(piece);
            plain += piece;
            if (random() % 2) {
                EXPECT_EQ(text.units(), utf16_length(plain));
            }
        }
        EXPECT_EQ(text.view(), plain);
        EXPECT_EQ(text.units(), utf16_length(plain));
    }
}

// Units and bytes against walking the text one code point at a time.
TEST(Unicode, PositionsAgreeWithDecoding) {
    const std::vector<std::string> pieces{"a", "long run of ascii ", "é", "€", "😀", "\xFF", "\xE2\x82"};
    std::mt19937 random(6);
    for (int round = 0; round < 500; ++round) {
        std::string text;
        for (std::size_t n = random() % 12; n > 0; --n)
            text += pieces[random() % pieces.size()];
        std::size_t units = 0;
        for (std::size_t at = 0; at < text.size();) {
            EXPECT_EQ(byte_of_unit(text, units), at);
            const char32_t c = next_code_point(text, at);
            if (c >= 0x10000) {
                EXPECT_EQ(byte_of_unit(text, units + 1), at); // within the pair: rounded up
            }
            units += c >= 0x10000 ? 2 : 1;
        }
        EXPECT_EQ(utf16_length(text), units);
        EXPECT_EQ(byte_of_unit(text, units + 5), text.size());
    }
}

TEST(Unicode, Utf16ThereAndBack) {
    for (const std::string& text : {std::string("aé€😀"), kHigh, kLow + kHigh, std::string("\0x", 2)}) {
        std::string back;
        append_utf16(back, to_utf16(text));
        EXPECT_EQ(back, text);
    }
    EXPECT_EQ(to_utf16("é😀"), std::string("\xE9\0\x3D\xD8\0\xDE", 6));
    std::string out;
    append_utf16(out, std::string_view("a\0b", 3)); // the odd byte is left out
    EXPECT_EQ(out, "a");
}

TEST(Unicode, AnyBytesDecode) {
    std::mt19937 random(8);
    for (int round = 0; round < 500; ++round) {
        std::string bytes;
        for (std::size_t n = random() % 20; n > 0; --n)
            bytes += static_cast<char>(random());
        std::string decoded;
        for (std::size_t at = 0; at < bytes.size();)
            append_utf8(decoded, next_code_point(bytes, at));
        EXPECT_EQ(utf16_length(decoded), utf16_length(bytes));
        EXPECT_EQ(lower(bytes).size(), bytes.size());
        EXPECT_EQ(compare_ignore_case(bytes, upper(bytes)) == 0, equal_ignore_case(bytes, upper(bytes)));
    }
}

TEST(IgnoringCase, PairsKeepTheirLengthAndComeBack) {
    EXPECT_EQ(lower("ÀÞĐŁŸΆΩЀЯҐ"), "àþđłÿάωѐяґ");
    EXPECT_EQ(upper("àþđłÿάωѐяґ"), "ÀÞĐŁŸΆΩЀЯҐ");
    EXPECT_EQ(upper("ß×÷ı"), "ß×÷ı");
    for (char32_t c = 0x80; c < 0x800; ++c) {
        std::string text;
        append_utf8(text, c);
        EXPECT_EQ(lower(upper(text)), lower(text)) << static_cast<std::uint32_t>(c);
        EXPECT_TRUE(equal_ignore_case(upper(text), text)) << static_cast<std::uint32_t>(c);
        EXPECT_EQ(IgnoreCaseHash()(upper(text)), IgnoreCaseHash()(text)) << static_cast<std::uint32_t>(c);
    }
}

TEST(IgnoringCase, FindsAndReplaces) {
    EXPECT_EQ(find_ignore_case("Straße", "SSE"), std::string_view::npos);
    EXPECT_EQ(find_ignore_case("xÄÖ", "äö"), 1u);
    EXPECT_EQ(find_ignore_case("a#b#", "#", 2), 3u);
    EXPECT_EQ(find_ignore_case("abc", "", 3), 3u);
    EXPECT_EQ(find_ignore_case("abc", "", 4), std::string_view::npos);
    EXPECT_EQ(rfind_ignore_case("abAB", "aB"), 2u);
    EXPECT_EQ(rfind_ignore_case("a", "aB"), std::string_view::npos);
    EXPECT_EQ(replace_ignore_case("xAbxaB", "AB", "ab!"), "xab!xab!");
    EXPECT_EQ(replace_ignore_case("abc", "", "x"), "abc");
    EXPECT_EQ(replace_all("aAa", "a", "aa"), "aaAaa");
    EXPECT_LT(compare_ignore_case("a", "B"), 0);
    EXPECT_GT(compare_ignore_case("ab", "A"), 0);
}

} // namespace
} // namespace tabrixdb
