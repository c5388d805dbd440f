#include "time_zone.h"
#include "why.h"

namespace TARN::Story {

namespace {

using Json = nlohmann::ordered_json;

template <class T>
Json OrNull(const std::optional<T>& value) {
    return value ? Json(*value) : Json();
}

Json Of(const Event& event) {
    Json values = Json::object();
    for (const Value& value : event.values) {
        values[value.name] = value.text;
    }
    return {{"t", event.t},       {"subject", NameOf(event.subject)}, {"outcome", NameOf(event.outcome)},
            {"text", event.text}, {"reason", event.reason},           {"values", std::move(values)}};
}

Json Of(const std::optional<Told>& told) {
    if (!told) {
        return nullptr;
    }
    Json json = Of(told->event);
    Json causes = Json::array();
    for (const Event& cause : told->causes) {
        causes.push_back(Of(cause));
    }
    json["causes"] = std::move(causes);
    return json;
}

Json Of(const SubjectAnswer& answer) {
    return {{"state", answer.state},       {"number", answer.number},       {"since", OrNull(answer.since)},
            {"change", Of(answer.change)}, {"refusal", Of(answer.refusal)}, {"next", answer.next}};
}

Json Of(const AppAnswer& answer) {
    Json json = {{"name", answer.app.name},
                 {"pid", answer.app.pid},
                 {"uid", answer.app.uid},
                 {"bundles", answer.app.bundles},
                 {"native", answer.app.isNative}};
    for (const AspectAnswer& aspect : answer.aspects) {
        json[std::string(NameOf(aspect.aspect))] = {{"value", aspect.value},
                                                    {"since", OrNull(aspect.since)},
                                                    {"reason", aspect.reason},
                                                    {"change", Of(aspect.change)}};
    }
    return json;
}

}  // namespace

Json ToJson(const WhyAnswer& answer) {
    Json json = {{"t", answer.t}, {"local", Replay::TimeZone::Format(answer.t, "%FT%T")}};
    for (const SubjectAnswer& subject : answer.subjects) {
        json[std::string(WordOf(subject.about))] = Of(subject);
    }
    for (const AppAnswer& app : answer.apps) {
        json["apps"].push_back(Of(app));
    }
    return json;
}

}  // namespace TARN::Story
