#include "topics.h"

#include <algorithm>

namespace TARN::Story {

namespace {

constexpr std::array<Topic, kAbouts> kTopics = {
    Topic{About::STATE, "state", LaneId::STATE, Subject::STATE},
    Topic{About::SLEEP, "sleep", LaneId::SLEEP, Subject::SLEEP, "the user"},
    Topic{About::SCREEN, "screen", LaneId::SCREEN, Subject::SCREEN},
    Topic{About::BLUETOOTH, "bluetooth", LaneId::BLUETOOTH, Subject::BLUETOOTH},
    Topic{About::WIFI, "wifi", LaneId::WIFI, Subject::WIFI},
    Topic{About::MODEM, "modem", LaneId::MODEM, Subject::MODEM},
    Topic{About::NETWORK, "network", LaneId::FIREWALL, Subject::FIREWALL, "it", Aspect::FIREWALL, "on the trust list"},
    Topic{About::FREEZE, "freeze", LaneId::FROZEN, Subject::FREEZE, "it", Aspect::FROZEN, "frozen"},
    Topic{About::LOCKS, "locks", LaneId::LOCKS, Subject::LOCK, "they", Aspect::LOCKS, "proxied"},
    Topic{About::TIMERS, "timers", LaneId::TIMERS, Subject::TIMER, "they"},
    Topic{About::CLEAN, "clean", std::nullopt, Subject::CLEAN, "it", Aspect::CLEAN, "killed"},
};

constexpr bool AreInOrder() {
    for (size_t i = 0; i < kTopics.size(); ++i) {
        if (static_cast<size_t>(kTopics[i].about) != i) {
            return false;
        }
    }
    return true;
}
static_assert(AreInOrder());

}  // namespace

const Topic& TopicOf(About about) noexcept {
    return kTopics[static_cast<size_t>(about)];
}

std::string_view WordOf(About about) noexcept {
    return TopicOf(about).word;
}

std::optional<About> AboutOf(std::string_view word) noexcept {
    const auto* const found =
        std::find_if(kTopics.begin(), kTopics.end(), [word](const Topic& topic) { return topic.word == word; });
    return found == kTopics.end() ? std::nullopt : std::optional(found->about);
}

}  // namespace TARN::Story
