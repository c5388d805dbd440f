#include "radio_book.h"

#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "file_service.h"
#include "log_format.h"
#include "time_service_client.h"

#define RADIO_LEDGER_LOGI(...) RADIO_LEDGER_LOG(::TARN::LogLevel::INFO, __VA_ARGS__)
#define RADIO_LEDGER_LOGW(...) RADIO_LEDGER_LOG(::TARN::LogLevel::WARN, __VA_ARGS__)
#define RADIO_LEDGER_LOG(level, ...) PLATFORM_LOG(level, kLogDomain, kLogTag, __VA_ARGS__)

namespace TARN::Ledger {

namespace {

using Json = nlohmann::json;

constexpr uint32_t kLogDomain = 0xD001718;
constexpr char kLogTag[] = "RadioLedger";
constexpr char kPath[] = "/data/service/el1/public/device_standby/radio_ledger";
constexpr char kNameless[] = "a timer";  // all work that has no name of its own
constexpr int32_t kNotEntered = -1;

}  // namespace

int32_t RadioBook::SwitchOff(const std::string& name, const std::function<int32_t()>& call) {
    std::shared_ptr<Radio> radio = FindRadio(phone_, name);
    const bool wasHeld = IsHeld(name);
    if (radio == nullptr || (!wasHeld && radio->IsOn() == false)) {
        return call();
    }
    const std::optional<uint64_t> version = Enter(name, std::move(radio));
    if (!version) {
        RADIO_LEDGER_LOGW("not switched off: %{public}s could not be entered", name.c_str());
        return kNotEntered;
    }
    const int32_t code = call();
    if (code == 0) {
        Look();
    } else if (!wasHeld) {
        Strike(name, *version);
    }
    return code;
}

int32_t RadioBook::SwitchOn(const std::string& name, const std::function<int32_t()>& call) {
    const auto radio = FindRadio(phone_, name);
    if (radio != nullptr && !IsHeld(name) && radio->IsOn() == false) {
        RADIO_LEDGER_LOGI("left off: %{public}s was switched off by somebody else", name.c_str());
        return 0;
    }
    const int32_t code = call();
    if (code == 0) {
        SetStage(name, Stage::GOING_ON);
        Look();
    }
    return code;
}

void RadioBook::Look() {
    if (const std::lock_guard lock(mutex_); !isOpen_) {
        return;
    }
    for (const auto& [name, entry] : Copy()) {
        const std::optional<bool> isOn = entry.radio->IsOn();
        if (isOn == true && entry.stage != Stage::GOING_OFF) {
            Strike(name, entry.version);
        } else if (isOn == false && entry.stage == Stage::GOING_OFF) {
            SetStage(name, Stage::OFF);
        }
    }
}

void RadioBook::Close() {
    const std::lock_guard lock(mutex_);
    isOpen_ = false;
    entries_.clear();
}

void RadioBook::NoteWork(std::string_view work) {
    const std::lock_guard lock(mutex_);
    worker_ = std::this_thread::get_id();
    work_ = work;
}

bool RadioBook::HoldsForgotten(WantedOff wanted) {
    const std::lock_guard lock(mutex_);
    const Entries& held = Held();
    return held.size() > (wanted == WantedOff::BLUETOOTH ? held.count(kBluetooth) : 0);
}

void RadioBook::SwitchOnForgotten(WantedOff wanted) {
    for (const auto& [name, entry] : Copy()) {
        if (wanted != WantedOff::BLUETOOTH || name != kBluetooth) {
            SwitchOnForgotten(name, entry);
        }
    }
}

void RadioBook::SwitchOnForgotten(const std::string& name, const Entry& entry) {
    const std::optional<bool> isOn = entry.radio->IsOn();
    if (isOn == true) {
        Strike(name, entry.version);
        return;
    }
    if (entry.stage == Stage::GOING_ON) {  // time for it to come; one that is still off the next time is told again
        if (isOn == false) {
            SetStage(name, Stage::OFF);
        }
        return;
    }
    RADIO_LEDGER_LOGW("forgotten: %{public}s is off since %{public}ld, switched off by %{public}s", name.c_str(),
                      entry.sinceMs, entry.by.c_str());
    if (const int32_t code = entry.radio->SwitchOn(); code != 0) {
        RADIO_LEDGER_LOGW("not switched on: %{public}s, err code is %{public}d", name.c_str(), code);
        return;
    }
    SetStage(name, Stage::GOING_ON);
    Look();
}

RadioBook::Entries& RadioBook::Held() {
    if (!std::exchange(isOpen_, true)) {
        ReadFile();
    }
    return entries_;
}

void RadioBook::ReadFile() {
    std::string text;
    if (!phone_.Files().Load(kPath, text) && !phone_.Files().Exists(kPath)) {
        return;
    }
    const Json object = Json::parse(text, nullptr, /*allow_exceptions=*/false);
    bool isLedger = object.is_object();
    for (auto one = object.begin(); isLedger && one != object.end(); ++one) {
        std::shared_ptr<Radio> radio = FindRadio(phone_, one.key());
        const Json since = one->is_object() ? one->value("since", Json()) : Json();
        const Json by = one->is_object() ? one->value("by", Json()) : Json();
        isLedger = radio != nullptr && since.is_number_integer() && by.is_string();
        if (isLedger) {
            entries_[one.key()] = {std::move(radio), since.get<int64_t>(), by.get<std::string>()};
        }
    }
    if (!isLedger) {
        entries_.clear();
        RADIO_LEDGER_LOGW("the ledger cannot be read: nothing of it counts");
    }
}

bool RadioBook::WriteFile() {
    Json object = Json::object();
    for (const auto& [name, entry] : entries_) {
        object[name] = {{"since", entry.sinceMs}, {"by", entry.by}};
    }
    const bool isWritten = phone_.Files().Replace(kPath, object.dump());
    if (!isWritten) {
        RADIO_LEDGER_LOGW("the ledger could not be written");
    }
    return isWritten;
}

RadioBook::Entries RadioBook::Copy() {
    const std::lock_guard lock(mutex_);
    return Held();
}

bool RadioBook::IsHeld(const std::string& name) {
    const std::lock_guard lock(mutex_);
    return Held().contains(name);
}

std::optional<uint64_t> RadioBook::Enter(const std::string& name, std::shared_ptr<Radio> radio) {
    const int64_t nowMs = phone_.Time().GetWallTimeMs();
    const std::lock_guard lock(mutex_);
    const bool hasName = worker_ == std::this_thread::get_id() && !work_.empty();
    const auto [at, isNew] = Held().try_emplace(name, Entry{std::move(radio), nowMs, hasName ? work_ : kNameless});
    at->second.stage = Stage::GOING_OFF;
    if (isNew && !WriteFile()) {
        entries_.erase(at);
        return std::nullopt;
    }
    return at->second.version = ++versions_;
}

void RadioBook::SetStage(const std::string& name, Stage stage) {
    const std::lock_guard lock(mutex_);
    if (const auto held = Held().find(name); held != entries_.end()) {
        held->second.stage = stage;
        held->second.version = ++versions_;
    }
}

void RadioBook::Strike(const std::string& name, uint64_t version) {
    const std::lock_guard lock(mutex_);
    if (const auto held = Held().find(name); held != entries_.end() && held->second.version == version) {
        entries_.erase(held);
        static_cast<void>(WriteFile());  // what stays in the file is on, which whoever reads it next will see
    }
}

}  // namespace TARN::Ledger
