#include "topics.h"

#include <algorithm>

namespace TARN::Story {

namespace {

constexpr std::array<Topic, kAbouts> kTopics = {
    Topic{About::STATE, "state", LaneId::STATE, Subject::STATE, "The phone is in", ""},
    Topic{About::SLEEP, "sleep", LaneId::SLEEP, Subject::SLEEP, "The user is", ""},
    Topic{About::SCREEN, "screen", LaneId::SCREEN, Subject::SCREEN, "The screen is", ""},
    Topic{About::BLUETOOTH, "bluetooth", LaneId::BLUETOOTH, Subject::BLUETOOTH, "Bluetooth is", ""},
    Topic{About::WIFI, "wifi", LaneId::WIFI, Subject::WIFI, "Wi-Fi is", ""},
    Topic{About::MODEM, "modem", LaneId::MODEM, Subject::MODEM, "The modem is", ""},
    Topic{About::NETWORK, "network", LaneId::FIREWALL, Subject::FIREWALL, "The firewall is", ""},
    Topic{About::FREEZE, "freeze", LaneId::FROZEN, Subject::FREEZE, "", ""},
    Topic{About::LOCKS, "locks", LaneId::LOCKS, Subject::LOCK, "", ""},
    Topic{About::TIMERS, "timers", LaneId::TIMERS, Subject::TIMER, "Timers are", ""},
    Topic{About::CLEAN, "clean", std::nullopt, Subject::CLEAN, "", ""},
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
