#pragma once

#include "asp/page_source.h"
#include "asp/site_paths.h"
#include "vbscript/machine.h"

#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabrixdb::asp {

// A page ready to run; shared by all requests for it.
struct CompiledPage {
    std::shared_ptr<const vbscript::Program> program;
    Directives directives;
    std::vector<UsedFile> files;
};

// The compiled pages of a site. A page is compiled again when it or a file that it includes has changed; of
// many pages, those asked for last are kept. Thread-safe.
class PageCache {
public:
    // `paths` outlives the cache.
    PageCache(const SitePaths& paths, std::uint32_t code_page) : paths_(paths), code_page_(code_page) {}

    // The page at a plain virtual path; nullptr when it is not there. Raises PageError and ScriptError.
    std::shared_ptr<const CompiledPage> get(const std::string& plain);

private:
    static constexpr std::size_t kMaxPages = 1000;

    struct Kept {
        std::string path;
        std::shared_ptr<const CompiledPage> page;
    };

    std::shared_ptr<const CompiledPage> kept(const std::string& plain);
    void keep(const std::string& plain, std::shared_ptr<const CompiledPage> page);

    const SitePaths& paths_;
    const std::uint32_t code_page_;
    std::mutex mutex_;
    std::list<Kept> pages_; // the last asked for first
    std::unordered_map<std::string_view, std::list<Kept>::iterator> by_path_;
};

} // namespace tabrixdb::asp
