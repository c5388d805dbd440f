#include "standby_config.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "json_fields.h"
#include "plain_text.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr int64_t kMostSeconds = 366L * 24 * 3600;
constexpr int64_t kLastHour = 23;

HostMode ReadMode(const JsonValue& value, const std::string& where) {
    const std::string name = ReadString(value, where);
    if (name == "automatic") {
        return HostMode::AUTOMATIC;
    }
    if (name != "scripted") {
        Refuse(where, Quote(value), "\"automatic\" or \"scripted\"");
    }
    return HostMode::SCRIPTED;
}

/// Reads an object as a map; `read(value, where)` reads each member.
template <class Map, class Read>
Map ReadMap(const JsonValue& object, const std::string& where, const Read& read) {
    ExpectObject(object, where);
    Map map;
    for (const auto& [key, value] : object.Members()) {
        map.emplace(key, read(value, where + "." + std::string(key)));
    }
    return map;
}

std::map<uint32_t, std::set<std::string>> ReadNamesByCondition(const JsonValue& object, const std::string& where) {
    ExpectObject(object, where);
    std::map<uint32_t, std::set<std::string>> names;
    for (const auto& [key, value] : object.Members()) {
        const std::vector<std::string> list = ReadStrings(value, where + "." + std::string(key));
        names[static_cast<uint32_t>(ReadDecimalKey(key, where))].insert(list.begin(), list.end());
    }
    return names;
}

std::shared_ptr<std::vector<ResCtrlItem>> ReadResCtrl(const JsonValue& array, const std::string& where) {
    ExpectArray(array, where);
    auto items = std::make_shared<std::vector<ResCtrlItem>>();
    for (const JsonValue& element : array.Elements()) {
        JsonFields fields(element, where + "[" + std::to_string(items->size()) + "]");
        ResCtrlItem item;
        item.allow = ReadBool(fields.Require("allow", "true or false"), fields.Where("allow"));
        item.names = ReadStrings(fields.Require("names", "an array of strings"), fields.Where("names"));
        fields.Finish();
        items->push_back(std::move(item));
    }
    return items;
}

void MergePolicy(StandbyPolicy& policy, const JsonValue& object, const std::string& policyWhere) {
    JsonFields fields(object, policyWhere);
    const auto seconds = [&fields](std::string_view key, int64_t& target) {
        fields.Optional(key, [&target](const JsonValue& value, const std::string& where) {
            target = ReadInteger(value, where, 1, kMostSeconds);
        });
    };
    const auto hour = [&fields](std::string_view key, int32_t& target) {
        fields.Optional(key, [&target](const JsonValue& value, const std::string& where) {
            target = static_cast<int32_t>(ReadInteger(value, where, 0, kLastHour));
        });
    };
    seconds("nap_after_s", policy.napAfterSeconds);
    seconds("sleep_after_s", policy.sleepAfterSeconds);
    seconds("phase_every_s", policy.phaseEverySeconds);
    seconds("maintenance_s", policy.maintenanceSeconds);
    seconds("half_hour_s", policy.halfHourSeconds);
    seconds("retry_after_s", policy.retryAfterSeconds);
    fields.Optional("radio_ledger", [&policy](const JsonValue& value, const std::string& where) {
        policy.hasRadioLedger = ReadBool(value, where);
    });
    hour("night_start_hour", policy.nightStartHour);
    hour("night_end_hour", policy.nightEndHour);
    fields.Optional("maintenance_after_s", [&policy](const JsonValue& value, const std::string& where) {
        ExpectArray(value, where);
        std::vector<int64_t> stretches;
        for (const JsonValue& element : value.Elements()) {
            stretches.push_back(
                ReadInteger(element, where + "[" + std::to_string(stretches.size()) + "]", 1, kMostSeconds));
        }
        if (stretches.empty()) {
            Refuse(where, "[]", "at least one length");
        }
        policy.maintenanceAfterSeconds = std::move(stretches);
    });
    fields.Finish();
}

}  // namespace

void StandbyConfig::Merge(const JsonValue& object, const std::string& name, bool withPolicy) {
    JsonFields fields(object, name);
    fields.Optional("mode",
                    [this](const JsonValue& value, const std::string& where) { mode = ReadMode(value, where); });
    fields.Optional("standby_mode", [this](const JsonValue& value, const std::string& where) {
        standbyMode = ReadInt32(value, where);
    });
    fields.Optional("strategies", [this](const JsonValue& value, const std::string& where) {
        strategies = ReadStrings(value, where);
    });
    fields.Optional("half_hour_switches", [this](const JsonValue& value, const std::string& where) {
        halfHourSwitches = ReadMap<decltype(halfHourSwitches)>(value, where, ReadBool);
    });
    fields.Optional("params", [this](const JsonValue& value, const std::string& where) {
        params = ReadMap<decltype(params)>(value, where, ReadInt32);
    });
    fields.Optional("persist_allow", [this](const JsonValue& value, const std::string& where) {
        persistAllow = ReadMap<decltype(persistAllow)>(value, where, ReadNamesByCondition);
    });
    fields.Optional("res_ctrl", [this](const JsonValue& value, const std::string& where) {
        resCtrl = ReadMap<decltype(resCtrl)>(value, where, ReadResCtrl);
    });
    if (withPolicy) {
        fields.Optional(
            "policy", [this](const JsonValue& value, const std::string& where) { MergePolicy(policy, value, where); });
    }
    fields.Finish();
}

namespace {

std::string ReadFile(const std::string& path) {
    constexpr char kExpected[] = "a JSON file";
    if (std::error_code error; std::filesystem::is_directory(path, error)) {
        Refuse(path, "is a directory", kExpected);
    }
    errno = 0;
    std::ifstream file(path);
    if (!file.is_open()) {
        Refuse(path, std::strerror(errno), kExpected);
    }
    return ReadWhole(file, path, kExpected);
}

}  // namespace

StandbyConfigFile::StandbyConfigFile(const std::string& path) : path_(path) {
    const std::string text = ReadFile(path);
    try {
        document_.Read(text, "one object", JsonComments::SKIPPED);
    } catch (const InputError& error) {
        throw InputError(path_ + ": " + error.what());
    }
    StandbyConfig tried;
    LayOver(tried);
}

StandbyConfigFile::~StandbyConfigFile() = default;
StandbyConfigFile::StandbyConfigFile(StandbyConfigFile&&) noexcept = default;
StandbyConfigFile& StandbyConfigFile::operator=(StandbyConfigFile&&) noexcept = default;

void StandbyConfigFile::LayOver(StandbyConfig& config) const {
    try {
        config.Merge(document_.Root(), {}, /*withPolicy=*/true);
    } catch (const InputError& error) {
        throw InputError(path_ + ": " + error.what());
    }
}

}  // namespace TARN::DevStandbyMgr
