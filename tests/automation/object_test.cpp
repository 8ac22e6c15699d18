#include "automation/collection.h"
#include "automation/member.h"
#include "automation/object.h"
#include "tests/automation/describe.h"

#include <vector>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

using testing::describe;

// A class with one member of each kind.
class Shelf final : public Object {
public:
    const ClassInfo& class_info() const override {
        static const ClassInfo info(
            "Shelf", "Test.Shelf",
            {
                property<&Shelf::label, &Shelf::set_label>("Label").as_default(),
                field<&Shelf::width>("Width"),
                field<&Shelf::anything>("Anything"),
                field<&Shelf::neighbour>("Neighbour"),
                property<&Shelf::books>("Books"),
                property<&Shelf::slot, &Shelf::set_slot>("Slot", {"Index"}),
                method<&Shelf::swap>("Swap", {"A", "B"}),
                method<&Shelf::count_up>("CountUp", {"Number", {"Step", std::int32_t{2}}}),
                method<&Shelf::clear>("Clear"),
            });
        return info;
    }

    std::string label() const { return label_; }

    void set_label(const std::string& label) { label_ = label; }

    Ref<Collection> books() const { return books_; }

    Variant slot(std::int32_t index) const { return slots_.at(static_cast<std::size_t>(index)); }

    void set_slot(std::int32_t index, const Variant& value) {
        slots_.at(static_cast<std::size_t>(index)) = value;
    }

    void swap(Variant& a, Variant& b) { std::swap(a, b); }

    std::int32_t count_up(std::int32_t& number, std::int32_t step) { return number += step; }

    void clear() { label_.clear(); }

    double width = 1.5;
    Variant anything;
    Ref<Shelf> neighbour;

private:
    std::string label_ = "label";
    Ref<Collection> books_ = make_ref<Collection>();
    std::vector<Variant> slots_ = std::vector<Variant>(3);
};

std::string call(Object& object, const char* name, Access access, std::vector<Variant> arguments) {
    return testing::outcome([&] {
        std::vector<Variant*> pointers;
        for (Variant& argument : arguments)
            pointers.push_back(&argument);
        return invoke(object, name, access, pointers);
    });
}

TEST(Object, AnswersByName) {
    const auto shelf = make_ref<Shelf>();
    shelf->books()->add("novel", "n");
    const auto other = make_ref<Shelf>();

    const struct {
        const char* name;
        Access access;
        std::vector<Variant> arguments;
        std::string expected;
    } steps[] = {
        {"LABEL", Access::Get, {}, "String label"},
        {"", Access::Get, {}, "String label"},
        {"Label", Access::Let, {5}, "Empty"},
        {"Label", Access::Get, {}, "String 5"},
        {"Label", Access::Set, {other}, "Error 438"},
        {"Label", Access::Get, {1}, "Error 450"}, // a text has no default member to pass it to
        {"Width", Access::Let, {"2.5"}, "Empty"},
        {"Width", Access::Get, {}, "Double 2.5"},
        {"Width", Access::Let, {"wide"}, "Error 13"},
        {"Neighbour", Access::Get, {}, "Nothing"},
        {"Neighbour", Access::Set, {other}, "Empty"},
        {"Neighbour", Access::Get, {}, "Object Shelf"},
        {"Neighbour", Access::Let, {"neighbour's"}, "Empty"}, // goes to the default member of what it holds
        {"Neighbour", Access::Set, {make_ref<Collection>()}, "Error 13"},
        {"Neighbour", Access::Set, {1}, "Error 424"},
        {"Anything", Access::Set, {other}, "Empty"},
        {"Anything", Access::Let, {1}, "Empty"},
        {"Anything", Access::Get, {}, "Long 1"},
        {"Books", Access::Get, {"n"}, "String novel"}, // passed on to Item
        {"Books", Access::Get, {"n", 2}, "Error 450"},
        {"Books", Access::Set, {other}, "Error 438"},
        {"Books", Access::Let, {1}, "Error 449"}, // Item needs its index
        {"Slot", Access::Let, {1, "x"}, "Empty"},
        {"Slot", Access::Get, {1}, "String x"},
        {"Slot", Access::Get, {}, "Error 449"},
        {"Slot", Access::Get, {Variant::missing()}, "Error 449"},
        {"CountUp", Access::Get, {1}, "Long 3"},
        {"CountUp", Access::Get, {1, Variant::missing()}, "Long 3"},
        {"CountUp", Access::Get, {1, 10}, "Long 11"},
        {"CountUp", Access::Get, {}, "Error 449"},
        {"CountUp", Access::Get, {1, 2, 3}, "Error 450"},
        {"CountUp", Access::Let, {1}, "Error 438"},
        {"Clear", Access::Get, {}, "Empty"},
        {"Label", Access::Get, {}, "String "},
        {"NoSuch", Access::Get, {}, "Error 438"},
    };

    for (const auto& step : steps)
        EXPECT_EQ(call(*shelf, step.name, step.access, step.arguments), step.expected) << step.name;
    EXPECT_EQ(other->label(), "neighbour's");
}

TEST(Object, WritesBackByReference) {
    const auto shelf = make_ref<Shelf>();
    Variant a("left"), b(2), number("40");
    Variant* const both[] = {&a, &b};
    invoke(*shelf, "Swap", Access::Get, both);
    EXPECT_EQ(describe(a) + ' ' + describe(b), "Long 2 String left");
    Variant* const one[] = {&number};
    invoke(*shelf, "CountUp", Access::Get, one);
    EXPECT_EQ(describe(number), "Long 42");
    // What the call leaves as it was keeps its type.
    Variant step(0), text("40");
    Variant* const two[] = {&text, &step};
    invoke(*shelf, "CountUp", Access::Get, two);
    EXPECT_EQ(describe(text), "String 40");
}

TEST(Object, ArgumentsReachAnArrayThatAPropertyHolds) {
    const auto shelf = make_ref<Shelf>();
    shelf->anything = make_ref<Array>(std::vector<Variant>{1, "second"});
    EXPECT_EQ(call(*shelf, "Anything", Access::Get, {1}), "String second");
    EXPECT_EQ(call(*shelf, "Anything", Access::Get, {2}), "Error 9");
}

// Its default member is itself.
class Mirror final : public Object {
public:
    const ClassInfo& class_info() const override {
        static const ClassInfo info("Mirror", "", {property<&Mirror::self>("Self").as_default()});
        return info;
    }

    Ref<Mirror> self() { return Ref<Mirror>(this); }
};

TEST(Object, CyclesOfDefaultMembersEnd) {
    const auto mirror = make_ref<Mirror>();
    EXPECT_EQ(testing::outcome([&] { return value_of(mirror); }), "Error 438");
    EXPECT_EQ(call(*mirror, "Self", Access::Get, {1}), "Error 450");
    EXPECT_EQ(testing::outcome([] { return default_value(nullptr); }), "Error 91");
    EXPECT_EQ(testing::outcome([&] {
                  mirror->enumerate();
                  return Variant();
              }),
              "Error 451");
}

TEST(Object, MembersAreDescribed) {
    const auto shelf = make_ref<Shelf>();
    const ClassInfo& info = shelf->class_info();
    const Member& swap = info.members()[static_cast<std::size_t>(info.find("swap"))];
    EXPECT_TRUE(swap.is_method);
    EXPECT_EQ(swap.type, Type::Empty);
    EXPECT_TRUE(swap.parameters[0].by_reference);
    const Member& count = info.members()[static_cast<std::size_t>(info.find("COUNTUP"))];
    EXPECT_EQ(count.type, Type::Long);
    EXPECT_FALSE(count.parameters[1].by_reference);
    EXPECT_TRUE(count.parameters[1].optional);
    EXPECT_EQ(info.find(""), info.find("Label"));
}

} // namespace
} // namespace tabrixdb
