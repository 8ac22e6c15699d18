#include "automation/error.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tabrixdb {

namespace {

using Entry = std::pair<std::int32_t, std::string_view>;

constexpr auto kTexts = std::to_array<Entry>({
    {5, "Invalid procedure call or argument"},
    {6, "Overflow"},
    {7, "Out of memory"},
    {9, "Subscript out of range"},
    {10, "This array is fixed or temporarily locked"},
    {11, "Division by zero"},
    {13, "Type mismatch"},
    {14, "Out of string space"},
    {17, "Can't perform requested operation"},
    {28, "Out of stack space"},
    {35, "Sub or Function not defined"},
    {48, "Error in loading DLL"},
    {51, "Internal error"},
    {52, "Bad file name or number"},
    {53, "File not found"},
    {54, "Bad file mode"},
    {55, "File already open"},
    {57, "Device I/O error"},
    {58, "File already exists"},
    {61, "Disk full"},
    {62, "Input past end of file"},
    {67, "Too many files"},
    {68, "Device unavailable"},
    {70, "Permission denied"},
    {71, "Disk not ready"},
    {74, "Can't rename with different drive"},
    {75, "Path/File access error"},
    {76, "Path not found"},
    {91, "Object variable not set"},
    {92, "For loop not initialized"},
    {94, "Invalid use of Null"},
    {322, "Can't create necessary temporary file"},
    {424, "Object required"},
    {429, "ActiveX component can't create object"},
    {430, "Class doesn't support Automation"},
    {432, "File name or class name not found during Automation operation"},
    {438, "Object doesn't support this property or method"},
    {440, "Automation error"},
    {445, "Object doesn't support this action"},
    {446, "Object doesn't support named arguments"},
    {447, "Object doesn't support current locale setting"},
    {448, "Named argument not found"},
    {449, "Argument not optional"},
    {450, "Wrong number of arguments or invalid property assignment"},
    {451, "Object not a collection"},
    {453, "Specified DLL function not found"},
    {455, "Code resource lock error"},
    {457, "This key is already associated with an element of this collection"},
    {458, "Variable uses an Automation type not supported in VBScript"},
    {462, "The remote server machine does not exist or is unavailable"},
    {481, "Invalid picture"},
    {500, "Variable is undefined"},
    {501, "Illegal assignment"},
    {502, "Object not safe for scripting"},
    {503, "Object not safe for initializing"},
    {504, "Object not safe for creating"},
    {505, "Invalid or unqualified reference"},
    {506, "Class not defined"},
    {507, "An exception occurred"},
    {5016, "Regular Expression object expected"},
    {5017, "Syntax error in regular expression"},
    {5018, "Unexpected quantifier"},
    {5019, "Expected ']' in regular expression"},
    {5020, "Expected ')' in regular expression"},
    {5021, "Invalid range in character set"},
});

} // namespace

std::string_view error_text(std::int32_t number) noexcept {
    const auto entry = std::ranges::lower_bound(kTexts, number, {}, &Entry::first);
    return entry != kTexts.end() && entry->first == number ? entry->second : "Unknown runtime error";
}

Error::Error(std::int32_t number) : Error(number, std::string(error_text(number))) {}

Error::Error(std::int32_t number, std::string description, std::string source)
    : number_(number),
      description_(std::move(description)),
      source_(std::move(source)) {}

} // namespace tabrixdb
