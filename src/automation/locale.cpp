#include "automation/locale.h"

#include "automation/text.h"

#include <algorithm>

namespace tabrixdb {

namespace {

using Order = Locale::DateOrder;
using Months = std::array<std::string_view, 12>;
using Weekdays = std::array<std::string_view, 7>;

constexpr std::string_view kNoBreakSpace = "\u00A0";

constexpr Months kEnglishMonths{"January", "February", "March",     "April",   "May",      "June",
                                "July",    "August",   "September", "October", "November", "December"};
constexpr Months kEnglishShortMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr Weekdays kEnglishWeekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                    "Thursday", "Friday", "Saturday"};
constexpr Weekdays kEnglishShortWeekdays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

// The first one is the default.
constexpr Locale kLocales[] = {
    {.lcid = 1033,
     .name = "en-us",
     .decimal = ".",
     .thousands = ",",
     .currency = "$",
     .currency_after = false,
     .currency_space = false,
     .currency_parentheses = true,
     .order = Order::MonthDayYear,
     .date_separator = '/',
     .pad_day_month = false,
     .clock_24 = false,
     .am = "AM",
     .pm = "PM",
     .short_date = "M/d/yyyy",
     .long_date = "dddd, MMMM d, yyyy",
     .first_weekday = 1,
     .months = kEnglishMonths,
     .short_months = kEnglishShortMonths,
     .weekdays = kEnglishWeekdays,
     .short_weekdays = kEnglishShortWeekdays},
    {.lcid = 2057,
     .name = "en-gb",
     .decimal = ".",
     .thousands = ",",
     .currency = "£",
     .currency_after = false,
     .currency_space = false,
     .currency_parentheses = false,
     .order = Order::DayMonthYear,
     .date_separator = '/',
     .pad_day_month = true,
     .clock_24 = true,
     .am = "AM",
     .pm = "PM",
     .short_date = "dd/MM/yyyy",
     .long_date = "dd MMMM yyyy",
     .first_weekday = 2,
     .months = kEnglishMonths,
     .short_months = kEnglishShortMonths,
     .weekdays = kEnglishWeekdays,
     .short_weekdays = kEnglishShortWeekdays},
    {.lcid = 1031,
     .name = "de-de",
     .decimal = ",",
     .thousands = ".",
     .currency = "€",
     .currency_after = true,
     .currency_space = true,
     .currency_parentheses = false,
     .order = Order::DayMonthYear,
     .date_separator = '.',
     .pad_day_month = true,
     .clock_24 = true,
     .am = "",
     .pm = "",
     .short_date = "dd.MM.yyyy",
     .long_date = "dddd, d. MMMM yyyy",
     .first_weekday = 2,
     .months = {"Januar", "Februar", "März", "April", "Mai", "Juni", "Juli", "August", "September", "Oktober",
                "November", "Dezember"},
     .short_months = {"Jan", "Feb", "Mrz", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"},
     .weekdays = {"Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"},
     .short_weekdays = {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"}},
    {.lcid = 1036,
     .name = "fr-fr",
     .decimal = ",",
     .thousands = kNoBreakSpace,
     .currency = "€",
     .currency_after = true,
     .currency_space = true,
     .currency_parentheses = false,
     .order = Order::DayMonthYear,
     .date_separator = '/',
     .pad_day_month = true,
     .clock_24 = true,
     .am = "",
     .pm = "",
     .short_date = "dd/MM/yyyy",
     .long_date = "dddd d MMMM yyyy",
     .first_weekday = 2,
     .months = {"janvier", "février", "mars", "avril", "mai", "juin", "juillet", "août", "septembre",
                "octobre", "novembre", "décembre"},
     .short_months = {"janv.", "févr.", "mars", "avr.", "mai", "juin", "juil.", "août", "sept.", "oct.",
                      "nov.", "déc."},
     .weekdays = {"dimanche", "lundi", "mardi", "mercredi", "jeudi", "vendredi", "samedi"},
     .short_weekdays = {"dim.", "lun.", "mar.", "mer.", "jeu.", "ven.", "sam."}},
    {.lcid = 1053,
     .name = "sv-se",
     .decimal = ",",
     .thousands = kNoBreakSpace,
     .currency = "kr",
     .currency_after = true,
     .currency_space = true,
     .currency_parentheses = false,
     .order = Order::YearMonthDay,
     .date_separator = '-',
     .pad_day_month = true,
     .clock_24 = true,
     .am = "",
     .pm = "",
     .short_date = "yyyy-MM-dd",
     .long_date = "'den 'd MMMM yyyy",
     .first_weekday = 2,
     .months = {"januari", "februari", "mars", "april", "maj", "juni", "juli", "augusti", "september",
                "oktober", "november", "december"},
     .short_months = {"jan", "feb", "mar", "apr", "maj", "jun", "jul", "aug", "sep", "okt", "nov", "dec"},
     .weekdays = {"söndag", "måndag", "tisdag", "onsdag", "torsdag", "fredag", "lördag"},
     .short_weekdays = {"sö", "må", "ti", "on", "to", "fr", "lö"}},
    {.lcid = 1044,
     .name = "nb-no",
     .decimal = ",",
     .thousands = kNoBreakSpace,
     .currency = "kr",
     .currency_after = false,
     .currency_space = true,
     .currency_parentheses = false,
     .order = Order::DayMonthYear,
     .date_separator = '.',
     .pad_day_month = true,
     .clock_24 = true,
     .am = "",
     .pm = "",
     .short_date = "dd.MM.yyyy",
     .long_date = "d. MMMM yyyy",
     .first_weekday = 2,
     .months = {"januar", "februar", "mars", "april", "mai", "juni", "juli", "august", "september", "oktober",
                "november", "desember"},
     .short_months = {"jan", "feb", "mar", "apr", "mai", "jun", "jul", "aug", "sep", "okt", "nov", "des"},
     .weekdays = {"søndag", "mandag", "tirsdag", "onsdag", "torsdag", "fredag", "lørdag"},
     .short_weekdays = {"sø", "ma", "ti", "on", "to", "fr", "lø"}},
    {.lcid = 1043,
     .name = "nl-nl",
     .decimal = ",",
     .thousands = ".",
     .currency = "€",
     .currency_after = false,
     .currency_space = true,
     .currency_parentheses = false,
     .order = Order::DayMonthYear,
     .date_separator = '-',
     .pad_day_month = false,
     .clock_24 = true,
     .am = "",
     .pm = "",
     .short_date = "d-M-yyyy",
     .long_date = "dddd d MMMM yyyy",
     .first_weekday = 2,
     .months = {"januari", "februari", "maart", "april", "mei", "juni", "juli", "augustus", "september",
                "oktober", "november", "december"},
     .short_months = {"jan", "feb", "mrt", "apr", "mei", "jun", "jul", "aug", "sep", "okt", "nov", "dec"},
     .weekdays = {"zondag", "maandag", "dinsdag", "woensdag", "donderdag", "vrijdag", "zaterdag"},
     .short_weekdays = {"zo", "ma", "di", "wo", "do", "vr", "za"}},
    {.lcid = 1040,
     .name = "it-it",
     .decimal = ",",
     .thousands = ".",
     .currency = "€",
     .currency_after = true,
     .currency_space = true,
     .currency_parentheses = false,
     .order = Order::DayMonthYear,
     .date_separator = '/',
     .pad_day_month = true,
     .clock_24 = true,
     .am = "",
     .pm = "",
     .short_date = "dd/MM/yyyy",
     .long_date = "dddd d MMMM yyyy",
     .first_weekday = 2,
     .months = {"gennaio", "febbraio", "marzo", "aprile", "maggio", "giugno", "luglio", "agosto", "settembre",
                "ottobre", "novembre", "dicembre"},
     .short_months = {"gen", "feb", "mar", "apr", "mag", "giu", "lug", "ago", "set", "ott", "nov", "dic"},
     .weekdays = {"domenica", "lunedì", "martedì", "mercoledì", "giovedì", "venerdì", "sabato"},
     .short_weekdays = {"dom", "lun", "mar", "mer", "gio", "ven", "sab"}},
    {.lcid = 3082,
     .name = "es-es",
     .decimal = ",",
     .thousands = ".",
     .currency = "€",
     .currency_after = true,
     .currency_space = true,
     .currency_parentheses = false,
     .order = Order::DayMonthYear,
     .date_separator = '/',
     .pad_day_month = true,
     .clock_24 = true,
     .am = "",
     .pm = "",
     .short_date = "dd/MM/yyyy",
     .long_date = "dddd, d' de 'MMMM' de 'yyyy",
     .first_weekday = 2,
     .months = {"enero", "febrero", "marzo", "abril", "mayo", "junio", "julio", "agosto", "septiembre",
                "octubre", "noviembre", "diciembre"},
     .short_months = {"ene", "feb", "mar", "abr", "may", "jun", "jul", "ago", "sep", "oct", "nov", "dic"},
     .weekdays = {"domingo", "lunes", "martes", "miércoles", "jueves", "viernes", "sábado"},
     .short_weekdays = {"do", "lu", "ma", "mi", "ju", "vi", "sá"}},
};

// What the platform calls "neutral", "user default" and "system default".
constexpr std::uint32_t kDefaultIds[] = {0, 1024, 2048};

constinit thread_local const Locale* current_locale = &kLocales[0];

} // namespace

const Locale& Locale::current() noexcept {
    return *current_locale;
}

const Locale* Locale::find(std::uint32_t lcid) noexcept {
    if (std::ranges::find(kDefaultIds, lcid) != std::end(kDefaultIds))
        return &kLocales[0];
    const auto found = std::ranges::find(kLocales, lcid, &Locale::lcid);
    return found == std::end(kLocales) ? nullptr : found;
}

const Locale* Locale::find(std::string_view name) noexcept {
    const auto matches = [name](const Locale& locale) {
        return equal_ignore_case(name, locale.name) || equal_ignore_case(name, locale.name.substr(0, 2));
    };
    const auto found = std::ranges::find_if(kLocales, matches);
    return found == std::end(kLocales) ? nullptr : found;
}

LocaleScope::LocaleScope(const Locale& locale) noexcept : previous_(current_locale) {
    current_locale = &locale;
}

LocaleScope::~LocaleScope() {
    current_locale = previous_;
}

void set_current_locale(const Locale& locale) noexcept {
    current_locale = &locale;
}

} // namespace tabrixdb
