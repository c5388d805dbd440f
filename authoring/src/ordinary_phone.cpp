#include "ordinary_phone.h"

namespace TARN::Authoring {

namespace {

constexpr char kHost[] = R"({
  "params": {"recover_netlimit_time": 5},
  "persist_allow": {"FREEZE": {"1": ["location_sa", "media_service"], "2": ["location_sa", "media_service", "netmanager"]}},
  "res_ctrl": {
    "TIMER_ADJUST": [{"allow": true, "names": ["com.tarn.clock"]}],
    "SLEEP_CLEAN": [{"allow": false, "names": ["com.tarn.contacts"]}],
    "POWER_SAVE_CLEAN": [{"allow": false, "names": ["com.tarn.contacts"]}]}})";

constexpr char kDevice[] = R"({
  "parameters": {"const.global.locale": "zh-Hans-CN"},
  "light": 40.0, "proximity": 5.0,
  "allow_list": {"1": ["com.tarn.clock"]},
  "restrict_set": {"2": ["location_sa", "media_service"]},
  "processes": [
    {"pid": 424, "uid": 1002, "name": "bluetooth_service", "native": true, "system": true},
    {"pid": 473, "uid": 1009, "name": "location_sa", "native": true, "system": true},
    {"pid": 480, "uid": 1010, "name": "media_service", "native": true, "system": true},
    {"pid": 487, "uid": 1011, "name": "netmanager", "native": true, "system": true},
    {"pid": 2100, "uid": 20010000, "name": "com.tarn.systemui", "bundles": ["com.tarn.systemui"], "system": true},
    {"pid": 2126, "uid": 20010002, "name": "com.tarn.clock", "bundles": ["com.tarn.clock"], "system": true},
    {"pid": 2139, "uid": 20010003, "name": "com.tarn.contacts", "bundles": ["com.tarn.contacts"], "system": true},
    {"pid": 2152, "uid": 20010004, "name": "com.example.messenger", "bundles": ["com.example.messenger"],
     "foreground": true},
    {"pid": 2165, "uid": 20010005, "name": "com.example.mail", "bundles": ["com.example.mail"]},
    {"pid": 2191, "uid": 20010007, "name": "com.example.music", "bundles": ["com.example.music"]},
    {"pid": 2204, "uid": 20010008, "name": "com.example.maps", "bundles": ["com.example.maps"]}]})";

}  // namespace

Json OrdinaryHost() {
    return Json::parse(kHost);
}

Json OrdinaryDevice() {
    Json device = Json::parse(kDevice);
    device["airplane"] = false;
    device["user_setup_complete"] = true;
    return device;
}

std::string OrdinaryPhone(const Replay::TimeZone& zone, int64_t nowMs) {
    const std::string evening = Replay::TimeZone::Format(nowMs, "%FT21:00:00");
    Json device = OrdinaryDevice();
    device["movement"] = {{"value", 2}, {"at", Replay::TimeZone::ParseLocal(evening)}};
    device["alarm"] = "07:00";
    return Json{
        {"trace", 1}, {"timezone", zone.Name()}, {"start", evening}, {"host", OrdinaryHost()}, {"device", device}}
        .dump();
}

}  // namespace TARN::Authoring
