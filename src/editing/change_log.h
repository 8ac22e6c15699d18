#pragma once

#include "editing/edit.h"
#include "editing/posted_form.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// One change of a record, for the log of a site that keeps one: who has changed what, with the values before
// and after. Made before the change, told when it is written; the line is logged once it is committed. Where
// changes are not logged it costs one question. Borrows the edit for its own life.
//
// Values are bounded and stand in one line, binary ones are given by their size; those of columns that are
// named like a password are masked.
class ChangeLog {
public:
    // The current record is about to be deleted.
    static ChangeLog of_delete(const Edit& edit);
    // A new record is about to be written.
    static ChangeLog of_add(const Edit& edit);
    // The current record is about to get what the form has for its row.
    static ChangeLog of_update(const Edit& edit, const PostedForm& form, std::int16_t row);

    // It was written; an added or changed record is still the current one. Never fails the change.
    void written();

private:
    enum class Kind : std::uint8_t { Added, Changed, Deleted };
    using Values = std::vector<std::optional<std::string>>; // nullopt: Null

    ChangeLog(const Edit& edit, Kind kind);

    Values read() const;
    std::string line() const;
    std::string key() const;
    std::string difference(std::size_t column) const;

    const Edit& edit_;
    Kind kind_;
    std::optional<std::string> visitor_; // nullopt: nothing is logged
    Values before_, after_;              // empty: there is no such record, or it can't be read
    std::vector<bool> received_;         // binary columns that get a file; may be shorter
};

} // namespace tabrixdb
