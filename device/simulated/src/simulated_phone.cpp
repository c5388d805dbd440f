#include "simulated_phone.h"

#include <stdexcept>
#include <utility>

#include "common_event_support.h"
#include "event_ports.h"
#include "memory_files.h"
#include "preferences_ports.h"
#include "process_ports.h"
#include "sensor_ports.h"
#include "service_files.h"
#include "settings_ports.h"
#include "simple_ports.h"
#include "time_ports.h"

namespace TARN::Simulated {

using EventFwk::CommonEventSupport;

/// Everything a phone is made of; the core first, since the others lean on it.
struct PhonePorts {
    PhonePorts(int64_t startMs, int64_t bootNs, PhoneObserver& observer, FileUtil::FileService* keptFiles)
        : core(startMs, bootNs, observer), storage(keptFiles == nullptr ? memoryFiles : *keptFiles) {}

    PhoneCore core;
    MemoryFiles memoryFiles;
    FileUtil::FileService& storage;
    ServiceFiles files{core, storage};
    Accounts accounts{core};
    BackgroundTasks backgroundTasks{core};
    Battery battery{core};
    BluetoothAdapter bluetooth{core};
    Brokers brokers;
    CommonEvents commonEvents{core};
    Settings settings{core};
    Logger log{core};
    Modem modem{core};
    MovementDetector movement{core};
    NetPolicy netPolicy{core};
    SystemParameters parameters{core};
    Power power{core};
    PreferencesFiles preferences{core};
    Processes processes{core};
    SensorHub sensors{core};
    Freezer freezer{core};
    SystemAbilities systemAbilities{core};
    TimeService time{core};
    WifiInterface wifi{core};
};

namespace {

/// Applies the members of a change to a map: an empty optional removes one.
template <class T, class Map>
void ApplyMembers(Map& map, const FactsChange::Members<T>& members) {
    for (const auto& [key, value] : members) {
        if (value) {
            map.insert_or_assign(key, *value);
        } else {
            map.erase(key);
        }
    }
}

template <class T>
bool ApplyFact(T& fact, const std::optional<T>& change) {
    if (change) {
        fact = *change;
    }
    return change.has_value();
}

template <class T>
void ApplyRadio(PhoneCore& core, T& fact, const std::optional<T>& change) {
    if (change) {
        core.SetRadio(fact, *change);
    }
}

}  // namespace

SimulatedPhone::SimulatedPhone(int64_t startMs, int64_t bootNs, PhoneObserver& observer, FileUtil::FileService* files)
    : ports_(std::make_unique<PhonePorts>(startMs, bootNs, observer, files)) {}

SimulatedPhone::~SimulatedPhone() {
    SimulatedPhone::DropPending();
}

VirtualTime& SimulatedPhone::Clock() noexcept {
    return ports_->core.time;
}

const PhoneFacts& SimulatedPhone::Facts() const noexcept {
    return ports_->core.facts;
}

uint64_t SimulatedPhone::Calls() const noexcept {
    return ports_->core.calls.load(std::memory_order_relaxed);
}

void SimulatedPhone::Apply(const FactsChange& change) {
    PhoneFacts& facts = ports_->core.facts;
    ApplyMembers(facts.parameters, change.parameters);
    ApplyMembers(ports_->core.faults, change.faults);
    ports_->settings.Apply(change.settings);
    ApplyFact(facts.accounts, change.accounts);
    ApplyFact(facts.deviceMode, change.deviceMode);
    ApplyFact(facts.plugged, change.plugged);
    ApplyRadio(ports_->core, facts.bluetoothState, change.bluetoothState);
    ApplyFact(facts.bluetoothConnection, change.bluetoothConnection);
    ApplyFact(facts.isWifiPresent, change.isWifiPresent);
    ApplyRadio(ports_->core, facts.isWifiEnabled, change.isWifiEnabled);
    ApplyFact(facts.simSlots, change.simSlots);
    ApplyRadio(ports_->core, facts.slotsOff, change.slotsOff);
    ApplyFact(facts.sensors, change.sensors);
    if (ApplyFact(facts.light, change.light)) {
        ports_->sensors.Report(SENSOR_TYPE_ID_AMBIENT_LIGHT);
    }
    if (ApplyFact(facts.proximity, change.proximity)) {
        ports_->sensors.Report(SENSOR_TYPE_ID_PROXIMITY);
    }
    if (ApplyFact(facts.movement, change.movement)) {
        ports_->movement.Report();
    }
    if (change.processes) {
        ports_->processes.Replace(*change.processes);
    }
    if (change.continuousTasks) {
        ports_->backgroundTasks.Replace(*change.continuousTasks);
    }
}

void SimulatedPhone::Broadcast(AAFwk::Want want) {
    const std::string& action = want.GetAction();
    if (action == CommonEventSupport::COMMON_EVENT_SCREEN_ON || action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        ports_->core.isScreenOn = action == CommonEventSupport::COMMON_EVENT_SCREEN_ON;
    }
    ports_->commonEvents.Post(EventFwk::CommonEventData(std::move(want)));
}

void SimulatedPhone::WriteFile(const std::string& name, const std::optional<std::string>& text) {
    const std::string path = std::string(kServiceFolder) + "/" + name;
    FileUtil::FileService& files = ports_->storage;
    if (!(text ? files.Replace(path, *text) : files.Remove(path))) {
        throw std::runtime_error("cannot write " + path);
    }
}

void SimulatedPhone::CutOff(bool isCutOff) noexcept {
    ports_->core.isCutOff = isCutOff;
}

void SimulatedPhone::ObserveRadios(RadioObserver observer) {
    ports_->core.radioObserver = std::move(observer);
}

void SimulatedPhone::DropPending() {
    ports_->core.time.Clear();
    ports_->time.DropAll();
    ports_->commonEvents.DropAll();
    ports_->sensors.DropAll();
    ports_->preferences.DropAll();
    ObserveRadios(nullptr);
    ports_->movement.Observe(nullptr);
    ports_->netPolicy.ObserveDeviceIdlePolicy(nullptr);
    ports_->processes.ObserveStates(nullptr);
    ports_->backgroundTasks.DropObserver();
}

int32_t SimulatedPhone::Fault(std::string_view operation) const noexcept {
    return ports_->core.Fault(operation);
}

std::shared_ptr<AppExecFwk::EventHandler> SimulatedPhone::CreateEventHandler() {
    return std::make_shared<QueueHandler>(ports_->core);
}

AccountSA::OsAccountManager& SimulatedPhone::Accounts() {
    return ports_->accounts;
}

AppExecFwk::AbilityManagerClient& SimulatedPhone::Abilities() {
    return ports_->processes;
}

AppExecFwk::AppMgrClient& SimulatedPhone::Apps() {
    return ports_->processes;
}

AppExecFwk::BundleMgrClient& SimulatedPhone::Bundles() {
    return ports_->processes;
}

BackgroundTaskMgr::BackgroundTaskMgrHelper& SimulatedPhone::BackgroundTasks() {
    return ports_->backgroundTasks;
}

PowerMgr::BatterySrvClient& SimulatedPhone::Battery() {
    return ports_->battery;
}

Bluetooth::BluetoothHost& SimulatedPhone::Bluetooth() {
    return ports_->bluetooth;
}

BrokerRegistration& SimulatedPhone::Brokers() {
    return ports_->brokers;
}

EventFwk::CommonEventService& SimulatedPhone::CommonEvents() {
    return ports_->commonEvents;
}

DataShare::DataShareService& SimulatedPhone::Settings() {
    return ports_->settings;
}

FileUtil::FileService& SimulatedPhone::Files() {
    return ports_->files;
}

LogService& SimulatedPhone::Log() {
    return ports_->log;
}

Telephony::CoreServiceClient& SimulatedPhone::Modem() {
    return ports_->modem;
}

Msdp::MovementClient& SimulatedPhone::Movement() {
    return ports_->movement;
}

NetManagerStandard::NetPolicyClient& SimulatedPhone::NetPolicy() {
    return ports_->netPolicy;
}

system::Parameters& SimulatedPhone::Parameters() {
    return ports_->parameters;
}

PowerMgr::PowerMgrClient& SimulatedPhone::Power() {
    return ports_->power;
}

NativePreferences::PreferencesService& SimulatedPhone::Preferences() {
    return ports_->preferences;
}

ResourceSchedule::ResSchedClient& SimulatedPhone::ResourceScheduler() {
    return ports_->processes;
}

Sensors::SensorService& SimulatedPhone::Sensors() {
    return ports_->sensors;
}

SuspendManager::SuspendManagerClient& SimulatedPhone::Suspend() {
    return ports_->freezer;
}

SystemAbilityManagerClient& SimulatedPhone::SystemAbilities() {
    return ports_->systemAbilities;
}

MiscServices::TimeServiceClient& SimulatedPhone::Time() {
    return ports_->time;
}

std::shared_ptr<Wifi::WifiDevice> SimulatedPhone::Wifi(int32_t /*systemAbilityId*/, int32_t /*instance*/) {
    if (!ports_->core.facts.isWifiPresent || Fault("WifiDevice.GetInstance") != 0) {
        return nullptr;
    }
    return {std::shared_ptr<void>(), &ports_->wifi};
}

}  // namespace TARN::Simulated
