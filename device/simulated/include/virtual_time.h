#ifndef DEVICE_SIMULATED_VIRTUAL_TIME_H
#define DEVICE_SIMULATED_VIRTUAL_TIME_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "task.h"

namespace TARN::Simulated {

/// The clock and the queue of a simulated phone, in one.
///
/// Work is ordered by its due time and, among equals, by arrival. Time stands still while work runs and jumps
/// to the next due time when the work of an instant is done. Work may be posted and cancelled from any
/// thread; one thread runs it.
class VirtualTime {
public:
    using Work = AppExecFwk::Task;
    /// Names one piece of waiting work.
    struct Ticket {
        uint32_t slot;
        uint64_t arrival;
    };

    explicit VirtualTime(int64_t startMs) : nowMs_(startMs) {}

    [[nodiscard]] int64_t NowMs() const noexcept { return nowMs_.load(std::memory_order_relaxed); }

    /// Queues work behind what already waits for `dueMs`. A due time in the past means now. `owner`, if any, is whose
    /// work it is.
    Ticket Post(int64_t dueMs, Work&& work, std::string_view name = {}, const void* owner = nullptr);

    /// Drops one piece of waiting work; false when it is not waiting (any more).
    bool Cancel(const Ticket& ticket);

    /// Drops an owner's waiting work of that name.
    void CancelNamed(std::string_view name, const void* owner = nullptr);

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
    static constexpr uint32_t kNone = UINT32_MAX;

    struct NameHash {
        using is_transparent = void;
        size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>()(name); }
    };
    /// Every name that was posted, with the slot of one piece of waiting work of that name. They stay, so that posting
    /// the same few names again and again allocates nothing.
    using Names = std::unordered_map<std::string, uint32_t, NameHash, std::equal_to<>>;

    /// One piece of waiting work, or a free place for one.
    struct Slot {
        Work work;
        const void* owner = nullptr;
        Names::value_type* name = nullptr;
        uint64_t arrival = 0;
        uint32_t at = kNone;        ///< its index in the heap; none: free
        uint32_t next = kNone;      ///< another of its name, or the next free one
        uint32_t previous = kNone;  ///< of its name
    };

    /// What the order goes by, together so that comparing touches no slot.
    struct Place {
        int64_t dueMs;
        uint64_t arrival;
        uint32_t slot;

        bool operator<(const Place& other) const noexcept {
            return dueMs != other.dueMs ? dueMs < other.dueMs : arrival < other.arrival;
        }
    };

    bool RunNext(int64_t lastDueMs);
    [[nodiscard]] Work Take(uint32_t slot);
    void Put(size_t at, const Place& place);
    void Raise(size_t at, const Place& place);
    void Sink(size_t at, const Place& place);
    uint32_t FreeSlot();
    Names::value_type* FindName(std::string_view name);
    void JoinName(uint32_t slot, std::string_view name);
    void LeaveName(Slot& slot);

    std::atomic<int64_t> nowMs_;
    mutable std::mutex mutex_;
    uint64_t arrivals_ = 0;
    std::vector<Place> heap_;  ///< what runs next comes first; each has kChildren behind it
    std::vector<Slot> slots_;
    uint32_t firstFree_ = kNone;
    Names names_;
    Names::value_type* latestName_ = nullptr;  ///< that was looked for
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_VIRTUAL_TIME_H
