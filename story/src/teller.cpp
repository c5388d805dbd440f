#include "teller.h"

#include <algorithm>
#include <utility>

namespace TARN::Story {

void Teller::MoveTo(int64_t t) {
    if (t != now_) {
        Finish();
        now_ = t;
    }
}

void Teller::Finish() {
    for (Entry& entry : entries_) {
        if (!entry.text.empty()) {
            output_(std::move(entry));
        }
    }
    entries_.clear();
    ++instant_;
    cause_ = Cause::NONE;
}

Entry& Teller::Tell(Subject subject, std::string text, Tone tone, Use use) {
    last_[static_cast<size_t>(subject)] = text;
    return entries_.emplace_back(Entry{now_, subject, std::move(text), tone, use});
}

bool Teller::HasTold(Subject subject) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [subject](const Entry& entry) { return entry.subject == subject; });
}

void Teller::TellNew(Subject subject, std::string text, Tone tone) {
    if (last_[static_cast<size_t>(subject)] != text) {
        Tell(subject, std::move(text), tone);
    }
}

}  // namespace TARN::Story
