#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tabrixdb::server {

// Threads that run jobs in their order. Whoever submits bounds how many wait.
class WorkerPool {
public:
    explicit WorkerPool(unsigned threads);

    ~WorkerPool() { stop(); }

    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // `job` must not throw.
    void submit(std::function<void()> job);
    // Runs what was submitted to its end, and ends the threads.
    void stop();

private:
    void work();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace tabrixdb::server
