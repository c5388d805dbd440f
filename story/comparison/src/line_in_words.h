#ifndef STORY_LINE_IN_WORDS_H
#define STORY_LINE_IN_WORDS_H

#include <string>

#include "record_reader.h"

namespace TARN::Story {

/// A record's line as people read it: "call BluetoothHost.DisableBt {} → 0".
[[nodiscard]] std::string InWords(const Replay::RecordLine& line);

}  // namespace TARN::Story

#endif  // STORY_LINE_IN_WORDS_H
