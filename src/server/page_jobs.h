#pragma once

#include "asp/http.h"
#include "asp/page.h"
#include "asp/site.h"
#include "server/worker_pool.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>

namespace tabrixdb::server {

// Runs pages on worker threads, those of one session one after the other.
class PageJobs {
public:
    // `workers` 0: one for each processor, four at least. `site` outlives this.
    PageJobs(asp::Site& site, unsigned workers);

    ~PageJobs() { stop(std::chrono::seconds(0)); }

    // Calls `done` with the page's answer, on a worker; at once, with 503, when too many requests wait
    // already. `site_path`: see asp::Page.
    void run(std::shared_ptr<const asp::HttpRequest> request, std::string site_path,
             std::function<void(asp::HttpResponse)> done);

    // Waits for the pages that run or wait; after `grace` stops them. Nothing may be run afterwards.
    void stop(std::chrono::seconds grace);

private:
    struct Job;

    void start(const std::shared_ptr<Job>& job);
    void work(Job& job);
    void finish(Job& job, asp::HttpResponse response);

    // Requests that run or wait. More would only wait longer than their clients do.
    static constexpr std::size_t kMaxJobs = 1024;

    asp::Site& site_;
    std::mutex mutex_;
    std::condition_variable finished_;
    std::size_t jobs_ = 0;
    bool stopping_ = false;
    std::unordered_set<Interrupt*> running_;
    WorkerPool pool_;
};

// The ID in the session cookie of a request; empty when there is none.
std::string session_id_of(const asp::Headers& headers);

} // namespace tabrixdb::server
