// The rows of the chart: what each shows, in which look, and what happened in it.

/** A look is a class of the style sheet; "" is the quiet one, which is only the row's ground. */
const onlyIf = (value, look) => interval => (interval.value === value ? look : "");
const measure = interval => (interval.number > 0 ? "measure" : "");
const radio = interval => (interval.number > 0 ? "measure" : interval.value === "on" ? "" : "byuser");
const kDepths = {WORKING: 0, MAINTENANCE: 1, DARK: 1, NAP: 2, SLEEP: 3, LIGHT: 3, APP_RES_DEEP: 4, SYS_RES_DEEP: 5, DEEP: 6};
const kDeepest = 6;

const kRows = [
  {id: "screen", kind: "bar", subjects: ["screen"], look: onlyIf("on", "lit")},
  {id: "charger", kind: "bar", subjects: ["charger"], look: onlyIf("plugged", "charging")},
  {id: "light", kind: "curve", scale: () => d3.scaleSqrt(), unit: "lx"},
  {id: "stillness", kind: "curve", scale: () => d3.scaleLinear(), words: {0: "moving", 1: "still"}},
  {id: "proximity", kind: "curve", scale: () => d3.scaleLinear(), unit: ""},
  {id: "condition", kind: "bar", subjects: ["night"], look: onlyIf("night", "night"), label: "day, night", after: true},
  {id: "state", kind: "depth", subjects: ["state"], label: "state, phase"},
  {id: "sleep", kind: "bar", subjects: ["sleep"], look: onlyIf("asleep", "asleep"), after: true},
  {id: "bluetooth", kind: "bar", subjects: ["bluetooth"], look: radio},
  {id: "wifi", kind: "bar", subjects: ["wifi"], look: radio, label: "Wi-Fi"},
  {id: "modem", kind: "bar", subjects: ["modem"], look: radio},
  {id: "firewall", kind: "bar", subjects: ["firewall", "push"], look: onlyIf("on", "measure"),
    tell: one => (one.value === "on" ? `on, ${count(one.number, "app")} let through` : one.value)},
  {id: "frozen", kind: "bar", subjects: ["freeze"], look: measure,
    tell: one => (one.number > 0 ? count(one.number, "native process") : one.value)},
  {id: "locks", kind: "bar", subjects: ["lock"], look: measure,
    tell: one => (one.number > 0 ? `of ${count(one.number, "process")} proxied` : one.value)},
  {id: "timers", kind: "bar", subjects: ["timer"],
    look: one => (one.number > 300 ? "measure more" : one.number > 0 ? "measure" : ""),
    tell: one => (one.number > 0 ? `stretched to ${one.number} s` : one.value), after: true},
  {id: "apps", kind: "marks", subjects: ["clean", "task", "exempt"]},
  {id: "device", kind: "marks", subjects: ["power", "alarm", "device"]},
  {id: "service", kind: "marks", subjects: ["service", "fault", "file", "dump", "message"]},
  {id: "log", kind: "marks", subjects: ["debug", "info", "warning", "error"]},
];

function count(number, noun) {
  return `${d3.format(",")(number)} ${noun}${number === 1 ? "" : noun.endsWith("s") ? "es" : "s"}`;
}

/** State and phase in one: an interval for each stretch in which neither changes, "SLEEP, DEEP". */
function depthIntervals(side) {
  const states = side.lanes.get("state") || [], phases = side.lanes.get("phase") || [];
  const times = [...new Set([...states, ...phases].map(one => one.t))].sort(d3.ascending);
  return times.map((t, i) => {
    const state = intervalAt(states, t), phase = phases.length > 0 ? intervalAt(phases, t) : {value: "", t: -Infinity};
    const isInPhase = state.value === "SLEEP" && phase.value !== "";
    return {
      ...state, t, end: i + 1 < times.length ? times[i + 1] : side.end,
      value: isInPhase ? `SLEEP, ${phase.value}` : state.value,
      depth: kDepths[isInPhase ? phase.value : state.value] ?? kDepths.DARK,
      event: isInPhase && phase.t > state.t ? phase.event : state.event,
    };
  });
}

const depthLook = one =>
  one.value === "MAINTENANCE" ? "maintenance" : one.depth > 0 ? `depth${one.depth}` : "";

/** What begins an interval is seen by the interval and has no mark, unless it is out of the ordinary. */
const isMarked = (part, event) => !part.begins.has(event.place) || event.outcome === "kept" || event.outcome === "failed";

/** The greatest value of a curve's row. */
const mostOf = row => d3.max(row.sides, one => d3.max(one.intervals, sample => sample.value));

function makeRow(spec) {
  const row = {label: spec.id, tell: one => one.value, subjects: [], ...spec};
  row.sides = sides.map(side => {
    const intervals = row.kind === "bar" ? side.lanes.get(row.id) || []
      : row.kind === "depth" ? depthIntervals(side)
      : row.kind === "curve" ? side.series.get(row.id) : [];
    const begins = new Set(intervals.map(one => one.event));
    const subjects = new Set(row.subjects);
    const part = {side, intervals, begins, events: side.events.filter(one => subjects.has(one.subject) && !one.isRepeat)};
    return {...part, marks: part.events.filter(one => isMarked(part, one))};
  });
  const look = row.kind === "depth" ? depthLook : row.look;
  if (look) {
    for (const {intervals} of row.sides) {
      for (const one of intervals) one.look = one.value === "not known" ? "unknown" : look(one);
    }
  }
  row.hasMarks = row.sides.some(one => one.marks.length > 0);
  return row;
}

/** A row is there if it has anything to show. */
function hasContent(row) {
  if (row.kind === "curve") return row.sides.some(one => one.intervals.some(sample => sample.value !== null));
  return row.sides.some(one => one.intervals.length > 0 || one.events.length > 0);
}

const rows = kRows.map(makeRow).filter(hasContent);
const rowOf = event => rows.find(row => row.subjects.includes(event.subject));

/** The stretches in which the two sides of a row are not the same; where only one was recorded does not count. */
function differencesOf(row) {
  if (!isPair || row.kind === "marks") return [];
  const [a, b] = row.sides.map(one => one.intervals);
  if (a.length === 0 || b.length === 0) return [];
  const from = Math.max(sides[0].start, sides[1].start), to = Math.min(sides[0].end, sides[1].end);
  const times = [...new Set([from, ...[...a, ...b].map(one => one.t).filter(t => t > from && t < to)])].sort(d3.ascending);
  const stretches = [];
  times.forEach((t, i) => {
    const end = i + 1 < times.length ? times[i + 1] : to;
    const [one, other] = [intervalAt(a, t), intervalAt(b, t)];
    if (end <= t || (one.value === other.value && one.number === other.number)) return;
    const last = stretches[stretches.length - 1];
    if (last && last.end === t) last.end = end;
    else stretches.push({t, end, kind: "difference", row});
  });
  return stretches;
}

for (const row of rows) row.differences = differencesOf(row);
