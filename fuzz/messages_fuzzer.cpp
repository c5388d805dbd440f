// Makes up a few hours of messages, broadcasts, facts, faults, dumps and restarts, and plays them. Half of what is made
// up is known to somebody, so that it gets far.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "fuzzed_phone.h"
#include "operations.h"
#include "vocabulary.h"

using namespace TARN;

namespace {

constexpr size_t kMostSteps = 64;
constexpr size_t kMostParams = 6;
constexpr size_t kMostBytes = 12;  ///< of a text that nobody knows
constexpr int64_t kLongestMs = 24 * Fuzz::kHourMs;

class MadeUpNight {
public:
    explicit MadeUpNight(std::span<const uint8_t> bytes) : bytes_(bytes.data(), bytes.size()) {}

    [[nodiscard]] Replay::Trace Tell() {
        Replay::Trace trace = Fuzz::Evening(0);
        const std::array modes = {DevStandbyMgr::HostMode::AUTOMATIC, DevStandbyMgr::HostMode::SCRIPTED};
        trace.host.mode = bytes_.PickValueInArray(modes);
        trace.host.standbyMode = bytes_.ConsumeIntegralInRange(0, 4);
        int64_t afterMs = 0;
        while (bytes_.remaining_bytes() > 0 && trace.steps.size() < kMostSteps) {
            afterMs = std::min(afterMs + PauseMs(), kLongestMs);
            AddStep(trace, afterMs);
        }
        trace.end = trace.start + std::min(afterMs + PauseMs(), kLongestMs);
        return trace;
    }

private:
    void AddStep(Replay::Trace& trace, int64_t afterMs) {
        switch (bytes_.ConsumeIntegralInRange(0, 7)) {
            case 0:
                return Fuzz::AddStep(trace, afterMs, Broadcast());
            case 1:
                return Fuzz::AddStep(trace, afterMs, Replay::DumpStep{Texts(Checks::kDumpWords)});
            case 2:
                return Fuzz::AddStep(trace, afterMs, Replay::RestartStep{bytes_.ConsumeBool()});
            case 3:
                return Fuzz::AddStep(trace, afterMs, Replay::SetStep{.phone = Fault(), .host = {}});
            case 4:
                return Fuzz::AddStep(trace, afterMs, Replay::SetStep{.phone = Facts(), .host = {}});
            case 5:
                return Fuzz::AddStep(trace, afterMs, Replay::SetStep{.phone = {}, .host = HostFacts()});
            default:
                return Fuzz::AddStep(trace, afterMs, Message());
        }
    }

    [[nodiscard]] int64_t PauseMs() {
        const std::array<int64_t, 8> pauses = {
            0, 0, 0, 1, 10'000, 5 * Fuzz::kMinuteMs, 31 * Fuzz::kMinuteMs, 3 * Fuzz::kHourMs};
        return bytes_.PickValueInArray(pauses);
    }

    [[nodiscard]] Replay::MessageStep Message() {
        const auto known = Checks::KnownMessages();
        const auto& message = known[bytes_.ConsumeIntegralInRange<size_t>(0, known.size() - 1)];
        const int32_t eventId = bytes_.ConsumeBool() ? message.eventId : static_cast<int32_t>(Number());
        const std::string action = Text(Checks::MatchedActions());
        if (bytes_.ConsumeBool()) {
            return {DevStandbyMgr::StandbyMessage(eventId, action)};
        }
        AAFwk::Want want;
        AddParams(want, message.members);
        AddParams(want, Checks::BroadcastMembers(action));
        return {DevStandbyMgr::StandbyMessage(eventId, action, std::move(want))};
    }

    [[nodiscard]] Replay::BroadcastStep Broadcast() {
        AAFwk::Want want;
        want.SetAction(Text(Checks::HeardBroadcasts()));
        AddParams(want, Checks::BroadcastMembers(want.GetAction()));
        return {std::move(want)};
    }

    /// Members as they are meant, of another type, or missing, and names that nobody asks for.
    void AddParams(AAFwk::Want& want, std::span<const Checks::Member> members) {
        for (const Checks::Member& member : members) {
            AddParam(want, std::string(member.name), bytes_.ConsumeBool() ? member.type : Type());
        }
        for (size_t left = bytes_.ConsumeIntegralInRange<size_t>(0, kMostParams); left > 3; --left) {
            AddParam(want, bytes_.ConsumeRandomLengthString(kMostBytes), Type());
        }
    }

    void AddParam(AAFwk::Want& want, const std::string& name, Checks::MemberType type) {
        if (bytes_.ConsumeIntegralInRange(0, 7) == 0) {
            return;
        }
        switch (type) {
            case Checks::MemberType::BOOL:
                want.SetParam(name, bytes_.ConsumeBool());
                break;
            case Checks::MemberType::INTEGER:
                want.SetParam(name, Number());
                break;
            case Checks::MemberType::FLOAT:
                want.SetParam(name, Fraction());
                break;
            case Checks::MemberType::STRING:
                want.SetParam(name, bytes_.ConsumeRandomLengthString(kMostBytes));
                break;
        }
    }

    [[nodiscard]] Checks::MemberType Type() {
        return static_cast<Checks::MemberType>(bytes_.ConsumeIntegralInRange(0, 3));
    }

    [[nodiscard]] Simulated::FactsChange Fault() {
        const auto operations = Simulated::Operations();
        const std::string operation(operations[bytes_.ConsumeIntegralInRange<size_t>(0, operations.size() - 1)]);
        Simulated::FactsChange change;
        if (bytes_.ConsumeBool()) {
            change.faults[operation] = static_cast<int32_t>(Number());
        } else {
            change.faults[operation] = std::nullopt;
        }
        return change;
    }

    [[nodiscard]] Simulated::FactsChange Facts() {
        Simulated::FactsChange change;
        switch (bytes_.ConsumeIntegralInRange(0, 10)) {
            case 0:
                change.parameters[Text(Checks::kParameters)] = bytes_.ConsumeRandomLengthString(kMostBytes);
                break;
            case 1:
                change.settings["SETTINGSDATA"].emplace()[Text(Checks::kPhoneSettings)] = NumberText();
                break;
            case 2:
                change.settings["USER_SETTINGSDATA_SECURE_100"].emplace()[Text(Checks::kAccountSettings)] =
                    NumberText();
                break;
            case 3:
                change.accounts = Numbers();
                break;
            case 4:
                change.deviceMode = bytes_.ConsumeIntegralInRange(600, 604);
                break;
            case 5:
                change.plugged = bytes_.ConsumeIntegralInRange(0, 4);
                break;
            case 6:
                change.bluetoothState = bytes_.ConsumeIntegralInRange(0, 4);
                change.bluetoothConnection = bytes_.ConsumeIntegralInRange(0, 4);
                break;
            case 7:
                change.isWifiPresent = bytes_.ConsumeBool();
                change.simSlots = bytes_.ConsumeIntegralInRange(0, 3);
                break;
            case 8:
                change.light = static_cast<float>(Fraction());
                change.proximity = static_cast<float>(Fraction());
                break;
            case 9:
                change.movement = {bytes_.ConsumeIntegralInRange(0, 3), Number()};
                break;
            default:
                change.continuousTasks = {{bytes_.ConsumeIntegral<uint32_t>(), 20010004, 2152}};
                break;
        }
        return change;
    }

    [[nodiscard]] Replay::HostFactsChange HostFacts() {
        const std::array<std::string_view, 4> names = {"camera_service", "com.tarn.clock", "com.example.mail",
                                                       "nobody"};
        const std::array<int32_t, 4> types = {1, 2, 64, 8};
        Replay::HostFactsChange change;
        change.condition = bytes_.ConsumeIntegral<uint32_t>();
        change.deviceState[bytes_.ConsumeIntegralInRange(0, 4)] = bytes_.ConsumeBool();
        change.allowList[bytes_.PickValueInArray(types)] = Texts(names);
        change.restrictSet[bytes_.PickValueInArray(types)] = Texts(names);
        return change;
    }

    [[nodiscard]] std::string Text(std::span<const std::string_view> known) {
        if (bytes_.ConsumeIntegralInRange(0, 7) == 0) {
            return bytes_.ConsumeRandomLengthString(kMostBytes);
        }
        return std::string(known[bytes_.ConsumeIntegralInRange<size_t>(0, known.size() - 1)]);
    }

    [[nodiscard]] std::vector<std::string> Texts(std::span<const std::string_view> known) {
        std::vector<std::string> texts(bytes_.ConsumeIntegralInRange<size_t>(0, kMostParams));
        std::ranges::generate(texts, [&] { return bytes_.ConsumeBool() ? NumberText() : Text(known); });
        return texts;
    }

    [[nodiscard]] int64_t Number() {
        return bytes_.ConsumeBool() ? bytes_.ConsumeIntegralInRange<int64_t>(-2, 12)
                                    : bytes_.ConsumeIntegral<int64_t>();
    }

    [[nodiscard]] std::string NumberText() { return std::to_string(Number()); }

    [[nodiscard]] std::vector<int32_t> Numbers() {
        std::vector<int32_t> numbers(bytes_.ConsumeIntegralInRange<size_t>(0, 3));
        std::ranges::generate(numbers, [&] { return static_cast<int32_t>(Number()); });
        return numbers;
    }

    [[nodiscard]] double Fraction() {
        const std::array<double, 5> odd = {0.0, 5.0, std::nan(""), std::numeric_limits<double>::infinity(), -1e300};
        return bytes_.ConsumeBool() ? bytes_.PickValueInArray(odd) : bytes_.ConsumeFloatingPoint<double>();
    }

    FuzzedDataProvider bytes_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Fuzz::Play(MadeUpNight({data, size}).Tell());
    return 0;
}
