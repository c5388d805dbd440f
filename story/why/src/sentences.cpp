#include <algorithm>
#include <array>

#include "moments.h"
#include "phrases.h"
#include "topics.h"
#include "why.h"

namespace TARN::Story {

namespace {

using Sentences = std::vector<std::string>;

std::string Capital(std::string text) {
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') {
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    }
    return text;
}

/// "stays on: a device is connected" as part of a sentence that has a colon of its own.
std::string WithoutColons(std::string text) {
    for (size_t at = text.find(": "); at != std::string::npos; at = text.find(": ", at)) {
        text[at] = ',';
    }
    return text;
}

std::string StateOf(const SubjectAnswer& answer) {
    if (answer.state == kNotKnown) {
        return "not known";
    }
    switch (answer.about) {
        case About::FREEZE:
            return answer.number > 0 ? Count(answer.number, "native process") + " frozen" : "nothing is frozen";
        case About::LOCKS:
            return answer.number > 0 ? "running locks of " + Count(answer.number, "process") + " proxied"
                                     : "all running locks count";
        case About::TIMERS:
            return answer.number > 0 ? "stretched to " + std::to_string(answer.number) + " s" : answer.state;
        case About::MODEM:
            return answer.number > 0 ? answer.state + ", " + Count(answer.number, "SIM slot") : answer.state;
        case About::NETWORK:
            return answer.state == "on" ? "firewall on, " + Count(answer.number, "app") +
                                              (answer.number == 1 ? " reaches" : " reach") + " the network"
                                        : "firewall off";
        default:
            return answer.state;
    }
}

class Writer {
public:
    explicit Writer(const WhyAnswer& answer) : moments_(answer), isBrief_(answer.isBrief) {}

    [[nodiscard]] Sentences Of(const SubjectAnswer& answer) const {
        Sentences sentences;
        if (TopicOf(answer.about).lane) {
            sentences.push_back(State(answer));
        } else if (answer.change) {
            sentences.push_back(Happened(*answer.change));
        } else if (!answer.refusal) {
            sentences.push_back("Nothing yet.");
        }
        if (!isBrief_ && answer.change) {
            Add(sentences, Values(*answer.change));
            Add(sentences, Causes(*answer.change));
        }
        if (answer.refusal) {
            sentences.push_back(Happened(*answer.refusal));
            if (!isBrief_) {
                Add(sentences, Values(*answer.refusal));
            }
        }
        if (!answer.next.empty()) {
            sentences.push_back("Next chance: " + answer.next + ".");
        }
        return sentences;
    }

    [[nodiscard]] Sentences Of(const AppAnswer& answer) const {
        Sentences sentences;
        for (const AspectAnswer& aspect : answer.aspects) {
            std::string text = std::string(NameOf(aspect.aspect)) + ": " + aspect.value;
            if (aspect.since) {
                text += " since " + moments_.Of(*aspect.since);
            }
            sentences.push_back(Capital(Because(text, aspect.reason)) + ".");
        }
        return sentences;
    }

private:
    static void Add(Sentences& sentences, std::string sentence) {
        if (!sentence.empty()) {
            sentences.push_back(std::move(sentence));
        }
    }

    /// "Off since 23:32: screen off for half an hour at night."
    [[nodiscard]] std::string State(const SubjectAnswer& answer) const {
        std::string text = Capital(StateOf(answer));
        if (answer.state == kNotKnown) {
            return text + ".";
        }
        if (!answer.since) {
            return text + " since the trace begins.";
        }
        text += " since " + moments_.Of(*answer.since);
        return Because(std::move(text), answer.change ? Reason(*answer.change) : "") + ".";
    }

    static std::string Reason(const Told& told) {
        if (!told.event.reason.empty()) {
            return told.event.reason;
        }
        return told.causes.empty() ? told.event.text : told.causes.front().text;
    }

    /// "At 01:30 (screen off for half an hour at night): stays on, a device is connected."
    [[nodiscard]] std::string Happened(const Told& told) const {
        const std::string asked = told.event.reason.empty() ? "" : " (" + told.event.reason + ")";
        return "At " + moments_.Of(told.event.t) + asked + ": " + WithoutColons(told.event.text) + ".";
    }

    static std::string Values(const Told& told) {
        std::string text;
        for (const Value& value : told.event.values) {
            text += (text.empty() ? "Decided by: " : ", ") + value.name + " " + value.text;
        }
        return text.empty() ? text : text + ".";
    }

    [[nodiscard]] std::string Causes(const Told& told) const {
        std::string text;
        for (const Event& cause : told.causes) {
            text += (text.empty() ? "Set off by: " : ", ") + std::string(NameOf(cause.subject)) + " " +
                    WithoutColons(cause.text) + " (" + moments_.Of(cause.t) + ")";
        }
        return text.empty() ? text : text + ".";
    }

    Moments moments_;
    bool isBrief_;
};

}  // namespace

void Tell(const WhyAnswer& answer, std::ostream& output) {
    const Moments moments(answer);
    const Writer writer(answer);
    output << moments.Asked() << "\n";
    for (const SubjectAnswer& subject : answer.subjects) {
        constexpr size_t kColumn = 11;
        std::string label(WordOf(subject.about));
        for (const std::string& sentence : writer.Of(subject)) {
            label.resize(kColumn, ' ');
            output << label << sentence << "\n";
            label.clear();
        }
    }
    for (const AppAnswer& app : answer.apps) {
        output << app.app.name << ", pid " << app.app.pid << ", uid " << app.app.uid
               << (app.app.isNative ? ", a native process" : "") << "\n";
        for (const std::string& sentence : writer.Of(app)) {
            output << "  " << sentence << "\n";
        }
    }
}

}  // namespace TARN::Story
