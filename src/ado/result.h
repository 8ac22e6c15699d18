#pragma once

#include "ado/cursor.h"
#include "ado/writing.h"
#include "automation/ref.h"
#include "automation/variant.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::ado {

// An open recordset's rows with a current record, before and after its ends, pages, and the record that is
// being edited: what ADO says of them, over a Cursor. Shared by the page-visible Recordset and its Fields,
// which stay alive with it. Positions are 1-based. Raises ADO's errors.
class Result final : public Counted {
public:
    enum class EditMode : std::int32_t { None = 0, InProgress = 1, Add = 2 };

    static constexpr std::int32_t kUnknownPosition = -1, kPositionBof = -2, kPositionEof = -3;

    // `source`: what was run, of which bookmarks remember a trace.
    Result(std::shared_ptr<Session> session, std::unique_ptr<Cursor> cursor, bool writable,
           const RunRequest& source);

    // False once it was closed, or its connection.
    bool is_open() const noexcept { return cursor_ && session_->is_open(); }

    // Error 3219 while a record is edited.
    void close();

    // --- Columns and values ------------------------------------------------------------------------

    const std::vector<ColumnInfo>& infos();
    const std::vector<platform::Column>& columns();
    // 0-based; Error 3265 for a position or a name that is not there.
    std::size_t column(std::int32_t index);
    std::size_t column(std::string_view name);

    // The current record's value, the edited one where there is one. Error 3021 without a record.
    Variant value(std::size_t column);
    void append_value(std::size_t column, std::string& out);
    std::int32_t actual_size(std::size_t column);
    // The value as it was read.
    Variant original_value(std::size_t column);

    // Long values piece by piece, as Field.GetChunk and Field.AppendChunk; sizes in characters or bytes.
    Variant get_chunk(std::size_t column, std::int32_t size);
    void append_chunk(std::size_t column, const Variant& chunk);

    // --- The current record ------------------------------------------------------------------------

    bool bof();
    bool eof();
    void move(std::int32_t records);
    void move_first();
    void move_last();
    std::int32_t record_count();
    std::int32_t page_count();
    std::int32_t absolute_page();
    void set_absolute_page(std::int32_t page);
    std::int32_t absolute_position();
    void set_absolute_position(std::int32_t position);

    std::int32_t page_size() const noexcept { return page_size_; }

    void set_page_size(std::int32_t rows); // Error 3001 below 1

    Variant bookmark();
    void set_bookmark(const Variant& bookmark);

    bool scrolls() const noexcept { return cursor_->scrolls(); }

    bool writable() const noexcept { return writable_; }

    // The first record at or after the current one (before it, backwards) that meets the criterion becomes
    // current; else the end.
    void find(std::string_view criterion, std::int32_t skip, bool backwards);

    // From the current record on, at most `rows` (-1: all). Error 3021 without one, for get_rows().
    std::string get_string(std::int32_t rows, std::string_view column_delimiter,
                           std::string_view row_delimiter, std::string_view null_text);
    Variant get_rows(std::int32_t rows, const std::vector<std::size_t>& columns); // (field, row)

    // 0 before, 1 the same, 2 behind, 4 not comparable.
    std::int32_t compare_bookmarks(std::string_view first, std::string_view second);

    // --- Rows and order ----------------------------------------------------------------------------

    void set_filter(std::string_view expression); // "" removes it
    void set_sort(std::string_view expression);   // "" restores the query's order
    void requery();

    // --- Editing -----------------------------------------------------------------------------------

    EditMode edit_mode() const noexcept { return edit_mode_; }

    void set_value(std::size_t column, const Variant& value);
    void add_new();
    void update();
    void cancel_update() noexcept;
    void remove();

private:
    enum class Place : std::uint8_t { Unsettled, Row, Before, After, Empty };

    // Bookmark text and back; see bookmark.cpp.
    struct Mark {
        std::uint32_t view = 0; // trace of source, filter and sort
        std::int64_t position = 0;
        std::vector<OwnedCell> key; // empty: the rows have none
    };

    static std::string text_of(const Mark& mark);
    static std::optional<Mark> read_mark(std::string_view text);
    std::uint32_t view_trace() const noexcept;
    std::vector<OwnedCell> current_key();

    void require_open() const;
    void require_scrolling() const;
    void require_record();
    void settle();
    void go(std::int64_t target, Place otherwise);
    bool exists(std::int64_t position);
    void arrange(Condition condition, SortOrder order);
    void before_moving(); // a record in work is written first
    void begin_edit();
    void require_writable() const;
    RowCells current_cells();
    void write_new();
    void write_changes();
    Cell cell(std::size_t column);

    std::shared_ptr<Session> session_;
    std::unique_ptr<Cursor> cursor_;
    bool writable_;
    std::vector<platform::Column> columns_;
    std::uint32_t source_trace_;
    std::string filter_, sort_;
    Condition condition_;
    SortOrder order_;

    Place place_ = Place::Unsettled;
    std::int64_t position_ = 1; // of the current record, when place_ is Row
    bool loaded_ = false;       // the cursor stands on it
    bool deleted_ = false;      // it was deleted; the next one has its position
    std::int32_t page_size_ = 10;

    EditMode edit_mode_ = EditMode::None;
    std::vector<std::optional<OwnedCell>> new_values_;

    // Where GetChunk goes on, and which field AppendChunk appends to.
    struct Chunk {
        std::size_t column = SIZE_MAX;
        std::size_t at = 0; // in bytes
        bool appending = false;
    } chunk_;

    std::optional<RowCells> added_; // a record that was added outside the rows that the cursor holds
};

} // namespace tabrixdb::ado
