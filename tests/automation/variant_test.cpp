#include "automation/array.h"
#include "automation/collection.h"
#include "automation/variant.h"
#include "tests/automation/describe.h"

#include <vector>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

using testing::describe;

TEST(Variant, WholeNumbersTakeTheNarrowestType) {
    EXPECT_EQ(describe(Variant::integer(32767)), "Integer 32767");
    EXPECT_EQ(describe(Variant::integer(-32769)), "Long -32769");
    EXPECT_EQ(describe(Variant::integer(2147483648)), "Double 2147483648");
}

TEST(Variant, MovesAndCopiesHoldTheirReferences) {
    const auto object = make_ref<Collection>();
    {
        Variant a(object), b = a, c = std::move(a);
        EXPECT_EQ(object->references(), 3u);
        EXPECT_TRUE(a.is_empty());
        b = c;
        c = Variant("text");
        EXPECT_EQ(object->references(), 2u);
        b = std::move(c);
        EXPECT_EQ(describe(b), "String text");
    }
    EXPECT_EQ(object->references(), 1u);
}

// Assigning what the old value itself holds must not read it after its death.
TEST(Variant, AssignsFromWithinItself) {
    Variant outer(make_ref<Array>(std::vector<Variant>{Variant("inner")}));
    outer = outer.array()->elements()[0];
    EXPECT_EQ(describe(outer), "String inner");
    outer = *&outer;
    EXPECT_EQ(describe(outer), "String inner");
}

TEST(Variant, IdenticalMeansTypeAndValue) {
    const auto array = make_ref<Array>();
    EXPECT_TRUE(identical(Variant(), Variant()));
    EXPECT_TRUE(identical(array, array));
    EXPECT_FALSE(identical(array, make_ref<Array>()));
    EXPECT_FALSE(identical(std::int16_t{1}, std::int32_t{1}));
    EXPECT_FALSE(identical("a", Variant::byte_array("a")));
    EXPECT_TRUE(identical(Variant::missing(), Variant::missing()));
}

TEST(Array, IsCopiedWhenOneOfItsHoldersWrites) {
    Variant a(make_ref<Array>(std::vector<Variant>{1, 2})), b = a;
    a.unique_array().elements()[0] = "changed";
    EXPECT_EQ(describe(a), "Array(String changed, Long 2)");
    EXPECT_EQ(describe(b), "Array(Long 1, Long 2)");
    const Array* alone = a.array();
    EXPECT_EQ(&a.unique_array(), alone);
}

TEST(Array, HasBoundsAndLimits) {
    using Bounds = std::vector<std::int32_t>;
    const auto dimensioned = [](Bounds bounds) {
        return testing::outcome(
            [&] { return Variant(static_cast<std::int32_t>(Array(bounds, false).size())); });
    };
    EXPECT_EQ(dimensioned({1, 2}), "Long 6");
    EXPECT_EQ(dimensioned({-1}), "Long 0");
    EXPECT_EQ(dimensioned({-2}), "Error 7");
    EXPECT_EQ(dimensioned({}), "Error 9");
    EXPECT_EQ(dimensioned({1 << 26}), "Error 7");
    EXPECT_EQ(dimensioned({9999, 9999, 9999}), "Error 7");
    EXPECT_EQ(dimensioned({INT32_MAX}), "Error 9");
    EXPECT_EQ(dimensioned(Bounds(61, 0)), "Error 9");

    Array table(Bounds{1, 2}, false);
    const auto at = [&table](Bounds subscripts) -> std::string {
        return testing::outcome([&] { return table.at(subscripts); });
    };
    table.at(Bounds{1, 2}) = "end";
    EXPECT_EQ(at({1, 2}), "String end");
    EXPECT_EQ(describe(table.elements().back()), "String end");
    for (const Bounds& wrong :
         {Bounds{2, 0}, Bounds{0, 3}, Bounds{-1, 0}, Bounds{0}, Bounds{0, 0, 0}, Bounds{}})
        EXPECT_EQ(at(wrong), "Error 9");
    EXPECT_THROW(Array().at(Bounds{0}), Error);
}

TEST(Array, IsRedimensionedAndErased) {
    using Bounds = std::vector<std::int32_t>;
    Array table(Bounds{1, 1}, false);
    table.at(Bounds{1, 1}) = 11;
    table.redimension(Bounds{1, 3}, true);
    EXPECT_EQ(describe(table.at(Bounds{1, 1})), "Long 11");
    EXPECT_THROW(table.redimension(Bounds{2, 3}, true), Error); // only the last bound may change
    EXPECT_THROW(table.redimension(Bounds{7}, true), Error);
    table.redimension(Bounds{1, 1}, false);
    EXPECT_TRUE(table.at(Bounds{1, 1}).is_empty());
    table.erase();
    EXPECT_THROW(table.upper_bound(0), Error);

    Array fixed(Bounds{1}, true);
    fixed.at(Bounds{0}) = "x";
    EXPECT_THROW(fixed.redimension(Bounds{2}, false), Error);
    fixed.erase();
    EXPECT_TRUE(fixed.at(Bounds{0}).is_empty());
    EXPECT_EQ(fixed.upper_bound(0), 1);
}

// Scripts can nest without end; destruction must not use the stack for it.
TEST(Counted, DeepChainsAreDestroyedFlat) {
    constexpr int kDepth = 50'000;
    const auto last = make_ref<Collection>();
    Variant array(last), object(last);
    for (int i = 0; i < kDepth; ++i) {
        array = make_ref<Array>(std::vector<Variant>{std::move(array)});
        auto next = make_ref<Collection>();
        next->add(std::move(object));
        object = next;
    }
    EXPECT_EQ(last->references(), 3u);
    array = object = Variant();
    EXPECT_EQ(last->references(), 1u);
}

TEST(Collection, FindsByKeyAndPosition) {
    const auto items = make_ref<Collection>();
    items->add("one", "First");
    items->add("two");
    items->add("three", "third");
    const auto item = [&items](Variant key) {
        return testing::outcome([&] { return get(*items, "Item", {key}); });
    };
    EXPECT_EQ(item("FIRST"), "String one");
    EXPECT_EQ(item(2), "String two");
    EXPECT_EQ(item("3"), "Error 5"); // a text is a key
    EXPECT_EQ(item(4), "Error 9");
    EXPECT_EQ(item(0), "Error 9");
    EXPECT_THROW(items->add("x", "first"), Error);
    EXPECT_EQ(items->count(), 3);

    get(*items, "Add", {"zero", "zero", 1});
    get(*items, "Add", {"half", "half", Variant::missing(), "zero"});
    get(*items, "Remove", {"first"});
    std::string order;
    const auto walk = items->enumerate();
    for (Variant value; walk->next(value);)
        append_text(order += ' ', value);
    EXPECT_EQ(order, " zero half two three");
    EXPECT_EQ(item("third"), "String three");
    EXPECT_EQ(item("half"), "String half");
    EXPECT_THROW(items->get<Collection>(1), Error);
    EXPECT_THROW(get(*items, "Add", {"x", "new", 9}), Error);
    EXPECT_FALSE(items->contains("new"));
}

} // namespace
} // namespace tabrixdb
