#include "app_answers.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "causes.h"
#include "json_fields.h"
#include "nearest_name.h"
#include "phrases.h"

namespace TARN::Story {

namespace {

std::optional<int32_t> NumberOf(const std::string& text) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

bool Fits(const App& app, const std::string& name, std::optional<int32_t> number) {
    return app.name == name || std::find(app.bundles.begin(), app.bundles.end(), name) != app.bundles.end() ||
           (number && *number >= 0 && (app.uid == *number || app.pid == *number));
}

std::string Nearest(const Night& night, const std::string& name) {
    std::set<std::string_view> names;
    for (const App& app : night.apps) {
        names.insert(app.name);
        names.insert(app.bundles.begin(), app.bundles.end());
    }
    return std::string(DevStandbyMgr::NearestName(std::vector(names.begin(), names.end()), name));
}

[[noreturn]] void RefuseName(const Night& night, const std::string& name) {
    constexpr size_t kLongest = 80;
    const std::string cut = DevStandbyMgr::Quote(name.substr(0, kLongest));
    if (night.apps.empty()) {
        DevStandbyMgr::Refuse("", cut + " is not known, for the trace names no process", "a trace with processes");
    }
    const std::string unknown = "no process of the trace is known as " + cut;
    if (const std::string nearest = Nearest(night, name); !nearest.empty()) {
        throw DevStandbyMgr::InputError(unknown + "; perhaps " + Tame(nearest));
    }
    DevStandbyMgr::Refuse("", unknown,
                          "a process's name, a bundle, a uid or a pid, such as " + Tame(night.apps.front().name));
}

/// The answer that an event of an application belongs to; made if there is none. What one is exempt from is each a
/// thing of its own.
AspectAnswer& Place(AppAnswer& answer, const AppEvent& event) {
    const auto found = std::find_if(answer.aspects.begin(), answer.aspects.end(), [&event](const AspectAnswer& aspect) {
        return aspect.aspect == event.aspect && (event.aspect != Aspect::EXEMPT || aspect.reason == event.reason);
    });
    if (found != answer.aspects.end()) {
        return *found;
    }
    AspectAnswer& added = answer.aspects.emplace_back();
    added.aspect = event.aspect;
    return added;
}

/// What holds of a process while it lives, and not of one that has ended or started anew.
bool EndsWithALife(Aspect aspect) {
    return aspect == Aspect::FROZEN || aspect == Aspect::LOCKS;
}

/// A try that did not work leaves a process frozen, or its locks proxied, as it was.
bool IsFailedTry(const AppEvent& event) {
    return EndsWithALife(event.aspect) && event.value.starts_with("could not ");
}

const std::string& ReasonOf(const AspectAnswer& aspect) {
    return aspect.reasonSince ? aspect.reasonNow : aspect.reason;
}

AppAnswer AnswerOf(const Night& night, int64_t t, uint32_t place) {
    AppAnswer answer;
    answer.app = night.apps[place];
    const Interval* firewall = night.At(LaneId::FIREWALL).At(t);
    answer.isFirewallOn = firewall != nullptr && firewall->value == "on";
    for (const AppEvent& event : night.appEvents) {
        if (event.t > t) {
            break;
        }
        if (event.app != place) {
            continue;
        }
        if (event.aspect == Aspect::RUNNING) {
            std::erase_if(answer.aspects, [](const AspectAnswer& one) { return EndsWithALife(one.aspect); });
        }
        AspectAnswer& aspect = Place(answer, event);
        if (IsFailedTry(event)) {
            aspect.failure = Because(event.value, event.reason);
            aspect.failedAt = event.t;
            continue;
        }
        aspect.failure.clear();
        aspect.failedAt.reset();
        const bool isNews =
            aspect.value != event.value || event.aspect == Aspect::CLEAN;  // each clean is one of its own
        const bool isOfOneTime = aspect.since.value_or(night.start) == event.t;
        const bool isToldByReason = event.aspect == Aspect::FIREWALL || event.aspect == Aspect::LOCKS;
        if (isNews || (isOfOneTime && isToldByReason && !event.reason.empty())) {
            aspect.since = event.t > night.start ? std::optional(event.t) : std::nullopt;
            aspect.value = event.value;
            aspect.reason = event.reason;
            aspect.change = WithCauses(night, event.event);
            aspect.reasonNow.clear();
            aspect.reasonSince.reset();
        } else if (isToldByReason && !event.reason.empty() && event.reason != ReasonOf(aspect)) {
            aspect.reasonNow = event.reason;
            aspect.reasonSince = event.t;
        }
    }
    std::stable_sort(answer.aspects.begin(), answer.aspects.end(),
                     [](const AspectAnswer& a, const AspectAnswer& b) { return a.aspect < b.aspect; });
    return answer;
}

}  // namespace

std::vector<AppAnswer> AskForApps(const Night& night, int64_t t, const std::string& name) {
    const std::optional<int32_t> number = NumberOf(name);
    std::vector<AppAnswer> answers;
    for (uint32_t place = 0; place < night.apps.size(); ++place) {
        if (Fits(night.apps[place], name, number)) {
            answers.push_back(AnswerOf(night, t, place));
        }
    }
    // what is known of a name alone says less than a process of that name
    const auto isProcess = [](const AppAnswer& answer) { return !answer.app.isNameOnly; };
    if (std::any_of(answers.begin(), answers.end(), isProcess)) {
        std::erase_if(answers, [&](const AppAnswer& answer) { return !isProcess(answer); });
    }
    if (answers.empty()) {
        RefuseName(night, name);
    }
    return answers;
}

std::vector<std::string> NamesOf(const Night& night, uint32_t event, Aspect aspect, std::string_view value) {
    std::vector<std::string> names;
    for (const AppEvent& told : night.appEvents) {
        if (told.event == event && told.aspect == aspect && told.value == value) {
            names.push_back(night.apps[told.app].name);
        }
    }
    return names;
}

std::vector<std::string> NamesWith(const Night& night, int64_t t, Aspect aspect, std::string_view value) {
    std::vector<bool> is(night.apps.size());
    std::vector<bool> isGone(night.apps.size());
    for (const AppEvent& event : night.appEvents) {
        if (event.t > t) {
            break;
        }
        if (event.aspect == aspect && !IsFailedTry(event)) {
            is[event.app] = event.value == value;
        } else if (event.aspect == Aspect::RUNNING) {
            isGone[event.app] = event.value != "running";
            is[event.app] = is[event.app] && (isGone[event.app] || !EndsWithALife(aspect));
        }
    }
    std::set<std::string> names;
    for (size_t i = 0; i < is.size(); ++i) {
        if (is[i] && !isGone[i]) {
            names.insert(night.apps[i].name);
        }
    }
    return {names.begin(), names.end()};
}

}  // namespace TARN::Story
