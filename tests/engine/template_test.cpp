#include "automation/error.h"
#include "grid/layout.h"
#include "template/column_tag.h"
#include "template/read_template.h"
#include "template/split.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

const std::string kStart = "<!--tabrixdb:content_start-->";
const std::string kEnd = "<!--tabrixdb:content_end-->";
const std::string kStripeStart = "<!--tabrixdb:content_stripe_start-->";
const std::string kStripeEnd = "<!--tabrixdb:content_stripe_end-->";

TEST(Template, StripsTheBody) {
    const struct {
        std::string text, stripped;
    } cases[] = {
        {"<html><BODY bgcolor='red'>in</Body></html>", "in"},
        {"<body>a<b>b</b></body>after</body>", "a<b>b</b>"},
        {"<body>open to the end", "open to the end"},
        {"<body never closed", "<body never closed"},
        {"no tags", "no tags"},
        {"closing </body> alone", "closing </body> alone"},
        {"", ""},
    };

    for (const auto& [text, stripped] : cases) {
        std::string result = text;
        strip_body(result);
        EXPECT_EQ(result, stripped) << text;
    }
}

TEST(Template, SplitsAtItsMarkers) {
    const std::string row = kStart + "<tr><td>#~a~#</td></tr>" + kEnd;
    const std::string stripe = kStripeStart + "<tr class=s></tr>" + kStripeEnd;

    const struct {
        std::string text, header, row, stripe, footer;
    } cases[] = {
        {"junk<TABLE border=1><tr>h</tr>" + row + "<tr>f</tr></table>", "<TABLE border=1><tr>h</tr>", row, "",
         "<tr>f</tr></table>"},
        {"<table>" + row + stripe + "<tr>f</tr></table>", "<table>", row, stripe, "<tr>f</tr></table>"},
        {"<table><tr>#~a~#</tr></table>", "", "<table><tr>#~a~#</tr></table>", "", ""},
        {"<table>" + row, "<table>", row, "", ""},
        // Without its start marker there is no stripe, but the footer begins after its end marker.
        {"<table>" + row + "x" + kStripeEnd + "f</table>", "<table>", row, "", "f</table>"},
        // The footer also takes as much as its marker is long of what follows the last closing tag.
        {"<table>" + row + "f</table>" + std::string(40, '-'), "<table>", row, "",
         "f</table>" + std::string(27, '-')},
        {"<table>" + row + stripe + "f</table>" + std::string(40, '-'), "<table>", row, stripe,
         "f</table>" + std::string(34, '-')},
        // Lengths are characters, not bytes.
        {"<table>" + row + "é</table>ééé", "<table>", row, "", "é</table>ééé"},
        {kStart + "a<table>b" + kEnd + "</table>", "", kStart + "a<table>b" + kEnd, "", "</table>"},
        {kEnd + "x" + kStart + "</table>", "", kEnd + "x" + kStart + "</table>", "",
         "x" + kStart + "</table>"},
        {"", "", "", "", ""},
    };

    for (const auto& expected : cases) {
        const TemplateParts parts = split_template(expected.text);
        EXPECT_EQ(parts.header, expected.header) << expected.text;
        EXPECT_EQ(parts.row, expected.row) << expected.text;
        EXPECT_EQ(parts.stripe, expected.stripe) << expected.text;
        EXPECT_EQ(parts.footer, expected.footer) << expected.text;
    }
}

int error_of(const std::string& text) {
    try {
        split_template(text);
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

TEST(Template, PositionsAreSixteenBits) {
    // Position 32767 is the last one, counted from 1 in characters: é is one, an emoji is two.
    const auto at = [](std::size_t filler, const std::string& unit) {
        std::string text;
        for (std::size_t i = 0; i < filler; ++i)
            text += unit;
        return text + "<table>";
    };
    EXPECT_EQ(error_of(at(32766, "x")), 0);
    EXPECT_EQ(error_of(at(32767, "x")), 6);
    EXPECT_EQ(error_of(at(32766, "é")), 0);
    EXPECT_EQ(error_of(at(16384, "😀")), 6);
    EXPECT_EQ(error_of(std::string(200000, 'x')), 0) << "a template without markers has no positions";
    EXPECT_EQ(error_of("</table>x" + kEnd), 5) << "the footer would end before it begins";
}

TEST(Template, TakesTheTableTagAway) {
    const struct {
        std::string fragment, tag, rest;
    } cases[] = {
        {"a<Table width='9'><tr>1</tr></TABLE>b", "<Table width='9'>", "<tr>1</tr>"},
        {"<table><tr><td><table>in</table></td></tr></table>", "<table>",
         "<tr><td><table>in</table></td></tr>"},
        {"<table><tr>", "<table>", "<tr>"},
        {"<tr>none</tr>", "", "<tr>none</tr>"},
        {"<table", "", "<table"},
    };

    for (const auto& [fragment, tag, rest] : cases) {
        std::string text = fragment;
        EXPECT_EQ(take_table_tag(text), tag) << fragment;
        EXPECT_EQ(text, rest) << fragment;
    }
}

TEST(Template, ReplacesASpanEverywhere) {
    const struct {
        std::string text, result;
    } cases[] = {
        {"1<a href=x>in</a>2<A HREF=X>IN</A>3", "1-2-3"},
        {"<a href=x>one</a><a href=x>two</a>", "-<a href=x>two</a>"}, // another caption is another text
        {"<a href=x>never closed", "<a href=x>never closed"},
        {"</a><a href=y>", "</a><a href=y>"},
    };

    for (const auto& [text, result] : cases) {
        std::string changed = text;
        replace_span(changed, "<a href=x>", "</a>", "-");
        EXPECT_EQ(changed, result) << text;
    }
}

TEST(Template, AddressesColumns) {
    const struct {
        std::string column, text, result;
    } cases[] = {
        {"Name", "#~name~# #~NAME~# #~Name_2~#", "v v #~Name_2~#"},
        {"Unit Price", "#~Unit_Price~# #~unit price~#", "v v"},
        {"Größe", "#~GRÖßE~#", "v"},
        {"a", "#a~# #~a~", "#a~# #~a~"},
    };

    for (const auto& [column, text, result] : cases) {
        std::string changed = text;
        ColumnTag(column).replace_in(changed, "v");
        EXPECT_EQ(changed, result) << text;
        EXPECT_EQ(ColumnTag(column).occurs_in(text), text != result) << text;
    }
}

std::string joined(const GridLayout& layout) {
    return layout.opening + "|" + layout.header + "|" + layout.row + "|" + layout.stripe + "|" +
           layout.footer + "|" + layout.closing;
}

TEST(Layout, PutsTemplatesTogether) {
    const std::string row = kStart + "<tr>r</tr>" + kEnd;
    const std::string one = "<table id=t><tr><td><table>x</table></td></tr>" + row + "<tr>f</tr></table>";
    EXPECT_EQ(joined(layout_of_template(split_template(one), true)),
              "<table id=t>|<tr><td><table>x</table></td></tr>|" + row + "||<tr>f</tr></table>|</form>");
    EXPECT_EQ(joined(layout_of_template(split_template("<table><tr>h</tr>" + row), true)),
              "<table>|<tr>h</tr>|" + row + "|||</table></form>");
    EXPECT_EQ(joined(layout_of_template(split_template("<p>#~a~#</p>"), true)), "||<p>#~a~#</p>|||</form>");
    // Three files, each with a table of its own: the header's remains.
    EXPECT_EQ(
        joined(layout_of_parts(split_template("<table><tr>r</tr></table>"),
                               "<table border=2><tr>h</tr></table>", "<table><tr>f</tr></table>", true)),
        "<table border=2>|<tr>h</tr>|<tr>r</tr>||<tr>f</tr>|</table></form>");
    EXPECT_EQ(joined(layout_of_parts(split_template("<table><tr>r</tr></table>"), "<h1>h</h1>", "", true)),
              "<table>|<h1>h</h1>|<tr>r</tr>|||</table></form>");
    EXPECT_EQ(
        joined(layout_of_parts(split_template("<table><tr>r</tr></table>"), "<table></table>", "f", false)),
        "|<table></table>|<table><tr>r</tr></table>||f|</form>");
}

} // namespace
} // namespace tabrixdb
