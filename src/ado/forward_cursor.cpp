#include "ado/forward_cursor.h"

#include "ado/values.h"

namespace tabrixdb::ado {

ForwardCursor::ForwardCursor(std::shared_ptr<Session> session, std::unique_ptr<Statement> statement)
    : Cursor(std::move(session), statement->columns()),
      statement_(std::move(statement)) {
    kept_.reset(described().size());
}

bool ForwardCursor::at(std::int64_t position) {
    if (position == 1 && position_ > 1)
        restart();
    if (position == position_)
        return has_row_;
    if (position < position_)
        throw Error(kCannotFetchBackwards, "Rowset does not support fetching backward.",
                    std::string(kRecordsetSource));
    while (position_ < position)
        if (!next())
            return false;
    return true;
}

bool ForwardCursor::next() {
    if (position_ != 0 && !has_row_)
        return false;
    do {
        has_row_ = next_row();
    } while (has_row_ && !condition_.empty() &&
             !meets(condition_, described(), [this](std::size_t column) { return cell(column); }));
    ++position_;
    return has_row_;
}

bool ForwardCursor::next_row() {
    if (in_kept_ && ++kept_at_ < kept_.rows())
        return true;
    if (in_kept_) {
        in_kept_ = false;
        kept_.reset(described().size());
    }
    if (cut_off_)
        throw Error(kRowChanged, "The rows behind this one could not be kept while the page wrote.",
                    std::string(kRecordsetSource));
    if (done_ || !statement_)
        return false;
    session().hold_snapshot();
    const bool row = statement_->step();
    done_ = !row;
    return row;
}

Cell ForwardCursor::cell(std::size_t column) const {
    return in_kept_ ? kept_.cell(kept_at_, column) : statement_->cell(column);
}

bool ForwardCursor::sample() {
    return position_ == 0 ? at(1) : has_row_;
}

void ForwardCursor::arrange(Condition condition, SortOrder) {
    restart();
    condition_ = std::move(condition);
}

void ForwardCursor::restart() {
    statement_->reset();
    kept_.reset(described().size());
    in_kept_ = false;
    position_ = 0;
    has_row_ = false;
    done_ = cut_off_ = false;
}

void ForwardCursor::keep_current() {
    if (in_kept_)
        return;
    kept_.add(*statement_);
    in_kept_ = true;
    kept_at_ = 0;
}

void ForwardCursor::replace_current(std::span<const OwnedCell> cells) {
    keep_current();
    kept_.replace(kept_at_, cells);
}

void ForwardCursor::keep(std::size_t bytes) {
    if (!has_row_ || done_ || kept_.bytes() > bytes)
        return;
    keep_current();
    while (kept_.bytes() <= bytes) {
        if (!statement_->step()) {
            done_ = true;
            return;
        }
        kept_.add(*statement_);
    }
}

void ForwardCursor::on_release() {
    keep(kMaxStoredBytes);
    if (!has_row_ || done_)
        return;
    statement_->reset();
    done_ = cut_off_ = true;
}

} // namespace tabrixdb::ado
