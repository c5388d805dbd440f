#include "person.h"

#include <algorithm>

#include "dice.h"

namespace TARN::Authoring {

namespace {

constexpr std::array kNatives = {"accessibility", "audio_server",  "camera_service", "distributed_sched",
                                 "edm_service",   "hiview",        "inputmethod",    "sensors",
                                 "wifi_manager",  "work_scheduler"};
constexpr std::array kApps = {"com.example.news",   "com.example.weather", "com.example.chess",
                              "com.example.bank",   "com.example.photos",  "com.example.video",
                              "com.example.social", "com.example.bus",     "com.example.fitness",
                              "com.example.notes",  "com.example.shop",    "com.example.podcast"};

/// When people of a kind wake and how long they sleep, in minutes, with the deviation between them.
struct Rhythm {
    int64_t workdayWake;
    int64_t workdayDeviation;
    int64_t freeWake;
    int64_t freeDeviation;
    int64_t sleep;
    int64_t sleepDeviation;
    int alarmPercent;
};
constexpr std::array kRhythms = {Rhythm{405, 30, 510, 45, 435, 40, 95}, Rhythm{315, 25, 420, 40, 410, 35, 98},
                                 Rhythm{525, 50, 615, 60, 460, 50, 85}, Rhythm{420, 40, 430, 40, 420, 45, 20},
                                 Rhythm{390, 35, 480, 50, 410, 40, 95}};

/// The alarm is set to five minutes.
int64_t Rounded(int64_t minutes) {
    return (minutes + 2) / 5 * 5;
}

Json MakeDevice(Dice& dice) {
    constexpr int kFirstNativePid = 501;
    constexpr int kFirstAppPid = 2301;
    constexpr int kApart = 13;
    Json device = OrdinaryDevice();
    Json& processes = device["processes"];
    int number = 0;
    for (const char* name : kNatives) {
        ++number;
        if (dice.Chance(70)) {
            processes.push_back({{"pid", kFirstNativePid + 7 * number},
                                 {"uid", 1020 + number},
                                 {"name", name},
                                 {"native", true},
                                 {"system", true}});
        }
    }
    for (const char* name : kApps) {
        ++number;
        if (dice.Chance(50)) {
            processes.push_back({{"pid", kFirstAppPid + kApart * number},
                                 {"uid", 20010020 + number},
                                 {"name", name},
                                 {"bundles", Json::array({name})}});
        }
    }
    if (dice.Chance(40)) {
        device["allow_list"]["1"].push_back("com.example.messenger");
    }
    if (dice.Chance(3)) {
        device["sensors"] = {5};  // light only
        device["proximity"] = nullptr;
    }
    return device;
}

}  // namespace

Person MakePerson(uint64_t seed, uint64_t number) {
    constexpr uint64_t kPeople = 1;
    Dice dice(Dice::Mix(Dice::Mix(seed, kPeople), number));
    Person person;
    person.life = static_cast<Life>(dice.Pick<5>({45, 20, 20, 10, 5}));
    const Rhythm& rhythm = kRhythms.at(static_cast<size_t>(person.life));
    person.workdayWake = Rounded(dice.About(rhythm.workdayWake, rhythm.workdayDeviation));
    person.freeWake = std::max(person.workdayWake, Rounded(dice.About(rhythm.freeWake, rhythm.freeDeviation)));
    person.sleepMinutes = dice.About(rhythm.sleep, rhythm.sleepDeviation);
    person.hasWorkdayAlarm = dice.Chance(rhythm.alarmPercent);
    person.hasFreeAlarm = dice.Chance(15);
    person.snoozes = dice.Chance(35);
    person.charging = static_cast<Charging>(dice.Pick<3>({55, 15, 30}));
    person.place = static_cast<Place>(dice.Pick<3>({75, 17, 8}));
    person.isCovered = dice.Chance(person.place == Place::BED ? 40 : 20);
    person.bedTime = static_cast<BedTime>(dice.Pick<3>({45, 15, 40}));
    person.hearsMusic = dice.Chance(10);
    person.hasHeadset = dice.Chance(30);
    const size_t sleeper = dice.Pick<3>({50, 35, 15});  // never looks, sometimes, often
    person.looksPerTenNights = sleeper == 0 ? 0 : sleeper == 1 ? 3 : dice.Between(8, 25);
    person.messagesPerTenNights = dice.Chance(60) ? 0 : dice.Between(5, 40);
    person.hasAirplaneNights = dice.Chance(6);
    person.hasWifiOffNights = dice.Chance(5);
    person.travels = dice.Chance(45);
    person.hasCurtains = dice.Chance(60);
    person.useEveryMinutes = dice.Between(12, 45);
    person.lampLux = dice.Between(30, 150);
    person.nightLux = dice.Chance(70) ? 0 : dice.Between(1, 2);
    person.device = MakeDevice(dice);
    return person;
}

Json GeneratedHost() {
    Json host = OrdinaryHost();
    Json& freeze = host["persist_allow"]["FREEZE"];
    for (const char* name :
         {"accessibility", "camera_service", "distributed_sched", "edm_service", "inputmethod", "work_scheduler"}) {
        freeze["1"].push_back(name);
        freeze["2"].push_back(name);
    }
    for (const char* name : {"bluetooth_service", "sensors", "wifi_manager"}) {
        freeze["2"].push_back(name);
    }
    return host;
}

}  // namespace TARN::Authoring
