#include "dice.h"

#include <limits>

namespace TARN::Authoring {

uint64_t Dice::Mix(uint64_t a, uint64_t b) {
    uint64_t x = a + 0x9E3779B97F4A7C15ULL * (b + 1);
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

int64_t Dice::Between(int64_t least, int64_t most) {
    const uint64_t count = static_cast<uint64_t>(most - least) + 1;
    const uint64_t fair = std::numeric_limits<uint64_t>::max() / count * count;
    uint64_t drawn = engine_();
    while (drawn >= fair) {
        drawn = engine_();
    }
    return least + static_cast<int64_t>(drawn % count);
}

int64_t Dice::About(int64_t mean, int64_t deviation) {
    // four equal spreads of this half width have that deviation together
    const int64_t half = deviation * 866 / 1000;
    int64_t sum = mean;
    for (int i = 0; i < 4; ++i) {
        sum += Between(-half, half);
    }
    return sum;
}

}  // namespace TARN::Authoring
