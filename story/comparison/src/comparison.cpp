#include "comparison.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "columns.h"
#include "line_in_words.h"
#include "night_comparison.h"
#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

using Json = nlohmann::ordered_json;
using Replay::RecordLine;
using Replay::TimeZone;

constexpr std::array<std::string_view, kSides> kSideNames = {"A", "B"};
constexpr std::array<const char*, kSides> kOnly = {"only_a", "only_b"};
constexpr char kNothing[] = "–";
constexpr size_t kNameColumn = 18;
constexpr size_t kValueColumn = 14;
constexpr size_t kSubjectColumn = 11;

std::string LocalMs(int64_t t) {
    constexpr int64_t kMsPerSecond = 1000;
    std::array<char, 8> ms{};
    const int64_t rest = (t % kMsPerSecond + kMsPerSecond) % kMsPerSecond;
    std::snprintf(ms.data(), ms.size(), ".%03d", static_cast<int>(rest));
    return TimeZone::Format(t, "%H:%M:%S") + ms.data();
}

std::string Moment(int64_t t) {
    return TimeZone::Format(t, "%a %-d %b %Y ") + LocalMs(t) + TimeZone::Format(t, " %Z");
}

/// "  A  what", or with spaces for what both say.
void Say(std::ostream& output, std::string_view side, const std::string& what) {
    output << "  " << Padded(std::string(side), 3) << Tame(what) << '\n';
}

std::string Told(const Event& event) {
    return TimeZone::Format(event.t, "%H:%M:%S") + "  " + Padded(std::string(NameOf(event.subject)), kSubjectColumn) +
           Because(event.text, event.reason);
}

void TellParting(const RecordParting& parting, std::ostream& output) {
    output << "First difference in the record: " << Moment(parting.t) << '\n';
    const auto told = [](const RecordLine& line) { return LocalMs(line.t) + "  " + InWords(line); };
    for (const RecordLine& line : parting.before) {
        Say(output, "", told(line));
    }
    for (size_t side = 0; side < kSides; ++side) {
        const auto& next = parting.next[side];
        Say(output, kSideNames[side], next ? told(*next) : "nothing more, the record is over");
    }
}

void TellEvents(const Nights& nights, std::ostream& output) {
    const auto parting = FindEventParting(nights);
    if (!parting) {
        output << "The story is the same.\n";
        return;
    }
    int64_t t = INT64_MAX;
    for (const auto& events : parting->after) {
        t = events.empty() ? t : std::min(t, events.front()->t);
    }
    output << "First difference in the story: " << Moment(t) << '\n';
    for (const Event* event : parting->before) {
        Say(output, "", Told(*event));
    }
    for (size_t side = 0; side < kSides; ++side) {
        if (parting->after[side].empty()) {
            Say(output, kSideNames[side], "nothing more");
        }
        for (const Event* event : parting->after[side]) {
            Say(output, kSideNames[side], Told(*event));
        }
    }
}

std::string DifferenceText(const ComparedFigure& figure) {
    const int64_t difference = figure.values[1] - figure.values[0];
    return difference == 0 ? kNothing
                           : (difference < 0 ? "−" : "+") + FigureText(std::abs(difference), figure.isDuration);
}

void TellFigures(const Nights& nights, std::ostream& output) {
    output << Padded("", kNameColumn) << Padded("A", kValueColumn) << Padded("B", kValueColumn)
           << Padded("B − A", kValueColumn) << "apart from\n";
    for (const ComparedFigure& figure : CompareFigures(nights)) {
        std::string line = Padded(std::string(figure.name), kNameColumn);
        for (const int64_t value : figure.values) {
            line += Padded(FigureText(value, figure.isDuration), kValueColumn);
        }
        line += Padded(DifferenceText(figure), kValueColumn);
        line += figure.apart ? TimeZone::Format(*figure.apart, "%a %-d %b %H:%M") : "";
        line.erase(line.find_last_not_of(' ') + 1);
        output << line << '\n';
    }
    const auto killed = KilledOnlyIn(nights);
    for (size_t side = 0; side < kSides; ++side) {
        if (!killed[side].empty()) {
            output << Tame("killed only in " + std::string(kSideNames[side]) + ": " + Names(killed[side])) << '\n';
        }
    }
    if (const auto apart = FindStatesApart(nights)) {
        output << "The states part on " << TimeZone::Format(apart->t, "%a %-d %b at %H:%M") << ": A is in "
               << apart->states[0] << ", B in " << apart->states[1] << ".\n";
    } else {
        output << "The states are the same all along.\n";
    }
}

void TellLines(const RecordComparison& record, std::ostream& output) {
    const auto row = [&output](const std::string& name, const LineCounts& counts) {
        output << Padded(name, kNameColumn) << Padded(std::to_string(counts.both), kValueColumn)
               << Padded(std::to_string(counts.only[0]), kValueColumn) << counts.only[1] << '\n';
    };
    output << Padded("", kNameColumn) << Padded("in both", kValueColumn) << Padded("only in A", kValueColumn)
           << "only in B\n";
    for (const auto& [kind, counts] : record.lines) {
        row(Tame(kind), counts);
    }
    row("all lines", record.Total());
    if (record.runs[0] != record.runs[1]) {
        output << "A holds " << Count(static_cast<int64_t>(record.runs[0]), "run") << ", B "
               << Count(static_cast<int64_t>(record.runs[1]), "run") << ".\n";
    }
}

bool HasNights(const Comparison& comparison) {
    return comparison.nights[0] != nullptr && comparison.nights[1] != nullptr;
}

Json TimeJson(int64_t t) {
    return {{"t", t}, {"local", TimeZone::Format(t, "%FT%H:%M:%S%z")}};
}

Json ToJson(const RecordParting& parting) {
    Json json = TimeJson(parting.t);
    json["before"] = Json::array();
    for (const RecordLine& line : parting.before) {
        json["before"].push_back(Json::parse(line.text));
    }
    constexpr std::array<const char*, kSides> kKeys = {"a", "b"};
    for (size_t side = 0; side < kSides; ++side) {
        json[kKeys[side]] = parting.next[side] ? Json::parse(parting.next[side]->text) : Json();
    }
    return json;
}

Json LinesJson(const RecordComparison& record) {
    const auto json = [](const LineCounts& counts) {
        return Json{{"both", counts.both}, {kOnly[0], counts.only[0]}, {kOnly[1], counts.only[1]}};
    };
    Json lines = json(record.Total());
    for (const auto& [kind, counts] : record.lines) {
        lines["kinds"][kind] = json(counts);
    }
    return lines;
}

Json FiguresJson(const Nights& nights) {
    Json figures = Json::array();
    for (const ComparedFigure& figure : CompareFigures(nights)) {
        figures.push_back({{"name", figure.name},
                           {"unit", figure.isDuration ? "ms" : "count"},
                           {"a", figure.values[0]},
                           {"b", figure.values[1]},
                           {"difference", figure.values[1] - figure.values[0]},
                           {"apart", figure.apart ? TimeJson(*figure.apart) : Json()}});
    }
    return figures;
}

}  // namespace

void Tell(const Comparison& comparison, std::ostream& output) {
    const RecordComparison& record = comparison.record;
    if (!record.parting) {
        output << "no difference in " << Count(static_cast<int64_t>(record.Total().both), "line") << '\n';
        return;
    }
    for (size_t side = 0; side < kSides; ++side) {
        Say(output, kSideNames[side], comparison.names[side]);
    }
    output << '\n';
    TellParting(*record.parting, output);
    output << '\n';
    if (HasNights(comparison)) {
        TellEvents(comparison.nights, output);
        output << '\n';
        TellFigures(comparison.nights, output);
        output << '\n';
    }
    TellLines(record, output);
}

Json ToJson(const Comparison& comparison) {
    const RecordComparison& record = comparison.record;
    Json json = {{"same", !record.parting}, {"a", comparison.names[0]}, {"b", comparison.names[1]}};
    json["first_difference"] = record.parting ? ToJson(*record.parting) : Json();
    json["lines"] = LinesJson(record);
    if (!HasNights(comparison)) {
        return json;
    }
    const Nights& nights = comparison.nights;
    json["figures"] = FiguresJson(nights);
    const auto killed = KilledOnlyIn(nights);
    json["killed"] = {{kOnly[0], killed[0]}, {kOnly[1], killed[1]}};
    json["states_part"] = nullptr;
    if (const auto apart = FindStatesApart(nights)) {
        json["states_part"] = TimeJson(apart->t);
        json["states_part"]["a"] = apart->states[0];
        json["states_part"]["b"] = apart->states[1];
    }
    return json;
}

}  // namespace TARN::Story
