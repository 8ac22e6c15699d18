#include "automation/array.h"
#include "automation/error.h"
#include "automation/interrupt.h"

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

std::int32_t error_of(auto make) {
    try {
        make();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

TEST(Interrupt, BoundsWhatARunHolds) {
    const std::int32_t bounds[] = {999};
    const auto text = [] { return Text("more than nothing"); };
    const auto array = [&] { return make_ref<Array>(bounds, false); };
    Interrupt run;
    const Interrupt::Scope scope(run);
    Text kept = text();
    ASSERT_TRUE(Interrupt::hold(Interrupt::kMaxHeldBytes - 4096));
    EXPECT_EQ(error_of(text), 0);
    EXPECT_EQ(error_of(array), 7);
    while (Interrupt::hold(1)) {
    }
    EXPECT_EQ(error_of(text), 14);
    Interrupt::let_go(Interrupt::kMaxHeldBytes / 2);
    // What is made and dropped again leaves nothing behind.
    for (int i = 0; i < 100'000; ++i) {
        ASSERT_EQ(error_of(text), 0);
        ASSERT_EQ(error_of(array), 0);
    }
}

TEST(Interrupt, CountsFillingMemoryAsWork) {
    Interrupt run(Interrupt::Clock::now());
    const Interrupt::Scope scope(run);
    EXPECT_FALSE(run.poll()) << "a poll by itself does not read the clock";
    const Text large(std::string(1'000'000, 'x'));
    EXPECT_TRUE(run.poll());
    EXPECT_EQ(run.reason(), Interrupt::Reason::TimedOut);
}

} // namespace
} // namespace tabrixdb
