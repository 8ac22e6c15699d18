#include "asp/session_store.h"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tabrixdb::asp {
namespace {

using std::chrono::minutes;

TEST(SessionStore, KnowsItsSessionsByUnguessableIds) {
    SessionStore store(20);
    std::set<std::string> ids;
    for (int i = 0; i < 100; ++i)
        ids.insert(store.create()->id);
    EXPECT_EQ(ids.size(), 100U);
    for (const std::string& id : ids) {
        EXPECT_EQ(id.size(), 32U);
        EXPECT_EQ(store.find(id)->id, id);
    }
    EXPECT_EQ(store.find(""), nullptr);
    EXPECT_EQ(store.find(std::string(32, '0')), nullptr);
}

TEST(SessionStore, KeepsWhatPagesExportAsLongAsItsSession) {
    SessionStore store(20, 3, {.blob_bytes = 40'000}); // 10'000 for one session
    auto first = store.create();
    const auto second = store.create();
    Exports& exports = first->exports;
    const auto put = [&](const auto& session, const char* key, std::size_t bytes) {
        exports.set_value(session.get(), key, Variant::byte_array(std::string(bytes, *key)));
    };
    const auto held = [&](const auto& session) {
        std::string keys;
        for (const char* key : {"a_1", "B_1", "c_1", "d_1"})
            if (const Variant value = exports.value(session.get(), key); !value.is_empty())
                keys += value.text().view().substr(0, 1);
        return keys;
    };
    put(first, "a_1", 4000);
    put(first, "b_1", 4000);
    put(second, "A_1", 10);
    EXPECT_EQ(held(first), "ab");
    EXPECT_EQ(held(second), "A");
    put(first, "A_1", 4000); // in the place of the oldest, which makes it the newest
    put(first, "c_1", 4000);
    EXPECT_EQ(held(first), "Ac");
    put(first, "d_1", 30'000); // the newest stays, whatever its size
    EXPECT_EQ(held(first), "d");
    EXPECT_EQ(held(second), "A");
    put(second, "c_1", 8900); // all sessions together: what was put first goes
    EXPECT_EQ(held(first), "d");
    EXPECT_EQ(held(second), "c");
    for (int i = 0; i < 1000; ++i) // small ones take room as well
        exports.set_value(second.get(), "b_" + std::to_string(i), Variant::byte_array(""));
    EXPECT_EQ(held(second), "");
    put(first, "d_1", 10);
    const void* const gone = first.get();
    store.remove(*first);
    EXPECT_FALSE(exports.value(gone, "d_1").is_empty()) << "a request still has it";
    first.reset();
    EXPECT_TRUE(exports.value(gone, "d_1").is_empty());
}

TEST(SessionStore, EndsSessionsThatWereNotUsed) {
    SessionStore store(20);
    const auto unused = store.create(), longer = store.create(), busy = store.create();
    longer->minutes = 60;
    busy->turnstile.enter([] {});
    store.sweep(Clock::now() + minutes(19));
    EXPECT_EQ(store.size(), 3U);
    store.sweep(Clock::now() + minutes(21));
    EXPECT_EQ(store.find(unused->id), nullptr);
    EXPECT_EQ(store.find(longer->id), longer);
    EXPECT_EQ(store.find(busy->id), busy);
}

TEST(SessionStore, MakesRoomAtTheCostOfThoseWhoNeverCameBack) {
    SessionStore store(20, 3);
    const auto first = store.create(), second = store.create(), third = store.create();
    store.find(first->id);
    const auto fourth = store.create();
    EXPECT_EQ(store.size(), 3U);
    EXPECT_EQ(store.find(second->id), nullptr);
    for (const auto& kept : {first, third, fourth})
        EXPECT_NE(store.find(kept->id), nullptr);
    store.create(); // all have come back: the one unused for longest goes
    EXPECT_EQ(store.find(first->id), nullptr);
}

TEST(SessionStore, ForgetsAnAbandonedSessionWithItsLease) {
    SessionStore store(20);
    const auto session = store.create();
    session->turnstile.enter([] {});
    {
        const SessionLease lease(store, session, session->id);
        EXPECT_EQ(lease.session(), session.get());
        session->abandoned = true;
        EXPECT_EQ(lease.session(), nullptr);
    }
    EXPECT_EQ(store.size(), 0U);
    EXPECT_FALSE(session->turnstile.busy());
}

TEST(SessionStore, RenewsAnIdAndForgetsTheOld) {
    SessionStore store(20, 2);
    const auto session = store.create();
    session->values.set("a", Variant(std::int32_t{1}));
    const std::string first = session->id;
    store.renew(*session);
    const std::string second = session->id;
    store.renew(*session);
    EXPECT_EQ(store.find(first), nullptr);
    EXPECT_EQ(store.find(second), nullptr);
    EXPECT_EQ(store.find(session->id), session);
    EXPECT_EQ(store.size(), 1U);
    store.touch(*session);
    store.create();
    store.create();
    store.create();
    EXPECT_EQ(store.find(session->id), session); // which counts as one whose client came back
    store.remove(*session);
    store.renew(*session); // it has gone
    EXPECT_EQ(store.find(session->id), nullptr);
    EXPECT_EQ(store.size(), 1U);
}

TEST(SessionStore, LeavesThoseWhoWaitedWithAnOldIdWithoutASession) {
    SessionStore store(20);
    const auto session = store.create();
    const std::string old = session->id;
    session->turnstile.enter([] {});
    SessionLease first(store, session, old), waiting;
    session->turnstile.enter([&] { waiting = SessionLease(store, session, old); });
    store.renew(*session);
    EXPECT_EQ(first.session(), session.get());
    first.release();
    EXPECT_EQ(waiting.session(), nullptr);
    EXPECT_TRUE(waiting.overtaken());
    waiting.release();
    EXPECT_FALSE(session->turnstile.busy());
    EXPECT_EQ(store.find(session->id), session);
}

TEST(Turnstile, LetsOneThroughAtATimeInOrder) {
    Turnstile turnstile;
    std::vector<int> turns;
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(turnstile.enter([&, i] { turns.push_back(i); }));
    EXPECT_EQ(turns, std::vector<int>{0});
    turnstile.leave();
    EXPECT_EQ(turns, (std::vector<int>{0, 1}));
    turnstile.leave();
    turnstile.leave();
    EXPECT_EQ(turns, (std::vector<int>{0, 1, 2}));
    EXPECT_FALSE(turnstile.busy());
}

TEST(Turnstile, RefusesAnEndlessQueue) {
    Turnstile turnstile;
    int refused = 0;
    for (int i = 0; i < 1000; ++i)
        refused += !turnstile.enter([] {});
    EXPECT_GT(refused, 900);
}

} // namespace
} // namespace tabrixdb::asp
