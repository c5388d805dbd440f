#ifndef STORY_TRACE_EVENTS_H
#define STORY_TRACE_EVENTS_H

#include <ostream>

#include "night.h"

namespace TARN::Story {

/// Writes a whole night as trace events, a JSON object with "traceEvents", for a viewer of such. Piece by piece: memory
/// does not grow with the night. What lies on the tracks stands in docs/trace-events.md. The night's time zone must be
/// in use.
void WriteTraceEvents(const Night& night, std::ostream& output);

}  // namespace TARN::Story

#endif  // STORY_TRACE_EVENTS_H
