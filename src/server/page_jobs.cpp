#include "server/page_jobs.h"

#include "asp/request_collections.h"

#include <algorithm>

namespace tabrixdb::server {

struct PageJobs::Job {
    std::shared_ptr<const asp::HttpRequest> request;
    std::string site_path;
    std::function<void(asp::HttpResponse)> done;
    asp::SessionLease lease;
};

std::string session_id_of(const asp::Headers& headers) {
    for (const asp::Header& header : headers)
        if (equal_ignore_case(header.name, "Cookie"))
            for (const auto& [name, value] : asp::parse_cookies(header.value))
                if (name == asp::kSessionCookie)
                    return value;
    return {};
}

namespace {

unsigned worker_count(unsigned wanted) {
    constexpr unsigned kLeast = 4; // pages wait for the disk as well as for a processor
    return wanted ? wanted : std::max(kLeast, std::thread::hardware_concurrency());
}

} // namespace

PageJobs::PageJobs(asp::Site& site, unsigned workers) : site_(site), pool_(worker_count(workers)) {}

void PageJobs::run(std::shared_ptr<const asp::HttpRequest> request, std::string site_path,
                   std::function<void(asp::HttpResponse)> done) {
    {
        std::unique_lock lock(mutex_);
        if (stopping_ || jobs_ == kMaxJobs) {
            lock.unlock();
            return done(asp::plain_message(503));
        }
        ++jobs_;
    }
    const std::string id = session_id_of(request->headers);
    auto job = std::make_shared<Job>(Job{std::move(request), std::move(site_path), std::move(done), {}});
    const std::shared_ptr<asp::SessionState> session = id.empty() ? nullptr : site_.sessions.find(id);
    if (!session)
        return start(job);
    const bool let_in = session->turnstile.enter([this, job, session, id] {
        job->lease = asp::SessionLease(site_.sessions, session, id);
        start(job);
    });
    if (!let_in)
        finish(*job, asp::plain_message(503));
}

void PageJobs::start(const std::shared_ptr<Job>& job) {
    pool_.submit([this, job] { work(*job); });
}

void PageJobs::work(Job& job) {
    Interrupt interrupt;
    {
        const std::lock_guard lock(mutex_);
        running_.insert(&interrupt);
        if (stopping_)
            interrupt.stop(Interrupt::Reason::ShutDown);
    }
    asp::HttpResponse response;
    {
        asp::Page page(site_, std::move(job.request), std::move(job.site_path), std::move(job.lease),
                       interrupt);
        response = page.run();
    }
    {
        const std::lock_guard lock(mutex_);
        running_.erase(&interrupt);
    }
    finish(job, std::move(response));
}

void PageJobs::finish(Job& job, asp::HttpResponse response) {
    job.done(std::move(response));
    const std::lock_guard lock(mutex_);
    --jobs_;
    finished_.notify_all();
}

void PageJobs::stop(std::chrono::seconds grace) {
    {
        std::unique_lock lock(mutex_);
        const auto none_left = [this] { return jobs_ == 0; };
        finished_.wait_for(lock, grace, none_left);
        stopping_ = true;
        for (Interrupt* interrupt : running_)
            interrupt->stop(Interrupt::Reason::ShutDown);
        finished_.wait(lock, none_left);
    }
    pool_.stop();
}

} // namespace tabrixdb::server
