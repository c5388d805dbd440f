#include "radio_story.h"

#include <utility>

#include "fact_stories.h"

namespace TARN::Story {

namespace {

constexpr int32_t kBluetoothTurningOff = 2;
constexpr int32_t kBluetoothOff = 3;
constexpr int32_t kConnected = 1;
constexpr int32_t kDisconnected = 3;

}  // namespace

void RadioStory::OnConfig(const DevStandbyMgr::StandbyConfig& config) {
    isPowerOffAlive_ = IsPowerOffAlive(config);
    longOff_ = config.mode == DevStandbyMgr::HostMode::AUTOMATIC ? LengthOf(config.policy.halfHourSeconds) : "long";
}

void RadioStory::SetLane(const Radio& radio, Scribe::Id event) {
    scribe_.Set(radio.lane, !radio.isPresent ? "absent" : radio.isOn ? "on" : "off", radio.isOurs ? 1 : 0, event);
}

void RadioStory::Switch(Radio& radio, bool isOn, const Json& result) {
    const std::string verb = isOn ? "on" : "off";
    if (IsFailure(result)) {
        const Scribe::Id id =
            scribe_.Write(radio.subject, Outcome::FAILED, "switching " + verb + " failed" + FailureCode(result),
                          scribe_.WhyInWords());
        scribe_.At(id).isRepeat = IsTriedAgain(radio);
        if (isOn && !radio.isOn) {
            radio.gaveUpAt = scribe_.Now();
        }
        return;
    }
    radio.gaveUpAt.reset();
    std::string text = isOn ? "back on" : "off";
    Outcome outcome = Outcome::DONE;
    if (isOn == radio.isOn) {
        text = isOn ? "told to go on, although it was on already" : "told to go off, although it was off already";
        if (!isOn && !radio.isOurs) {
            text = "told to go off, although the user had it off already";
        }
        outcome = Outcome::NOTED;
    } else if (isOn && !radio.isOurs) {
        text = "switched on, although the user had it off";
    }
    if (isOn || radio.isOn) {
        radio.isOurs = !isOn;
    }
    refusal_.clear();
    radio.isOn = isOn;
    SetLane(radio, scribe_.Write(radio.subject, outcome, std::move(text), scribe_.WhyInWords()));
}

/// One power-off is tried once: while it is in force, the next report changes nothing, and why Bluetooth is on is what
/// stood in the way when it began.
void RadioStory::OnKept(const PluginText& text) {
    const bool isInForce = text.told.empty();
    const bool isAirplane = text.meaning == Meaning::KEPT_AIRPLANE;
    const bool isTheirs = !bluetooth_.isOn && bluetooth_.isOurs;
    std::string told(text.told);
    if (!bluetooth_.isOn && !isAirplane) {
        told = !isTheirs             ? "off already, and not by the plugin"
               : bluetooth_.gaveUpAt ? "off already" + SinceGivenUp(bluetooth_)
               : isInForce           ? "off already: the power-off is in force"
                                     : "off already, by the plugin";
    } else if (isInForce) {
        told = refusal_.empty() ? "stays on: the power-off counts as done already"
                                : "stays on: the power-off counts as done since " + Clock(refusedAt_) +
                                      ", when it was refused (" + refusal_ + ")";
    } else if (!isAirplane) {
        const size_t reason = told.find(": ");
        refusal_ = reason == std::string::npos ? told : told.substr(reason + 2);
        refusedAt_ = scribe_.Now();
    }
    // that it is off as it should be is no news
    const bool isAsItShouldBe = isTheirs && !bluetooth_.gaveUpAt;
    Event& event = scribe_.At(
        scribe_.WriteNew(Subject::BLUETOOTH, isAsItShouldBe ? Outcome::NOTED : Outcome::KEPT, std::move(told)));
    event.isRepeat = event.isRepeat || isAsItShouldBe;
    if (bluetooth_.isOn) {
        event.next = NextPowerOff(!isAirplane);
    }
    if (!scribe_.WhyInWords().empty()) {
        event.values.push_back({"asked to go off as", scribe_.WhyInWords()});
    }
}

/// The ledger tries as long as the screen is on, which is told once.
bool RadioStory::IsTriedAgain(const Radio& radio) const {
    return scribe_.Why() == Cause::LEDGER && radio.gaveUpAt;
}

std::string RadioStory::SinceGivenUp(const Radio& radio) {
    return radio.gaveUpAt ? ", since switching it on failed at " + Clock(*radio.gaveUpAt) : "";
}

/// When Bluetooth is to go off again after it was left on. Deep standby begins anew after each maintenance, which also
/// ends a power-off that is in force; a call or a component that ends only matters within one.
std::string RadioStory::NextPowerOff(bool isInForce) const {
    if (!isPowerOffAlive_) {
        return isInForce ? "when the user falls asleep again" : "when the user falls asleep";
    }
    return isInForce ? "at the end of a maintenance, when a call or a distributed component ends, or when a power-off "
                       "begins anew after deep standby or the user's sleep"
                     : "when deep standby begins, also at the end of a maintenance, when the user falls asleep, or "
                       "when the screen is off for " +
                           longOff_ + " again";
}

void RadioStory::OnNothingOwed(Subject subject) {
    const Radio& radio = subject == Subject::BLUETOOTH ? bluetooth_ : subject == Subject::WIFI ? wifi_ : modem_;
    const bool isOff = subject == Subject::MODEM ? IsModemOurs() : !radio.isOn && radio.isOurs;
    if (isOff) {
        scribe_.WriteNew(subject, Outcome::KEPT, "stays off: the plugin takes it as on" + SinceGivenUp(radio));
    }
}

void RadioStory::OnChance(bool isDeep) {
    const bool isDay = scribe_.Value(LaneId::CONDITION) == "day";
    if (!isPowerOffAlive_ || !bluetooth_.isOn || (!isDay && (isHalfHour_ || !isDeep))) {
        return;
    }
    Event& event = scribe_.At(
        scribe_.WriteNew(Subject::BLUETOOTH, Outcome::KEPT,
                         isDay ? "stays on: it is day" : "stays on: the screen has not been off for " + longOff_));
    event.isRepeat = true;
    event.values = {{"condition", std::string(scribe_.Value(LaneId::CONDITION))}};
    event.next = isDay ? "at night, when the screen has been off for " + longOff_ + " or deep standby begins"
                       : "when the screen has been off for " + longOff_;
}

void RadioStory::SetModemLane(Scribe::Id event) {
    const auto off = static_cast<int64_t>(slotsOff_.size());
    const auto ours = off - static_cast<int64_t>(slotsOffByOthers_.size());
    scribe_.Set(LaneId::MODEM,
                slots_ == 0    ? "absent"
                : off == 0     ? "on"
                : off < slots_ ? "partly off"
                               : "off",
                ours, event);
}

void RadioStory::ModemSlot(int64_t slot, bool isOn, const Json& result) {
    if (group_.instant != scribe_.Instant() || group_.isOn != isOn) {
        group_ = {
            scribe_.Instant(), isOn, scribe_.Write(Subject::MODEM, Outcome::DONE, {}, scribe_.WhyInWords()), 0, {}};
    }
    if (IsFailure(result)) {
        group_.failed += "; slot " + std::to_string(slot) + " failed" + FailureCode(result);
        scribe_.At(group_.event).outcome = Outcome::FAILED;
        scribe_.At(group_.event).isRepeat = IsTriedAgain(modem_);
        if (isOn) {
            modem_.gaveUpAt = scribe_.Now();
        }
    } else {
        ++group_.switched;
        if (isOn) {
            slotsOff_.erase(slot);
            slotsOffByOthers_.erase(slot);
        } else {
            slotsOff_.insert(slot);
            modem_.gaveUpAt.reset();
        }
        SetModemLane(group_.event);
    }
    scribe_.At(group_.event).text = (isOn ? "back on, " : "off, ") + Count(group_.switched, "slot") + group_.failed;
}

void RadioStory::BySomebodyElse(Radio& radio, bool isOn, bool isStart) {
    if (isOn == radio.isOn && !isStart) {
        return;
    }
    radio.isOn = isOn;
    radio.isOurs = false;
    radio.gaveUpAt.reset();
    SetLane(radio, isStart ? kNoEvent
                           : scribe_.Write(radio.subject, Outcome::HAPPENED,
                                           isOn ? "switched on by somebody else" : "switched off by somebody else"));
}

void RadioStory::OnFacts(const Replay::SetStep& step, bool isStart) {
    const Simulated::FactsChange& change = step.phone;
    const Simulated::PhoneFacts usual;
    if (isStart || change.bluetoothState) {
        const int32_t state = change.bluetoothState.value_or(usual.bluetoothState);
        BySomebodyElse(bluetooth_, state != kBluetoothOff && state != kBluetoothTurningOff, isStart);
    }
    if (isStart || change.isWifiPresent) {
        wifi_.isPresent = change.isWifiPresent.value_or(usual.isWifiPresent);
        SetLane(wifi_, kNoEvent);
    }
    if (isStart || change.isWifiEnabled) {
        BySomebodyElse(wifi_, change.isWifiEnabled.value_or(usual.isWifiEnabled), isStart);
    }
    if (isStart || change.simSlots) {
        slots_ = change.simSlots.value_or(usual.simSlots);
        SetModemLane(kNoEvent);
    }
    if (change.slotsOff) {
        OnSlotsOff(*change.slotsOff, isStart);
    }
    if (isStart) {
        return;
    }
    if (change.bluetoothConnection == kConnected) {
        scribe_.WriteNew(Subject::BLUETOOTH, Outcome::HAPPENED, "a device is connected");
    } else if (change.bluetoothConnection == kDisconnected) {
        scribe_.WriteNew(Subject::BLUETOOTH, Outcome::HAPPENED, "no device is connected");
    }
}

/// Somebody else says which slots are off.
void RadioStory::OnSlotsOff(const std::set<int32_t>& slots, bool isStart) {
    const std::set<int64_t> before = std::exchange(slotsOff_, std::set<int64_t>(slots.begin(), slots.end()));
    if (before == slotsOff_) {
        return;
    }
    slotsOffByOthers_ = slotsOff_;
    modem_.gaveUpAt.reset();
    SetModemLane(isStart ? kNoEvent
                         : scribe_.Write(Subject::MODEM, Outcome::HAPPENED,
                                         slotsOff_.empty()
                                             ? "switched on by somebody else"
                                             : "switched by somebody else: " +
                                                   Count(static_cast<int64_t>(slotsOff_.size()), "slot") + " off"));
}

bool RadioStory::IsModemOurs() const {
    return slotsOff_.size() > slotsOffByOthers_.size();
}

bool RadioStory::IsAnyOff() const {
    return bluetooth_.isOurs || wifi_.isOurs || IsModemOurs();
}

}  // namespace TARN::Story
