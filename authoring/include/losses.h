#ifndef AUTHORING_LOSSES_H
#define AUTHORING_LOSSES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace TARN::Authoring {

/// What could not be translated, counted by name. Of very many names the later ones are counted together.
class Losses {
public:
    void Add(const std::string& name);

    [[nodiscard]] bool IsEmpty() const noexcept { return counts_.empty(); }

    /// "12 of +wake_lock, 3 of temp=... and 40 of 7 more kinds", the most frequent first. The names are tame.
    [[nodiscard]] std::string Tell(size_t most) const;

private:
    std::unordered_map<std::string, uint64_t> counts_;
    uint64_t others_ = 0;
};

}  // namespace TARN::Authoring

#endif  // AUTHORING_LOSSES_H
