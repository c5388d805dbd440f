#include "night_plan.h"

#include <algorithm>
#include <array>
#include <utility>

namespace TARN::Authoring {

namespace {

constexpr int kConnected = 1;
constexpr int kDisconnected = 3;
constexpr int kNormalMode = 600;
constexpr int kFullPowerSave = 603;
constexpr double kNear = 0.0;
constexpr double kFar = 5.0;

void Change(TraceWriter& writer, int64_t t, While what, bool begins) {
    switch (what) {
        case While::SCREEN:
            writer.Screen(t, begins);
            break;
        case While::CHARGER:
            writer.Charger(t, begins);
            break;
        case While::CALL:
            writer.Call(t, begins);
            break;
        case While::AIRPLANE:
            writer.Fact(t, "airplane", begins ? "true" : "false");
            break;
        case While::AUDIO:
            writer.Task(t, Background::AUDIO, begins);
            break;
        case While::HEADSET:
            writer.Fact(t, "bluetooth",
                        R"({"connection": )" + std::to_string(begins ? kConnected : kDisconnected) + '}');
            break;
        case While::MOVING:
            writer.Movement(t, begins);
            break;
        case While::COVERED:
            writer.Fact(t, "proximity", begins ? "0.0" : "5.0");
            break;
        case While::WIFI_OFF:
            writer.Fact(t, "wifi", begins ? R"({"enabled": false})" : R"({"enabled": true})");
            break;
        case While::SAVING:
            writer.Fact(t, "device_mode", std::to_string(begins ? kFullPowerSave : kNormalMode));
            writer.Broadcast(t, "COMMON_EVENT_POWER_SAVE_MODE_CHANGED",
                             begins ? R"({"current_power_mode": true})" : R"({"current_power_mode": false})");
            break;
        case While::NOTHING:
            break;
    }
}

bool IsIn(const NightPlan::Depths& depths, While what) {
    return depths.at(static_cast<size_t>(what)) > 0;
}

/// What the header says of the states at the start; the others need a step.
void PutInto(Json& device, const NightPlan::Depths& depths, bool hasProximity) {
    const bool isMoving = IsIn(depths, While::MOVING);
    device["movement"] = {{"value", isMoving ? 2 : 1}, {"at", "-20m"}};
    if (hasProximity) {
        device["proximity"] = IsIn(depths, While::COVERED) ? kNear : kFar;
    }
    if (IsIn(depths, While::CHARGER)) {
        device["plugged"] = 1;
    }
    if (IsIn(depths, While::AIRPLANE)) {
        device["airplane"] = true;
    }
    if (IsIn(depths, While::HEADSET)) {
        device["bluetooth"] = {{"connection", kConnected}};
    }
    if (IsIn(depths, While::WIFI_OFF)) {
        device["wifi"] = {{"enabled", false}};
    }
}

}  // namespace

void NightPlan::During(While what, int64_t from, int64_t to) {
    from = std::max(from, start_);
    if (to <= from || from > end_) {
        return;
    }
    Add({from, Kind::BEGIN, what, 0, {}});
    Add({to, Kind::END, what, 0, {}});
}

void NightPlan::Write(TraceWriter& writer, const Json& host, Json device) {
    std::stable_sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) { return a.t < b.t; });
    Depths depths{};
    const bool hasProximity = !device.contains("proximity") || !device["proximity"].is_null();
    const std::string processes = device["processes"].dump();
    device["light"] = 0;
    auto next = entries_.begin();
    for (; next != entries_.end() && next->t <= start_; ++next) {
        if (next->kind == Kind::REMARK) {
            writer.Comment(next->text);
        } else if (next->kind == Kind::LIGHT) {
            device["light"] = next->value;
        } else if (next->kind == Kind::ALARM) {
            device["alarm"] = Json::parse(writer.LaterTime(next->value, start_));
        }
        After(*next, depths);
    }
    PutInto(device, depths, hasProximity);
    writer.Header(start_, end_, host, device);
    if (!IsIn(depths, While::SCREEN)) {
        writer.Screen(start_, false);
    }
    for (const While what : {While::CALL, While::AUDIO, While::SAVING}) {
        if (IsIn(depths, what)) {
            Change(writer, start_, what, true);
        }
    }
    while (next != entries_.end() && next->t <= end_) {
        const auto later = std::find_if(next, entries_.end(), [&](const Entry& entry) { return entry.t != next->t; });
        // What ends and begins again at one moment goes on: only what differs after the moment is told.
        Depths after = depths;
        std::for_each(next, later, [&after](const Entry& entry) { After(entry, after); });
        for (; next != later; ++next) {
            if (IsIn(depths, next->what) == IsIn(after, next->what)) {
                Tell(writer, *next, processes);
            } else if (next->what != While::COVERED || hasProximity) {
                Change(writer, next->t, next->what, IsIn(after, next->what));
            }
            depths.at(static_cast<size_t>(next->what)) = after.at(static_cast<size_t>(next->what));
        }
    }
    writer.Finish();
}

void NightPlan::After(const Entry& entry, Depths& depths) {
    int& depth = depths.at(static_cast<size_t>(entry.what));
    depth += entry.kind == Kind::BEGIN ? 1 : entry.kind == Kind::END ? -1 : 0;
}

void NightPlan::Tell(TraceWriter& writer, const Entry& entry, const std::string& processes) {
    switch (entry.kind) {
        case Kind::REMARK:
            writer.Comment(entry.text);
            break;
        case Kind::UNLOCK:
            writer.Unlock(entry.t);
            break;
        case Kind::LIGHT:
            writer.Fact(entry.t, "light", std::to_string(entry.value));
            break;
        case Kind::ALARM:
            writer.Alarm(entry.t, entry.value);
            break;
        case Kind::NO_ALARM:
            writer.Alarm(entry.t, std::nullopt);
            break;
        case Kind::RELAUNCH:
            writer.Fact(entry.t, "processes", processes);
            break;
        case Kind::BEGIN:
        case Kind::END:
            break;
    }
}

}  // namespace TARN::Authoring
