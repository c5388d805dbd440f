// The nights as the page works with them. The data holds numbers and, once each, texts; a text is its place in `strings`.
// All times here are the page's: milliseconds of the wall clock, the second night moved onto the first where the two are
// of different days.

const data = JSON.parse(document.getElementById("data").textContent);

const text = place => (place < 0 ? "" : data.strings[place]);
/** The place of the first thing that is not before a time, and of the first behind it. */
const {left: byTime, right: afterTime} = d3.bisector(thing => thing.t);

/** Rows whose first number is the time since the row before, as absolute times. */
function unfolded(rows, start, make) {
  let t = start;
  return rows.map((row, place) => make((t += row[0]), row, place));
}

function readEvents(side, raw) {
  const events = unfolded(raw.events, side.start, (t, row, place) => {
    const values = [];
    for (let i = 8; i < row.length; i += 2) values.push({name: text(row[i]), text: text(row[i + 1])});
    return {
      side, place, t, values, kind: "event",
      subject: text(row[1]), outcome: text(row[2]), isRepeat: row[3] === 1, cause: row[4],
      text: text(row[5]), reason: text(row[6]), next: text(row[7]),
    };
  });
  // what is said again in the same words is told with what said it first
  const said = new Map();
  for (const event of events) {
    const words = `${event.subject} ${event.text}`;
    const first = said.get(words);
    if (!event.isRepeat) said.set(words, Object.assign(event, {again: 0, againUntil: event.t}));
    else if (first) Object.assign(first, {again: first.again + 1, againUntil: event.t});
  }
  return events;
}

function readLane(side, [name, ...rows]) {
  const intervals = unfolded(rows, side.start, (t, row) => ({
    side, t, end: side.end, kind: "interval", lane: text(name),
    value: text(row[1]), number: row[2], event: row[3], counts: row[4] === 1,
  }));
  intervals.forEach((interval, i) => { if (i > 0) intervals[i - 1].end = interval.t; });
  return [text(name), intervals];
}

function readSamples(side, rows, name) {
  const samples = unfolded(rows, side.start, (t, row) =>
    ({side, t, end: side.end, kind: "sample", series: name, value: row[1]}));
  samples.forEach((sample, i) => { if (i > 0) samples[i - 1].end = sample.t; });
  return samples;
}

function readSide(raw, place, shift) {
  const side = {
    place, shift,
    letter: "AB"[place],
    label: text(raw.label), name: text(raw.name), zone: text(raw.zone),
    start: raw.start + shift, end: raw.end + shift,
    strategies: raw.strategies.map(text),
    head: raw.head.map(([name, fact]) => ({name: text(name), text: text(fact)})),
    record: raw.record,
  };
  side.clock = new Clock(raw.offsets.map(([t, offset]) => ({t: t + shift, offset})), shift);
  side.events = readEvents(side, raw);
  side.lanes = new Map(raw.lanes.map(lane => readLane(side, lane)));
  side.series = new Map(["light", "stillness", "proximity"].map(name => [name, readSamples(side, raw[name], name)]));
  const apps = raw.apps.map(text);
  side.appEvents = unfolded(raw.appEvents, side.start, (t, row) => ({
    t, app: apps[row[1]], aspect: text(row[2]), value: text(row[3]), reason: text(row[4]), event: row[5],
  }));
  return side;
}

/** How far the second night is moved: not at all if the two overlap, else so that its clock shows the first one's. */
function shiftOf(first, second) {
  if (second.start < first.end && first.start < second.end) return 0;
  const offset = raw => d3.least(raw.offsets.filter(([t]) => t <= raw.start), ([t]) => -t)[1];
  const days = Math.round((first.start + offset(first) - second.start - offset(second)) / kDay);
  return offset(second) - offset(first) + days * kDay;
}

const sides = data.sides.map((raw, i) => readSide(raw, i, i === 0 ? 0 : shiftOf(data.sides[0], raw)));
const isPair = sides.length === 2;
const whole = [d3.min(sides, side => side.start), Math.max(d3.max(sides, side => side.end), sides[0].start + 1000)];

/** The things that an event led to: those that name it as their cause. */
const effectsOf = event => {
  const {side} = event;
  side.effects = side.effects || d3.group(side.events.filter(one => one.cause >= 0), one => one.cause);
  return side.effects.get(event.place) || [];
};

const causeOf = event => (event.cause >= 0 ? event.side.events[event.cause] : null);

/** What became of applications by an event. */
const appsOf = event => {
  const {side} = event;
  side.appsByEvent = side.appsByEvent || d3.group(side.appEvents.filter(one => one.event >= 0), one => one.event);
  return side.appsByEvent.get(event.place) || [];
};

/** The interval of a lane that holds at a time. */
const intervalAt = (intervals, t) => intervals[Math.max(0, afterTime(intervals, t) - 1)];

/** The thing that made a lane as it is in an interval: where only its number changed, what began it all. */
function beginningOf(intervals, interval) {
  let at = intervals.indexOf(interval);
  while (at > 0 && intervals[at].event < 0 && intervals[at - 1].value === interval.value) --at;
  return at >= 0 && intervals[at].event >= 0 ? interval.side.events[intervals[at].event] : null;
}
