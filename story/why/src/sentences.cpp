#include <algorithm>
#include <array>

#include "moments.h"
#include "phrases.h"
#include "topics.h"
#include "why.h"

namespace TARN::Story {

namespace {

using Sentences = std::vector<std::string>;

constexpr std::string_view kAsked = "asked to go off as";  ///< the name of the value that says for what

void Add(Sentences& sentences, std::string sentence) {
    if (sentence.empty()) {
        return;
    }
    if (sentence[0] >= 'a' && sentence[0] <= 'z') {
        sentence[0] = static_cast<char>(sentence[0] - 'a' + 'A');
    }
    sentences.push_back(std::move(sentence) + ".");
}

std::string Listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

/// A text as part of a sentence that has a colon of its own.
std::string WithoutColons(std::string text) {
    for (size_t at = text.find(": "); at != std::string::npos; at = text.find(": ", at)) {
        text[at] = ',';
    }
    return text;
}

/// "stays on: it is day" as what somebody did or was: "it stayed on: it is day"; nothing for a text that cannot be put
/// so.
std::string Said(std::string_view it, const std::string& text) {
    struct Verb {
        std::string_view now;
        std::string_view then;
    };
    constexpr std::array kDoes = {Verb{"stays ", "stayed "}, Verb{"waits", "waited"}, Verb{"sleeps on", "slept on"}};
    constexpr std::array kIs = {"left ", "not ", "off ", "asleep", "awake"};
    for (const Verb& verb : kDoes) {
        if (text.starts_with(verb.now)) {
            return std::string(it) + " " + std::string(verb.then) + text.substr(verb.now.size());
        }
    }
    if (std::any_of(kIs.begin(), kIs.end(), [&text](const char* start) { return text.starts_with(start); })) {
        return std::string(it) + (it == "they" ? " were " : " was ") + text;
    }
    return {};
}

/// How it stands: "off", "stretched to 600 s"; `isBrief` beside the subject's word, else as the start of a sentence.
std::string StandOf(const SubjectAnswer& answer, bool isBrief) {
    const bool isSo = answer.number > 0;
    const std::string be = isBrief ? "" : answer.number == 1 ? " is" : " are";
    const auto named = [&](const char* name) { return (isBrief ? std::string() : name + std::string(" is ")); };
    switch (answer.about) {
        case About::STATE:
            return named("the state") + answer.state;
        case About::SLEEP:
            return named("the user") + answer.state;
        case About::SCREEN:
            return named("the screen") + answer.state;
        case About::BLUETOOTH:
            return named("Bluetooth") + answer.state;
        case About::WIFI:
            return named("Wi-Fi") + answer.state;
        case About::MODEM:
            return named("the modem") + answer.state +
                   (answer.state == "partly off" ? ", " + Count(answer.number, "SIM slot") + "," : "");
        case About::NETWORK:
            return (isBrief ? "firewall " : "the firewall is ") + answer.state;
        case About::FREEZE:
            return isSo      ? Count(answer.number, "native process") + be + " frozen"
                   : isBrief ? "nothing frozen"
                             : "nothing is frozen";
        case About::LOCKS:
            return isSo ? "running locks of " + Count(answer.number, "process") + (isBrief ? "" : " are") + " proxied"
                        : "all running locks count";
        case About::TIMERS:
            return (isBrief ? "" : "timers are ") +
                   (isSo ? "stretched to " + std::to_string(answer.number) + " s" : answer.state);
        case About::CLEAN:
            break;
    }
    return {};
}

/// The values that decided, without those that the text has told. One that is a sentence of its own stands alone.
void AddFound(Sentences& sentences, const Event& event) {
    std::string found;
    for (const Value& value : event.values) {
        const bool isTold =
            event.text.find(value.text) != std::string::npos || event.reason.find(value.text) != std::string::npos;
        if (value.name == kAsked || isTold) {
            continue;
        }
        if (value.name == "rule" || value.name == "needed") {
            Add(sentences, value.name + ": " + value.text);
            continue;
        }
        const bool isNamed = event.subject != Subject::STATE;  // of a state what was found says what was looked for
        found += (found.empty() ? "found: " : ", ") + (isNamed ? value.name + " " : "") + value.text;
    }
    Add(sentences, found);
}

/// Whether what caused something has been said with it.
bool IsSaid(const std::string& said, const std::string& subject, const Event& cause) {
    constexpr size_t kTelling = 6;  // shorter texts may stand in any other
    return said.find(subject + " " + cause.text) != std::string::npos ||
           (cause.text.size() >= kTelling && said.find(cause.text) != std::string::npos);
}

std::string IdOf(const char* name, int32_t id) {
    return std::string(", ") + (id < 0 ? "no " : "") + name + (id < 0 ? "" : " " + std::to_string(id));
}

class Writer {
public:
    explicit Writer(const WhyAnswer& answer) : moments_(answer), isBrief_(answer.isBrief) {}

    [[nodiscard]] Sentences Of(const SubjectAnswer& answer) const {
        Sentences sentences;
        const Topic& topic = TopicOf(answer.about);
        if (topic.lane) {
            Add(sentences, Stand(answer));
        } else if (answer.change) {
            Add(sentences, Happened(topic, *answer.change));
        } else if (answer.refusals.empty()) {
            Add(sentences, "no clean has run yet");
        }
        if (answer.phase && answer.phase->since != answer.since) {
            Add(sentences, PhaseOf(*answer.phase) + " " + moments_.Since(answer.phase->since));
        }
        // of the looks at one who sleeps, or does not, the last tells what holds
        const bool isLastOnly = answer.about == About::SLEEP && !answer.refusals.empty();
        if (!isBrief_ && answer.change && !isLastOnly) {
            AddFound(sentences, answer.change->event);
        }
        if (!isBrief_ && answer.change) {
            AddCauses(sentences, *answer.change);
        }
        Add(sentences, Who(answer));
        if (!isBrief_ && answer.adjustment) {
            Add(sentences, Happened(topic, *answer.adjustment));
        }
        if (isBrief_) {
            const bool isMoreOfTheSame = answer.about == About::SLEEP && answer.state == "asleep";
            if (!answer.refusals.empty() && !isMoreOfTheSame) {
                Add(sentences, Refused(topic, answer.refusals.back()));
            }
        } else {
            for (const Refusal& refusal : answer.refusals) {
                Add(sentences, Refused(topic, refusal));
                if (!isLastOnly || &refusal == &answer.refusals.back()) {
                    AddFound(sentences, refusal.told.event);
                }
            }
            const bool isUntouched = topic.lane && !answer.since && answer.refusals.empty();
            if (isUntouched && answer.about != About::SLEEP && answer.state != kNotKnown) {
                Add(sentences, Because("nothing has tried to change that yet", answer.lacking));
            } else if (!answer.refusals.empty() || answer.about != About::SLEEP) {
                Add(sentences, answer.lacking);
            }
        }
        Add(sentences, LastLook(answer));
        Add(sentences, answer.next.empty() ? "" : "next: " + answer.next);
        return sentences;
    }

    [[nodiscard]] Sentences Of(const AppAnswer& answer) const {
        Sentences sentences;
        const bool isKilled = std::any_of(answer.aspects.begin(), answer.aspects.end(), [](const AspectAnswer& aspect) {
            return aspect.aspect == Aspect::CLEAN && aspect.value == "killed";
        });
        for (const AspectAnswer& aspect : answer.aspects) {
            // that it was killed is told with its reason by the clean
            if (!(isKilled && aspect.aspect == Aspect::RUNNING && aspect.value == "killed")) {
                std::string text =
                    Because(AspectOf(answer, aspect), aspect.aspect == Aspect::EXEMPT ? "" : aspect.reason);
                if (aspect.reasonSince) {
                    text += "; " + moments_.Since(*aspect.reasonSince) + ": " + aspect.reasonNow;
                }
                Add(sentences, std::move(text));
            }
            if (aspect.failedAt) {
                const std::string it = aspect.aspect == Aspect::LOCKS ? ": running locks " : " it ";
                Add(sentences, moments_.At(*aspect.failedAt) + it + aspect.failure);
            }
        }
        if (answer.app.isNameOnly) {
            Add(sentences, "no process of the trace has been known by it so far");
        } else if (sentences.empty()) {
            Add(sentences, "the record says nothing of it by then");
        }
        return sentences;
    }

private:
    static std::string PhaseOf(const PhaseAnswer& phase) {
        const std::string number = std::to_string(phase.number);
        return "phase " + number + (phase.name == number ? "" : " (" + phase.name + ")");
    }

    /// "off since 23:32: screen off for half an hour at night"
    [[nodiscard]] std::string Stand(const SubjectAnswer& answer) const {
        std::string text = StandOf(answer, isBrief_);
        if (answer.state == kNotKnown) {
            return text;
        }
        if (!answer.since) {
            return text + " since the trace begins";
        }
        if (answer.phase && answer.phase->since == answer.since) {
            text += ", " + PhaseOf(*answer.phase) + ",";
        }
        text += " " + moments_.Since(*answer.since);
        return answer.change ? WithReason(std::move(text), answer) : text;
    }

    /// What the event says of the state it made may go on after the state itself: "asleep; expected up at 07:55".
    static std::string WithReason(std::string text, const SubjectAnswer& answer) {
        const Event& event = answer.change->event;
        if (answer.about == About::SLEEP && event.text.starts_with(answer.state)) {
            return Because(text + event.text.substr(answer.state.size()), event.reason);
        }
        if (!event.reason.empty()) {
            return Because(std::move(text), event.reason);
        }
        if (answer.about == About::LOCKS && event.text.find(": ") != std::string::npos) {
            return Because(std::move(text), WithoutColons(event.text));  // some for one reason, some for another
        }
        const bool isOfSubject = event.subject == TopicOf(answer.about).subject;
        if (!isOfSubject || (event.outcome == Outcome::HAPPENED && event.text != answer.state)) {
            return Because(std::move(text), WithoutColons(event.text));
        }
        return text;
    }

    /// "asked to go off at 01:30 (screen off for half an hour at night), it stayed on: a device is connected"
    [[nodiscard]] std::string Happened(const Topic& topic, const Told& told) const {
        const Event& event = told.event;
        const auto asked = std::find_if(event.values.begin(), event.values.end(),
                                        [](const Value& value) { return value.name == kAsked; });
        const bool isAsked = asked != event.values.end();
        const bool isTrigger = isAsked || event.subject != Subject::SLEEP;  // a verdict's reason is what was found
        const std::string reason = isAsked ? asked->text : isTrigger ? event.reason : "";
        std::string text = isAsked ? "asked to go off " : "";
        text += moments_.At(event.t) + (reason.empty() ? "" : " (" + reason + ")");
        const std::string said = Said(topic.it, event.text);
        text = said.empty() ? text + ": " + WithoutColons(event.text) : text + (isAsked ? ", " : " ") + said;
        return isTrigger ? text : Because(std::move(text), event.reason);
    }

    [[nodiscard]] std::string Refused(const Topic& topic, const Refusal& refusal) const {
        std::string text = Happened(topic, refusal.told);
        if (refusal.times > 1 && !isBrief_) {
            text += "; " + Times(static_cast<int64_t>(refusal.times)) + " " + moments_.Since(refusal.first);
        }
        return text;
    }

    void AddCauses(Sentences& sentences, const Told& told) const {
        std::string known = told.event.text + " " + told.event.reason;
        const char* effect = "caused ";
        for (const Event& cause : told.causes) {
            const std::string name(NameOf(cause.subject));
            const bool isSaid = cause.t == told.event.t && IsSaid(known, name, cause);
            known += " " + name + " " + cause.text + " " + cause.reason;
            if (!isSaid) {
                Add(sentences,
                    effect + moments_.At(cause.t) + " by " + name + ": " + Because(cause.text, cause.reason));
                effect = "that was caused ";
            }
        }
    }

    /// That the user's sleep was not looked at for a while, or ever.
    [[nodiscard]] std::string LastLook(const SubjectAnswer& answer) const {
        constexpr int64_t kAWhileMs = 30L * 60 * 1000;
        if (answer.about != About::SLEEP) {
            return {};
        }
        if (!answer.lastLook) {
            return "the sleep detector has not looked yet";
        }
        return moments_.Ago(*answer.lastLook) > kAWhileMs
                   ? "the sleep detector looked last " + moments_.At(*answer.lastLook)
                   : "";
    }

    /// Whom it concerns.
    [[nodiscard]] std::string Who(const SubjectAnswer& answer) const {
        std::string text;
        if (answer.about == About::NETWORK && answer.state == "on") {
            text = (answer.number == 0 ? "no app" : Count(answer.number, "app")) +
                   (answer.number == 1 || answer.number == 0 ? " reaches" : " reach") + " the network";
        } else if (!isBrief_ && !answer.who.empty()) {
            text = answer.about == About::FREEZE ? "frozen" : answer.about == About::CLEAN ? "killed" : "proxied";
        }
        if (!isBrief_ && !answer.who.empty()) {
            text += ": " + Listed(answer.who);
        }
        return text;
    }

    [[nodiscard]] std::string AspectOf(const AppAnswer& answer, const AspectAnswer& aspect) const {
        if (aspect.value.empty()) {
            return {};
        }
        const std::string since = aspect.since ? " " + moments_.Since(*aspect.since) : " since the trace begins";
        const std::string at = aspect.since ? " " + moments_.At(*aspect.since) : "";
        switch (aspect.aspect) {
            case Aspect::RUNNING:
                return aspect.value + (aspect.value == "running" ? since : at);
            case Aspect::FROZEN:
                return aspect.value + (aspect.value == "frozen" ? since : at);
            case Aspect::CLEAN:
                return aspect.value + at;
            case Aspect::EXEMPT:
                return aspect.value + " " + aspect.reason + since;
            case Aspect::FIREWALL:
                return aspect.value + since + (answer.isFirewallOn ? "" : " (the firewall is off)");
            case Aspect::LOCKS:
                return (aspect.value == "counted" ? "its running locks count" : "running locks " + aspect.value) +
                       since;
            case Aspect::STRETCHING:
                return aspect.value + " from stretched timers" + since;
        }
        return {};
    }

    Moments moments_;
    bool isBrief_;
};

}  // namespace

void Tell(const WhyAnswer& answer, std::ostream& output) {
    const Writer writer(answer);
    output << Moments(answer).Asked() << "\n";
    for (const SubjectAnswer& subject : answer.subjects) {
        constexpr size_t kColumn = 11;
        std::string label(answer.isBrief ? WordOf(subject.about) : "");
        for (const std::string& sentence : writer.Of(subject)) {
            label.resize(answer.isBrief ? kColumn : 0, ' ');
            output << label << Tame(sentence) << "\n";
            label.clear();
        }
    }
    for (const AppAnswer& app : answer.apps) {
        output << Tame(app.app.name) << IdOf("pid", app.app.pid) << IdOf("uid", app.app.uid)
               << (app.app.isNative ? ", a native process" : "") << "\n";
        for (const std::string& sentence : writer.Of(app)) {
            output << "  " << Tame(sentence) << "\n";
        }
    }
}

}  // namespace TARN::Story
