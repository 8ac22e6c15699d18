// Takes pages with includes apart. The input is several files, separated by lines of "====": the page, then
// "/1", "/2", ...
#include "asp/asp_error.h"
#include "asp/page_source.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace tabrixdb;

class InputFiles final : public asp::PageFiles {
public:
    explicit InputFiles(std::string_view input) {
        constexpr std::string_view kLine = "\n====\n";
        for (std::size_t from = 0; from <= input.size();) {
            const std::size_t end = std::min(input.find(kLine, from), input.size());
            texts_.emplace_back(input.substr(from, end - from));
            from = end + kLine.size();
        }
    }

    std::optional<File> read(std::string_view plain) override {
        const std::size_t number = std::strtoul(std::string(plain.substr(1)).c_str(), nullptr, 10);
        if (number >= texts_.size())
            return std::nullopt;
        return File{texts_[number], {std::string(plain), {}}};
    }

private:
    std::vector<std::string> texts_;
};

void check(bool holds) {
    if (!holds)
        std::abort();
}

void check_pieces(const vbscript::Source& source) {
    for (const vbscript::Piece& piece : source.pieces) {
        const std::string& text = *source.texts.at(piece.at.file);
        check(piece.text.data() >= text.data() &&
              piece.text.data() + piece.text.size() <= text.data() + text.size());
        check(piece.at.line >= 1 && piece.at.column >= 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputFiles files(std::string_view(reinterpret_cast<const char*>(data), size));
    try {
        if (const auto page = asp::read_page(files, "/0", 65001))
            check_pieces(page->source);
    } catch (const asp::PageError& error) {
        check(error.line >= 1);
    }
    return 0;
}
