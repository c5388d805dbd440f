#ifndef DEVICE_SIMULATED_PHONE_CORE_H
#define DEVICE_SIMULATED_PHONE_CORE_H

#include <atomic>
#include <cassert>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "facts.h"
#include "operations.h"
#include "phone_observer.h"
#include "virtual_time.h"

namespace TARN::Simulated {

/// What the ports of one phone share.
class PhoneCore {
public:
    PhoneCore(int64_t startMs, int64_t bootNs, PhoneObserver& phoneObserver)
        : time(startMs), observer(phoneObserver), startMs_(startMs), bootNs_(bootNs) {}

    /// The code with which an operation is being made to fail, else 0.
    [[nodiscard]] int32_t Fault(std::string_view operation) const noexcept {
        assert(IsKnownOperation(operation));
        if (isCutOff) {
            return kNobodyCalls;
        }
        if (faults.empty()) {
            return 0;
        }
        const auto found = faults.find(operation);
        return found == faults.end() ? 0 : found->second;
    }

    /// Shows an operation that changes something, with what it answers. `arguments` makes its arguments by name, and is
    /// asked where somebody looks on.
    template <class Arguments, class Result>
    void Show(std::string_view operation, const Arguments& arguments, const Result& result) {
        if (isCutOff) {
            return;
        }
        calls.fetch_add(1, std::memory_order_relaxed);
        if (observer.WantsCall(operation)) {
            observer.OnCall(operation, arguments(), result);
        }
    }

    /// Shows an operation that answers a status, made to fail or not. Returns the status.
    template <class Arguments>
    int32_t Call(std::string_view operation, const Arguments& arguments) {
        const int32_t code = Fault(operation);
        Show(operation, arguments, code);
        return code;
    }
    int32_t Call(std::string_view operation) { return Call(operation, NoArguments); }

    static nlohmann::ordered_json NoArguments() { return nlohmann::ordered_json::object(); }

    /// The boot clock at a wall-clock time; wraps far outside of any life of a phone.
    [[nodiscard]] int64_t BootNsAt(int64_t wallMs) const noexcept {
        constexpr uint64_t kNsPerMs = 1'000'000;
        return static_cast<int64_t>(static_cast<uint64_t>(bootNs_) +
                                    (static_cast<uint64_t>(wallMs) - static_cast<uint64_t>(startMs_)) * kNsPerMs);
    }

    /// Changes the fact of a radio, and says so where that is news.
    template <class State>
    void SetRadio(State& fact, State state) {
        if (fact != state) {
            fact = std::move(state);
            if (radioObserver) {
                radioObserver();
            }
        }
    }

    std::atomic<uint64_t> calls = 0;  ///< operations that change something, so far; a timer's thread may call as well
    VirtualTime time;
    PhoneFacts facts;
    std::map<std::string, int32_t, std::less<>> faults;
    bool isScreenOn = true;  ///< as the last screen broadcast said
    bool isCutOff = false;   ///< the service is dead: what it still calls fails and changes nothing
    PhoneObserver& observer;
    std::function<void()> radioObserver;

private:
    static constexpr int32_t kNobodyCalls = -1;

    int64_t startMs_;
    int64_t bootNs_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_PHONE_CORE_H
