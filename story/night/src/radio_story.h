#ifndef STORY_RADIO_STORY_H
#define STORY_RADIO_STORY_H

#include <optional>
#include <set>
#include <string>

#include "call_result.h"
#include "plugin_texts.h"
#include "scribe.h"
#include "standby_config.h"
#include "trace.h"

namespace TARN::Story {

/// Tells when Bluetooth, Wi-Fi and the modem go off and on, by whom, and why.
class RadioStory {
public:
    explicit RadioStory(Scribe& scribe) : scribe_(scribe) {}

    void OnConfig(const DevStandbyMgr::StandbyConfig& config);

    void Bluetooth(bool isOn, const Json& result) { Switch(bluetooth_, isOn, result); }
    void Wifi(bool isOn, const Json& result) { Switch(wifi_, isOn, result); }

    /// One SIM slot; the slots of one instant share an event.
    void ModemSlot(int64_t slot, bool isOn, const Json& result);

    /// Bluetooth was to go off, and the plugin left it as it was.
    void OnKept(const PluginText& text);

    /// Radios were to come back, and the plugin owes nothing: one that is off all the same stays off.
    void OnNothingOwed(Subject subject);

    /// The screen has been off for long, or deep standby begins: a power-off begins if it is night and the
    /// screen has been off long enough.
    void OnChance(bool isDeep);
    void OnHalfHour(bool isOver) { isHalfHour_ = isOver; }

    /// Somebody else switched radios, or connected to them; or the trace says how they are at the start.
    void OnFacts(const Replay::SetStep& step, bool isStart);

    /// The plugin has switched a radio off and owes it back.
    [[nodiscard]] bool IsAnyOff() const;

private:
    struct Radio {
        Subject subject;
        LaneId lane;
        bool isOn = true;
        bool isOurs = false;  ///< it is the plugin that has it off
        bool isPresent = true;
        std::optional<int64_t> gaveUpAt{};  ///< when switching it on failed; the plugin has taken it as on since
    };

    struct SlotGroup {
        uint64_t instant = UINT64_MAX;
        bool isOn = false;
        Scribe::Id event = kNoEvent;
        int64_t switched = 0;
        std::string failed;
    };

    [[nodiscard]] static std::string SinceGivenUp(const Radio& radio);
    [[nodiscard]] std::string NextPowerOff(bool isInForce) const;
    void Switch(Radio& radio, bool isOn, const Json& result);
    void BySomebodyElse(Radio& radio, bool isOn, bool isStart);
    void SetLane(const Radio& radio, Scribe::Id event);
    void SetModemLane(Scribe::Id event);
    void OnSlotsOff(const std::set<int32_t>& slots, bool isStart);
    [[nodiscard]] bool IsModemOurs() const;
    [[nodiscard]] bool IsTriedAgain(const Radio& radio) const;

    Scribe& scribe_;
    Radio bluetooth_{Subject::BLUETOOTH, LaneId::BLUETOOTH};
    Radio wifi_{Subject::WIFI, LaneId::WIFI};
    Radio modem_{Subject::MODEM, LaneId::MODEM};  ///< of it only whether it was given up
    int64_t slots_ = 0;
    std::set<int64_t> slotsOff_;
    std::set<int64_t> slotsOffByOthers_;  ///< those of them that the plugin did not switch off
    SlotGroup group_;
    bool isPowerOffAlive_ = false;  ///< the strategy of long screen-offs and deep standby
    std::string longOff_;           ///< how long the screen is off then: "half an hour"
    bool isHalfHour_ = false;
    /// Why Bluetooth was left on when the power-off that may still be in force began, and when.
    std::string refusal_;
    int64_t refusedAt_ = 0;
};

}  // namespace TARN::Story

#endif  // STORY_RADIO_STORY_H
