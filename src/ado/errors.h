#pragma once

#include "automation/error.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tabrixdb::ado {

// ADO's own errors; a page sees &H800A0000 + the code.
enum class Code : std::int32_t {
    InvalidArgument = 3001,
    FileNotOpened = 3002,
    FileNotWritten = 3004,
    NoCurrentRecord = 3021,
    IllegalOperation = 3219,
    FeatureNotAvailable = 3251,
    ItemNotFound = 3265,
    DataConversion = 3421,
    ObjectClosed = 3704,
    ObjectOpen = 3705,
    ProviderNotFound = 3706,
    InvalidConnection = 3709,
};

// The names of the classes as Err.Source shows them.
inline constexpr std::string_view kConnectionSource = "ADODB.Connection";
inline constexpr std::string_view kRecordsetSource = "ADODB.Recordset";
inline constexpr std::string_view kFieldsSource = "ADODB.Fields";
inline constexpr std::string_view kFieldSource = "ADODB.Field";

constexpr std::int32_t error_number(Code code) noexcept {
    return static_cast<std::int32_t>(0x800A0000u + static_cast<std::uint32_t>(code));
}

// An ADO error with its standard text; `detail`, when given, is a sentence that says what exactly was wrong.
Error error(Code code, std::string_view source, std::string_view detail = {});

// The status codes of data providers.
inline constexpr std::int32_t kFailed = static_cast<std::int32_t>(0x80004005);
inline constexpr std::int32_t kTypeMismatch = static_cast<std::int32_t>(0x80040E07);
inline constexpr std::int32_t kPermissionDenied = static_cast<std::int32_t>(0x80040E09);
inline constexpr std::int32_t kBadBookmark = static_cast<std::int32_t>(0x80040E0E);
inline constexpr std::int32_t kErrorsInCommand = static_cast<std::int32_t>(0x80040E14);
inline constexpr std::int32_t kDeletedRow = static_cast<std::int32_t>(0x80040E23);
inline constexpr std::int32_t kCannotFetchBackwards = static_cast<std::int32_t>(0x80040E24);
inline constexpr std::int32_t kIntegrityViolation = static_cast<std::int32_t>(0x80040E2F);
inline constexpr std::int32_t kTimedOut = static_cast<std::int32_t>(0x80040E31);
inline constexpr std::int32_t kNoTable = static_cast<std::int32_t>(0x80040E37);
inline constexpr std::int32_t kRowChanged = static_cast<std::int32_t>(0x80040E38);
inline constexpr std::int32_t kTransactionExists = static_cast<std::int32_t>(0x8004D013);
inline constexpr std::int32_t kNoTransaction = static_cast<std::int32_t>(0x8004D00E);

// What one entry of Connection.Errors tells.
struct ErrorRecord {
    std::int32_t number = 0;
    std::string description;
    std::string source;
    std::int32_t native_error = 0; // the database's own code
    std::string sql_state;         // five characters, empty when the database has none
};

} // namespace tabrixdb::ado
