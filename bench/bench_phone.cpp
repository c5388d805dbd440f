#include "bench_phone.h"

#include <atomic>
#include <cstdlib>
#include <new>
#include <utility>

#include "open_phone_plugin.h"

namespace {
std::atomic<uint64_t> g_allocations = 0;
}

void* operator new(std::size_t size) {
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace TARN::Bench {

uint64_t Allocations() {
    return g_allocations.load(std::memory_order_relaxed);
}

BenchPhone::BenchPhone(const std::string& strategy) : BenchPhone(strategy, Load()) {}

BenchPhone::BenchPhone(const std::string& strategy, const Load& load) : load_(load), phone_(kStartMs, 0, observer_) {
    Device::Install(&phone_);
    DevStandbyMgr::StandbyConfig config;
    config.mode = DevStandbyMgr::HostMode::SCRIPTED;
    if (!strategy.empty()) {
        config.strategies = {strategy};
    }
    auto& names = config.persistAllow["FREEZE"][1];
    for (int32_t i = 0; i < load.frozenNames; ++i) {
        names.insert("native" + std::to_string(i));
    }
    DevStandbyMgr::ResCtrlItem listed;
    listed.allow = false;
    for (int32_t i = 0; i < load.listedNames; ++i) {
        listed.names.push_back("com.app" + std::to_string(i));
    }
    config.resCtrl["POWER_SAVE_CLEAN"] =
        std::make_shared<std::vector<DevStandbyMgr::ResCtrlItem>>(1, std::move(listed));
    service_ = DevStandbyMgr::StandbyServiceImpl::Create(std::move(config));
    OnPluginRegister();
    service_->Init();
    StartProcesses();
}

BenchPhone::~BenchPhone() {
    service_->UnInit();
    phone_.DropPending();
    service_.reset();
    DevStandbyMgr::StandbyServiceImpl::Destroy();
    Device::Install(nullptr);
}

void BenchPhone::StartProcesses() {
    std::vector<Simulated::Process> processes;
    for (int32_t i = 0; i < load_.natives; ++i) {
        processes.push_back({2 * i + 1, 1000 + i, "native" + std::to_string(i), {}, true, true, false});
    }
    std::vector<Simulated::ContinuousTask> tasks;
    for (int32_t i = 0; i < load_.apps; ++i) {
        const std::string name = "com.app" + std::to_string(i);
        processes.push_back({2 * i + 2, 20'000'000 + i, name, {name}, false, i % 2 == 0, false});
        if (i < load_.tasks) {
            tasks.push_back({1, 20'000'000 + i, 2 * i + 2});
        }
    }
    Simulated::FactsChange change;
    change.processes = std::move(processes);
    change.continuousTasks = std::move(tasks);
    phone_.Apply(change);
}

}  // namespace TARN::Bench
