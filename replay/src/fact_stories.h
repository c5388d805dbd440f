#ifndef REPLAY_FACT_STORIES_H
#define REPLAY_FACT_STORIES_H

#include "teller.h"
#include "trace.h"

namespace TARN::Replay {

/// Tells which facts of the phone a trace sets, as far as they explain what follows. What every phone
/// starts with is not told at the start.
void TellFacts(Teller& teller, const SetStep& step, bool isStart);

}  // namespace TARN::Replay

#endif  // REPLAY_FACT_STORIES_H
