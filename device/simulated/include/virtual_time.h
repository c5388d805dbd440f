#ifndef DEVICE_SIMULATED_VIRTUAL_TIME_H
#define DEVICE_SIMULATED_VIRTUAL_TIME_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace TARN::Simulated {

/// The clock and the queue of a simulated phone, in one.
///
/// Work is ordered by its due time and, among equals, by arrival. Time stands still while work runs and jumps
/// to the next due time when the work of an instant is done. Work may be posted and cancelled from any
/// thread; one thread runs it.
class VirtualTime {
public:
    using Work = std::function<void()>;
    /// Due time and arrival: names one piece of waiting work.
    using Ticket = std::pair<int64_t, uint64_t>;

    explicit VirtualTime(int64_t startMs) : nowMs_(startMs) {}

    [[nodiscard]] int64_t NowMs() const noexcept { return nowMs_.load(std::memory_order_relaxed); }

    /// Queues work behind what already waits for `dueMs`. A due time in the past means now. `owner`, if any, is whose
    /// work it is.
    Ticket Post(int64_t dueMs, Work work, std::string name = {}, const void* owner = nullptr);

    /// Drops one piece of waiting work; false when it is not waiting (any more).
    bool Cancel(const Ticket& ticket);

    /// Drops an owner's waiting work of that name.
    void CancelNamed(const std::string& name, const void* owner = nullptr);

    /// Drops all waiting work of an owner.
    void CancelOwned(const void* owner);

    /// Drops all waiting work.
    void Clear();

    /// Runs what is due before `ms`, then sets the clock to `ms`.
    void RunBefore(int64_t ms);

    /// Runs what is due up to and including `ms`, and what that queues for then, and sets the clock to `ms`.
    void RunThrough(int64_t ms);

    /// How much work waits.
    [[nodiscard]] size_t Waiting() const;

private:
    struct Entry {
        Work work;
        std::string name;
        const void* owner;
    };

    bool RunNext(int64_t lastDueMs);
    void ForgetName(const std::string& name, const Ticket& ticket);

    std::atomic<int64_t> nowMs_;
    mutable std::mutex mutex_;
    uint64_t arrivals_ = 0;
    std::map<Ticket, Entry> queue_;
    std::unordered_multimap<std::string_view, Ticket> named_;  ///< keys lie in the queue's entries
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_VIRTUAL_TIME_H
