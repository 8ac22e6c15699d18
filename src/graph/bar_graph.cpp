#include "graph/bar_graph.h"

#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/text.h"
#include "engine/fill_tag.h"
#include "engine/report.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tabrixdb {

namespace {

// A bar wider than any screen, or higher than one, is a mistake in the template.
constexpr int kMaxWidth = 5000;
constexpr int kMaxHeight = 1000;

struct BarStyle {
    int width = 100; // of the greatest value, in pixels
    int height = 12; // in pixels
    std::string color = "#4a7ebb";
    std::string label; // HTML text behind the bar
};

[[noreturn]] void refuse(std::string_view setting) {
    throw Error(kErrorCall, "Not a graph's setting: '" + std::string(setting) + "'");
}

// Pixels from 1 to `most`; the whole setting is named when it is anything else.
int pixels(std::string_view value, int most, std::string_view setting) {
    int number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc() || end != value.data() + value.size() || number < 1 || number > most)
        refuse(setting);
    return number;
}

// A colour by name or "#rrggbb": nothing that could leave the style that it is written into.
std::string color_of(std::string_view value, std::string_view setting) {
    const bool plain = std::ranges::all_of(value.substr(value.starts_with('#') ? 1 : 0), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    });
    if (value.empty() || !plain)
        refuse(setting);
    return std::string(value);
}

void apply(BarStyle& style, std::string_view setting) {
    const std::size_t equals = std::min(setting.find('='), setting.size());
    const std::string_view name = trimmed(setting.substr(0, equals));
    const std::string_view value = trimmed(setting.substr(std::min(equals + 1, setting.size())));
    if (equal_ignore_case(name, "width"))
        style.width = pixels(value, kMaxWidth, setting);
    else if (equal_ignore_case(name, "height"))
        style.height = pixels(value, kMaxHeight, setting);
    else if (equal_ignore_case(name, "color") || equal_ignore_case(name, "colour"))
        style.color = color_of(value, setting);
    else if (equal_ignore_case(name, "label"))
        style.label = equal_ignore_case(value, "none") ? std::string() : html_encode(value);
    else
        refuse(setting);
}

BarStyle style_of(std::string_view settings, std::string_view shown) {
    BarStyle style;
    style.label = html_encode(shown);
    for (const std::string_view setting : split(settings, ';'))
        if (!trimmed(setting).empty())
            apply(style, setting);
    return style;
}

std::string bar_graph(std::string_view settings, const DbField& field, const GraphedValue& value) {
    return guard("Get BarGraph", [&]() -> std::string {
        if (value.value.is_null() || value.value.is_empty())
            return {};
        const BarStyle style = style_of(settings, value.shown);
        const int width = guard("CalculateWidth",
                                [&] { return bar_width(value.value, field.min, field.max, style.width); });
        std::string html = "<span class=\"tabrixdb-graph\" role=\"img\" aria-label=\"" +
                           html_encode(field.caption.empty() ? value.name : field.caption) + ": " +
                           html_encode(value.shown) +
                           "\"><span style=\"display:inline-block;width:" + std::to_string(width) +
                           "px;height:" + std::to_string(style.height) +
                           "px;background-color:" + style.color + "\"></span></span>";
        if (!style.label.empty())
            html += " " + style.label;
        return html;
    });
}

} // namespace

int bar_width(const Variant& value, double min, double max, int full) {
    const double number = to_double(value);
    if (!(max > min))
        return full;
    const double share = (std::clamp(number, min, max) - min) / (max - min);
    // The least value is a bar that can be seen, so that it differs from none.
    return std::max(1, static_cast<int>(std::lround(share * full)));
}

void fill_bar_graphs(std::string& text, const DbField& field, const GraphedValue& value) {
    guard("Get Graph From Content", [&] {
        constexpr std::string_view kEnd = "~#";
        const std::string start = "#~" + std::string(value.name) + ";graph";
        std::string filled;
        std::size_t done = 0;
        for (std::size_t at = 0; (at = find_ignore_case(text, start, at)) != std::string::npos;) {
            const std::size_t from = at + start.size();
            const std::size_t end = text.find(kEnd, from);
            if (end == std::string::npos)
                break;
            const std::string_view settings = std::string_view(text).substr(from, end - from);
            if (!settings.empty() && settings.front() != ';') { // another word that begins like it
                at = from;
                continue;
            }
            filled.append(text, done, at - done);
            filled += bar_graph(settings, field, value);
            if (page_ended())
                return;
            if (filled.size() > kMaxFilledBytes)
                throw Error(14);
            at = done = end + kEnd.size();
        }
        if (done != 0)
            text = filled.append(text, done);
    });
}

} // namespace tabrixdb
