#include "ado/result.h"

#include "ado/values.h"
#include "automation/text.h"

#include <algorithm>
#include <limits>

namespace tabrixdb::ado {

namespace {

std::int32_t narrowed(std::int64_t count) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(count, std::numeric_limits<std::int32_t>::max()));
}

} // namespace

void Result::close() {
    if (edit_mode_ != EditMode::None)
        throw error(Code::IllegalOperation, kRecordsetSource,
                    "The record in work was neither updated nor cancelled.");
    cursor_.reset();
}

void Result::require_open() const {
    if (!is_open())
        throw error(Code::ObjectClosed, kRecordsetSource);
}

void Result::require_scrolling() const {
    require_open();
    if (!cursor_->scrolls())
        throw error(Code::FeatureNotAvailable, kRecordsetSource,
                    "A forward-only cursor has no pages, positions and bookmarks; open a static one.");
}

// --- Columns and values ------------------------------------------------------------------------------

const std::vector<ColumnInfo>& Result::infos() {
    require_open();
    return cursor_->columns();
}

const std::vector<platform::Column>& Result::columns() {
    if (columns_.empty())
        for (const ColumnInfo& info : infos()) {
            columns_.push_back(info.column);
            if (!writable_)
                columns_.back().attributes &= ~platform::kFieldUpdatable;
        }
    return columns_;
}

std::size_t Result::column(std::int32_t index) {
    if (index < 0 || static_cast<std::size_t>(index) >= infos().size())
        throw error(Code::ItemNotFound, kFieldsSource, "There is no field " + std::to_string(index) + ".");
    return static_cast<std::size_t>(index);
}

std::size_t Result::column(std::string_view name) {
    if (const auto found = find_column(infos(), name))
        return *found;
    throw error(Code::ItemNotFound, kFieldsSource, "There is no field " + std::string(name) + ".");
}

void Result::require_record() {
    settle();
    if (place_ != Place::Row && !added_ && edit_mode_ != EditMode::Add)
        throw error(Code::NoCurrentRecord, kRecordsetSource);
    if (deleted_ && edit_mode_ != EditMode::Add)
        throw Error(kDeletedRow, "Row handle referred to a deleted row or a row marked for deletion.",
                    std::string(kRecordsetSource));
}

Cell Result::cell(std::size_t column) {
    require_record();
    if (edit_mode_ != EditMode::None && new_values_[column])
        return new_values_[column]->get();
    if (edit_mode_ == EditMode::Add)
        return {};
    if (added_)
        return (*added_)[column].get();
    if (!loaded_ && !(loaded_ = cursor_->at(position_))) {
        place_ = Place::After; // the rows have become fewer since they were counted
        throw error(Code::NoCurrentRecord, kRecordsetSource);
    }
    return cursor_->cell(column);
}

Variant Result::value(std::size_t column) {
    const Cell found = cell(column);
    if (chunk_.column != column)
        chunk_ = {};
    return to_variant(found, cursor_->columns()[column].column.type);
}

void Result::append_value(std::size_t column, std::string& out) {
    const Cell found = cell(column);
    append_text(out, found, cursor_->columns()[column].column.type);
}

std::int32_t Result::actual_size(std::size_t column) {
    const Cell found = cell(column);
    return ado::actual_size(found, cursor_->columns()[column]);
}

Variant Result::original_value(std::size_t column) {
    if (edit_mode_ != EditMode::InProgress)
        return value(column);
    auto changed = std::move(new_values_[column]);
    new_values_[column].reset();
    Variant result = value(column);
    new_values_[column] = std::move(changed);
    return result;
}

Variant Result::get_chunk(std::size_t column, std::int32_t size) {
    if (size < 0)
        throw error(Code::InvalidArgument, kFieldSource, "The length of a chunk is not negative.");
    const Cell whole = cell(column);
    if (chunk_.column != column || chunk_.appending)
        chunk_ = {column, 0, false};
    if (!whole.has_view() || chunk_.at >= whole.size)
        return Variant::null();
    const std::string_view rest = whole.view().substr(chunk_.at);
    const std::size_t wanted = static_cast<std::size_t>(size);
    const bool is_text = whole.kind == Cell::Kind::Text;
    const std::string_view part = rest.substr(0, is_text ? byte_of_unit(rest, wanted) : wanted);
    chunk_.at += part.size();
    return is_text ? Variant(part) : Variant::byte_array(part);
}

void Result::append_chunk(std::size_t column, const Variant& chunk) {
    const OwnedCell more = from_variant(chunk, infos()[column]);
    auto& pending = new_values_[column];
    if (!chunk_.appending || chunk_.column != column || !pending || more.get().is_null())
        set_value(column, chunk);
    else
        pending->append(more.get());
    chunk_ = {column, 0, true};
}

// --- The current record --------------------------------------------------------------------------------

bool Result::exists(std::int64_t position) {
    if (const auto count = cursor_->known_count(); count && !loaded_ && cursor_->scrolls())
        return position <= *count;
    return loaded_ = cursor_->at(position);
}

// The target becomes current, if it is there; else the end does, or nothing when there are no records at all.
void Result::go(std::int64_t target, Place otherwise) {
    added_.reset();
    loaded_ = false;
    chunk_ = {};
    if (target >= 1 && exists(target)) {
        place_ = Place::Row;
        position_ = target;
    } else {
        const bool none = target == 1 || ((deleted_ || place_ == Place::Unsettled) && !exists(1));
        loaded_ = false;
        place_ = none ? Place::Empty : otherwise;
    }
    deleted_ = false;
}

void Result::settle() {
    require_open();
    if (place_ == Place::Unsettled)
        go(1, Place::After);
}

bool Result::bof() {
    settle();
    return place_ == Place::Before || place_ == Place::Empty;
}

bool Result::eof() {
    settle();
    return place_ == Place::After || place_ == Place::Empty;
}

void Result::move(std::int32_t records) {
    settle();
    before_moving();
    const bool impossible = place_ == Place::Empty || (place_ == Place::After && records >= 0) ||
                            (place_ == Place::Before && records <= 0);
    if (impossible)
        throw error(Code::NoCurrentRecord, kRecordsetSource);
    if (records < 0 && !cursor_->scrolls())
        throw Error(kCannotFetchBackwards, "Rowset does not support fetching backward.",
                    std::string(kRecordsetSource));
    std::int64_t from = position_;
    if (place_ == Place::Before)
        from = 0;
    else if (place_ == Place::After)
        from = cursor_->count() + 1;
    else if (deleted_ && records > 0)
        --from; // the record behind has its position
    if (records != 0)
        go(from + records, records < 0 ? Place::Before : Place::After);
}

void Result::move_first() {
    settle();
    before_moving();
    if (place_ == Place::Empty)
        throw error(Code::NoCurrentRecord, kRecordsetSource);
    go(1, Place::Empty);
}

void Result::move_last() {
    settle();
    before_moving();
    if (place_ == Place::Empty)
        throw error(Code::NoCurrentRecord, kRecordsetSource);
    if (!cursor_->scrolls())
        throw Error(kCannotFetchBackwards, "Rowset does not support fetching backward.",
                    std::string(kRecordsetSource));
    go(std::max<std::int64_t>(cursor_->count(), 1), Place::Empty);
}

std::int32_t Result::record_count() {
    require_open();
    return narrowed(cursor_->count());
}

std::int32_t Result::page_count() {
    require_open();
    const std::int64_t count = cursor_->count();
    return count < 0 ? -1 : narrowed((count + page_size_ - 1) / page_size_);
}

void Result::set_page_size(std::int32_t rows) {
    if (rows < 1)
        throw error(Code::InvalidArgument, kRecordsetSource, "PageSize is at least 1.");
    page_size_ = rows;
    if (cursor_)
        cursor_->expect(rows);
}

std::int32_t Result::absolute_position() {
    settle();
    switch (place_) {
    case Place::Row:
        return cursor_->scrolls() && !added_ ? narrowed(position_) : kUnknownPosition;
    case Place::Before:
        return kPositionBof;
    case Place::After:
        return kPositionEof;
    default:
        return kUnknownPosition;
    }
}

std::int32_t Result::absolute_page() {
    const std::int32_t position = absolute_position();
    return position < 1 ? position : (position - 1) / page_size_ + 1;
}

void Result::set_absolute_page(std::int32_t page) {
    require_scrolling();
    if (page < 1)
        throw error(Code::InvalidArgument, kRecordsetSource, "Pages are counted from 1.");
    before_moving();
    if (place_ != Place::Empty)
        go((std::int64_t{page} - 1) * page_size_ + 1, Place::After);
    if (place_ == Place::Empty)
        throw error(Code::NoCurrentRecord, kRecordsetSource);
}

void Result::set_absolute_position(std::int32_t position) {
    require_scrolling();
    if (position < 1)
        throw error(Code::InvalidArgument, kRecordsetSource, "Positions are counted from 1.");
    before_moving();
    if (place_ != Place::Empty)
        go(position, Place::After);
    if (place_ == Place::Empty)
        throw error(Code::NoCurrentRecord, kRecordsetSource);
}

void Result::find(std::string_view criterion, std::int32_t skip, bool backwards) {
    FilterExpression expression;
    expression.alternatives.emplace_back().push_back(parse_criterion(criterion));
    const auto& columns = infos();
    const Condition condition = bind_filter(expression, columns);
    require_record();
    before_moving();
    const std::int32_t step = backwards ? -1 : 1;
    if (skip != 0)
        move(backwards ? -skip : skip);
    while (place_ == Place::Row && !meets(condition, columns, [this](std::size_t i) { return cell(i); }))
        move(step);
}

// --- Rows and order ------------------------------------------------------------------------------------

void Result::arrange(Condition condition, SortOrder order) {
    before_moving();
    condition_ = std::move(condition);
    order_ = std::move(order);
    cursor_->arrange(condition_, order_);
    place_ = Place::Unsettled;
    position_ = 1;
    loaded_ = deleted_ = false;
    added_.reset();
}

void Result::set_filter(std::string_view expression) {
    Condition condition = bind_filter(parse_filter(expression), infos());
    arrange(std::move(condition), order_);
    filter_ = expression;
}

void Result::set_sort(std::string_view expression) {
    require_open();
    if (!cursor_->scrolls())
        throw error(Code::FeatureNotAvailable, kRecordsetSource,
                    "A forward-only cursor cannot be sorted; open a client-side one.");
    SortOrder order = bind_sort(parse_sort(expression), infos());
    arrange(condition_, std::move(order));
    sort_ = expression;
}

void Result::requery() {
    require_open();
    if (edit_mode_ != EditMode::None)
        throw error(Code::IllegalOperation, kRecordsetSource,
                    "The record in work was neither updated nor cancelled.");
    cursor_->restart();
    arrange(condition_, order_);
}

// --- Editing -------------------------------------------------------------------------------------------

void Result::require_writable() const {
    require_open();
    if (!writable_)
        throw error(
            Code::FeatureNotAvailable, kRecordsetSource,
            "Current Recordset does not support updating. This may be a limitation of the provider, or "
            "of the selected locktype.");
}

void Result::before_moving() {
    if (edit_mode_ != EditMode::None)
        update();
}

void Result::begin_edit() {
    if (edit_mode_ != EditMode::None)
        return;
    new_values_.assign(infos().size(), std::nullopt);
    edit_mode_ = EditMode::InProgress;
}

void Result::set_value(std::size_t column, const Variant& value) {
    require_writable();
    require_record();
    const ColumnInfo& info = infos()[column];
    if (!info.is_base())
        throw error(Code::FeatureNotAvailable, kFieldSource,
                    "Field " + info.column.name + " is no column of a table and cannot be written.");
    OwnedCell cell = from_variant(value, info);
    begin_edit();
    new_values_[column] = std::move(cell);
}

void Result::add_new() {
    require_writable();
    settle();
    before_moving();
    begin_edit();
    edit_mode_ = EditMode::Add;
}

void Result::cancel_update() noexcept {
    edit_mode_ = EditMode::None;
    new_values_.clear();
    chunk_ = {};
}

RowCells Result::current_cells() {
    RowCells cells;
    for (std::size_t i = 0; i < infos().size(); ++i)
        cells.emplace_back(cell(i));
    return cells;
}

void Result::update() {
    require_writable();
    if (edit_mode_ == EditMode::Add)
        write_new();
    else if (edit_mode_ == EditMode::InProgress)
        write_changes();
}

void Result::write_new() {
    const auto& columns = infos();
    session_->before_write();
    insert_row(*session_, columns, new_values_);
    RowCells cells = current_cells();
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].column.numbered && cells[i].get().is_null())
            cells[i] = OwnedCell(Cell::integer(session_->database().last_identity()));
    cancel_update();
    if (!key_columns(columns).empty())
        read_back(*session_, columns, cells);
    const std::int64_t position = cursor_->append(cells);
    loaded_ = deleted_ = false;
    if (position != 0) {
        added_.reset();
        place_ = Place::Row;
        position_ = position;
    } else {
        added_ = std::move(cells);
        place_ = Place::Row;
    }
}

void Result::write_changes() {
    const auto& columns = infos();
    std::vector<std::optional<OwnedCell>> values = std::move(new_values_);
    new_values_.assign(values.size(), std::nullopt);
    RowCells cells = current_cells();
    new_values_ = std::move(values);
    session_->before_write();
    update_row(*session_, columns, cells, new_values_);
    for (std::size_t i = 0; i < cells.size(); ++i)
        if (new_values_[i])
            cells[i] = *new_values_[i];
    cancel_update();
    if (!key_columns(columns).empty())
        read_back(*session_, columns, cells);
    if (added_)
        added_ = std::move(cells);
    else
        cursor_->replace_current(cells);
}

void Result::remove() {
    require_writable();
    if (edit_mode_ == EditMode::Add)
        return cancel_update();
    cancel_update();
    require_record();
    const RowCells cells = current_cells();
    session_->before_write();
    delete_row(*session_, infos(), cells);
    if (!added_)
        cursor_->erase_current();
    added_.reset();
    loaded_ = false;
    deleted_ = true;
}

} // namespace tabrixdb::ado
