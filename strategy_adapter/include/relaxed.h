#ifndef STRATEGY_ADAPTER_RELAXED_H
#define STRATEGY_ADAPTER_RELAXED_H

#include <atomic>

namespace TARN::DevStandbyMgr {

/// A value that two threads touch by design without a lock: each access is whole, none orders another.
template <class T>
class Relaxed {
public:
    constexpr Relaxed(T value) noexcept : value_(value) {}

    operator T() const noexcept { return value_.load(std::memory_order_relaxed); }
    Relaxed& operator=(T value) noexcept {
        value_.store(value, std::memory_order_relaxed);
        return *this;
    }

private:
    static_assert(std::atomic<T>::is_always_lock_free);
    std::atomic<T> value_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_RELAXED_H
