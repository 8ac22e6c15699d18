#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tabrixdb::ado {

// One value of a row as the database gave it, already in the kind that its column's type asks for (a date
// that the database keeps as text is a Date here). A view: Text and Bytes belong to the statement or to the
// row store that it was read from. 16 bytes, so that a fetched row is a plain array.
struct Cell {
    enum class Kind : std::uint8_t {
        Null,
        Boolean,  // whole: 0 or 1
        Integer,  // whole
        Real,     // real
        Currency, // whole: ten-thousandths
        Date,     // real: days since 1899-12-30
        Text,     // data, size: UTF-8
        Bytes,    // data, size
    };

    Kind kind = Kind::Null;
    std::uint32_t size = 0;

    union {
        std::int64_t whole = 0;
        double real;
        const char* data;
    };

    static Cell of_whole(Kind kind, std::int64_t value) noexcept {
        Cell cell;
        cell.kind = kind;
        cell.whole = value;
        return cell;
    }

    static Cell of_real(Kind kind, double value) noexcept {
        Cell cell;
        cell.kind = kind;
        cell.real = value;
        return cell;
    }

    static Cell of_view(Kind kind, std::string_view value) noexcept {
        Cell cell;
        cell.kind = kind;
        cell.size = static_cast<std::uint32_t>(value.size());
        cell.data = value.data();
        return cell;
    }

    static Cell integer(std::int64_t value) noexcept { return of_whole(Kind::Integer, value); }

    static Cell text(std::string_view value) noexcept { return of_view(Kind::Text, value); }

    bool is_null() const noexcept { return kind == Kind::Null; }

    bool has_view() const noexcept { return kind == Kind::Text || kind == Kind::Bytes; }

    std::string_view view() const noexcept { return {data, size}; } // Text and Bytes only
};

static_assert(sizeof(Cell) == 16);

// A cell that owns its text or bytes: a value to compare with, to bind or to write.
class OwnedCell {
public:
    OwnedCell() noexcept = default;

    explicit OwnedCell(const Cell& cell) : cell_(cell) {
        if (cell.has_view())
            bytes_.assign(cell.view());
    }

    // Puts more text or bytes behind what it has; Null becomes these.
    void append(const Cell& more) {
        if (cell_.is_null())
            *this = OwnedCell(more);
        else
            bytes_.append(more.view());
    }

    Cell get() const noexcept { return cell_.has_view() ? Cell::of_view(cell_.kind, bytes_) : cell_; }

private:
    Cell cell_;
    std::string bytes_;
};

} // namespace tabrixdb::ado
