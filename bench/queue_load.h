#ifndef BENCH_QUEUE_LOAD_H
#define BENCH_QUEUE_LOAD_H

#include <cstdint>

namespace TARN::Bench {

/// The same delays for every queue that is measured: 1 to 10,000 ms, at random.
class Delays {
public:
    int64_t Next() noexcept {
        // xorshift, Marsaglia 2003
        state_ ^= state_ << 13;
        state_ ^= state_ >> 7;
        state_ ^= state_ << 17;
        return static_cast<int64_t>(state_ % 10'000) + 1;
    }

private:
    uint64_t state_ = 88'172'645'463'325'252;
};

}  // namespace TARN::Bench

#endif  // BENCH_QUEUE_LOAD_H
