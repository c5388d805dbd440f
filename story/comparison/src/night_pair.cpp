#include "night_pair.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>

#include "columns.h"
#include "csv.h"
#include "night_comparison.h"
#include "phrases.h"

namespace TARN::Story {

namespace {

using Json = nlohmann::ordered_json;

constexpr size_t kMostNamed = 5;
constexpr size_t kFiguresNamed = 2;
constexpr double kMsPerSecond = 1000.0;
constexpr std::array<const char*, kSides> kKeys = {"a", "b"};

/// "bluetooth off" as a program names it: "bluetooth_off_s".
std::string KeyOf(const std::string& name, bool isDuration) {
    std::string key = name + (isDuration ? "_s" : "");
    std::replace(key.begin(), key.end(), ' ', '_');
    return key;
}

/// Seconds for a duration, else the number.
Json Number(int64_t value, bool isDuration) {
    return isDuration ? Json(static_cast<double>(value) / kMsPerSecond) : Json(value);
}

std::string Signed(int64_t difference, bool isDuration) {
    const std::string text = FigureText(std::abs(difference), isDuration);
    return difference == 0 ? text : (difference < 0 ? "−" : "+") + text;
}

/// The value below which a share of the sorted ones lies, between two of them where it falls there, as is usual.
int64_t Quantile(const std::vector<int64_t>& sorted, double share) {
    const double place = static_cast<double>(sorted.size() - 1) * share;
    const auto below = static_cast<size_t>(place);
    const size_t above = std::min(below + 1, sorted.size() - 1);
    const double part = place - static_cast<double>(below);
    return std::llround(static_cast<double>(sorted[below]) * (1 - part) + static_cast<double>(sorted[above]) * part);
}

/// What changed most in a night, in words.
std::string Changes(const NightPair& pair) {
    std::vector<PairFigure> changed;
    std::copy_if(pair.figures.begin(), pair.figures.end(), std::back_inserter(changed),
                 [](const PairFigure& one) { return one.isDuration && one.Difference() != 0; });
    std::stable_sort(changed.begin(), changed.end(), [](const PairFigure& a, const PairFigure& b) {
        return std::abs(a.Difference()) > std::abs(b.Difference());
    });
    std::string text;
    for (size_t i = 0; i < std::min(changed.size(), kFiguresNamed); ++i) {
        text += (i == 0 ? "" : ", ") + changed[i].name + ' ' + Signed(changed[i].Difference(), true);
    }
    return text;
}

}  // namespace

int64_t NightPair::Change() const noexcept {
    int64_t sum = 0;
    for (const PairFigure& figure : figures) {
        sum += figure.isDuration ? std::abs(figure.Difference()) : 0;
    }
    return sum;
}

NightPair ComparePair(const std::array<const Night*, kSides>& nights) {
    NightPair pair{nights[0]->name, LocalTime(nights[0]->start), {}, {}};
    std::optional<int64_t> apart;
    const auto note = [&apart](std::optional<int64_t> t) { apart = t && (!apart || *t < *apart) ? t : apart; };
    for (const ComparedFigure& figure : CompareFigures(nights)) {
        pair.figures.push_back({std::string(figure.name), figure.isDuration, figure.values});
        note(figure.apart);
    }
    if (const auto states = FindStatesApart(nights)) {
        note(states->t);
    }
    pair.apart = apart ? LocalTime(*apart) : "";
    return pair;
}

Json ToJson(const NightPair& pair) {
    Json json = {
        {"trace", pair.trace}, {"start", pair.start}, {"apart", pair.apart.empty() ? Json() : Json(pair.apart)}};
    for (const PairFigure& figure : pair.figures) {
        const std::string key = KeyOf(figure.name, figure.isDuration);
        for (size_t side = 0; side < kSides; ++side) {
            json[kKeys[side]][key] = Number(figure.values[side], figure.isDuration);
        }
        json["difference"][key] = Number(figure.Difference(), figure.isDuration);
    }
    return json;
}

std::string Pack(const NightPair& pair) {
    Json figures = Json::array();
    for (const PairFigure& figure : pair.figures) {
        figures.push_back({figure.name, figure.isDuration, figure.values[0], figure.values[1]});
    }
    return Json({pair.trace, pair.start, pair.apart, std::move(figures)})
        .dump(-1, ' ', false, Json::error_handler_t::replace);
}

NightPair UnpackPair(std::string_view line) {
    const Json json = Json::parse(line);
    NightPair pair{json[0], json[1], {}, json[2]};
    for (const Json& figure : json[3]) {
        pair.figures.push_back({figure[0], figure[1], {figure[2], figure[3]}});
    }
    return pair;
}

std::string CsvHead(const NightPair& pair) {
    std::string line = "trace,start,apart";
    for (const PairFigure& figure : pair.figures) {
        for (const char* what : {"a_", "b_", "difference_"}) {
            line.append(",").append(what).append(KeyOf(figure.name, figure.isDuration));
        }
    }
    return line;
}

std::string ToCsvLine(const NightPair& pair) {
    std::string line = CsvField(pair.trace) + ',' + pair.start + ',' + pair.apart;
    for (const PairFigure& figure : pair.figures) {
        for (const int64_t value : {figure.values[0], figure.values[1], figure.Difference()}) {
            line.append(",").append(Number(value, figure.isDuration).dump());
        }
    }
    return line;
}

void PairTally::Add(const NightPair& pair) {
    ++nights_;
    differing_ += pair.apart.empty() ? 0 : 1;
    if (rows_.empty()) {
        for (const PairFigure& figure : pair.figures) {
            rows_.push_back({figure.name, figure.isDuration, {}, {}});
        }
    }
    for (size_t i = 0; i < rows_.size(); ++i) {
        const PairFigure& figure = pair.figures[i];
        rows_[i].differences.push_back(figure.Difference());
        for (size_t side = 0; side < kSides; ++side) {
            rows_[i].sums[side] += figure.values[side];
        }
    }
    const auto place = std::upper_bound(most_.begin(), most_.end(), pair,
                                        [](const NightPair& a, const NightPair& b) { return a.Change() > b.Change(); });
    if (pair.Change() > 0 && (place != most_.end() || most_.size() < kMostNamed)) {
        most_.insert(place, pair);
        most_.resize(std::min(most_.size(), kMostNamed));
    }
}

void PairTally::Tell(const std::array<std::string, kSides>& names, std::ostream& output) const {
    constexpr size_t kNameColumn = 18;
    constexpr size_t kValueColumn = 14;
    constexpr size_t kSpreadColumn = 32;
    output << "  A  " << Tame(names[0]) << "\n  B  " << Tame(names[1]) << "\n\n";
    if (nights_ == 0) {
        output << "no night could be compared\n";
        return;
    }
    output << Count(nights_, "night") << ", " << (differing_ == 0 ? "none" : std::to_string(differing_))
           << " different\n";
    output << '\n'
           << Padded("each night", kNameColumn) << Padded("A, mean", kValueColumn) << Padded("B, mean", kValueColumn)
           << Padded("B − A, median", kValueColumn) << Padded("  half of them within", kSpreadColumn) << "nights\n";
    for (const Row& row : rows_) {
        std::vector<int64_t> sorted = row.differences;
        std::sort(sorted.begin(), sorted.end());
        const auto text = [&](int64_t value) { return Signed(value, row.isDuration); };
        std::string line = Padded(row.name, kNameColumn);
        for (const int64_t sum : row.sums) {
            line += Padded(FigureText(sum / nights_, row.isDuration), kValueColumn);
        }
        line += Padded(text(Quantile(sorted, 0.5)), kValueColumn);
        const int64_t low = Quantile(sorted, 0.25);
        const int64_t high = Quantile(sorted, 0.75);
        line += Padded("  " + (low == high ? text(low) : text(low) + " … " + text(high)), kSpreadColumn);
        line += std::to_string(std::count_if(sorted.begin(), sorted.end(), [](int64_t one) { return one != 0; }));
        output << line << '\n';
    }
    output << (most_.empty() ? "" : "\nMost changed:\n");
    for (const NightPair& pair : most_) {
        output << "  " << Tame(pair.trace) << ": " << Changes(pair) << "; apart from " << pair.apart.substr(0, 16)
               << '\n';
    }
}

Json PairTally::ToJson(const std::array<std::string, kSides>& names) const {
    Json json = {{"a", names[0]}, {"b", names[1]}, {"nights", nights_}, {"nights_different", differing_}};
    json["figures"] = Json::array();
    for (const Row& row : rows_) {
        std::vector<int64_t> sorted = row.differences;
        std::sort(sorted.begin(), sorted.end());
        const auto number = [&](int64_t value) { return Number(value, row.isDuration); };
        json["figures"].push_back(
            {{"name", KeyOf(row.name, row.isDuration)},
             {"a_mean", number(row.sums[0] / nights_)},
             {"b_mean", number(row.sums[1] / nights_)},
             {"difference_min", number(sorted.front())},
             {"difference_p25", number(Quantile(sorted, 0.25))},
             {"difference_median", number(Quantile(sorted, 0.5))},
             {"difference_p75", number(Quantile(sorted, 0.75))},
             {"difference_max", number(sorted.back())},
             {"nights_different", std::count_if(sorted.begin(), sorted.end(), [](int64_t one) { return one != 0; })}});
    }
    json["most_changed"] = Json::array();
    for (const NightPair& pair : most_) {
        json["most_changed"].push_back({{"trace", pair.trace}, {"apart", pair.apart}});
    }
    return json;
}

}  // namespace TARN::Story
