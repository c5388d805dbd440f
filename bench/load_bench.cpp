#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <malloc.h>

#include <stdexcept>
#include <string>

#include "bench_phone.h"

namespace TARN::Bench {

namespace {

/// The life of the plugin without a message: loaded, registered, initialised, and all that undone.
void LoadRegisterInit(benchmark::State& state) {
    SilentObserver observer;
    Simulated::SimulatedPhone phone(BenchPhone::kStartMs, 0, observer);
    Device::Install(&phone);
    DevStandbyMgr::StandbyConfig config;
    config.mode = DevStandbyMgr::HostMode::SCRIPTED;
    const auto service = DevStandbyMgr::StandbyServiceImpl::Create(std::move(config));
    size_t heap = 0;
    for (auto _ : state) {
        const size_t before = ::mallinfo2().uordblks;
        std::string error;
        if (!service->LoadPlugin(PLUGIN_PATH, error)) {
            throw std::runtime_error(error);
        }
        service->Init();
        heap = ::mallinfo2().uordblks - before;
        service->UnInit();
        service->UnloadPlugin();
    }
    state.counters["heap"] = static_cast<double>(heap);
    phone.DropPending();
    DevStandbyMgr::StandbyServiceImpl::Destroy();
    Device::Install(nullptr);
}
BENCHMARK(LoadRegisterInit)->Unit(benchmark::kMicrosecond);

/// What that is held against.
void LoadEmptyLibrary(benchmark::State& state) {
    for (auto _ : state) {
        void* library = ::dlopen(EMPTY_PATH, RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            throw std::runtime_error(::dlerror());
        }
        ::dlclose(library);
    }
}
BENCHMARK(LoadEmptyLibrary)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace TARN::Bench
