#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tabrixdb {

// How numbers, dates and money are read and written. The current one belongs to the thread: the page's
// LCID (SetLocale, Session.LCID, @LCID) chooses it.
struct Locale {
    enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

    std::uint32_t lcid;    // 1033 is English (United States)
    std::string_view name; // "en-us"
    std::string_view decimal;
    std::string_view thousands;
    std::string_view currency; // symbol
    bool currency_after;       // "1,00 €" rather than "€1.00"
    bool currency_space;       // a blank between the two
    bool currency_parentheses; // negative amounts in parentheses rather than with a sign
    DateOrder order;
    char date_separator;
    bool pad_day_month; // 05/03/2026 rather than 5/3/2026
    bool clock_24;
    std::string_view am, pm;
    std::string_view short_date; // patterns of append_date() in conversions.h
    std::string_view long_date;
    int first_weekday; // 1 = Sunday; what "use the system's setting" means
    std::array<std::string_view, 12> months, short_months;
    std::array<std::string_view, 7> weekdays, short_weekdays; // from Sunday

    static const Locale& current() noexcept;
    // nullptr for an LCID that is not known. 0 and 1024/2048 give the default, en-US.
    static const Locale* find(std::uint32_t lcid) noexcept;
    static const Locale* find(std::string_view name) noexcept; // "de", "de-de", ignoring case
};

// Makes a locale the thread's current one until the end of the scope.
class LocaleScope {
public:
    explicit LocaleScope(const Locale& locale) noexcept;
    ~LocaleScope();
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;

private:
    const Locale* previous_;
};

// Sets the thread's current locale (SetLocale, Response.LCID); a LocaleScope around the page restores it.
void set_current_locale(const Locale& locale) noexcept;

} // namespace tabrixdb
