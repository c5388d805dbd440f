#ifndef TESTS_PHONE_WATCH_H
#define TESTS_PHONE_WATCH_H

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "record_sink.h"
#include "simulated_phone.h"

namespace TARN::Tests {

/// Remembers what the service, and nobody else, made of the phone's radios and firewall.
class PhoneWatch : public Replay::RecordSink {
public:
    /// Called when the service has just changed something, by a call or a file. `isGrave`: a radio, the firewall, a
    /// file.
    using Touched = std::function<void(int64_t t, const std::string& what, bool isGrave)>;

    explicit PhoneWatch(Touched touched) : touched_(std::move(touched)) {}

    /// The phone is there from the session's construction on; what is called before is not watched for touches.
    void Watch(Simulated::SimulatedPhone& phone) { phone_ = &phone; }

    /// What the service still keeps from the user: "bluetooth off", "natives frozen". Without `everything` radios and
    /// firewall.
    [[nodiscard]] std::vector<std::string> Kept(bool everything) const;

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::NONE; }
    void OnBegin(const Replay::Trace& /*trace*/) override {}
    void OnStep(const Replay::Step& step) override;
    void OnLog(int64_t /*t*/, const LogLine& /*line*/) override {}
    void OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override;
    void OnFile(int64_t t, const std::string& path) override;
    void OnDeliver(int64_t /*t*/, const DevStandbyMgr::StandbyMessage& /*message*/) override {}
    void OnDump(int64_t /*t*/, const std::string& /*text*/) override {}
    void OnEnd(int64_t /*t*/, const Replay::Summary& /*summary*/) override {}

private:
    void Touch(int64_t t, const std::string& what, bool isGrave);

    Touched touched_;
    Simulated::SimulatedPhone* phone_ = nullptr;
    bool isBluetoothOff_ = false;
    bool isWifiOff_ = false;
    bool isFirewallOn_ = false;
    std::set<int32_t> slotsOff_;
};

}  // namespace TARN::Tests

#endif  // TESTS_PHONE_WATCH_H
