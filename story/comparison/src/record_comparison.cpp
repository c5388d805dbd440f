#include "record_comparison.h"

#include <algorithm>
#include <deque>
#include <utility>

namespace TARN::Story {

namespace {

using Replay::RecordLine;
using Replay::RecordReader;

/// An instant with more lines, or more text, is compared piece by piece.
constexpr size_t kMostLines = 1000;
constexpr size_t kMostBytes = size_t{32} * 1024 * 1024;
constexpr size_t kContext = 3;

/// Which millisecond of which run. Runs follow one another, so this only grows.
using Instant = std::pair<uint64_t, int64_t>;

/// A record, an instant at a time.
class Instants {
public:
    explicit Instants(RecordReader& reader) : reader_(reader), next_(reader.Next()) {}

    [[nodiscard]] const std::optional<RecordLine>& Next() const noexcept { return next_; }
    [[nodiscard]] Instant When() const { return {runs_, next_->t}; }
    [[nodiscard]] uint64_t Runs() const noexcept { return runs_; }

    /// The lines of the next instant; there is one.
    std::vector<RecordLine> Take() {
        std::vector<RecordLine> lines;
        const Instant when = When();
        for (size_t bytes = 0; next_ && When() == when && lines.size() < kMostLines && bytes < kMostBytes;) {
            bytes += next_->text.size();
            runs_ += next_->kind == "summary" ? 1 : 0;
            lines.push_back(std::move(*next_));
            next_ = reader_.Next();
        }
        return lines;
    }

private:
    RecordReader& reader_;
    std::optional<RecordLine> next_;
    uint64_t runs_ = 0;  ///< that are over
};

class Comparer {
public:
    Comparer(RecordReader& a, RecordReader& b) : sides_{Instants(a), Instants(b)} {}

    RecordComparison Compare() {
        while (sides_[0].Next() || sides_[1].Next()) {
            const bool takesA = !sides_[1].Next() || (sides_[0].Next() && sides_[0].When() <= sides_[1].When());
            const bool takesB = !sides_[0].Next() || (sides_[1].Next() && sides_[1].When() <= sides_[0].When());
            const Lines a = takesA ? sides_[0].Take() : Lines();
            const Lines b = takesB ? sides_[1].Take() : Lines();
            CompareInstant(a, b);
        }
        result_.runs = {sides_[0].Runs(), sides_[1].Runs()};
        return std::move(result_);
    }

private:
    using Lines = std::vector<RecordLine>;

    static bool IsSame(const RecordLine& a, const RecordLine& b) { return a.text == b.text; }

    static std::vector<size_t> Hashes(const Lines& lines) {
        std::vector<size_t> hashes(lines.size());
        std::transform(lines.begin(), lines.end(), hashes.begin(),
                       [](const RecordLine& line) { return std::hash<std::string>()(line.text); });
        return hashes;
    }

    void CompareInstant(const Lines& a, const Lines& b) {
        const auto [endA, endB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), IsSame);
        const auto same = static_cast<size_t>(endA - a.begin());
        for (size_t i = 0; i < same; ++i) {
            InBoth(a[i]);
        }
        if (endA == a.end() && endB == b.end()) {
            return;
        }
        if (!result_.parting) {
            Part(a, b, same);
        }
        Align(a, b, same);
    }

    void InBoth(const RecordLine& line) {
        ++result_.lines[line.kind].both;
        if (!result_.parting) {
            before_.push_back(line);
            if (before_.size() > kContext) {
                before_.pop_front();
            }
        }
    }

    void Part(const Lines& a, const Lines& b, size_t place) {
        const auto next = [place](const Lines& lines, const Instants& rest) {
            return place < lines.size() ? std::optional(lines[place]) : rest.Next();
        };
        RecordParting parting;
        parting.next = {next(a, sides_[0]), next(b, sides_[1])};
        const auto& [nextA, nextB] = parting.next;
        parting.t = nextA && nextB ? std::min(nextA->t, nextB->t) : nextA ? nextA->t : nextB->t;
        parting.before.assign(before_.begin(), before_.end());
        result_.parting = std::move(parting);
    }

    /// Counts the lines from `place` on so that as many as possible are in both, in order.
    void Align(const Lines& a, const Lines& b, size_t place) {
        const size_t width = b.size() - place + 1;
        const size_t height = a.size() - place + 1;
        const std::vector<size_t> hashesA = Hashes(a);
        const std::vector<size_t> hashesB = Hashes(b);
        const auto isSame = [&](size_t one, size_t other) {
            return hashesA[place + one] == hashesB[place + other] && IsSame(a[place + one], b[place + other]);
        };
        // longest_[i * width + j]: how many lines are in both from a[place + i] and b[place + j] on
        longest_.assign(width * height, 0);
        for (size_t i = height - 1; i-- > 0;) {
            for (size_t j = width - 1; j-- > 0;) {
                const size_t here = i * width + j;
                longest_[here] = isSame(i, j) ? static_cast<uint16_t>(longest_[here + width + 1] + 1)
                                              : std::max(longest_[here + width], longest_[here + 1]);
            }
        }
        size_t i = 0;
        size_t j = 0;
        while (i + 1 < height || j + 1 < width) {
            const bool hasA = i + 1 < height;
            const bool hasB = j + 1 < width;
            if (hasA && hasB && isSame(i, j)) {
                InBoth(a[place + i++]);
                ++j;
            } else if (hasA && (!hasB || longest_[(i + 1) * width + j] >= longest_[i * width + j + 1])) {
                ++result_.lines[a[place + i++].kind].only[0];
            } else {
                ++result_.lines[b[place + j++].kind].only[1];
            }
        }
    }

    std::array<Instants, kSides> sides_;
    std::deque<RecordLine> before_;
    std::vector<uint16_t> longest_;
    RecordComparison result_;
};

}  // namespace

LineCounts RecordComparison::Total() const noexcept {
    LineCounts total;
    for (const auto& [kind, counts] : lines) {
        total.both += counts.both;
        for (size_t side = 0; side < kSides; ++side) {
            total.only[side] += counts.only[side];
        }
    }
    return total;
}

RecordComparison CompareRecords(RecordReader& a, RecordReader& b) {
    return Comparer(a, b).Compare();
}

}  // namespace TARN::Story
