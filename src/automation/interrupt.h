#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace tabrixdb {

// Bounds one run of one page, in time and in memory.
//
// Time: why the script has to stop although it has not finished. Long loops (the script machine at its back
// edges and calls, a database provider between steps) poll it. A stop is not an error: no On Error Resume
// Next holds it up. Memory: what texts and arrays made by the run hold is counted; past the limit making more
// is an Error.
class Interrupt {
public:
    enum class Reason : std::uint8_t { None, Ended, TimedOut, ShutDown };
    using Clock = std::chrono::steady_clock;

    explicit Interrupt(Clock::time_point deadline = Clock::time_point::max()) noexcept
        : deadline_(deadline) {}

    // For what runs inside a page: stops by itself, and whenever the run of this thread has to stop.
    struct InsideRun {};

    explicit Interrupt(InsideRun) noexcept : inside_run_(true), deadline_(Clock::time_point::max()) {}

    // From any thread. The first reason stays.
    void stop(Reason reason) noexcept {
        Reason none = Reason::None;
        reason_.compare_exchange_strong(none, reason, std::memory_order_relaxed);
    }

    void set_deadline(Clock::time_point deadline) noexcept { deadline_ = deadline; }

    // Forgets an earlier stop. Only for one that no other thread stops.
    void restart(Clock::time_point deadline) noexcept {
        reason_.store(Reason::None, std::memory_order_relaxed);
        deadline_ = deadline;
    }

    Reason reason() const noexcept {
        const Reason own = reason_.load(std::memory_order_relaxed);
        return own == Reason::None && inside_run_ && current_ ? current_->reason() : own;
    }

    bool stopped() const noexcept { return reason() != Reason::None; }

    // True when the run has to stop. One load and a count; the clock is read after every kClockInterval units
    // of work, of which a poll is one.
    bool poll() noexcept {
        if (++work_ >= kClockInterval) {
            work_ = 0;
            return check();
        }
        return inside_run_ && current_ ? current_->poll() || stopped() : stopped();
    }

    // As poll(), but the clock is read each time: for those that wait rather than work.
    bool check() noexcept {
        if (Clock::now() >= deadline_)
            stop(Reason::TimedOut);
        return inside_run_ && current_ ? current_->check() || stopped() : stopped();
    }

    // Texts and arrays of a run hold at most this many bytes.
    static constexpr std::int64_t kMaxHeldBytes = std::int64_t{1} << 30;

    // Memory is about to be held, or was let go, by the run of this thread, if there is one. hold() is false,
    // and nothing is counted, when that would be too much. Filling memory is work, too.
    static bool hold(std::size_t bytes) noexcept {
        Interrupt* const run = current_;
        if (!run)
            return true;
        const auto held = run->held_ + static_cast<std::int64_t>(bytes);
        if (held > kMaxHeldBytes)
            return false;
        run->held_ = held;
        run->work_ += 1 + static_cast<std::uint32_t>(bytes / kBytesPerUnit);
        return true;
    }

    static void let_go(std::size_t bytes) noexcept {
        if (Interrupt* const run = current_)
            run->held_ -= static_cast<std::int64_t>(bytes);
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
    static constexpr std::size_t kBytesPerUnit = 1024; // copied in about the time of a step of the script
    static inline thread_local Interrupt* current_ = nullptr;

    std::atomic<Reason> reason_{Reason::None};
    bool inside_run_ = false;
    std::uint32_t work_ = 0; // since the clock was read
    std::int64_t held_ =
        0; // less than nothing when the run lets go of what an earlier one left in the session
    Clock::time_point deadline_;
};

} // namespace tabrixdb
