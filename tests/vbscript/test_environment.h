#pragma once

#include "automation/array.h"
#include "automation/collection.h"
#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/member.h"
#include "vbscript/machine.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_map>

namespace tabrixdb::vbscript {

// `Print x` writes a line. Arguments that Write has none of are written as nothing.
class Printer final : public Object {
public:
    explicit Printer(std::string& out) : out_(out) {}

    const ClassInfo& class_info() const override {
        static const ClassInfo info("Printer", "",
                                    {method<&Printer::line>("Line", {{"Text", ""}}).as_default(),
                                     method<&Printer::write>("Write", {"Text"})});
        return info;
    }

private:
    void line(const Variant& text) {
        append_text(out_, text);
        out_ += '\n';
    }

    void write(const Variant& text) { append_text(out_, text); }

    std::string& out_;
};

// What scripts meet in objects: a default member with and without a key, members that write to their
// arguments, a member that takes no argument but returns something that does, a collection, an error.
class Thing final : public Object {
public:
    Thing(std::string& out, Interrupt& interrupt) : out_(out), interrupt_(interrupt) {
        for (const char* name : {"first", "second", "third"})
            names_->add(Variant(name), name);
    }

    const ClassInfo& class_info() const override {
        static const ClassInfo info(
            "Thing", "Test.Thing",
            {
                property<&Thing::item, &Thing::set_item>("Item", {{"Key", ""}}).as_default(),
                field<&Thing::caption_>("Caption"),
                field<&Thing::child_>("Child"),
                field<&Thing::select_>("Select"),
                property<&Thing::names>("Names"),
                property<&Thing::grid>("Grid"),
                method<&Thing::swap>("Swap", {"A", "B"}),
                method<&Thing::grow>("Grow", {"Number"}),
                method<&Thing::optional>("Optional", {{"A", "a"}, {"B", "b"}, {"C", "c"}}),
                method<&Thing::fail>("Fail", {{"Number", std::int32_t{-2146825267}}}),
                method<&Thing::break_down>("Break"),
                method<&Thing::end>("End"),
            });
        return info;
    }

    ~Thing() override {
        if (!caption_.empty())
            out_ += "gone: " + caption_ + "\n";
    }

private:
    Variant item(const std::string& key) const {
        const auto found = items_.find(key);
        return found == items_.end() ? Variant() : found->second;
    }

    void set_item(const std::string& key, const Variant& value) { items_[key] = value; }

    Ref<Collection> names() const { return names_; }

    Variant grid() const {
        auto grid = make_ref<Array>(std::vector<std::int32_t>{1, 1}, false);
        for (std::int32_t i = 0; i < 4; ++i)
            grid->elements()[static_cast<std::size_t>(i)] = Variant(i);
        return Variant(grid);
    }

    void swap(Variant& a, Variant& b) { std::swap(a, b); }

    void grow(std::int32_t& number) { ++number; }

    std::string optional(const std::string& a, const std::string& b, const std::string& c) {
        return a + b + c;
    }

    void fail(std::int32_t number) { throw Error(number, "It failed", "Thing"); }

    void break_down() { throw std::logic_error("not an Error"); }

    void end() { interrupt_.stop(Interrupt::Reason::Ended); }

    std::string& out_;
    Interrupt& interrupt_;
    std::unordered_map<std::string, Variant> items_;
    std::string caption_;
    Variant child_;
    Variant select_;
    Ref<Collection> names_ = make_ref<Collection>();
};

class TestEnvironment : public Environment {
public:
    explicit TestEnvironment(Interrupt& interrupt) : interrupt_(interrupt) {}

    Ref<Object> create_object(std::string_view program_id) override {
        if (!equal_ignore_case(program_id, "Test.Thing"))
            throw Error(kErrorCannotCreate);
        return make_ref<Thing>(out, interrupt_);
    }

    Object* global_object(std::string_view name) override {
        return equal_ignore_case(name, "Print") ? printer_.get() : nullptr;
    }

    void write(const Variant& value) override { append_text(out, value); }

    void write_literal(std::string_view text) override { out += text; }

    std::string out;

private:
    Interrupt& interrupt_;
    Ref<Printer> printer_ = make_ref<Printer>(out);
};

inline Source source_of(std::string text, std::string file = "test.vbs") {
    Source source;
    source.files.push_back(std::move(file));
    source.texts.push_back(std::make_shared<const std::string>(std::move(text)));
    source.pieces.push_back({Piece::Kind::Code, *source.texts.back(), {}});
    return source;
}

} // namespace tabrixdb::vbscript
