// What the stretch in sight amounted to: sums of the true intervals of the lanes.

const kFigures = [
  {row: "sleep", words: "asleep"},
  {row: "bluetooth", words: "Bluetooth off"},
  {row: "wifi", words: "Wi-Fi off"},
  {row: "modem", words: "modem off"},
  {row: "firewall", words: "firewall on"},
  {row: "frozen", words: "frozen", unit: ""},
  {row: "locks", words: "locks proxied", unit: ""},
  {row: "timers", words: "timers stretched", unit: " s"},
];

/** The time in `view` that counts of a lane, in how many stretches, and the greatest number there. */
function measureLane(side, lane, view) {
  const intervals = side.lanes.get(lane) || [];
  let ms = 0, times = 0, most = 0, last = null;
  for (let i = firstWithin(intervals, view[0]); i < intervals.length && intervals[i].t < view[1]; ++i) {
    const one = intervals[i];
    if (!one.counts || one.end <= view[0]) continue;
    ms += Math.min(one.end, view[1]) - Math.max(one.t, view[0]);
    most = Math.max(most, one.number);
    if (last !== one.t) ++times;
    last = one.end;
  }
  const isKnown = intervals.some(one => one.value !== "not known");
  return {ms, times, most, isKnown};
}

function killedIn(side, view) {
  return side.appEvents.filter(one => one.aspect === "clean" && one.value === "killed" && one.t >= view[0] && one.t <= view[1]);
}

const timesWords = times => (times === 1 ? "once" : times === 2 ? "twice" : `${d3.format(",")(times)} times`);

/** Everything that the figures say of a stretch: for each, its value on each side. */
function figuresOf(view) {
  const lanesFigures = kFigures.map(figure => ({
    words: figure.words, row: figure.row,
    sides: sides.map(side => {
      const {ms, times, most, isKnown} = measureLane(side, figure.row, view);
      const note = figure.unit === undefined || most === 0 ? timesWords(times)
        : `${times < 3 ? timesWords(times) : `${d3.format(",")(times)}×`}, up to ${most}${figure.unit}`;
      return {amount: ms, value: ms > 0 ? duration(ms) : isKnown ? "–" : "not known", note: ms > 0 ? note : ""};
    }),
  }));
  const killed = {
    words: "killed", row: "apps",
    sides: sides.map(side => {
      const few = killedIn(side, view);
      const names = [...new Set(few.map(one => one.app))];
      const kills = few.length > names.length ? `${timesWords(few.length)} in all: ` : "";
      return {amount: names.length, value: names.length > 0 ? count(names.length, "app") : "–", note: kills + names.slice(0, 12).join(", ") + (names.length > 12 ? " …" : ""), isNames: true};
    }),
  };
  return [...lanesFigures, killed];
}

function differenceWords([a, b], isCount) {
  if (a.amount === b.amount) return "the same";
  const by = b.amount - a.amount;
  return `${by > 0 ? "+" : "−"}${isCount ? Math.abs(by) : duration(Math.abs(by))}`;
}

function figureElement(figure) {
  const isNothing = figure.sides.every(one => one.amount === 0);
  return el("div", {class: `figure figure-${figure.row}${isNothing ? " none" : ""}`},
    el("span", {class: "figure-name"}, figure.words),
    figure.sides.map((one, i) => el("span", {class: "figure-value"}, isPair ? sideTag(sides[i]) : null, el("b", {}, one.value),
      isPair ? null : el("small", {title: one.isNames ? one.note : null}, one.note))),
    isPair ? el("small", {class: `figure-difference${figure.sides[0].amount === figure.sides[1].amount ? " none" : ""}`}, differenceWords(figure.sides, figure.row === "apps")) : null);
}

(() => {
  const box = document.querySelector(".figures");
  const draw = () => box.replaceChildren(...figuresOf(state.view).map(figureElement));
  let waiting = 0;
  listeners.on("view.figures", () => {
    cancelAnimationFrame(waiting);
    waiting = requestAnimationFrame(draw);
  });
  draw();
})();
