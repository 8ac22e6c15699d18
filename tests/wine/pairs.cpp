#include "automation/conversions.h"
#include "tests/wine/pair.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace tabrixdb {

namespace {

using Values = std::vector<Variant>;
using Formats = std::vector<std::string>;

std::vector<std::string> split(std::string_view list) {
    std::vector<std::string> split;
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find('|', at), list.size());
        split.emplace_back(list.substr(at, end - at));
        at = end + 1;
    }
    return split;
}

const Formats kNamedFormats = split(
    R"(General Number|Currency|Fixed|Standard|Percent|Scientific|Yes/No|True/False|On/Off|General Date|)"
    R"(Long Date|Medium Date|Short Date|Long Time|Medium Time|Short Time||short date|GENERAL DATE|standard)");

const Formats kNumberFormats = split(
    R"(0|#|00000|0.0|0.00|#.##|.00|.##|0.|#.|#,##0|#,##0.00|#,###.0#|0,000|0,|0,,|#,##0,|#,##0,.00|0,.0|0%|)"
    R"(0.0%|#%|%0|0%%|0.00E+00|0.0E-0|#.##e+0|##0.0e-00|00E+0|0.###E+#00|$#,##0.00|$#,##0.00;($#,##0.00)|)"
    R"($#,##0;;\Z\e\r\o|0.0;-0.0;none|0.00;(0.00);"zero";"null"|0;0;0;"nothing"|0;;;|0;|0;;"nil"|0;;;"nil"|)"
    R"("pos";"neg"|"pos";"neg";"zero"|000-00-0000|(000) 000-0000|\#0|0 "pieces"|0\ x|0-0|+0;-0|0 (x)|#;-#|)"
    R"(0.0.0|0.0,0|"text"|\t\e\x\t|#0.0#0#0)");

// Formats of one kind for values of another, and runs of letters longer than any placeholder.
const Formats kOtherFormats = split(
    R"(0|0.00|#,##0.0|0%|0.0E+0|yyyy-mm-dd|hh:nn|d|ddddd|c|ttttt|w q|yyy|mmmmm|hhh|nnn|sss|www|qq|tttttt|)"
    R"(AM|nil|0 d|d 0|h\m|E+|ed|,|x|.,|/|,0|. 0|0/0|%|-d|(d)|aaaa)");

const Formats kDateFormats = split(
    R"(d|dd|ddd|dddd|ddddd|dddddd|m|mm|mmm|mmmm|y|yy|yyy|yyyy|q|w|ww|h|hh|n|nn|s|ss|ttttt|c|AM/PM|am/pm|)"
    R"(A/P|a/p|AMPM|h AM/PM|hh:nn AM/PM|h:mm:ss am/pm|h:m:s|hh:mm:ss AMPM|hh a/p|h\h A/P|m/d/yy|mm/dd/yyyy|)"
    R"(d-mmm-yyyy|dddd, mmm d yyyy|dddd, d mmmm yy|yyyy-mm-dd hh:nn:ss|yyyymmdd|yyyy\-mm|hhmm|hh mm|h:n:s|)"
    R"(mm:ss|nn:mm|hh:mm mm/dd|q w ww y|"day" d "of" mmmm|DD MMM YYYY|HH:MM|AM/PM h|a/p h:nn|h a/p d|)"
    R"(hh s m|hh/mm/ss|ttttt h|ww/yyyy|/|:|d;m|dd.mm.yyyy|d, m)");

const Formats kTextFormats = split(
    R"(@|&|@@@@@@@@|&&&&&&&&|!@@@@@@@@|!&&&&&&&&|<|>|<@@@|>@@@|!|@-@@|@@@-@@@@|!@@@-@@@@|&&-&&|(@@@) @@@|)"
    R"(>\x@\y&|@@;empty|@;|@@"q"@|!@@;"none"|&;"n"|@@@@@@@@\x)");

Variant single(double value) {
    return Variant::single(static_cast<float>(value));
}

Values numbers() {
    Values values;
    for (const int whole : {0, 1, -1, 5, -5, 9, 42, 99, 100, -1000, 1234, 12345, 65536, 999999, 1234567,
                            -87654321, 123456789, 2147483647})
        values.emplace_back(std::int32_t{whole});
    for (const std::string& real : split(
             "0.5|-0.5|1.5|2.5|-2.5|0.05|0.045|0.005|1.005|0.001|0.0049|0.125|-0.375|1e-5|1.23e-10|1e14|"
             "1e15|1e16|1e20|999.995|9999.5|0.999|0.9995|-0.004|-0.0001|3.14159265358979|-1234.567|86.93685|"
             "66.66667|0.333333333333333|99999.999|123456789012345|1234567890123456|1e-300|5e-324|"
             "-1.5e100")) // Wine crashes when the text of a larger one has separators
        values.emplace_back(*parse_number(real));
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t raw : std::to_array<std::int64_t>({0, 10000, -35000, 12345678, 5, -1, kLargest}))
        values.push_back(Variant::currency(raw));
    values.insert(values.end(), {Variant(true), Variant(false), Variant(std::int16_t{-7}), Variant::byte(200),
                                 single(0.1), single(-1234.5), Variant::longlong(-9007199254740993)});
    return values;
}

Values dates() {
    Values values;
    for (const std::string& days : split("0|1|2.525|2.725|-1.25|-0.75|0.25|0.5|-657434|2958465.5"))
        values.push_back(Variant::date(*parse_number(days)));
    for (const std::string& date :
         split("01:00:00|23:59:59|1752-09-14|1899-12-29 12:00:00|1900-02-28|2000-02-29|2004-12-31 13:05:09|"
               "2005-01-01|2005-01-02 12:00:00|2006-12-31|2008-12-31 00:00:01|2011-01-01|2012-12-30|"
               "2016-01-31 00:30:00|2026-03-05 21:04:09|1999-10-10 10:10:10"))
        values.push_back(Variant::date(*parse_date(date)));
    return values;
}

Values texts() {
    Values values;
    for (const std::string& text :
         split("| |abc|Hello World|12.5|-3|0|1,234.5|$5.00|(7)|1e3|007| 12 |2005-03-04|3/4/2005|10:15 PM|"
               "1/1/2000 13:05:59|March 5, 2026|39697.11|True|twelve|5551234|Ünïcödé|日本語|😀 ok|x;y"))
        values.emplace_back(text);
    return values;
}

// Every value by every format.
void cross(std::vector<Pair>& pairs, const Values& values, const Formats& formats) {
    for (const Variant& value : values)
        for (const std::string& format : formats)
            pairs.push_back({value, format});
}

// Values and formats by chance, but the same ones each time.
class Random {
public:
    std::size_t below(std::size_t end) { return static_cast<std::size_t>(engine_() % end); }

    bool chance(std::size_t of) { return below(of) == 0; }

    template <class Container>
    auto one_of(const Container& container) {
        return container[below(container.size())];
    }

    Variant number() {
        const double sign = chance(2) ? 1 : -1;
        const double digits = sign * static_cast<double>(below(100'000'000));
        const double scaled = digits * std::pow(10.0, static_cast<double>(below(20)) - 14);
        switch (below(4)) {
        case 0:
            return Variant::currency(static_cast<std::int64_t>(digits));
        case 1:
            return static_cast<std::int32_t>(digits);
        case 2:
            return std::floor(digits / 65536) / 8; // halves, quarters and eighths
        default:
            return scaled;
        }
    }

    Variant date() {
        const double day = static_cast<double>(below(120'000)) - 20'000;
        const double time = time_serial(0, 0, static_cast<int>(below(86'400)));
        return Variant::date(join_date_time(day, time));
    }

    Variant text() {
        static constexpr auto kPieces =
            std::to_array<const char*>({"a", "B", " ", "7", "-", "é", "Я", "xyz"});
        return join(kPieces, below(9));
    }

    std::string number_format() {
        static constexpr auto kWhole =
            std::to_array<const char*>({"0", "#", "#,##0", "##0", "000", "0,", ""});
        static constexpr auto kDecimals =
            std::to_array<const char*>({"", ".", ".0", ".00", ".##", ".0#", ".000"});
        static constexpr auto kEnds =
            std::to_array<const char*>({"", "", "", "%", " \"u\"", "\\x", "E+0", "e-00"});
        static constexpr auto kStarts = std::to_array<const char*>({"", "", "", "$", "\"n \"", "-", "("});
        std::string format;
        for (std::size_t sections = chance(3) ? 1 + below(4) : 1; sections > 0; --sections) {
            if (!format.empty())
                format += ';';
            if (!format.empty() && chance(4))
                continue;
            format += one_of(kStarts);
            std::string places = one_of(kWhole);
            places += one_of(kDecimals);
            format += places.size() > 1 ? places : "0";
            format += one_of(kEnds);
        }
        return format;
    }

    // Parts with something between them: a run of letters is another matter.
    std::string date_format() {
        static constexpr auto kParts = std::to_array<const char*>(
            {"d", "dd", "ddd", "dddd", "ddddd", "m",  "mm", "mmm", "mmmm", "yy", "yyyy",
             "y", "q",  "w",   "ww",   "h",     "hh", "n",  "nn",  "s",    "ss", "ttttt"});
        static constexpr auto kBetween =
            std::to_array<const char*>({"/", ":", " ", "-", ", ", "\\o", "\" at \""});
        std::string format = one_of(kParts);
        for (std::size_t more = below(5); more > 0; --more) {
            format += one_of(kBetween);
            format += one_of(kParts);
        }
        return format;
    }

    std::string text_format() {
        static constexpr auto kPieces = std::to_array<const char*>(
            {"@", "@", "@@", "&", "&&", "!", "<", ">", "-", " ", "\\x", "\"lit\""});
        std::string format = join(kPieces, below(5));
        format += '&'; // with literals alone it would be a format of numbers
        format += join(kPieces, below(3));
        return chance(4) ? format + ";none" : format;
    }

private:
    template <class Pieces>
    std::string join(const Pieces& pieces, std::size_t count) {
        std::string text;
        for (std::size_t i = 0; i < count; ++i)
            text += one_of(pieces);
        return text;
    }

    std::mt19937 engine_{20'050'304};
};

} // namespace

std::vector<Pair> all_pairs() {
    std::vector<Pair> pairs;
    const Values blanks{Variant(), Variant::null()};
    for (const Values& values : {numbers(), dates(), texts(), blanks})
        cross(pairs, values, kNamedFormats);
    for (const Values& values : {numbers(), texts(), blanks})
        cross(pairs, values, kNumberFormats);
    for (const Values& values : {dates(), texts(), blanks})
        cross(pairs, values, kDateFormats);
    for (const Values& values : {numbers(), dates(), texts(), blanks})
        cross(pairs, values, kTextFormats);
    for (const Values& values : {numbers(), dates(), texts(), blanks})
        cross(pairs, values, kOtherFormats);
    Random random;
    constexpr int kRandomPairs = 1500;       // of each kind
    for (int i = 0; i < kRandomPairs; ++i) { // in braces, what stands first is made first
        pairs.push_back({random.number(), random.number_format()});
        pairs.push_back({random.date(), random.date_format()});
        pairs.push_back({random.text(), random.text_format()});
    }
    return pairs;
}

} // namespace tabrixdb
