#include "asp/page_cache.h"

#include "asp/files.h"

#include <algorithm>

namespace tabrixdb::asp {

namespace {

class SitePageFiles final : public PageFiles {
public:
    explicit SitePageFiles(const SitePaths& paths) : paths_(paths) {}

    std::optional<File> read(std::string_view plain) override {
        const std::optional<SitePaths::Found> found = paths_.find(plain);
        if (!found || found->folder || found->stamp.size > kMaxPageBytes)
            return std::nullopt;
        std::optional<std::string> bytes = read_bytes(found->physical);
        if (!bytes)
            return std::nullopt;
        return File{std::move(*bytes), {found->physical, found->stamp}};
    }

private:
    const SitePaths& paths_;
};

bool is_current(const CompiledPage& page) {
    return std::ranges::all_of(page.files,
                               [](const UsedFile& file) { return stamp_of(file.physical) == file.stamp; });
}

} // namespace

std::shared_ptr<const CompiledPage> PageCache::get(const std::string& plain) {
    if (std::shared_ptr<const CompiledPage> page = kept(plain); page && is_current(*page))
        return page;
    SitePageFiles files(paths_);
    std::optional<PageSource> source = read_page(files, plain, code_page_);
    if (!source)
        return nullptr;
    auto page = std::make_shared<CompiledPage>();
    page->directives = source->directives;
    page->files = std::move(source->files);
    page->program = vbscript::compile(std::move(source->source));
    keep(plain, page);
    return page;
}

std::shared_ptr<const CompiledPage> PageCache::kept(const std::string& plain) {
    const std::lock_guard lock(mutex_);
    const auto found = by_path_.find(plain);
    if (found == by_path_.end())
        return nullptr;
    pages_.splice(pages_.begin(), pages_, found->second);
    return found->second->page;
}

void PageCache::keep(const std::string& plain, std::shared_ptr<const CompiledPage> page) {
    const std::lock_guard lock(mutex_);
    if (const auto found = by_path_.find(plain); found != by_path_.end()) {
        found->second->page = std::move(page);
        return;
    }
    if (pages_.size() == kMaxPages) {
        by_path_.erase(pages_.back().path);
        pages_.pop_back();
    }
    pages_.push_front({plain, std::move(page)});
    by_path_.emplace(pages_.front().path, pages_.begin());
}

} // namespace tabrixdb::asp
