// The chart: an axis of local time and the rows below it, of which only what is in sight is drawn. What is narrower than
// a pixel is drawn together with its neighbours: as high as its share of their time.

const kNarrowPx = 1;
const kBarH = isPair ? 11 : 14;
const kDiffH = isPair ? 4 : 0;
const kCurveH = 30;
const kDepthH = isPair ? 34 : 56;
const kMarkH = 11;
const kRowGap = 7;
const kGroupGap = 11;

/** Where everything of a row lies, below its top. */
function layOut(row) {
  const barH = row.kind === "depth" ? kDepthH : row.kind === "curve" ? kCurveH : row.kind === "marks" ? 0 : kBarH;
  const isShared = row.kind === "curve";
  const bars = sides.map((_, i) => ({y: isShared ? 0 : i * (barH + kDiffH), h: barH}));
  const differenceY = isShared ? barH : barH + 0.5;
  let y = bars[bars.length - 1].y + barH + (isShared ? kDiffH : 0);
  const marks = sides.map(() => {
    if (!row.hasMarks) return y;
    y += kMarkH + (row.kind === "marks" ? 1 : 0);
    return y - kMarkH / 2 + (row.kind === "marks" ? 0 : 1.5);
  });
  return {bars, marks, differenceY, height: y + (row.hasMarks && row.kind !== "marks" ? 2 : 0)};
}

/** Paths, by look, of the intervals in sight. `heightOf` tells the share of the bar that a look fills. */
function barPaths(intervals, row, x, view, bar, hangs) {
  const paths = new Map();
  const put = (look, x0, x1, share) => {
    if (look === "" || share <= 0) return;
    const h = Math.min(bar.h, Math.max(2, bar.h * share));
    const y = hangs ? bar.y : bar.y + bar.h - h;
    paths.set(look, `${paths.get(look) || ""}M${x0.toFixed(1)},${y.toFixed(1)}h${(x1 - x0).toFixed(1)}v${h.toFixed(1)}h${(x0 - x1).toFixed(1)}z`);
  };
  const heightOf = one => (row.kind === "depth" && one.value !== "not known" ? (one.depth || 1) / kDeepest : 1);
  let crowd = null;
  const flush = () => {
    if (!crowd) return;
    let loudest = null, filled = 0;
    for (const [look, {ms, height}] of crowd.looks) {
      filled += height;
      if (!loudest || ms > loudest.ms) loudest = {look, ms};
    }
    if (loudest) put(loudest.look, crowd.x0, Math.max(crowd.x1, crowd.x0 + kNarrowPx), filled / crowd.ms);
    crowd = null;
  };
  for (let i = firstWithin(intervals, view[0]); i < intervals.length && intervals[i].t < view[1]; ++i) {
    const one = intervals[i];
    const x0 = x(Math.max(one.t, view[0])), x1 = x(Math.min(one.end, view[1]));
    if (x1 - x0 >= kNarrowPx) {
      flush();
      put(row.look(one), x0, x1, heightOf(one));
      continue;
    }
    crowd = crowd || {x0, x1, ms: 0, looks: new Map()};
    crowd.x1 = x1;
    const ms = one.end - one.t;
    crowd.ms += ms;
    const look = row.look(one);
    if (look !== "") {
      const sum = crowd.looks.get(look) || {ms: 0, height: 0};
      crowd.looks.set(look, {ms: sum.ms + ms, height: sum.height + ms * heightOf(one)});
    }
    if (crowd.x1 - crowd.x0 >= kNarrowPx) flush();
  }
  flush();
  return paths;
}

const firstWithin = (intervals, t) => Math.max(0, d3.bisector(one => one.t).right(intervals, t) - 1);

/** The samples in sight; of those that share a pixel the least and the greatest. */
function samplesInSight(samples, x, view) {
  const inSight = samples.slice(firstWithin(samples, view[0]), byTime(samples, view[1]));
  if (inSight.length === 0) return inSight;
  const width = x.range()[1];
  const last = inSight[inSight.length - 1];
  const thin = inSight.length <= 2 * width ? inSight
    : d3.groups(inSight, one => Math.floor(x(one.t))).flatMap(([, few]) =>
      [d3.least(few, one => one.value), d3.least(few, one => -one.value)].sort((a, b) => a.t - b.t));
  return [...thin, {...last, t: last.end}];
}

const measureText = (() => {
  const context = document.createElement("canvas").getContext("2d");
  const widths = new Map();
  return words => {
    if (!widths.has(words)) {
      context.font = `11px ${getComputedStyle(document.body).fontFamily}`;
      widths.set(words, context.measureText(words).width);
    }
    return widths.get(words);
  };
})();

/** Words for the bars that have room for them. */
function barLabels(row, intervals, x, view, bar) {
  if (bar.h < 11) return [];
  const labels = [];
  for (let i = firstWithin(intervals, view[0]); i < intervals.length && intervals[i].t < view[1]; ++i) {
    const one = intervals[i];
    const x0 = x(Math.max(one.t, view[0])), x1 = x(Math.min(one.end, view[1]));
    const look = row.look(one);
    if (look === "" || x1 - x0 < 24) continue;
    const h = row.kind === "depth" && look !== "unknown" ? bar.h * (one.depth || 1) / kDeepest : bar.h;
    const words = [row.tell(one), one.value, one.value.replace(/^SLEEP, /, "")].find(some => measureText(some) < x1 - x0 - 8);
    if (words && h >= 11) labels.push({x: (x0 + x1) / 2, y: bar.y + h - Math.min(h, 14) / 2, words, look});
  }
  return labels;
}

/** Draws rows into `root` for a stretch of time; `place(row)` is the top of each. Made once, drawn as often as needed. */
class RowsDrawing {
  constructor(root, shown) {
    this.root = root;
    this.shown = shown;
    let y = 4;
    this.places = new Map(shown.map(row => {
      const place = {...layOut(row), y};
      y += place.height + kRowGap + (row.after ? kGroupGap : 0);
      return [row, place];
    }));
    this.height = y;
    this.grid = root.append("g").attr("class", "grid");
    this.groups = root.selectAll("g.row").data(shown).join("g")
      .attr("class", row => `row ${row.kind} row-${row.id}`)
      .attr("data-row", row => row.id)
      .attr("transform", row => `translate(0,${this.places.get(row).y})`);
    this.changes = root.append("g").attr("class", "clock-changes");
  }

  draw(x, view, clock) {
    this.drawGrid(x, view, clock);
    const drawing = this;
    this.groups.each(function draw(row) { drawing.drawRow(d3.select(this), row, x, view); });
  }

  drawGrid(x, view, clock) {
    const width = x.range()[1];
    const {step, times} = roundTimes(clock, view[0], view[1], width / 72);
    const midnights = step <= kDay && view[1] - view[0] < 400 * kDay ? clock.rounds(d3.utcDay, view[0], view[1]) : [];
    const line = (name, all) => this.grid.selectAll(`path.${name}`).data([null]).join("path").attr("class", name)
      .attr("d", all.map(t => `M${Math.round(x(t)) + 0.5},0V${this.height}`).join("") || null);
    line("tick", times);
    line("midnight", midnights);
    this.changes.selectAll("path").data([null]).join("path")
      .attr("d", clock.changesWithin(...view).map(one => `M${Math.round(x(one.t)) + 0.5},0V${this.height}`).join("") || null);
  }

  drawRow(group, row, x, view) {
    const place = this.places.get(row);
    for (const {side, intervals, marks} of row.sides) {
      const bar = place.bars[side.place];
      const within = [Math.max(view[0], side.start), Math.min(view[1], side.end)];
      const part = group.selectAll(`g.side-${side.letter}`).data([null]).join("g").attr("class", `side-${side.letter}`);
      const hasGround = row.kind !== "marks" && within[0] < within[1];
      part.selectAll("rect.ground").data(hasGround ? [bar] : []).join("rect").attr("class", "ground")
        .attr("x", x(within[0])).attr("width", x(within[1]) - x(within[0])).attr("y", bar.y).attr("height", bar.h);
      if (row.kind === "curve") {
        this.drawCurve(part, row, intervals, x, within, bar);
      } else {
        const paths = barPaths(intervals, row, x, within, bar, row.kind === "depth");
        part.selectAll("path.bar").data([...paths], ([look]) => look).join("path")
          .attr("class", ([look]) => `bar ${look}`).attr("d", ([, path]) => path);
        part.selectAll("text").data(barLabels(row, intervals, x, within, bar)).join("text")
          .attr("class", one => one.look).attr("x", one => one.x).attr("y", one => one.y).text(one => one.words);
      }
      part.selectAll("path.mark").data(kOutcomes).join("path").attr("class", outcome => `mark ${outcome}`)
        .attr("d", outcome => marksPath(marks, outcome, x, view, place.marks[side.place]) || null);
    }
    group.selectAll("path.difference").data(row.differences.length > 0 ? [row.differences] : []).join("path")
      .attr("class", "difference").attr("d", all => this.differencePath(all, place, x, view) || null);
  }

  differencePath(all, place, x, view) {
    let path = "", last = -Infinity;
    for (let i = firstWithin(all, view[0]); i < all.length && all[i].t < view[1]; ++i) {
      const x0 = Math.max(x(Math.max(all[i].t, view[0])), last), x1 = Math.max(x(Math.min(all[i].end, view[1])), x0 + 1);
      if (all[i].end <= view[0] || x1 <= last + 0.5) continue;
      path += `M${x0.toFixed(1)},${place.differenceY}h${(x1 - x0).toFixed(1)}v${kDiffH - 1}h${(x0 - x1).toFixed(1)}z`;
      last = x1;
    }
    return path;
  }

  drawCurve(part, row, samples, x, view, bar) {
    const most = Math.max(1, d3.max(row.sides, one => d3.max(one.intervals, sample => sample.value)));
    const y = row.scale().domain([0, most]).range([bar.y + bar.h - 1, bar.y + 2]);
    const points = view[0] < view[1] ? samplesInSight(samples, x, view) : [];
    const at = one => x(Math.min(Math.max(one.t, view[0]), view[1]));
    const defined = one => one.value !== null;
    const area = d3.area().defined(defined).curve(d3.curveStepAfter).x(at).y0(bar.y + bar.h).y1(one => y(one.value));
    const line = d3.line().defined(defined).curve(d3.curveStepAfter).x(at).y(one => y(one.value));
    part.selectAll("path.area").data([points]).join("path").attr("class", "area").attr("d", area);
    part.selectAll("path.line").data([points]).join("path").attr("class", "line").attr("d", line);
  }
}

/** Draws the axis of local time. */
function drawAxis(svg, x, view, clock, left) {
  const width = x.range()[1];
  const {step, times} = roundTimes(clock, view[0], view[1], width / 72);
  const pattern = step < kMinute ? "%H:%M:%S" : step < kDay ? "%H:%M" : step < 28 * kDay ? "%a %-d" : step < 365 * kDay ? "%b" : "%Y";
  svg.selectAll("text.tick").data(times.filter(t => x(t) > 14 && x(t) < width - 14)).join("text")
    .attr("class", t => (step < kDay && clock.shown(t) % kDay === 0 ? "tick strong" : "tick"))
    .attr("x", t => left + x(t)).attr("y", 34).text(t => clock.format(t, pattern));
  // what the ticks leave out stands above them: at the left edge, and where it changes
  const [above, interval] = step < kDay ? ["%a %-d %b %Y", d3.utcDay] : step < 28 * kDay ? ["%B %Y", d3.utcMonth] : step < 365 * kDay ? ["%Y", d3.utcYear] : ["", null];
  const turns = interval ? [view[0], ...clock.rounds(interval, view[0] + 1, view[1])] : [];
  const changes = clock.changesWithin(...view);
  const room = measureText("Wed 30 Sep 2026") + 16;
  const titles = turns.filter((t, i) => i > 0 || turns.length === 1 || x(turns[1]) > room)
    .filter((t, i, all) => i === 0 || x(t) - x(all[i - 1]) > room);
  svg.selectAll("text.above").data(titles).join("text").attr("class", "above")
    .attr("x", t => left + x(t) + (t === view[0] ? 0 : 4)).attr("y", 14).text(t => clock.format(t, above));
  svg.selectAll("g.clock-change").data(changes).join(enter => {
    const g = enter.append("g").attr("class", "clock-change");
    g.append("rect");
    g.append("text");
    return g;
  }).each(function draw(one) {
    const words = `clocks ${one.by < 0 ? "back" : "on"} ${duration(Math.abs(one.by))}: ${one.before} → ${one.after}`;
    const w = measureText(words) + 14;
    const at = Math.min(Math.max(left + x(one.t), left + w / 2), left + width - w / 2);
    d3.select(this).select("rect").attr("x", at - w / 2).attr("y", 2).attr("width", w).attr("height", 17).attr("rx", 8);
    d3.select(this).select("text").attr("x", at).attr("y", 14).text(words);
  });
}
