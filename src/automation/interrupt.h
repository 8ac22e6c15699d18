#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace tabrixdb {

// Why a page's script has to stop although it has not finished. Belongs to one run of one page; long
// loops (the script machine at its back edges and calls, a database provider between steps) poll it. A stop
// is not an error: no On Error Resume Next holds it up.
class Interrupt {
public:
    enum class Reason : std::uint8_t { None, Ended, TimedOut, ShutDown };
    using Clock = std::chrono::steady_clock;

    explicit Interrupt(Clock::time_point deadline = Clock::time_point::max()) noexcept
        : deadline_(deadline) {}

    // From any thread. The first reason stays.
    void stop(Reason reason) noexcept {
        Reason none = Reason::None;
        reason_.compare_exchange_strong(none, reason, std::memory_order_relaxed);
    }

    void set_deadline(Clock::time_point deadline) noexcept { deadline_ = deadline; }

    Reason reason() const noexcept { return reason_.load(std::memory_order_relaxed); }

    bool stopped() const noexcept { return reason() != Reason::None; }

    // True when the run has to stop. One load and a count; the clock is read every kClockInterval polls.
    bool poll() noexcept {
        if (++polls_ % kClockInterval == 0 && Clock::now() >= deadline_)
            stop(Reason::TimedOut);
        return stopped();
    }

    // As poll(), but the clock is read each time: for those that wait rather than work.
    bool check() noexcept {
        if (Clock::now() >= deadline_)
            stop(Reason::TimedOut);
        return stopped();
    }

    // The interrupt of the page that this thread runs, or nullptr.
    static Interrupt* current() noexcept { return current_; }

    // Makes this one the thread's current until the end of the scope.
    class Scope {
    public:
        explicit Scope(Interrupt& interrupt) noexcept : previous_(current_) { current_ = &interrupt; }

        ~Scope() { current_ = previous_; }

        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        Interrupt* previous_;
    };

private:
    static constexpr std::uint32_t kClockInterval = 256;
    static inline thread_local Interrupt* current_ = nullptr;

    std::atomic<Reason> reason_{Reason::None};
    std::uint32_t polls_ = 0;
    Clock::time_point deadline_;
};

} // namespace tabrixdb
