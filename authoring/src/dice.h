#ifndef AUTHORING_DICE_H
#define AUTHORING_DICE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

namespace TARN::Authoring {

/// Chance from a seed. Engine and arithmetic are laid down to the bit, so that it falls the same on every machine; no
/// floating point, and none of the library's distributions, which differ between libraries.
class Dice {
public:
    explicit Dice(uint64_t seed) : engine_(seed) {}

    /// A seed that follows from others and looks like none of them.
    [[nodiscard]] static uint64_t Mix(uint64_t a, uint64_t b);

    /// Every integer from the one to the other is as likely.
    [[nodiscard]] int64_t Between(int64_t least, int64_t most);

    [[nodiscard]] bool Chance(int percent) { return PerMille(percent * 10); }
    [[nodiscard]] bool PerMille(int perMille) { return Between(0, 999) < perMille; }

    /// Near the mean: a bell with that standard deviation, never further away than three and a half of it.
    [[nodiscard]] int64_t About(int64_t mean, int64_t deviation);

    /// A place in the table; each is as likely as its weight says.
    template <size_t N>
    [[nodiscard]] size_t Pick(const std::array<int, N>& weights) {
        int64_t sum = 0;
        for (const int weight : weights) {
            sum += weight;
        }
        int64_t left = Between(0, sum - 1);
        size_t place = 0;
        while (left >= weights[place]) {
            left -= weights[place++];
        }
        return place;
    }

private:
    std::mt19937_64 engine_;
};

}  // namespace TARN::Authoring

#endif  // AUTHORING_DICE_H
