#include "night_comparison.h"

#include <algorithm>
#include <iterator>

#include "figures.h"

namespace TARN::Story {

namespace {

constexpr size_t kContext = 3;

std::vector<const Event*> ToldEvents(const Night& night) {
    std::vector<const Event*> told;
    for (const Event& event : night.events) {
        if (!event.isRepeat) {
            told.push_back(&event);
        }
    }
    return told;
}

bool IsToldAlike(const Event* a, const Event* b) {
    return a->t == b->t && a->subject == b->subject && a->text == b->text && a->reason == b->reason;
}

std::string StateAt(const Night& night, int64_t t) {
    const Interval* state = night.At(LaneId::STATE).At(t);
    const Interval* phase = night.At(LaneId::PHASE).At(t);
    std::string text = state == nullptr ? std::string(kNotKnown) : state->value;
    return phase == nullptr || phase->value.empty() || phase->value == kNotKnown ? text
                                                                                 : text + " (" + phase->value + ")";
}

}  // namespace

std::vector<ComparedFigure> CompareFigures(const Nights& nights) {
    const std::array<Figures, kSides> figures = {Measure(*nights[0]), Measure(*nights[1])};
    std::vector<ComparedFigure> rows;
    const auto add = [&](std::string_view name, bool isDuration, std::optional<LaneId> lane, auto value) {
        rows.push_back({name,
                        isDuration,
                        {value(figures[0]), value(figures[1])},
                        lane ? FirstApart(nights, *lane) : std::nullopt});
    };
    const auto time = [&](std::string_view name, LaneId lane, int64_t Figures::*ms) {
        add(name, true, lane, [ms](const Figures& of) { return of.*ms; });
    };
    time("asleep", LaneId::SLEEP, &Figures::asleepMs);
    time("bluetooth off", LaneId::BLUETOOTH, &Figures::bluetoothOffMs);
    time("wifi off", LaneId::WIFI, &Figures::wifiOffMs);
    time("modem off", LaneId::MODEM, &Figures::modemOffMs);
    time("firewall on", LaneId::FIREWALL, &Figures::firewallMs);
    time("frozen", LaneId::FROZEN, &Figures::frozenMs);
    add("most frozen", false, std::nullopt, [](const Figures& of) { return of.mostFrozen; });
    time("locks proxied", LaneId::LOCKS, &Figures::locksMs);
    time("timers stretched", LaneId::TIMERS, &Figures::stretchedMs);
    add("apps killed", false, std::nullopt, [](const Figures& of) { return static_cast<int64_t>(of.killed.size()); });
    add("kills", false, std::nullopt, [](const Figures& of) { return of.kills; });
    return rows;
}

std::optional<int64_t> FirstApart(const Nights& nights, LaneId lane) {
    const int64_t start = std::max(nights[0]->start, nights[1]->start);
    const int64_t end = std::min(nights[0]->end, nights[1]->end);
    std::vector<int64_t> changes = {start};
    for (const Night* night : nights) {
        for (const Interval& interval : night->At(lane).Intervals()) {
            changes.push_back(interval.from);
        }
    }
    std::sort(changes.begin(), changes.end());
    for (const int64_t t : changes) {
        const Interval* a = nights[0]->At(lane).At(t);
        const Interval* b = nights[1]->At(lane).At(t);
        if (t < start || t > end || a == nullptr || b == nullptr) {
            continue;
        }
        if (a->value != b->value || a->number != b->number) {
            return t;
        }
    }
    return std::nullopt;
}

std::optional<StatesApart> FindStatesApart(const Nights& nights) {
    std::optional<int64_t> t = FirstApart(nights, LaneId::STATE);
    if (const auto phase = FirstApart(nights, LaneId::PHASE); phase && (!t || *phase < *t)) {
        t = phase;
    }
    return t ? std::optional(StatesApart{*t, {StateAt(*nights[0], *t), StateAt(*nights[1], *t)}}) : std::nullopt;
}

std::optional<EventParting> FindEventParting(const Nights& nights) {
    const std::array<std::vector<const Event*>, kSides> told = {ToldEvents(*nights[0]), ToldEvents(*nights[1])};
    const auto [a, b] = std::mismatch(told[0].begin(), told[0].end(), told[1].begin(), told[1].end(), IsToldAlike);
    if (a == told[0].end() && b == told[1].end()) {
        return std::nullopt;
    }
    const auto place = static_cast<size_t>(a - told[0].begin());
    EventParting parting;
    const auto copy = [](const std::vector<const Event*>& from, size_t first, size_t last, auto& to) {
        for (size_t i = first; i < std::min(last, from.size()); ++i) {
            to.push_back(from[i]);
        }
    };
    copy(told[0], place - std::min(place, kContext), place, parting.before);
    for (size_t side = 0; side < kSides; ++side) {
        copy(told[side], place, place + kContext, parting.after[side]);
    }
    return parting;
}

std::array<std::vector<std::string>, kSides> KilledOnlyIn(const Nights& nights) {
    std::array<std::vector<std::string>, kSides> killed;
    for (size_t side = 0; side < kSides; ++side) {
        killed[side] = Measure(*nights[side]).killed;
    }
    std::array<std::vector<std::string>, kSides> only;
    for (size_t side = 0; side < kSides; ++side) {
        const auto& other = killed[1 - side];
        std::set_difference(killed[side].begin(), killed[side].end(), other.begin(), other.end(),
                            std::back_inserter(only[side]));
    }
    return only;
}

}  // namespace TARN::Story
