#include "automation/conversions.h"
#include "automation/display_format.h"
#include "automation/error.h"
#include "tests/wine/deviation.h"
#include "tests/wine/peer.h"

#include <bit>
#include <charconv>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

// The eight bytes of a value that has no text, as the platform's VARIANT keeps them.
std::uint64_t bits_of(const Variant& value) {
    switch (value.type()) {
    case Type::Empty:
    case Type::Null:
        return 0;
    case Type::Boolean:
        return value.boolean() ? 0xFFFF : 0;
    case Type::Single:
        return std::bit_cast<std::uint32_t>(static_cast<float>(value.real()));
    case Type::Double:
    case Type::Date:
        return std::bit_cast<std::uint64_t>(value.real());
    default:
        return static_cast<std::uint64_t>(value.whole());
    }
}

// A line of what varformat.exe reads.
std::string line_of(const Pair& pair) {
    std::array<char, 16> hex;
    const auto end = std::to_chars(hex.data(), hex.data() + hex.size(), bits_of(pair.value), 16).ptr;
    const std::string value =
        pair.value.is_string() ? std::string(pair.value.text()) : std::string(hex.data(), end);
    return std::to_string(static_cast<int>(pair.value.type())) + '\t' + value + '\t' + pair.format;
}

constexpr char kFailed[] = "error";

std::string by_wine(const std::string& answer) {
    const std::size_t tab = answer.find('\t');
    return answer.substr(0, tab) == "0" ? answer.substr(tab + 1) : kFailed;
}

std::string by_us(const Pair& pair) {
    try {
        std::string out;
        DisplayFormat(pair.format).append(out, pair.value);
        return out;
    } catch (const Error&) {
        return kFailed;
    }
}

std::vector<Difference> differences() {
    const std::vector<Pair> pairs = all_pairs();
    std::vector<std::string> questions;
    for (const Pair& pair : pairs)
        questions.push_back(line_of(pair));
    const std::vector<std::string> answers = ask_peer("varformat.exe", questions);
    std::vector<Difference> found;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        Difference difference{pairs[i], by_us(pairs[i]), by_wine(answers[i])};
        if (difference.ours != difference.wine)
            found.push_back(std::move(difference));
    }
    std::cout << pairs.size() << " pairs, " << found.size() << " differences\n";
    return found;
}

void report(const Difference& difference) {
    const Variant& value = difference.pair.value;
    ADD_FAILURE() << "type " << static_cast<int>(value.type()) << " value \""
                  << (value.is_null() ? std::string("Null") : std::string(to_text(value))) << "\" format \""
                  << difference.pair.format << "\"\n  ours \"" << difference.ours << "\"\n  Wine \""
                  << difference.wine << '"';
}

// The numbers of the deviations that explain a difference.
std::vector<std::size_t> reasons(const Difference& difference) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < deviations().size(); ++i)
        if (deviations()[i].explains(difference))
            found.push_back(i);
    return found;
}

TEST(DisplayFormat, IsThatOfThePlatform) {
    std::vector<std::size_t> explained(deviations().size()); // by this deviation and no other
    for (const Difference& difference : differences()) {
        const std::vector<std::size_t> found = reasons(difference);
        if (found.empty())
            report(difference);
        if (found.size() == 1)
            ++explained[found.front()];
    }
    for (std::size_t i = 0; i < explained.size(); ++i) {
        EXPECT_GT(explained[i], 0u) << "Needed no more: " << deviations()[i].reason;
        std::cout << explained[i] << '\t' << deviations()[i].reason << '\n';
    }
}

} // namespace
} // namespace tabrixdb
