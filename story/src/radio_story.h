#ifndef STORY_RADIO_STORY_H
#define STORY_RADIO_STORY_H

#include <string>

#include "call_result.h"
#include "night_summary.h"
#include "teller.h"
#include "trace.h"

namespace TARN::Story {

/// Tells when the plugin switches Bluetooth, Wi-Fi and the modem, and why.
class RadioStory {
public:
    RadioStory(Teller& teller, NightSummary& night) : teller_(teller), night_(night) {}

    void Bluetooth(bool isOn, const Json& result) { Switch(Subject::BLUETOOTH, night_.bluetoothOff, isOn, result); }
    void Wifi(bool isOn, const Json& result) { Switch(Subject::WIFI, night_.wifiOff, isOn, result); }

    /// One SIM slot; the slots of one instant share a line.
    void ModemSlot(int64_t slot, bool isOn, const Json& result);

    /// Somebody else switched radios, or connected to them.
    void OnFacts(const Replay::SetStep& step, bool isStart);

    /// The plugin has switched a radio off and owes it back.
    [[nodiscard]] bool IsAnyOff() const;

private:
    void Switch(Subject radio, Spans& off, bool isOn, const Json& result);

    struct SlotGroup {
        uint64_t instant = 0;
        bool isOn = false;
        Entry* entry = nullptr;
        int64_t switched = 0;
        std::string failed;
    };

    Teller& teller_;
    NightSummary& night_;
    SlotGroup slots_;
};

}  // namespace TARN::Story

#endif  // STORY_RADIO_STORY_H
