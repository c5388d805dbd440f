// Local time as the phone showed it, wherever the page is read.

const kSecond = 1000, kMinute = 60 * kSecond, kHour = 60 * kMinute, kDay = 24 * kHour;

/** The local clock of one night: `changes` begin with what holds at the start. */
class Clock {
  constructor(changes, shift) {
    this.changes = changes;
    this.shift = shift;
  }

  changeAt(t) {
    return this.changes[Math.max(0, d3.bisector(one => one.t).right(this.changes, t) - 1)];
  }

  /** What the clock shows, as milliseconds of a clock that never changes. */
  shown(t) {
    return t - this.shift + this.changeAt(t).offset;
  }

  /** When the clock shows `shown`; the first time if there are two, just after the gap if there is none. */
  when(shown) {
    const find = change => shown + this.shift - change.offset;
    const fits = this.changes.filter((change, i) => {
      const next = this.changes[i + 1];
      return (i === 0 || find(change) >= change.t) && (!next || find(change) < next.t);
    });
    if (fits.length > 0) return find(fits[0]);
    return this.changes.find((change, i) => i > 0 && find(change) < change.t).t;
  }

  format(t, pattern) {
    return formatter(pattern)(new Date(this.shown(t)));
  }

  /** The changes of the clock within a stretch, each with what it showed before and after; none where there are many. */
  changesWithin(from, to) {
    const kMost = 8;
    const within = this.changes.slice(1).filter(one => one.t > from && one.t < to);
    return (within.length > kMost ? [] : within).map(one => {
      const before = this.changes[this.changes.indexOf(one) - 1];
      return {
        t: one.t, by: one.offset - before.offset,
        before: formatter("%H:%M")(new Date(one.t - this.shift + before.offset)),
        after: this.format(one.t, "%H:%M"),
      };
    });
  }

  /** The times within a stretch at which the clock shows a round time of `interval`. */
  rounds(interval, from, to) {
    return this.changes.flatMap((change, i) => {
      const begin = Math.max(from, i === 0 ? -Infinity : change.t);
      const end = Math.min(to, i + 1 < this.changes.length ? this.changes[i + 1].t - 1 : Infinity);
      if (begin > end) return [];
      const ahead = change.offset - this.shift;
      return interval.range(new Date(begin + ahead), new Date(end + ahead + 1)).map(date => date.getTime() - ahead);
    });
  }
}

const formatters = new Map();
function formatter(pattern) {
  if (!formatters.has(pattern)) formatters.set(pattern, d3.utcFormat(pattern));
  return formatters.get(pattern);
}

const kRounds = [
  [kSecond, d3.utcSecond], [5 * kSecond, d3.utcSecond.every(5)], [15 * kSecond, d3.utcSecond.every(15)],
  [30 * kSecond, d3.utcSecond.every(30)], [kMinute, d3.utcMinute], [2 * kMinute, d3.utcMinute.every(2)],
  [5 * kMinute, d3.utcMinute.every(5)], [10 * kMinute, d3.utcMinute.every(10)], [15 * kMinute, d3.utcMinute.every(15)],
  [30 * kMinute, d3.utcMinute.every(30)], [kHour, d3.utcHour], [2 * kHour, d3.utcHour.every(2)],
  [3 * kHour, d3.utcHour.every(3)], [6 * kHour, d3.utcHour.every(6)], [12 * kHour, d3.utcHour.every(12)],
  [kDay, d3.utcDay], [2 * kDay, d3.utcDay.every(2)], [7 * kDay, d3.utcMonday], [30 * kDay, d3.utcMonth],
  [91 * kDay, d3.utcMonth.every(3)], [365 * kDay, d3.utcYear], [3650 * kDay, d3.utcYear.every(10)],
  [36500 * kDay, d3.utcYear.every(100)], [365000 * kDay, d3.utcYear.every(1000)],
];

/** Round times for an axis with room for `most`: their step and their instants. */
function roundTimes(clock, from, to, most) {
  const [step, interval] = kRounds.find(([ms]) => (to - from) / ms <= most) || kRounds[kRounds.length - 1];
  return {step, times: clock.rounds(interval, from, to)};
}

/** "4 s", "12 min", "7 h 05 min". */
function duration(ms) {
  if (ms < kSecond) return ms > 0 ? `${Math.round(ms)} ms` : "0 s";
  if (ms < kMinute) return `${Math.floor(ms / kSecond)} s`;
  const minutes = Math.round(ms / kMinute);
  if (minutes < 60) return `${minutes} min`;
  const hours = Math.floor(minutes / 60), rest = minutes % 60;
  const full = `${d3.format(",")(hours)} h`;
  return rest === 0 ? full : `${full} ${String(rest).padStart(2, "0")} min`;
}

/** The same for long stretches: "7 days", "28 days 3 h". */
function days(ms) {
  if (ms < 2 * kDay) return duration(ms);
  const full = Math.floor(ms / kDay), rest = ms - full * kDay;
  return `${full} days${rest < kMinute ? "" : ` ${duration(rest)}`}`;
}

/** A time of day to the second. */
const timeOfDay = (clock, t) => clock.format(t, "%H:%M:%S");

/** "Sun 1 Mar 2026 21:00 – Mon 2 Mar 2026 08:15", the second day only where it is another. */
function stretch(clock, from, to) {
  const day = t => clock.format(t, "%a %-d %b %Y");
  const time = t => clock.format(t, clock.shown(t) % kMinute === 0 ? "%H:%M" : "%H:%M:%S");
  return `${day(from)} ${time(from)} – ${day(from) === day(to) ? "" : `${day(to)} `}${time(to)}`;
}
