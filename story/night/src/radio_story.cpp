#include "radio_story.h"

namespace TARN::Story {

namespace {

constexpr int32_t kBluetoothTurningOff = 2;
constexpr int32_t kBluetoothOff = 3;
constexpr int32_t kConnected = 1;
constexpr int32_t kDisconnected = 3;

}  // namespace

void RadioStory::SetLane(const Radio& radio, Scribe::Id event) {
    scribe_.Set(radio.lane, !radio.isPresent ? "absent" : radio.isOn ? "on" : "off", radio.isOurs ? 1 : 0, event);
}

void RadioStory::Switch(Radio& radio, bool isOn, const Json& result) {
    const std::string verb = isOn ? "on" : "off";
    if (IsFailure(result)) {
        scribe_.Write(radio.subject, Outcome::FAILED, "switching " + verb + " failed" + FailureCode(result),
                      scribe_.WhyInWords());
        return;
    }
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
    std::string told(text.told);
    if (told.empty()) {
        told = !bluetooth_.isOn   ? "off already: the power-off is in force"
               : refusal_.empty() ? "stays on: the power-off counts as done already"
                                  : "stays on: the power-off counts as done since " + Clock(refusedAt_) +
                                        ", when it was refused (" + refusal_ + ")";
    } else if (bluetooth_.isOn) {
        refusal_ = told.substr(told.find(": ") + 2);
        refusedAt_ = scribe_.Now();
    }
    Event& event = scribe_.At(scribe_.WriteNew(Subject::BLUETOOTH, Outcome::KEPT, told));
    event.isRepeat = event.isRepeat || !bluetooth_.isOn;
    event.next = text.next;
    if (!scribe_.WhyInWords().empty()) {
        event.values.push_back({"asked to go off as", scribe_.WhyInWords()});
    }
}

void RadioStory::OnChance(bool isDeep) {
    const bool isDay = scribe_.Value(LaneId::CONDITION) == "day";
    if (!bluetooth_.isOn || (!isDay && (isHalfHour_ || !isDeep))) {
        return;
    }
    Event& event = scribe_.At(
        scribe_.WriteNew(Subject::BLUETOOTH, Outcome::KEPT,
                         isDay ? "stays on: it is day" : "stays on: the screen has not been off for half an hour"));
    event.isRepeat = true;
    event.values = {{"condition", std::string(scribe_.Value(LaneId::CONDITION))}};
    event.next = isDay ? "half an hour after a screen-off at night, or when deep standby begins at night"
                       : "when the screen has been off for half an hour";
}

void RadioStory::SetModemLane(Scribe::Id event) {
    const auto off = static_cast<int64_t>(slotsOff_.size());
    scribe_.Set(LaneId::MODEM, off == 0 ? "on" : off < slots_ ? "partly off" : "off", off, event);
}

void RadioStory::ModemSlot(int64_t slot, bool isOn, const Json& result) {
    if (group_.instant != scribe_.Instant() || group_.isOn != isOn) {
        group_ = {
            scribe_.Instant(), isOn, scribe_.Write(Subject::MODEM, Outcome::DONE, {}, scribe_.WhyInWords()), 0, {}};
    }
    if (IsFailure(result)) {
        group_.failed += "; slot " + std::to_string(slot) + " failed" + FailureCode(result);
        scribe_.At(group_.event).outcome = Outcome::FAILED;
    } else {
        ++group_.switched;
        if (isOn) {
            slotsOff_.erase(slot);
        } else {
            slotsOff_.insert(slot);
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
    if (isStart) {
        return;
    }
    if (change.bluetoothConnection == kConnected) {
        scribe_.WriteNew(Subject::BLUETOOTH, Outcome::HAPPENED, "a device is connected");
    } else if (change.bluetoothConnection == kDisconnected) {
        scribe_.WriteNew(Subject::BLUETOOTH, Outcome::HAPPENED, "no device is connected");
    }
}

bool RadioStory::IsAnyOff() const {
    return bluetooth_.isOurs || wifi_.isOurs || !slotsOff_.empty();
}

}  // namespace TARN::Story
