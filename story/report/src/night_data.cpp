#include "night_data.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>
#include <unordered_map>

#include <nlohmann/json.hpp>

#include "figures.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

using Replay::TimeZone;

/// Every text once.
class Strings {
public:
    int64_t Of(std::string_view text) {
        if (text.empty()) {
            return -1;
        }
        const auto [place, isNew] = places_.try_emplace(std::string(text), static_cast<int64_t>(texts_.size()));
        if (isNew) {
            texts_.push_back(place->first);
        }
        return place->second;
    }

    /// What is no UTF-8 is replaced, and nothing in it ends a script element.
    [[nodiscard]] std::string Json() const {
        std::string json = nlohmann::json(texts_).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        for (size_t at = json.find('<'); at != std::string::npos; at = json.find('<', at)) {
            json.replace(at, 1, "\\u003c");
        }
        return json;
    }

private:
    std::unordered_map<std::string, int64_t> places_;
    std::vector<std::string_view> texts_;
};

/// Writes numbers, arrays and members of an object, with the commas between them.
class NumberWriter {
public:
    template <class T>
    requires std::is_integral_v<T>
    void Add(T number) {
        Comma();
        json_ += std::to_string(number);
    }

    void Add(std::optional<float> number) {
        Comma();
        std::array<char, 32> text{};
        if (number && std::isfinite(*number)) {
            json_.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), *number).ptr);
        } else {
            json_ += "null";
        }
    }

    void Name(std::string_view name) {
        Comma();
        json_.append("\"").append(name).append("\":");
        isFirst_ = true;
    }

    void Open(char bracket) {
        Comma();
        json_ += bracket;
        isFirst_ = true;
    }

    void Close(char bracket) {
        json_ += bracket;
        isFirst_ = false;
    }

    template <class... Values>
    void Row(const Values&... values) {
        Open('[');
        (Add(values), ...);
        Close(']');
    }

    [[nodiscard]] const std::string& Json() const noexcept { return json_; }

private:
    void Comma() {
        if (!isFirst_) {
            json_ += ',';
        }
        isFirst_ = false;
    }

    std::string json_;
    bool isFirst_ = true;
};

/// One side in numbers.
class SideWriter {
public:
    SideWriter(const ReportSide& side, Strings& strings, NumberWriter& out)
        : side_(side), night_(*side.night), strings_(strings), out_(out) {}

    void Write() {
        out_.Open('{');
        Member("label", strings_.Of(side_.label));
        Member("name", strings_.Of(night_.name));
        Member("zone", strings_.Of(night_.timezone));
        Member("start", night_.start);
        Member("end", night_.end);
        List("strategies", [this] {
            for (const std::string& strategy : night_.strategies) {
                out_.Add(strings_.Of(strategy));
            }
        });
        List("head", [this] {
            for (const HeadFact& fact : night_.head) {
                out_.Row(strings_.Of(fact.name), strings_.Of(fact.text));
            }
        });
        List("offsets", [this] { WriteOffsets(); });
        List("events", [this] { WriteEvents(); });
        List("lanes", [this] { WriteLanes(); });
        List("light", [this] { WriteSamples(night_.light); });
        List("stillness", [this] { WriteSamples(night_.stillness); });
        List("proximity", [this] { WriteSamples(night_.proximity); });
        List("apps", [this] {
            for (const App& app : night_.apps) {
                out_.Add(strings_.Of(app.name));
            }
        });
        List("appEvents", [this] {
            Restart();
            for (const AppEvent& event : night_.appEvents) {
                out_.Row(Since(event.t), event.app, strings_.Of(NameOf(event.aspect)), strings_.Of(event.value),
                         strings_.Of(event.reason), PlaceOf(event.event));
            }
        });
        List("record", [this] {
            out_.Add(night_.record.messages);
            out_.Add(night_.record.calls);
            out_.Add(night_.record.logs);
        });
        out_.Close('}');
    }

private:
    void Member(std::string_view name, int64_t number) {
        out_.Name(name);
        out_.Add(number);
    }

    template <class Fill>
    void List(std::string_view name, Fill fill) {
        out_.Name(name);
        out_.Open('[');
        fill();
        out_.Close(']');
    }

    void Restart() { last_ = night_.start; }

    int64_t Since(int64_t t) {
        const int64_t since = t - last_;
        last_ = t;
        return since;
    }

    [[nodiscard]] static int64_t PlaceOf(uint32_t event) { return event == kNoEvent ? -1 : int64_t{event}; }

    /// Rows of time and offset of the local clock in milliseconds, one for each change, beginning a day before the start.
    void WriteOffsets() {
        constexpr int64_t kDayMs = 24L * 3600 * 1000;
        constexpr int64_t kStepMs = kDayMs / 4;
        constexpr int64_t kMostSteps = 20'000;
        TimeZone(night_.timezone).Use();
        const int64_t end = night_.end + kDayMs;
        int64_t t = night_.start - kDayMs;
        const int64_t step = std::max(kStepMs, (end - t) / kMostSteps);
        const auto write = [this](int64_t at) { out_.Row(at, TimeZone::OffsetMs(at)); };
        write(t);
        for (int64_t next = t + step; next < end + step; t = next, next += step) {
            const int64_t after = TimeZone::OffsetMs(next);
            int64_t before = t;
            int64_t changed = next;
            if (TimeZone::OffsetMs(t) == after) {
                continue;
            }
            while (changed - before > 1) {
                const int64_t middle = before + (changed - before) / 2;
                (TimeZone::OffsetMs(middle) == after ? changed : before) = middle;
            }
            write(changed);
        }
    }

    /// Rows of time, subject, outcome, whether it is a repeat, cause, text, reason, next, and the name and text of each
    /// value.
    void WriteEvents() {
        Restart();
        for (const Event& event : night_.events) {
            out_.Open('[');
            for (const int64_t number :
                 {Since(event.t), strings_.Of(NameOf(event.subject)), strings_.Of(NameOf(event.outcome)),
                  int64_t{event.isRepeat}, PlaceOf(event.cause), strings_.Of(event.text), strings_.Of(event.reason),
                  strings_.Of(event.next)}) {
                out_.Add(number);
            }
            for (const Value& value : event.values) {
                out_.Add(strings_.Of(value.name));
                out_.Add(strings_.Of(value.text));
            }
            out_.Close(']');
        }
    }

    /// For each lane its name and its rows: time, value, number, event, whether it counts for the lane's figure.
    void WriteLanes() {
        for (size_t i = 0; i < kLanes; ++i) {
            const auto lane = static_cast<LaneId>(i);
            Restart();
            out_.Open('[');
            out_.Add(strings_.Of(NameOf(lane)));
            for (const Interval& interval : night_.At(lane).Intervals()) {
                out_.Row(Since(interval.from), strings_.Of(interval.value), interval.number, PlaceOf(interval.event),
                         Counts(lane, interval) ? 1 : 0);
            }
            out_.Close(']');
        }
    }

    void WriteSamples(const std::vector<Sample>& samples) {
        Restart();
        for (const Sample& sample : samples) {
            out_.Row(Since(sample.t), sample.value);
        }
    }

    const ReportSide& side_;
    const Night& night_;
    Strings& strings_;
    NumberWriter& out_;
    int64_t last_ = 0;
};

}  // namespace

std::string DataOf(const std::vector<ReportSide>& sides) {
    Strings strings;
    NumberWriter out;
    out.Open('[');
    for (const ReportSide& side : sides) {
        SideWriter(side, strings, out).Write();
    }
    out.Close(']');
    return "{\"strings\":" + strings.Json() + ",\n\"sides\":" + out.Json() + "}";
}

}  // namespace TARN::Story
