#include "time_zone.h"
#include "why.h"

namespace TARN::Story {

namespace {

using Json = nlohmann::ordered_json;

Json Of(const Event& event) {
    Json values = Json::object();
    for (const Value& value : event.values) {
        values[value.name] = value.text;
    }
    return {{"t", event.t},       {"subject", NameOf(event.subject)}, {"outcome", NameOf(event.outcome)},
            {"text", event.text}, {"reason", event.reason},           {"values", std::move(values)}};
}

Json Of(const Told& told) {
    Json json = Of(told.event);
    Json causes = Json::array();
    for (const Event& cause : told.causes) {
        causes.push_back(Of(cause));
    }
    json["causes"] = std::move(causes);
    return json;
}

Json OrNull(const std::optional<Told>& told) {
    return told ? Of(*told) : Json();
}

Json OrNull(const std::optional<int64_t>& time) {
    return time ? Json(*time) : Json();
}

Json Of(const SubjectAnswer& answer) {
    Json refusals = Json::array();
    for (const Refusal& refusal : answer.refusals) {
        refusals.push_back(Of(refusal.told));
        refusals.back().update({{"first", refusal.first}, {"times", refusal.times}});
    }
    Json json = {{"state", answer.state}, {"number", answer.number}};
    if (answer.phase) {
        json["phase"] = {
            {"name", answer.phase->name}, {"number", answer.phase->number}, {"since", answer.phase->since}};
    }
    if (answer.about == About::SLEEP) {
        json["last_look"] = OrNull(answer.lastLook);
    }
    json.update({{"since", OrNull(answer.since)},
                 {"change", OrNull(answer.change)},
                 {"adjustment", OrNull(answer.adjustment)},
                 {"refusals", std::move(refusals)},
                 {"next", answer.next},
                 {"lacking", answer.lacking},
                 {"who", answer.who}});
    return json;
}

Json Of(const AppAnswer& answer) {
    Json json = {{"name", answer.app.name},
                 {"pid", answer.app.pid},
                 {"uid", answer.app.uid},
                 {"bundles", answer.app.bundles},
                 {"native", answer.app.isNative}};
    Json aspects = Json::array();
    for (const AspectAnswer& aspect : answer.aspects) {
        aspects.push_back({{"aspect", NameOf(aspect.aspect)},
                           {"value", aspect.value},
                           {"since", OrNull(aspect.since)},
                           {"reason", aspect.reason},
                           {"change", OrNull(aspect.change)},
                           {"reason_now", aspect.reasonNow},
                           {"reason_since", OrNull(aspect.reasonSince)},
                           {"failure", aspect.failure},
                           {"failed_at", OrNull(aspect.failedAt)}});
    }
    json["aspects"] = std::move(aspects);
    json["firewall_on"] = answer.isFirewallOn;
    return json;
}

}  // namespace

Json ToJson(const WhyAnswer& answer) {
    Json json = {{"t", answer.t}, {"local", Replay::TimeZone::Format(answer.t, "%FT%T")}};
    for (const SubjectAnswer& subject : answer.subjects) {
        json["subjects"][std::string(WordOf(subject.about))] = Of(subject);
    }
    for (const AppAnswer& app : answer.apps) {
        json["apps"].push_back(Of(app));
    }
    return json;
}

}  // namespace TARN::Story
