// The chart: an axis of local time and the rows below it, of which only what is in sight is drawn. What is narrower than
// a pixel is drawn together with its neighbours: as high as its share of their time.

const kNarrowPx = 1;
const kBarH = isPair ? 13 : 14;
const kDiffH = isPair ? 4 : 0;
const kCurveH = 30;
const kDepthH = isPair ? 34 : 56;
const kMarkH = 11;
const kRowGap = 7;
const kGroupGap = 9;
const kMostStretch = 1.6;
const kTickRoomPx = 56;

const barHeights = {bar: kBarH, depth: kDepthH, curve: kCurveH, marks: 0};

/** Where everything of a row lies, below its top. */
function layOut(row, stretch) {
  const barH = Math.round(barHeights[row.kind] * stretch);
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

/** The tops of rows and their whole height, with bars `stretch` times as high as they have to be. */
function placeRows(shown, stretch) {
  let y = 5;
  const places = new Map(shown.map(row => {
    const place = {...layOut(row, stretch), y};
    y += place.height + kRowGap + (row.after ? kGroupGap : 0);
    return [row, place];
  }));
  return {places, height: y};
}

/** How much higher bars may be so that rows fill `height`. */
function stretchFor(shown, height) {
  const least = placeRows(shown, 1).height, most = placeRows(shown, 2).height;
  return most > least ? Math.min(Math.max(1 + (height - least) / (most - least), 1), kMostStretch) : 1;
}

/** The share of the bar's height that an interval fills. */
const heightOf = one => (one.depth === undefined || one.look === "unknown" ? 1 : (one.depth || 1) / kDeepest);

/** A linear scale as a function that costs nothing. */
function quick(x) {
  const [t0, t1] = x.domain(), [x0, x1] = x.range();
  const factor = (x1 - x0) / (t1 - t0);
  return t => x0 + (t - t0) * factor;
}

/** Paths, by look, of the intervals in sight; bars stand, or hang where `hangs`. */
function barPaths(intervals, x, view, bar, hangs) {
  const at = quick(x);
  const paths = new Map();
  const put = (look, x0, x1, share) => {
    if (look === "" || share <= 0) return;
    const h = Math.min(bar.h, Math.max(2, bar.h * share));
    const y = hangs ? bar.y : bar.y + bar.h - h;
    const [l, t, w, d] = [x0, y, x1 - x0, h].map(number => Math.round(number * 10) / 10);
    paths.set(look, `${paths.get(look) || ""}M${l},${t}h${w}v${d}h${-w}z`);
  };
  // neighbours that share a pixel
  let crowdX = null, crowdEnd = 0, crowdMs = 0, filled = 0, sums = new Map();
  const flush = () => {
    if (crowdX === null) return;
    let loudest = "", most = 0;
    for (const [look, ms] of sums) if (ms > most) [loudest, most] = [look, ms];
    put(loudest, crowdX, Math.max(crowdEnd, crowdX + kNarrowPx), filled / crowdMs);
    crowdX = null;
  };
  for (let i = firstWithin(intervals, view[0]); i < intervals.length && intervals[i].t < view[1]; ++i) {
    const one = intervals[i];
    const x0 = at(Math.max(one.t, view[0])), x1 = at(Math.min(one.end, view[1]));
    if (x1 - x0 >= kNarrowPx) {
      flush();
      // a gap shows that something changed, where it cannot be taken for more than that
      const isGoingOn = one.t > view[0] && i > 0 && intervals[i - 1].look === one.look && Math.min(x1 - x0, x0 - at(intervals[i - 1].t)) > 30;
      put(one.look, isGoingOn ? x0 + 1 : x0, x1, heightOf(one));
      continue;
    }
    if (crowdX === null) {
      [crowdX, crowdMs, filled] = [x0, 0, 0];
      sums.clear();
    }
    crowdEnd = x1;
    const ms = one.end - one.t;
    crowdMs += ms;
    if (one.look !== "") {
      filled += ms * heightOf(one);
      sums.set(one.look, (sums.get(one.look) || 0) + ms);
    }
    if (crowdEnd - crowdX >= kNarrowPx) flush();
  }
  flush();
  return paths;
}

const firstWithin = (intervals, t) => Math.max(0, afterTime(intervals, t) - 1);

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
      context.font = `600 11px ${getComputedStyle(document.body).fontFamily}`;
      widths.set(words, context.measureText(words).width);
    }
    return widths.get(words);
  };
})();

/** Words for the bars that have room for them. */
function barLabels(row, intervals, x, view, bar) {
  const at = quick(x);
  const kLeastPx = 24, leastMs = kLeastPx * (view[1] - view[0]) / (at(view[1]) - at(view[0]));
  const labels = [];
  for (let i = firstWithin(intervals, view[0]); i < intervals.length && intervals[i].t < view[1]; ++i) {
    const one = intervals[i];
    if (one.look === "" || one.end - one.t < leastMs) continue;
    const x0 = at(Math.max(one.t, view[0])), x1 = at(Math.min(one.end, view[1]));
    const h = bar.h * heightOf(one);
    if (h < 13 || x1 - x0 < kLeastPx) continue;
    const words = [row.tell(one), one.value, one.value.replace(/^SLEEP, /, "")].find(some => measureText(some) < x1 - x0 - 8);
    if (words) labels.push({x: (x0 + x1) / 2, y: bar.y + h / 2 + 0.5, words, look: one.look});
  }
  return labels;
}

/** Words for the stretches of a curve that stands for one of two things. */
function curveLabels(row, samples, x, view, bar) {
  const inSight = samples.slice(firstWithin(samples, view[0]), byTime(samples, view[1]));
  return inSight.map(one => {
    const [x0, x1] = [x(Math.max(one.t, view[0])), x(Math.min(one.end, view[1]))];
    return {x: (x0 + x1) / 2, y: bar.y + bar.h / 2, words: row.words[one.value] || "", room: x1 - x0 - 8};
  }).filter(one => one.words !== "" && measureText(one.words) < one.room).slice(0, 60);
}

/** Draws rows into `root`. Made once, drawn for any stretch of time. */
class RowsDrawing {
  constructor(root, shown, stretch = 1) {
    this.shown = shown;
    Object.assign(this, placeRows(shown, stretch));
    this.grid = root.append("g").attr("class", "grid");
    this.between = root.append("path").attr("class", "between");
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
    const {step, times} = roundTimes(clock, view[0], view[1], width / kTickRoomPx);
    const midnights = step <= kDay && view[1] - view[0] < 400 * kDay ? clock.rounds(d3.utcDay, view[0], view[1]) : [];
    const line = (name, all) => this.grid.selectAll(`path.${name}`).data([null]).join("path").attr("class", name)
      .attr("d", all.map(t => `M${Math.round(x(t)) + 0.5},0V${this.height}`).join("") || null);
    line("tick", times);
    line("midnight", midnights);
    this.between.attr("d", this.shown.filter((row, i) => row.after && i + 1 < this.shown.length).map(row => {
      const {y, height} = this.places.get(row);
      return `M0,${Math.round(y + height + (kRowGap + kGroupGap) / 2) - 0.5}H${width}`;
    }).join("") || null);
    this.changes.selectAll("path").data([null]).join("path")
      .attr("d", clock.changesWithin(...view).map(one => `M${Math.round(x(one.t)) + 0.5},0V${this.height}`).join("") || null);
  }

  drawRow(group, row, x, view) {
    const place = this.places.get(row);
    for (const {side, intervals, marks} of row.sides) {
      const bar = place.bars[side.place];
      const within = [Math.max(view[0], side.start), Math.min(view[1], side.end)];
      const part = group.selectAll(`g.side-${side.letter}`).data([null]).join("g").attr("class", `side-${side.letter}`);
      const hasGround = row.kind !== "marks" && within[0] < within[1] && !(row.kind === "curve" && side.place > 0);
      part.selectAll("rect.ground").data(hasGround ? [bar] : []).join("rect").attr("class", "ground")
        .attr("x", x(within[0])).attr("width", x(within[1]) - x(within[0])).attr("y", bar.y).attr("height", bar.h);
      if (row.kind === "curve") {
        this.drawCurve(part, row, side, intervals, x, within, bar);
      } else {
        const paths = barPaths(intervals, x, within, bar, row.kind === "depth");
        part.selectAll("path.bar").data([...paths], ([look]) => look).join("path")
          .attr("class", ([look]) => `bar ${look}`).attr("d", ([, path]) => path);
        part.selectAll("text").data(barLabels(row, intervals, x, within, bar)).join("text")
          .attr("class", one => one.look).attr("x", one => one.x).attr("y", one => one.y).text(one => one.words);
      }
      const inSight = marksInSight(marks, x, view);
      part.selectAll("path.mark").data(kOutcomes).join("path").attr("class", outcome => `mark ${outcome}`)
        .attr("d", outcome => marksPath(inSight, outcome, x, place.marks[side.place]) || null);
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

  drawCurve(part, row, side, samples, x, view, bar) {
    const most = Math.max(1, mostOf(row));
    const y = row.scale().domain([0, most]).range([bar.y + bar.h - 1, bar.y + 2]);
    const points = view[0] < view[1] ? samplesInSight(samples, x, view) : [];
    const at = one => x(Math.min(Math.max(one.t, view[0]), view[1]));
    const defined = one => one.value !== null;
    const area = d3.area().defined(defined).curve(d3.curveStepAfter).x(at).y0(bar.y + bar.h).y1(one => y(one.value));
    const line = d3.line().defined(defined).curve(d3.curveStepAfter).x(at).y(one => y(one.value));
    part.selectAll("path.area").data([points]).join("path").attr("class", "area").attr("d", area);
    part.selectAll("text").data(row.words && side.place === 0 ? curveLabels(row, samples, x, view, bar) : []).join("text")
      .attr("x", one => one.x).attr("y", one => one.y).text(one => one.words);
    part.selectAll("path.line").data([points]).join("path").attr("class", "line").attr("d", line);
  }
}

/** Draws the axis of local time. */
function drawAxis(svg, x, view, clock, left) {
  const width = x.range()[1];
  const {step, times} = roundTimes(clock, view[0], view[1], width / kTickRoomPx);
  const pattern = step < kMinute ? "%H:%M:%S" : step < kDay ? "%H:%M" : step < 28 * kDay ? "%a %-d" : step < 365 * kDay ? "%b" : "%Y";
  const kHalfLabel = 16;
  const labelled = times.filter((t, i) => x(t) > kHalfLabel && x(t) < width - kHalfLabel && (i === 0 || x(t) - x(times[i - 1]) > kTickRoomPx * 0.7));
  svg.selectAll("text.tick").data(labelled).join("text")
    .attr("class", t => (step < kDay && clock.shown(t) % kDay === 0 ? "tick strong" : "tick"))
    .attr("x", t => left + x(t)).attr("y", 34).text(t => clock.format(t, pattern));
  // what the ticks leave out stands above them: at the left edge, and where it changes
  const [above, interval] = step < kDay ? ["%a %-d %b %Y", d3.utcDay] : step < 28 * kDay ? ["%B %Y", d3.utcMonth] : step < 365 * kDay ? ["%Y", d3.utcYear] : ["", null];
  const turns = interval ? [view[0], ...clock.rounds(interval, view[0] + 1, view[1])] : [];
  const changes = clock.changesWithin(...view);
  const room = measureText("Wed 30 Sep 2026") + 16;
  const titles = turns.filter((t, i) => i > 0 || turns.length === 1 || x(turns[1]) > room)
    .filter((t, i, all) => i === 0 || (x(t) - x(all[i - 1]) > room && x(t) + measureText(clock.format(t, above)) < width));
  svg.selectAll("text.above").data(titles).join("text").attr("class", "above")
    .attr("x", t => left + x(t) + (t === view[0] ? 0 : 4)).attr("y", 14).text(t => clock.format(t, above));
  const taken = titles.map(t => {
    const from = left + x(t) + (t === view[0] ? 0 : 4);
    return [from, from + measureText(clock.format(t, above))];
  });
  svg.selectAll("g.clock-change").data(changes).join(enter => {
    const g = enter.append("g").attr("class", "clock-change");
    g.append("rect");
    g.append("text");
    return g;
  }).each(function draw(one) {
    const by = `clocks ${one.by < 0 ? "back" : "on"} ${duration(Math.abs(one.by))}`;
    const words = view[1] - view[0] < 3 * kDay ? `${by}: ${one.before} → ${one.after}` : by;
    const w = measureText(words) + 14;
    let at = Math.min(Math.max(left + x(one.t), left + w / 2), left + width - w / 2);
    const inTheWay = taken.find(([from, to]) => at - w / 2 < to + 6 && at + w / 2 > from - 6);
    if (inTheWay) at = inTheWay[1] + 6 + w / 2;
    d3.select(this).select("rect").attr("x", at - w / 2).attr("y", 2).attr("width", w).attr("height", 17).attr("rx", 8);
    d3.select(this).select("text").attr("x", at).attr("y", 14).text(words);
  });
}
