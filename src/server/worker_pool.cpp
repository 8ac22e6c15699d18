#include "server/worker_pool.h"

namespace tabrixdb::server {

WorkerPool::WorkerPool(unsigned threads) {
    for (unsigned i = 0; i < threads; ++i)
        threads_.emplace_back([this] { work(); });
}

void WorkerPool::submit(std::function<void()> job) {
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    changed_.notify_one();
}

void WorkerPool::stop() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
    threads_.clear();
}

void WorkerPool::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
        if (jobs_.empty())
            return;
        std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
    }
}

} // namespace tabrixdb::server
