#pragma once

#include "automation/object.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// What the engine asks of a data-access library. The names and numbers are those of ADO; a host's objects
// implement these interfaces and are at the same time what a page sees as ADODB.Connection, ...
namespace tabrixdb::platform {

enum class CursorLocation : std::int32_t { Server = 2, Client = 3 };
enum class CursorType : std::int32_t {
    Unspecified = -1,
    ForwardOnly = 0,
    Keyset = 1,
    Dynamic = 2,
    Static = 3
};
enum class LockType : std::int32_t {
    Unspecified = -1,
    ReadOnly = 1,
    Pessimistic = 2,
    Optimistic = 3,
    BatchOptimistic = 4
};

inline constexpr std::int32_t kStateClosed = 0;
inline constexpr std::int32_t kStateOpen = 1;

// Bits of Column::attributes.
inline constexpr std::int32_t kFieldUpdatable = 0x4;
inline constexpr std::int32_t kFieldFixed = 0x10;
inline constexpr std::int32_t kFieldIsNullable = 0x20;
inline constexpr std::int32_t kFieldMayBeNull = 0x40;
inline constexpr std::int32_t kFieldLong = 0x80;
inline constexpr std::int32_t kFieldKeyColumn = 0x8000;

// Data type numbers (of ADO) that code names; others pass as numbers.
namespace data_type {
inline constexpr std::int32_t kSmallInt = 2, kInteger = 3, kSingle = 4, kDouble = 5, kCurrency = 6, kDate = 7,
                              kBoolean = 11, kDecimal = 14, kTinyInt = 16, kUnsignedTinyInt = 17,
                              kBigInt = 20, kGuid = 72, kBinary = 128, kNumeric = 131, kDbDate = 133,
                              kDbTime = 134, kDbTimeStamp = 135, kVarChar = 200, kLongVarChar = 201,
                              kVarWChar = 202, kLongVarWChar = 203, kVarBinary = 204, kLongVarBinary = 205;
}

// How a column's values are written in a filter and which operators it gets.
enum class TypeClass : std::int16_t { Number = 1, Text = 2, Date = 3 };
TypeClass type_class(std::int32_t data_type) noexcept;

struct Column {
    std::string name;
    std::int32_t type = data_type::kVarWChar;
    std::int32_t attributes = 0;
    std::int32_t defined_size = 0; // characters or bytes; 0 when it has no bound
    bool computed = false;         // the query has made its values, they are no column of a table
    bool numbered = false;         // a key that the database numbers for new rows
};

struct DataError {
    std::int32_t number = 0;
    std::string description;
    std::string source;
};

// An open or closed database connection. All calls raise Error with the provider's number and text.
class Connection : public Object {
public:
    // `options` -1: unspecified.
    virtual void open(std::string_view connection_string, std::string_view user, std::string_view password,
                      std::int32_t options) = 0;
    virtual void close() = 0;
    virtual std::int32_t state() const = 0; // kStateOpen or kStateClosed
    // What is written between the beginning and the commit is written at once, or with a rollback not at all.
    // The number: how deep transactions are nested now.
    virtual std::int32_t begin_transaction() = 0;
    virtual void commit_transaction() = 0;
    virtual void rollback_transaction() = 0;
    // Does it once what was written until now can't be taken back any more: now, or within a transaction
    // after its commit. After a rollback, or when the connection is closed before, never. It must not throw.
    virtual void after_commit(std::function<void()> action) = 0;
    // The errors of the last call that failed, oldest first.
    virtual std::vector<DataError> errors() const = 0;
};

// A query's result with a current record. Positions are 1-based; -1 unknown or empty, -2 before the first,
// -3 after the last record. Fields are addressed by 0-based position. Errors as ADO raises them.
class Recordset : public Object {
public:
    virtual void set_cursor_location(CursorLocation location) = 0;
    virtual void open(std::string_view source, Connection& connection, CursorType cursor, LockType lock,
                      std::int32_t options) = 0;
    // Opens a query of the engine's own: each "?" outside of its quotes stands for the next of `parameters`.
    // It is one statement, after any that only set something, and attaches or writes no other file; several
    // statements and such ones only where the connection's settings allow them. Error as the provider raises
    // it.
    virtual void open_query(std::string_view source, const std::vector<Variant>& parameters,
                            Connection& connection, CursorType cursor, LockType lock,
                            std::int32_t options) = 0;
    virtual void close() = 0;
    virtual std::int32_t state() const = 0;
    virtual void requery() = 0;
    virtual std::string source() const = 0;
    virtual void set_source(std::string_view source) = 0;

    // The columns; valid until close(), also at BOF and EOF.
    virtual const std::vector<Column>& columns() const = 0;
    // The 0-based position of a column by its name, in any case; Error 3265 (ADO's) when there is none.
    virtual std::size_t column(std::string_view name) const = 0;
    // The current record's value. Strings are shared, not copied. Error 3021 without a current record.
    virtual Variant value(std::size_t field) = 0;
    // Appends that value as text (Null as nothing), without a Variant in between where that is possible.
    virtual void append_value(std::size_t field, std::string& out) = 0;
    // Assigns the pending value; update() writes it.
    virtual void set_value(std::size_t field, const Variant& value) = 0;
    // The size of that value in bytes (text: in UTF-16), 0 for Null.
    virtual std::int32_t actual_size(std::size_t field) = 0;
    // The next `size` bytes or characters of a long value; Null behind its end. Another field or another
    // record starts anew.
    virtual Variant get_chunk(std::size_t field, std::int32_t size) = 0;
    // The first chunk of a field replaces its value, further ones go behind.
    virtual void append_chunk(std::size_t field, const Variant& chunk) = 0;

    virtual void set_filter(std::string_view expression) = 0; // "" removes it
    virtual void set_sort(std::string_view expression) = 0;   // "" restores the source's order
    // The names of the columns that a filter or sort expression is about. None for one that set_filter() or
    // set_sort() can't read.
    virtual std::vector<std::string> columns_in_filter(std::string_view expression) = 0;
    virtual std::vector<std::string> columns_in_sort(std::string_view expression) = 0;

    virtual std::int32_t page_size() const = 0;
    virtual void set_page_size(std::int32_t rows) = 0;
    virtual std::int32_t page_count() = 0;
    virtual std::int32_t absolute_page() = 0;
    virtual void set_absolute_page(std::int32_t page) = 0;
    virtual std::int32_t absolute_position() = 0;
    virtual std::int32_t record_count() = 0;

    virtual bool bof() = 0;
    virtual bool eof() = 0;

    bool is_empty() { return eof() && bof(); }

    virtual void move(std::int32_t records) = 0; // relative to the current record
    virtual void move_first() = 0;
    virtual void move_next() = 0;
    virtual Variant bookmark() = 0;
    virtual void set_bookmark(const Variant& bookmark) = 0;

    virtual void add_new() = 0;
    virtual void update() = 0;
    virtual void cancel_update() = 0; // forgets what is pending, a new record too
    virtual void remove() = 0;        // deletes the current record

    // At most `rows` records (-1: all) as text, from the current one on.
    virtual std::string get_string(std::int32_t rows, std::string_view column_delimiter,
                                   std::string_view row_delimiter, std::string_view null_text) = 0;
};

} // namespace tabrixdb::platform
