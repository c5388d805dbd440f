#include "facts_reader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "digits.h"
#include "json_fields.h"
#include "operations.h"
#include "time_reader.h"

namespace TARN::Replay {

namespace {

using namespace DevStandbyMgr;
using Simulated::ContinuousTask;
using Simulated::FactsChange;
using Simulated::Movement;
using Simulated::PhoneFacts;
using Simulated::Process;

/// More slots than any phone has, few enough for a loop over them.
constexpr int64_t kMostSimSlots = 4096;

constexpr char kGlobalTable[] = "SETTINGSDATA";
constexpr char kAlarmKeyword[] = "nearestAlarmingTime";

/// Reads an array element by element.
template <class Read>
auto ReadArray(const JsonValue& array, const std::string& where, const Read& read) {
    ExpectArray(array, where);
    std::vector<decltype(read(array, where))> values;
    values.reserve(array.Elements().size());
    for (const JsonValue& element : array.Elements()) {
        values.push_back(read(element, where + "[" + std::to_string(values.size()) + "]"));
    }
    return values;
}

/// Reads the members of a merged map: null removes one.
template <class T, class Read>
FactsChange::Members<T> ReadMembers(const JsonValue& object, const std::string& where, const Read& read) {
    ExpectObject(object, where);
    FactsChange::Members<T> members;
    for (const auto& [name, value] : object.Members()) {
        const std::string key(name);
        members[key] = value.IsNull() ? std::nullopt : std::optional<T>(read(value, where + "." + key));
    }
    return members;
}

/// Reads a member of a merged group of facts: null puts it back to what phones ship with.
template <class T, class Read>
void ReadMember(JsonFields& group, std::string_view key, std::optional<T>& target, T shipped, const Read& read) {
    group.Optional(key, [&](const JsonValue& value, const std::string& where) {
        target = value.IsNull() ? shipped : read(value, where);
    });
}

/// Reads a merged map from allow types or device states, in decimal, to values: null is the empty value.
template <class T, class Read>
std::map<int32_t, T> ReadByType(const JsonValue& object, const std::string& where, const Read& read) {
    ExpectObject(object, where);
    std::map<int32_t, T> values;
    for (const auto& [key, value] : object.Members()) {
        values[ReadDecimalKey(key, where)] = value.IsNull() ? T() : read(value, where + "." + std::string(key));
    }
    return values;
}

int32_t ReadFault(const JsonValue& value, const std::string& where) {
    const int32_t code = ReadInt32(value, where);
    if (code == 0) {
        Refuse(where, "0", "a non-zero code, or null to heal the operation");
    }
    return code;
}

FactsChange::Members<int32_t> ReadFaults(const JsonValue& object, const std::string& where) {
    auto faults = ReadMembers<int32_t>(object, where, ReadFault);
    for (const auto& [operation, code] : faults) {
        if (!Simulated::IsKnownOperation(operation)) {
            Refuse(where, "unknown operation " + Quote(operation), "one such as \"BluetoothHost.DisableBt\"");
        }
    }
    return faults;
}

bool IsTable(std::string_view name) {
    constexpr std::string_view kOfAccount = "USER_SETTINGSDATA_SECURE_";
    if (!name.starts_with(kOfAccount)) {
        return name == kGlobalTable;
    }
    name.remove_prefix(kOfAccount.size());
    name.remove_prefix(name.starts_with('-') ? 1 : 0);
    return !name.empty() && std::all_of(name.begin(), name.end(), IsDigit);
}

FactsChange::Members<FactsChange::Members<std::string>> ReadSettings(const JsonValue& object,
                                                                     const std::string& where) {
    auto tables = ReadMembers<FactsChange::Members<std::string>>(
        object, where, [](const JsonValue& rows, const std::string& rowsWhere) {
            return ReadMembers<std::string>(rows, rowsWhere, ReadString);
        });
    for (const auto& [table, rows] : tables) {
        if (!IsTable(table)) {
            Refuse(where, "unknown table " + Quote(table), "SETTINGSDATA or USER_SETTINGSDATA_SECURE_<account id>");
        }
    }
    if (const auto table = tables.find(kGlobalTable); table != tables.end() && table->second) {
        const auto alarm = table->second->find(kAlarmKeyword);
        if (alarm != table->second->end() && alarm->second && IsWrittenTime(*alarm->second)) {
            Refuse(where + "." + kGlobalTable + "." + kAlarmKeyword, Quote(*alarm->second),
                   "milliseconds, or the fact \"alarm\" in place of the setting");
        }
    }
    return tables;
}

Process ReadProcess(const JsonValue& object, const std::string& name) {
    JsonFields fields(object, name);
    Process process;
    process.pid = ReadInt32(fields.Require("pid", "a process id"), fields.Where("pid"));
    process.name = ReadString(fields.Require("name", "a process name"), fields.Where("name"));
    const auto flag = [&fields](std::string_view key, bool& target) {
        fields.Optional(key,
                        [&](const JsonValue& value, const std::string& where) { target = ReadBool(value, where); });
    };
    fields.Optional("uid",
                    [&](const JsonValue& value, const std::string& where) { process.uid = ReadInt32(value, where); });
    fields.Optional("bundles", [&](const JsonValue& value, const std::string& where) {
        process.bundles = ReadStrings(value, where);
    });
    flag("native", process.native);
    flag("system", process.system);
    flag("foreground", process.foreground);
    fields.Finish();
    return process;
}

ContinuousTask ReadTask(const JsonValue& object, const std::string& name) {
    JsonFields fields(object, name);
    ContinuousTask task;
    task.type = static_cast<uint32_t>(ReadInteger(fields.Require("type", "a task type"), fields.Where("type"), 0,
                                                  std::numeric_limits<uint32_t>::max()));
    task.uid = ReadInt32(fields.Require("uid", "a user id"), fields.Where("uid"));
    task.pid = ReadInt32(fields.Require("pid", "a process id"), fields.Where("pid"));
    fields.Finish();
    return task;
}

Movement ReadMovement(const JsonValue& object, const std::string& name, int64_t now) {
    JsonFields fields(object, name);
    Movement movement;
    movement.value = ReadInt32(fields.Require("value", "a movement value"), fields.Where("value"));
    fields.Optional("at", [&](const JsonValue& value, const std::string& where) {
        movement.atMs = ReadTimeBefore(value, where, now);
    });
    fields.Finish();
    return movement;
}

std::optional<float> ReadReading(const JsonValue& value, const std::string& where) {
    if (value.IsNull()) {
        return std::nullopt;
    }
    const auto reading = static_cast<float>(ReadNumber(value, where));
    if (!std::isfinite(reading)) {
        Refuse(where, Quote(value), "a number in the range of a float");
    }
    return reading;
}

int32_t ReadSlots(const JsonValue& value, const std::string& where) {
    return static_cast<int32_t>(ReadInteger(value, where, std::numeric_limits<int32_t>::min(), kMostSimSlots));
}

std::set<int32_t> ReadSlotsOff(const JsonValue& value, const std::string& where) {
    const std::vector<int32_t> slots = ReadArray(value, where, [](const JsonValue& slot, const std::string& slotWhere) {
        return static_cast<int32_t>(ReadInteger(slot, slotWhere, 0, kMostSimSlots - 1));
    });
    return {slots.begin(), slots.end()};
}

void ReadRadios(JsonFields& fields, FactsChange& change) {
    static const PhoneFacts shipped;
    fields.Optional("bluetooth", [&](const JsonValue& object, const std::string& where) {
        JsonFields group(object, where);
        ReadMember(group, "state", change.bluetoothState, shipped.bluetoothState, ReadInt32);
        ReadMember(group, "connection", change.bluetoothConnection, shipped.bluetoothConnection, ReadInt32);
        group.Finish();
    });
    fields.Optional("wifi", [&](const JsonValue& object, const std::string& where) {
        JsonFields group(object, where);
        ReadMember(group, "present", change.isWifiPresent, shipped.isWifiPresent, ReadBool);
        ReadMember(group, "enabled", change.isWifiEnabled, shipped.isWifiEnabled, ReadBool);
        group.Finish();
    });
    fields.Optional("modem", [&](const JsonValue& object, const std::string& where) {
        JsonFields group(object, where);
        ReadMember(group, "slots", change.simSlots, shipped.simSlots, ReadSlots);
        ReadMember(group, "off", change.slotsOff, shipped.slotsOff, ReadSlotsOff);
        group.Finish();
    });
}

/// Puts a row into a table that the same facts may name, but not with this row.
void PutSetting(FactsChange& change, const std::string& where, const std::string& table, const std::string& keyword,
                const std::optional<std::string>& value) {
    auto& rows = change.settings.try_emplace(table, FactsChange::Members<std::string>{}).first->second;
    if (!rows || !rows->emplace(keyword, value).second) {
        Refuse(where, "settings." + table + (rows ? "." + keyword : "") + " is named too", "one of the two");
    }
}

/// What people mean and the phone keeps in settings tables.
void ReadSettingFacts(JsonFields& fields, FactsChange& change, const FactsContext& context) {
    fields.Optional("alarm", [&](const JsonValue& value, const std::string& where) {
        PutSetting(
            change, where, kGlobalTable, kAlarmKeyword,
            value.IsNull() ? std::nullopt : std::optional(std::to_string(ReadTimeAfter(value, where, context.t))));
    });
    fields.Optional("airplane", [&](const JsonValue& value, const std::string& where) {
        PutSetting(change, where, kGlobalTable, "settings.telephony.airplanemode", ReadBool(value, where) ? "1" : "0");
    });
    fields.Optional("user_setup_complete", [&](const JsonValue& value, const std::string& where) {
        const bool isComplete = ReadBool(value, where);
        for (const int32_t account : change.accounts.value_or(context.accounts)) {
            PutSetting(change, where, "USER_SETTINGSDATA_SECURE_" + std::to_string(account), "user_setup_complete",
                       isComplete ? "1" : "0");
        }
    });
}

void ReadHostFacts(JsonFields& fields, HostFactsChange& change, bool isAutomatic) {
    fields.Optional("condition", [&](const JsonValue& value, const std::string& where) {
        if (isAutomatic) {
            Refuse(where, "set in automatic mode, where the host computes it", "no such key");
        }
        change.condition = static_cast<uint32_t>(ReadInt32(value, where));
    });
    fields.Optional("device_state", [&](const JsonValue& value, const std::string& where) {
        change.deviceState = ReadByType<bool>(value, where, ReadBool);
    });
    fields.Optional("allow_list", [&](const JsonValue& value, const std::string& where) {
        change.allowList = ReadByType<std::vector<std::string>>(value, where, ReadStrings);
    });
    fields.Optional("restrict_set", [&](const JsonValue& value, const std::string& where) {
        change.restrictSet = ReadByType<std::vector<std::string>>(value, where, ReadStrings);
    });
}

}  // namespace

SetStep ReadFacts(const JsonValue& object, const std::string& name, const FactsContext& context) {
    SetStep step;
    FactsChange& phone = step.phone;
    JsonFields fields(object, name);
    const auto fact = [&fields](std::string_view key, auto& target, const auto& read) {
        fields.Optional(key, [&](const JsonValue& value, const std::string& where) { target = read(value, where); });
    };
    const auto readInts = [](const JsonValue& value, const std::string& where) {
        return ReadArray(value, where, ReadInt32);
    };
    fact("parameters", phone.parameters, [](const JsonValue& value, const std::string& where) {
        return ReadMembers<std::string>(value, where, ReadString);
    });
    fact("settings", phone.settings, ReadSettings);
    fact("fail", phone.faults, ReadFaults);
    fact("accounts", phone.accounts, readInts);
    fact("device_mode", phone.deviceMode, ReadInt32);
    fact("plugged", phone.plugged, ReadInt32);
    fact("sensors", phone.sensors, readInts);
    fact("light", phone.light, ReadReading);
    fact("proximity", phone.proximity, ReadReading);
    fact("movement", phone.movement, [&context](const JsonValue& value, const std::string& where) {
        return ReadMovement(value, where, context.t);
    });
    fact("processes", phone.processes,
         [](const JsonValue& value, const std::string& where) { return ReadArray(value, where, ReadProcess); });
    fact("continuous_tasks", phone.continuousTasks,
         [](const JsonValue& value, const std::string& where) { return ReadArray(value, where, ReadTask); });
    ReadRadios(fields, phone);
    ReadSettingFacts(fields, phone, context);
    ReadHostFacts(fields, step.host, context.isAutomatic);
    fields.Finish();
    return step;
}

}  // namespace TARN::Replay
