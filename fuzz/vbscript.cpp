#include "automation/error.h"
#include "automation/interrupt.h"
#include "scripting/classes.h"
#include "scripting/script_control.h"
#include "vbscript/machine.h"

#include <cstdint>
#include <memory>
#include <string>

// Any text is either refused with a compile error or runs, within small limits, to an end or a run-time
// error. `New` makes regular expressions and script controls.

namespace {

using namespace tabrixdb;
using namespace tabrixdb::vbscript;

class NoWorld final : public Environment {
public:
    Ref<Object> create_object(std::string_view) override { throw Error(kErrorCannotCreate); }

    Ref<Object> new_object(std::string_view name) override {
        const bool is_harmless =
            equal_ignore_case(name, "RegExp") || equal_ignore_case(name, "ScriptControl");
        return is_harmless ? scripting::create_object(name) : Ref<Object>();
    }

    Object* global_object(std::string_view) override { return nullptr; }

    void write(const Variant&) override {}

    void write_literal(std::string_view) override {}
};

// What is between <% and %> is code, what is between <%= and %> an expression, the rest stands as it is; a
// text without any is code.
Source pieces_of(std::string text) {
    Source source;
    source.files.emplace_back("fuzz");
    source.texts.push_back(std::make_shared<const std::string>(std::move(text)));
    const std::string_view all = *source.texts.back();
    std::size_t at = 0;
    for (std::size_t open; (open = all.find("<%", at)) != std::string_view::npos;) {
        source.pieces.push_back({Piece::Kind::Literal, all.substr(at, open - at), {}});
        const bool writes = all.substr(open + 2).starts_with('=');
        const std::size_t begin = open + 2 + writes;
        const std::size_t end = std::min(all.find("%>", begin), all.size());
        source.pieces.push_back(
            {writes ? Piece::Kind::Expression : Piece::Kind::Code, all.substr(begin, end - begin), {}});
        at = std::min(end + 2, all.size());
    }
    const Piece::Kind rest = at == 0 ? Piece::Kind::Code : Piece::Kind::Literal;
    source.pieces.push_back({rest, all.substr(at), {}});
    return source;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    NoWorld world;
    // A script control counts no steps: it ends with the run's time.
    Interrupt interrupt(Interrupt::Clock::now() + std::chrono::milliseconds(500));
    const Interrupt::Scope scope(interrupt);
    const scripting::ScriptControl::Run controls;
    Machine machine(world, interrupt, {.recursion = 30, .steps = 500});
    try {
        machine.run(compile(pieces_of({reinterpret_cast<const char*>(data), size})));
    } catch (const Error&) {
        // Refused: what a page's author sees.
    }
    return 0;
}
