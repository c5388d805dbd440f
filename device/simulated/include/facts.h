#ifndef DEVICE_SIMULATED_FACTS_H
#define DEVICE_SIMULATED_FACTS_H

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace TARN::Simulated {

/// One running process, native or application.
struct Process {
    int32_t pid = -1;
    int32_t uid = -1;
    std::string name;
    std::vector<std::string> bundles;
    bool native = false;
    bool system = false;
    bool foreground = false;
};

/// A continuous task of an application.
struct ContinuousTask {
    uint32_t type = 0;
    int32_t uid = -1;
    int32_t pid = -1;
};

/// What the movement service says: 0 nothing, 1 still, 2 moving; since when, wall-clock milliseconds.
struct Movement {
    int32_t value = 0;
    int64_t atMs = 0;
};

/// What is true of the phone's hardware and software, apart from its settings tables.
struct PhoneFacts {
    std::map<std::string, std::string> parameters;
    std::vector<int32_t> accounts = {100};
    int32_t deviceMode = 600;
    int32_t plugged = 0;
    int32_t bluetoothState = 1;
    int32_t bluetoothConnection = 3;
    bool isWifiPresent = true;
    bool isWifiEnabled = true;
    int32_t simSlots = 2;
    std::set<int32_t> slotsOff;  ///< whose radio is off
    std::vector<int32_t> sensors = {5, 12};
    std::optional<float> light;      ///< lux; nothing: the sensor reports nothing
    std::optional<float> proximity;  ///< distance; nothing: the sensor reports nothing
    Movement movement;
    std::vector<Process> processes;
    std::vector<ContinuousTask> continuousTasks;
};

/// A change of facts: only what is engaged changes. Within the maps an empty optional removes the member.
struct FactsChange {
    template <class T>
    using Members = std::map<std::string, std::optional<T>>;

    Members<std::string> parameters;
    Members<Members<std::string>> settings;  ///< table to keyword to value; a removed table is emptied
    Members<int32_t> faults;                 ///< operation to the code with which it fails
    std::optional<std::vector<int32_t>> accounts;
    std::optional<int32_t> deviceMode;
    std::optional<int32_t> plugged;
    std::optional<int32_t> bluetoothState;
    std::optional<int32_t> bluetoothConnection;
    std::optional<bool> isWifiPresent;
    std::optional<bool> isWifiEnabled;
    std::optional<int32_t> simSlots;
    std::optional<std::set<int32_t>> slotsOff;
    std::optional<std::vector<int32_t>> sensors;
    std::optional<std::optional<float>> light;
    std::optional<std::optional<float>> proximity;
    std::optional<Movement> movement;
    std::optional<std::vector<Process>> processes;
    std::optional<std::vector<ContinuousTask>> continuousTasks;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_FACTS_H
