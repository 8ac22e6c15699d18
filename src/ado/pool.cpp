#include "ado/pool.h"

#include <mutex>
#include <unordered_map>
#include <vector>

namespace tabrixdb::ado {

namespace {

using Handles = std::vector<std::unique_ptr<Database>>;

struct Pool {
    std::mutex mutex;
    std::unordered_map<std::string, Handles> idle;
    std::size_t count = 0;
};

Pool& pool() {
    static Pool the_pool;
    return the_pool;
}

std::unique_ptr<Database> pop(const std::string& connection_string) {
    Pool& all = pool();
    const std::lock_guard lock(all.mutex);
    const auto found = all.idle.find(connection_string);
    if (found == all.idle.end())
        return nullptr;
    auto database = std::move(found->second.back());
    found->second.pop_back();
    --all.count;
    if (found->second.empty())
        all.idle.erase(found);
    return database;
}

} // namespace

std::unique_ptr<Database> take_idle(const std::string& connection_string) {
    // Asking a handle whether it is still good reads the file, which is not done under the lock.
    while (auto database = pop(connection_string))
        if (database->reusable())
            return database;
    return nullptr;
}

void keep_idle(const std::string& connection_string, std::unique_ptr<Database> database) noexcept {
    if (!database->reusable())
        return;
    Pool& all = pool();
    const std::lock_guard lock(all.mutex);
    if (all.count >= kMaxIdle)
        return;
    Handles& handles = all.idle[connection_string];
    if (handles.size() >= kMaxIdlePerString)
        return;
    handles.push_back(std::move(database));
    ++all.count;
}

void close_idle() noexcept {
    Pool& all = pool();
    decltype(all.idle) closing;
    {
        const std::lock_guard lock(all.mutex);
        closing.swap(all.idle);
        all.count = 0;
    }
}

} // namespace tabrixdb::ado
