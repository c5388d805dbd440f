#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bluetooth_host.h"
#include "core_service_client.h"
#include "file_service.h"
#include "ledger_device.h"
#include "log_service.h"
#include "radio_ledger.h"
#include "simulated_phone.h"
#include "wifi_device.h"

namespace TARN::Tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr char kPath[] = "/data/service/el1/public/device_standby/radio_ledger";
constexpr char kBluetoothHeld[] = R"({"bluetooth":{"by":"a timer","since":1000}})";
constexpr auto kNothing = RadioLedger::WantedOff::NOTHING;

/// Files that a test may have refuse to be written.
class Paper : public FileUtil::FileService {
public:
    [[nodiscard]] bool Load(const std::string& path, std::string& content) override {
        const bool isThere = path == kPath && text.has_value();
        content = isThere ? *text : content;
        return isThere;
    }
    [[nodiscard]] bool Replace(const std::string& path, const std::string& content) override {
        EXPECT_EQ(path, kPath);
        text = isFull ? text : content;
        return !isFull;
    }
    bool Remove(const std::string& /*path*/) override { return false; }
    [[nodiscard]] bool Exists(const std::string& path) override { return path == kPath && (text || isUnreadable); }

    std::optional<std::string> text;
    bool isFull = false;
    bool isUnreadable = false;
};

/// A phone whose Bluetooth does what it is told only when it has settled, and tells what it does. All else is
/// simulated.
class SlowPhone : private Simulated::PhoneObserver, private Bluetooth::BluetoothHost, public Simulated::SimulatedPhone {
public:
    explicit SlowPhone(Paper& paper) : SimulatedPhone(1000, 0, *this, &paper), paper_(paper) { Device::Install(this); }
    ~SlowPhone() override { Device::Install(nullptr); }

    Bluetooth::BluetoothHost& Bluetooth() override { return *this; }
    void ObserveRadios(RadioObserver observer) override {
        observer_ = observer;
        SimulatedPhone::ObserveRadios(std::move(observer));
    }

    /// Bluetooth has come as far as it was told, or as a hand has switched it.
    void Settle() { SwitchByHand(told_); }
    void SwitchByHand(bool isOn) {
        isOn_ = told_ = isOn;
        observer_();
    }
    /// What it said before it was told anything comes in late.
    void TellLate() { observer_(); }

    int32_t refusal = 0;
    bool isUnderWay = false;
    std::vector<std::string> done;
    std::vector<std::string> log;

private:
    int32_t GetBtState() override { return isUnderWay ? 0 : isOn_ ? 1 : 3; }
    int32_t GetBtConnectionState() override { return 3; }
    int32_t DisableBt() override { return Tell(false); }
    int32_t EnableBle() override { return Tell(true); }
    int32_t Tell(bool isOn) {
        done.push_back((isOn ? "on, on paper " : "off, on paper ") + paper_.text.value_or("nothing"));
        told_ = refusal == 0 ? isOn : told_;
        return refusal;
    }

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    void OnLog(const LogLine& line) override { log.emplace_back(line.text); }
    void OnCall(std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& /*result*/) override {
        done.push_back(std::string(operation) + " " + arguments.dump());
    }

    Paper& paper_;
    RadioObserver observer_;
    bool isOn_ = true;
    bool told_ = true;
};

class RadioBook : public ::testing::Test {
protected:
    [[nodiscard]] bool Holds() { return book.HoldsForgotten(kNothing); }
    [[nodiscard]] std::shared_ptr<Wifi::WifiDevice> Wifi() { return device.Wifi(1120, 0); }

    Paper paper;
    SlowPhone phone{paper};
    Ledger::LedgerDevice device{phone, phone};
    RadioLedger& book = *device.Radios();
};

TEST_F(RadioBook, ARadioIsOnPaperBeforeItGoesOffAndUntilItIsOn) {
    EXPECT_EQ(device.Bluetooth().DisableBt(), 0);
    phone.TellLate();
    EXPECT_TRUE(Holds()) << "that it was on before is no news";
    phone.Settle();
    EXPECT_EQ(device.Bluetooth().DisableBt(), 0) << "off already, by us";
    EXPECT_EQ(device.Bluetooth().EnableBle(), 0);
    phone.TellLate();
    EXPECT_TRUE(Holds()) << "told, and not on yet";
    phone.Settle();
    EXPECT_FALSE(Holds());
    EXPECT_EQ(paper.text, "{}");
    const std::string held = std::string("on paper ") + kBluetoothHeld;
    EXPECT_THAT(phone.done, ElementsAre("off, " + held, "off, " + held, "on, " + held));
}

TEST_F(RadioBook, ARadioThatSomebodyElseSwitchedIsTheirs) {
    ASSERT_EQ(device.Bluetooth().DisableBt(), 0);
    phone.Settle();
    phone.SwitchByHand(true);
    phone.SwitchByHand(false);
    Simulated::FactsChange change;
    change.isWifiEnabled = false;
    change.slotsOff = {1};
    phone.Apply(change);
    phone.done.clear();

    EXPECT_EQ(Wifi()->Disable(), 0);
    EXPECT_EQ(device.Modem().SetRadioState(1, false, nullptr), 0);
    EXPECT_FALSE(Holds());
    phone.done.clear();
    EXPECT_EQ(device.Bluetooth().EnableBle(), 0);
    EXPECT_EQ(Wifi()->Enable(), 0);
    std::optional<int32_t> heard;
    EXPECT_EQ(device.Modem().SetRadioState(1, true, [&heard](int32_t result) { heard = result; }), 0);
    EXPECT_EQ(heard, 0);
    EXPECT_THAT(phone.done, IsEmpty());
    EXPECT_THAT(phone.log, ElementsAre(StartsWith("left off: bluetooth"), StartsWith("left off: wifi"),
                                       StartsWith("left off: modem 1")));
}

TEST_F(RadioBook, WhatCannotBeEnteredOrIsRefusedIsOnAndNotHeld) {
    phone.refusal = 7;
    EXPECT_EQ(device.Bluetooth().DisableBt(), 7);
    EXPECT_EQ(paper.text, "{}");
    paper.isFull = true;
    phone.done.clear();
    EXPECT_NE(device.Bluetooth().DisableBt(), 0);
    EXPECT_THAT(phone.done, IsEmpty());
    EXPECT_THAT(phone.log, ElementsAre("the ledger could not be written", StartsWith("not switched off: bluetooth")));
    EXPECT_FALSE(Holds());
}

TEST_F(RadioBook, OnlyALedgerIsRead) {
    for (const char* const text :
         {"", "{", "[]", "7", R"({"bluetooth":7})", R"({"bluetooth":{"since":1}})", R"({"bluetooth":{"by":"me"}})",
          R"({"bluetooth":{"since":"1","by":"me"}})", R"({"wifi":{"since":1,"by":"me"},"oven":{"since":1,"by":"me"}})",
          R"({"modem -1":{"since":1,"by":"me"}})", R"({"modem 01":{"since":1,"by":"me"}})", "\xff"}) {
        paper.text = text;
        device.DropPending();
        EXPECT_FALSE(Holds()) << text;
        EXPECT_THAT(std::exchange(phone.log, {}), ElementsAre(StartsWith("the ledger cannot be read"))) << text;
    }
    paper.text.reset();
    device.DropPending();
    EXPECT_FALSE(Holds());
    EXPECT_THAT(phone.log, IsEmpty()) << "there need not be one";
    paper.isUnreadable = true;
    device.DropPending();
    EXPECT_FALSE(Holds());
    EXPECT_THAT(phone.log, ElementsAre(StartsWith("the ledger cannot be read")));
}

TEST_F(RadioBook, WhatALedgerOfBeforeHoldsIsSwitchedOnUnlessItIsOnOrWanted) {
    paper.text =
        R"({"bluetooth":{"since":12,"by":"me"},"modem 1":{"since":34,"by":"you"},"wifi":{"since":5,"by":"me"}})";
    phone.SwitchByHand(false);
    Simulated::FactsChange change;
    change.slotsOff = {0, 1};
    phone.Apply(change);
    book.SwitchOnForgotten(RadioLedger::WantedOff::BLUETOOTH);
    EXPECT_THAT(phone.done, ElementsAre(R"(CoreServiceClient.SetRadioState {"slot":1,"on":true})"));
    EXPECT_THAT(phone.log, ElementsAre("forgotten: modem 1 is off since 34, switched off by you"));
    EXPECT_EQ(paper.text, R"({"bluetooth":{"by":"me","since":12}})") << "Wi-Fi is on";
    EXPECT_FALSE(book.HoldsForgotten(RadioLedger::WantedOff::BLUETOOTH));
    EXPECT_TRUE(Holds());
}

TEST_F(RadioBook, WhatWasToldToGoOnIsGivenTimeAndThenToldAgain) {
    paper.text = kBluetoothHeld;
    phone.SwitchByHand(false);
    const auto tells = [this] {
        phone.done.clear();
        book.SwitchOnForgotten(kNothing);
        return phone.done.size();
    };
    phone.refusal = 7;
    EXPECT_EQ(tells(), 1U);
    EXPECT_EQ(phone.log.back(), "not switched on: bluetooth, err code is 7");
    phone.refusal = 0;
    EXPECT_EQ(tells(), 1U) << "what was refused is not under way";
    EXPECT_EQ(tells(), 0U);
    EXPECT_EQ(tells(), 1U) << "it has not come";
    phone.isUnderWay = true;
    EXPECT_EQ(tells(), 0U);
    EXPECT_EQ(tells(), 0U) << "it is coming";
    phone.isUnderWay = false;
    phone.Settle();
    EXPECT_FALSE(Holds());
}

TEST_F(RadioBook, KnowsForWhoseWorkARadioWentOff) {
    book.NoteWork("STATE_TRANSIT");
    std::thread([this] { EXPECT_EQ(Wifi()->Disable(), 0); }).join();
    EXPECT_EQ(device.Bluetooth().DisableBt(), 0);
    book.NoteWork({});
    EXPECT_EQ(device.Modem().SetRadioState(0, false, nullptr), 0);
    EXPECT_EQ(paper.text, R"({"bluetooth":{"by":"STATE_TRANSIT","since":1000},)"
                          R"("modem 0":{"by":"a timer","since":1000},"wifi":{"by":"a timer","since":1000}})");
}

}  // namespace
}  // namespace TARN::Tests
