#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "night_script.h"

namespace TARN::Tests {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* kSource = "sleep_data_collecter";

Night& DumpTest(Night& night, const std::string& words) {
    return night.Dump(R"(["DUMP_SIMULATE_SENSOR", "DUMP_STRATGY_DETAIL", "-ST", )" + words + "]");
}

/// Takes one snapshot, which ends a second later.
Night& Collect(Night& night) {
    return DumpTest(night, R"("--CollectSleepData", "predict")");
}

Night& Unlock(Night& night) {
    return night.System("COMMON_EVENT_SCREEN_UNLOCKED");
}

/// A phone with the day check that takes no snapshots for prediction.
Night Day(const std::string& start) {
    Night night("UTC", start);
    night.Host("standby_mode", "2").Device("proximity", "5").Device("light", "0");
    DumpTest(night, R"("--SetMode", "1")");
    return night;
}

/// When day snapshots came to an end.
Record::Texts Checks(const Record& record) {
    Record::Texts texts;
    for (const std::string& line : record.Timed().LogsOf(kSource)) {
        if (line.find("calculation proximity error state") != std::string::npos) {
            texts.push_back(line.substr(0, line.find(' ')));
        }
    }
    return texts;
}

TEST(ProximityCheck, TheDayCheckComesAfterAnUnlockWhenTheScreenWasDarkLongEnough) {
    for (const std::string times : {"10:00:00 10:15:01", "10:00:00.001 10:15:01.001", "07:40:00 08:00:11",
                                    "07:40:01 08:00:02", "20:44:50 20:59:51", "20:44:59 21:00:00"}) {
        Night night = Day("2026-03-02T07:00:00");
        Unlock(night).AdvanceTo(times.substr(0, times.find(' '))).ScreenOff();
        EXPECT_THAT(Checks(night.PlayUntil("23:00")), Are({times.substr(times.find(' ') + 1)}));
    }
    const auto isChecked = [](Night& night) { return !Checks(night.PlayUntil("20:59")).empty(); };
    Night late = Day("2026-03-02T07:00:00");
    EXPECT_THAT(Checks(Unlock(late).AdvanceTo("20:45:00").ScreenOff().PlayUntil("23:00")), IsEmpty());
    Night locked = Day("2026-03-02T09:00:00");
    EXPECT_FALSE(isChecked(locked.ScreenOff()));
    Night lit = Day("2026-03-02T09:00:00");
    EXPECT_FALSE(isChecked(Unlock(lit).ScreenOff().AdvanceTo("09:14:59").ScreenOn()));
    for (const char* mode : {"0", "1", "2", "3"}) {
        Night night = Day("2026-03-02T09:00:00");
        EXPECT_EQ(isChecked(Unlock(night).ScreenOff().Host("standby_mode", mode)), *mode == '2') << mode;
    }
}

TEST(ProximityCheck, TheDayCheckKeepsAnHourFromTheSnapshotBefore) {
    for (const auto& [off, check] : {std::pair{"10:30:01", "11:00:02"}, {"10:30:00.999", "11:00:11.999"}}) {
        Night night = Day("2026-03-02T09:00:00");
        Collect(night.AdvanceTo("10:00"));
        Unlock(night.AdvanceMs(1001)).AdvanceTo(off).ScreenOff();
        EXPECT_THAT(Checks(night.PlayUntil("20:00")), Are({check})) << "once, for want of another unlock";
    }
    Night night = Day("2026-03-02T09:00:00");
    Unlock(Collect(night.AdvanceTo("10:00")).AdvanceMs(1000)).ScreenOff();
    EXPECT_THAT(Checks(night.PlayUntil("20:00")), IsEmpty()) << "an unlock of the snapshot's own millisecond";
}

/// Day checks 61 minutes apart, 'n' in the light and 'e' in the dark, from 09:15:01 on; ' ' is the night between.
Night& Samples(Night& night, const std::string& samples) {
    night.AdvanceTo("09:00");
    for (const char sample : samples) {
        if (sample == ' ') {
            night.AdvanceTo("09:00");
            continue;
        }
        Unlock(night.ScreenOn().Set(sample == 'n' ? R"({"light": 0.5})" : R"({"light": 0.49})"));
        night.ScreenOff().AdvanceMs(960'000).ScreenOn().AdvanceMs(2'700'000);
    }
    return night;
}

/// What the votes came to: '<' and the flag as read at the start, '1', '0' or '-' a vote, '=' and the new flag.
std::string Votes(const Record& record) {
    std::string text;
    for (const std::string& line : record.LogsOf(kSource)) {
        const std::string value = line.substr(line.rfind(' ') + 1);
        if (line.starts_with("info get is_proximity_error is ")) {
            text += "<" + value;
        } else if (line.starts_with("info update proximity error state to ")) {
            text += "=" + value;
        } else if (line.starts_with("info calculation proximity error state is ")) {
            text += value == "-1.000000" ? '-' : value == "1.000000" ? '1' : value == "0.000000" ? '0' : '?';
        }
    }
    return text;
}

std::string Votes(const std::string& samples) {
    Night night = Day("2026-03-02T08:30:00");
    return Votes(Samples(night, samples).Restart().Play());
}

TEST(ProximityCheck, TheProximitySensorIsJudgedOnEightErrorsAndAClearMajority) {
    // the first sample is no error, for nothing is known of the proximity before it
    EXPECT_EQ(Votes("eeeeeeee"), "<0--------<0");
    EXPECT_EQ(Votes("eeeeeeeee"), "<0--------1=1<1");
    EXPECT_EQ(Votes("nnnnnnnneeee eeeennnnn"), "<0---------------1=1----0=0<0") << "8 of 16, of 20, of 21";
    EXPECT_EQ(Votes("nnnnnnnnneee eeeeeennnnn"), "<0-----------------1=1----0=0<0") << "8 of 17; 9 of 18, of 22, of 23";
}

TEST(ProximityCheck, AnUnreliableSensorIsAHolsterFromThenOn) {
    Night night = Day("2026-03-02T08:30:00");
    Collect(Samples(night, "eeeeeeeee").Restart().Set(R"({"proximity": null})"));
    Collect(night.AdvanceTo("22:00").Crash().Set(R"({"proximity": 5})"));
    const Record record = night.PlayUntil("23:00");
    // 0.0001 as a float
    EXPECT_THAT(record.Deliveries({100}), ::testing::Each(HasSubstr(R"("mProximity":9.999999747378752e-05)")));
    EXPECT_THAT(record.Deliveries({100}), ::testing::SizeIs(2));
    EXPECT_THAT(record.At("22:00").LogsOf("phone_sleep_data_collecter"),
                Are({"info the device uses a wallet-style holster"}));
}

TEST(ProximityCheck, ACoveredSensorInTheDarkIsNoError) {
    for (const auto& [proximity, votes] : {std::pair{"0.01", "<0---------"}, {"0.011", "<0--------1=1"}}) {
        Night night = Day("2026-03-02T08:30:00");
        EXPECT_EQ(Votes(Samples(night.Device("proximity", proximity), "eeeeeeeee").Play()), votes) << proximity;
    }
}

TEST(ProximityCheck, SamplesCountForFortyEightHours) {
    constexpr int64_t kDayMs = 86'400'000;
    const auto votes = [](const char* samples, const char* again, int64_t waitMs) {
        Night night = Day("2026-03-02T08:30:00");
        Unlock(Samples(night, samples).AdvanceTo(again).AdvanceMs(waitMs).ScreenOn().Set(R"({"light": 0})"));
        return Votes(night.ScreenOff().PlayUntil("10:30"));
    };
    EXPECT_EQ(votes("eeeeeeee", "10:01", kDayMs), "<0--------1=1");
    EXPECT_EQ(votes("eeeeeeee", "10:01", kDayMs + 1), "<0---------");
    EXPECT_EQ(votes("nnnnnnnnnn eeeeeeee", "09:00", 0), "<0-------------------") << "9 of 19";
    EXPECT_EQ(votes("nnnnnnnnnn eeeeeeee", "09:00", 1), "<0------------------1=1") << "9 of 18";
}

TEST(SleepDump, TheDebugSwitchIsReadWhenTheServiceStarts) {
    Night night("UTC", "2026-03-02T14:00:00");
    night.Set(R"({"parameters": {"persist.sys.standby_ext_debug_on": "true"}})").ScreenOff();
    const char* detail = R"(["DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"])";
    const Record record = night.Dump(detail)
                              .AdvanceTo("14:01")
                              .ScreenOn()
                              .Restart()
                              .Dump(detail)
                              .AdvanceTo("14:02")
                              .ScreenOff()
                              .PlayUntil("14:02:40");
    EXPECT_THAT(record.Timed().Deliveries({100}),
                Are({StartsWith("14:02:01 "), StartsWith("14:02:17 "), StartsWith("14:02:33 ")}))
        << "steps of 4 s, 15 s at the least";
    const std::string title = "\n\n=================SleepDetectionStrategy=========================\n";
    EXPECT_THAT(record.Dumps(), Are({HasSubstr(title + "DEBUG_ON: 0 \nuserSleepState"),
                                     HasSubstr(title + "DEBUG_ON: 1 \nuserSleepState")}));
}

}  // namespace
}  // namespace TARN::Tests
