#include "radio_story.h"

namespace TARN::Story {

namespace {

constexpr int32_t kBluetoothOn = 1;
constexpr int32_t kConnected = 1;
constexpr int32_t kDisconnected = 3;

std::string_view Verb(bool isOn) {
    return isOn ? "back on" : "off";
}

}  // namespace

void RadioStory::Switch(Subject radio, Spans& off, bool isOn, const Json& result) {
    if (IsFailure(result)) {
        const std::string sentence = std::string("switching ") + (isOn ? "on" : "off") + " failed";
        teller_.Tell(radio, Because(sentence + FailureCode(result), Reason(teller_.Why())), Tone::FAILURE);
        return;
    }
    off.Set(teller_.Now(), !isOn);
    teller_.Tell(radio, Because(std::string(Verb(isOn)), Reason(teller_.Why())));
}

void RadioStory::ModemSlot(int64_t slot, bool isOn, const Json& result) {
    if (slots_.instant != teller_.Instant() || slots_.isOn != isOn || slots_.entry == nullptr) {
        slots_ = {teller_.Instant(), isOn, &teller_.Tell(Subject::MODEM, {}), 0, {}};
    }
    if (IsFailure(result)) {
        slots_.failed += "; slot " + std::to_string(slot) + " failed" + FailureCode(result);
        slots_.entry->tone = Tone::FAILURE;
    } else {
        ++slots_.switched;
        night_.modemOff.Set(teller_.Now(), !isOn);
    }
    slots_.entry->text =
        Because(std::string(Verb(isOn)) + ", " + Count(slots_.switched, "slot") + slots_.failed, Reason(teller_.Why()));
}

void RadioStory::OnFacts(const Replay::SetStep& step, bool isStart) {
    const Simulated::FactsChange& change = step.phone;
    if (change.bluetoothConnection == kConnected) {
        teller_.TellNew(Subject::BLUETOOTH, "a device is connected");
    } else if (change.bluetoothConnection == kDisconnected && !isStart) {
        teller_.TellNew(Subject::BLUETOOTH, "no device is connected");
    }
    if (change.bluetoothState == kBluetoothOn && night_.bluetoothOff.IsSo()) {
        night_.bluetoothOff.Set(teller_.Now(), false);
        teller_.Tell(Subject::BLUETOOTH, "switched on by somebody else");
    }
    if (change.isWifiEnabled == true && night_.wifiOff.IsSo()) {
        night_.wifiOff.Set(teller_.Now(), false);
        teller_.Tell(Subject::WIFI, "switched on by somebody else");
    }
}

bool RadioStory::IsAnyOff() const {
    return night_.bluetoothOff.IsSo() || night_.wifiOff.IsSo() || night_.modemOff.IsSo();
}

}  // namespace TARN::Story
