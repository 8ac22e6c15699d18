#pragma once

#include "automation/text.h"
#include "automation/variant.h"

#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tabrixdb::asp {

// Named things of many owners within one budget: of what all of them have, and of what one has, which is a
// quarter of it. Beyond it the oldest go, but never the newest, however large. Names ignore case.
// Thread-safe.
template <class T>
class OwnedItems {
public:
    explicit OwnedItems(std::size_t most_bytes) : most_bytes_(most_bytes) {}

    // In the place of what the owner has under this name.
    void put(const void* owner, std::string_view name, T item, std::size_t bytes) {
        std::vector<T> gone; // freed after the lock, whatever that takes
        const std::lock_guard lock(mutex_);
        Owner& own = owners_[owner];
        if (const auto old = own.names.find(name); old != own.names.end())
            gone.push_back(take(old->second));
        const std::uint64_t age = ++last_age_;
        own.names.emplace(name, age);
        own.ages.insert(age);
        own.bytes += bytes;
        bytes_ += bytes;
        items_.emplace(age, Item{owner, std::string(name), std::move(item), bytes});
        while (own.bytes > most_bytes_ / 4 && own.ages.size() > 1)
            gone.push_back(take(*own.ages.begin()));
        while (bytes_ > most_bytes_ && items_.size() > 1)
            gone.push_back(take(items_.begin()->first));
    }

    // T() when the owner has nothing of that name.
    T find(const void* owner, std::string_view name) const {
        const std::lock_guard lock(mutex_);
        const auto own = owners_.find(owner);
        if (own == owners_.end())
            return T();
        const auto found = own->second.names.find(name);
        return found == own->second.names.end() ? T() : items_.at(found->second).thing;
    }

    // The owner has nothing any more.
    void drop(const void* owner) {
        std::vector<T> gone;
        const std::lock_guard lock(mutex_);
        const auto own = owners_.find(owner);
        if (own == owners_.end())
            return;
        while (!own->second.ages.empty())
            gone.push_back(take(*own->second.ages.begin()));
        owners_.erase(own);
    }

private:
    struct Item {
        const void* owner;
        std::string name;
        T thing;
        std::size_t bytes;
    };

    struct Owner {
        std::unordered_map<std::string, std::uint64_t, IgnoreCaseHash, IgnoreCaseEqual> names;
        std::set<std::uint64_t> ages;
        std::size_t bytes = 0;
    };

    T take(std::uint64_t age) {
        const auto at = items_.find(age);
        Item item = std::move(at->second);
        items_.erase(at);
        Owner& own = owners_.at(item.owner); // stays, even with nothing, until it is dropped
        own.names.erase(item.name);
        own.ages.erase(age);
        own.bytes -= item.bytes;
        bytes_ -= item.bytes;
        return std::move(item.thing);
    }

    const std::size_t most_bytes_;
    mutable std::mutex mutex_;
    std::map<std::uint64_t, Item> items_; // by age, the oldest first
    std::unordered_map<const void*, Owner> owners_;
    std::uint64_t last_age_ = 0;
    std::size_t bytes_ = 0;
};

// How many bytes of exports a site keeps at once.
struct ExportLimits {
    std::size_t blob_bytes = std::size_t{256} * 1024 * 1024;      // in memory
    std::size_t download_bytes = std::size_t{1024} * 1024 * 1024; // on the disk
};

// A file that is deleted with the object.
class OwnFile {
public:
    explicit OwnFile(std::string physical_path) : path_(std::move(physical_path)) {}

    ~OwnFile() { std::remove(path_.c_str()); }

    OwnFile(const OwnFile&) = delete;
    OwnFile& operator=(const OwnFile&) = delete;

    const std::string& path() const noexcept { return path_; }

private:
    std::string path_;
};

// What pages have put out for single visitors; each session owns its own, and they end with it.
class Exports {
public:
    explicit Exports(const ExportLimits& limits)
        : values_(limits.blob_bytes),
          files_(limits.download_bytes) {}

    // Values that pages of this session read from the Application.
    void set_value(const void* session, std::string_view key, Variant value) {
        const bool is_long = value.is_string() || value.is_byte_array();
        const std::size_t bytes = kItemBytes + key.size() + (is_long ? value.text().size() : 0);
        values_.put(session, key, std::move(value), bytes);
    }

    // Empty for one that is not there.
    Variant value(const void* session, std::string_view key) const { return values_.find(session, key); }

    // Files that this session is sent at an address of the site.
    void set_file(const void* session, std::string_view address, std::shared_ptr<const OwnFile> file,
                  std::size_t bytes) {
        files_.put(session, address, std::move(file), kFileBytes + bytes);
    }

    // nullptr when there is none.
    std::shared_ptr<const OwnFile> file(const void* session, std::string_view address) const {
        return files_.find(session, address);
    }

    void drop(const void* session) {
        values_.drop(session);
        files_.drop(session);
    }

private:
    // What a value and a file take beside their bytes, so that many small ones are bounded as well.
    static constexpr std::size_t kItemBytes = 512;
    static constexpr std::size_t kFileBytes = 4096;

    OwnedItems<Variant> values_;
    OwnedItems<std::shared_ptr<const OwnFile>> files_;
};

} // namespace tabrixdb::asp
