#include "test_phone.h"

#include "log_names.h"

namespace TARN::Tests {

using DevStandbyMgr::StandbyServiceImpl;

TestPhone::TestPhone(int64_t startMs, FileUtil::FileService* files) : phone_(startMs, kBootNs, *this, files) {
    Device::Install(&phone_);
}

TestPhone::~TestPhone() {
    phone_.DropPending();
    StandbyServiceImpl::Destroy();
    Device::Install(nullptr);
}

void TestPhone::Change(const std::function<void(Simulated::FactsChange&)>& describe) {
    Simulated::FactsChange change;
    describe(change);
    phone_.Apply(change);
}

void TestPhone::WantLogs(LogLevel least) {
    leastLog_ = least;
    Device::Install(&phone_);
}

void TestPhone::Fail(const std::string& operation, int32_t code) {
    Change([&](auto& change) { change.faults[operation] = code; });
}

void TestPhone::Heal(const std::string& operation) {
    Change([&](auto& change) { change.faults[operation] = std::nullopt; });
}

void TestPhone::Run(int64_t ms) {
    phone_.Clock().RunThrough(Now() + ms);
}

StandbyServiceImpl& TestPhone::StartService(DevStandbyMgr::StandbyConfig config) {
    return *StandbyServiceImpl::Create(std::move(config));
}

void TestPhone::OnLog(const LogLine& line) {
    logs_.push_back(std::string(Replay::LevelName(line.level)) + " " + std::string(line.text));
    if (onLine) {
        onLine(line);
    }
}

void TestPhone::OnCall(std::string_view operation, const nlohmann::ordered_json& arguments,
                       const nlohmann::ordered_json& result) {
    calls_.push_back(std::string(operation.substr(operation.find('.') + 1)) + " " + arguments.dump() + " -> " +
                     result.dump());
}

}  // namespace TARN::Tests
