#ifndef STORY_FACT_STORIES_H
#define STORY_FACT_STORIES_H

#include "teller.h"
#include "trace.h"

namespace TARN::Story {

/// Tells which facts of the phone a trace sets, as far as they explain what follows. What every phone
/// starts with is not told at the start.
void TellFacts(Teller& teller, const Replay::SetStep& step, bool isStart);

}  // namespace TARN::Story

#endif  // STORY_FACT_STORIES_H
