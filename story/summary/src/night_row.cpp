#include "night_row.h"

#include <nlohmann/json.hpp>

#include "csv.h"
#include "figures.h"
#include "phrases.h"

namespace TARN::Story {

namespace {

using Json = nlohmann::ordered_json;

constexpr double kMsPerSecond = 1000.0;

double Seconds(int64_t ms) {
    return static_cast<double>(ms) / kMsPerSecond;
}

Json ToJson(const Cell& cell) {
    return std::visit([](const auto& value) { return Json(value); }, cell.value);
}

std::string Dump(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::vector<Cell> RowOf(const Night& night) {
    std::vector<Cell> row = {{"trace", night.name},
                             {"timezone", night.timezone},
                             {"start", LocalTime(night.start)},
                             {"end", LocalTime(night.end)},
                             {"duration_s", Seconds(night.end - night.start)}};
    const auto lane = [&](LaneId id, std::string_view seconds, std::string_view times) {
        const LaneTally tally = night.At(id).Tally(id);
        row.push_back({seconds, Seconds(tally.TotalMs())});
        row.push_back({times, tally.Times()});
    };
    const Figures figures = Measure(night);
    lane(LaneId::SLEEP, "asleep_s", "asleep_times");
    lane(LaneId::BLUETOOTH, "bluetooth_off_s", "bluetooth_off_times");
    lane(LaneId::WIFI, "wifi_off_s", "wifi_off_times");
    lane(LaneId::MODEM, "modem_off_s", "modem_off_times");
    lane(LaneId::FIREWALL, "firewall_on_s", "firewall_on_times");
    lane(LaneId::FROZEN, "frozen_s", "frozen_times");
    row.push_back({"most_frozen_natives", figures.mostFrozen});
    lane(LaneId::LOCKS, "locks_proxied_s", "locks_proxied_times");
    row.push_back({"most_proxied_processes", figures.mostProxied});
    lane(LaneId::TIMERS, "timers_stretched_s", "timers_stretched_times");
    row.push_back({"timers_stretched_to_600_s", Seconds(figures.stretchedLongMs)});
    row.push_back({"kills", figures.kills});
    row.push_back({"apps_killed", static_cast<int64_t>(figures.killed.size())});
    row.push_back({"messages", static_cast<int64_t>(night.record.messages)});
    row.push_back({"calls", static_cast<int64_t>(night.record.calls)});
    row.push_back({"log_lines", static_cast<int64_t>(night.record.logs)});
    return row;
}

std::string ToJsonLine(const std::vector<Cell>& row) {
    Json line;
    for (const Cell& cell : row) {
        line[std::string(cell.name)] = ToJson(cell);
    }
    return Dump(line);
}

std::string ToCsvLine(const std::vector<Cell>& row) {
    std::string line;
    for (const Cell& cell : row) {
        const auto* text = std::get_if<std::string>(&cell.value);
        line.append(line.empty() ? "" : ",").append(text != nullptr ? CsvField(*text) : Dump(ToJson(cell)));
    }
    return line;
}

std::string CsvHead() {
    std::string line;
    for (const Cell& cell : RowOf({})) {
        line.append(line.empty() ? "" : ",").append(cell.name);
    }
    return line;
}

}  // namespace TARN::Story
