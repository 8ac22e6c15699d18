#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// A text compiled for being filled many times: literals with numbered slots between them.
class SlottedText {
public:
    // Stands for a slot in a text that is to be compiled. `slot` is 0 or more.
    static std::string mark(int slot);
    // A text that holds this character itself can't be compiled.
    static constexpr char kMark = '\x01';

    // The mark at a place of a text.
    struct Mark {
        int slot = 0;
        std::size_t end = 0; // behind it
    };

    // Nothing where that character stands by itself.
    static std::optional<Mark> mark_at(std::string_view text, std::size_t at);

    SlottedText() = default; // empty: nothing compiled
    explicit SlottedText(std::string_view marked);

    bool empty() const noexcept { return pieces_.empty(); }

    // Appends the text; `put(slot, out)` appends what belongs in a slot. When it returns false the text is
    // given up: nothing is appended, and append() returns false, too.
    template <class Put>
    bool append(std::string& out, Put put) const {
        const std::size_t start = out.size();
        for (const Piece& piece : pieces_) {
            out += piece.literal;
            if (piece.slot != kNoSlot && !put(piece.slot, out)) {
                out.resize(start);
                return false;
            }
        }
        return true;
    }

    friend bool operator==(const SlottedText&, const SlottedText&) = default;

private:
    static constexpr int kNoSlot = -1;

    // A literal and the slot behind it; the last piece has none.
    struct Piece {
        std::string literal;
        int slot = kNoSlot;
        friend bool operator==(const Piece&, const Piece&) = default;
    };

    std::vector<Piece> pieces_;
};

} // namespace tabrixdb
