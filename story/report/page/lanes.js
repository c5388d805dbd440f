// The chart on the screen: the rows with their names, and over them what is pointed at and what is selected.

const lanes = (() => {
  const kRight = 14;
  const kMostEffects = 40;
  const box = document.querySelector(".rows");
  const names = d3.select(box).append("div").attr("class", "names");
  const svg = d3.select(box).append("svg").attr("class", "plot").attr("aria-hidden", "true");
  const axis = d3.select(".axis").append("svg").attr("height", 42);
  const pointedTime = axis.append("g").attr("class", "cursor-time").style("display", "none");
  pointedTime.append("rect").attr("rx", 3).attr("y", 21).attr("height", 18);
  pointedTime.append("text").attr("y", 34);

  const x = d3.scaleLinear();
  let onlyDiffering = false;
  let drawing, left, heightThen;

  // laying out

  /** In a wide window the rows have a height of their own, to be filled. */
  const isFilling = () => getComputedStyle(document.body).display === "flex";

  function layOutAll() {
    heightThen = box.clientHeight;
    const shown = onlyDiffering ? rows.filter(row => row.differences.length > 0 || differsInMarks(row)) : rows;
    svg.selectAll("*").remove();
    drawing = new RowsDrawing(svg.append("g"), shown, stretchFor(shown, isFilling() ? heightThen - 4 : 0));
    const over = svg.append("g").attr("class", "over");
    for (const name of ["cursor", "selected-line"]) over.append("path").attr("class", name);
    over.append("g").attr("class", "flows");
    over.append("rect").attr("class", "ring").attr("rx", 3).style("display", "none");
    over.append("g").attr("class", "highlight");
    svg.attr("height", drawing.height);
    nameRows();
    fit();
  }

  function nameRows() {
    names.style("height", `${drawing.height}px`).selectAll("button").data(drawing.shown, row => row.id).join("button")
      .attr("type", "button").attr("tabindex", -1).attr("title", "List only what happened here")
      .style("top", row => `${drawing.places.get(row).y - 2}px`)
      .style("height", row => `${Math.max(17, drawing.places.get(row).height)}px`)
      .on("click", row => setFilter({subjects: isChosen(row) ? null : new Set(row.subjects)}))
      .each(function fill(row) {
        const {marks, bars} = drawing.places.get(row);
        const middle = side => (row.kind === "marks" ? marks[side.place] : bars[side.place].y + bars[side.place].h / 2);
        this.replaceChildren(row.label, ...(row.kind === "curve" && !row.words ? [el("small", {}, rangeOf(row))] : []),
          ...(isPair && row.kind !== "curve" ? sides.map(side => el("i", {class: `side-tag side-${side.letter}`, style: `top: ${middle(side) - 5}px`}, side.letter)) : []));
      });
  }

  const isChosen = row => state.subjects !== null && state.subjects.size === row.subjects.length && row.subjects.every(one => state.subjects.has(one));
  const rangeOf = row => `0 – ${d3.format(",.3~r")(mostOf(row))}${row.unit ? ` ${row.unit}` : ""}`;

  /** Takes the width that there is. */
  function fit() {
    left = names.node().offsetWidth;
    const width = Math.max(60, box.clientWidth - left - kRight);
    svg.attr("width", width + kRight).style("margin-left", `${left}px`);
    axis.attr("width", left + width + kRight);
    x.range([0, width]);
    draw();
  }

  // drawing

  function draw() {
    const {clock} = sides[0];
    x.domain(state.view);
    drawing.draw(x, state.view, clock);
    drawAxis(axis, x, state.view, clock, left);
    drawSelected();
    drawPointed();
    box.setAttribute("aria-label", `Lanes, ${stretch(clock, ...state.view)}`);
  }

  /** Where an event stands in the plot: its mark, or the start of the bar that it began. */
  function whereIs(event) {
    const row = rowOf(event);
    const place = row && drawing.places.get(row);
    if (!place) return null;
    const bar = place.bars[event.side.place];
    const isAtMark = bar.h === 0 || isMarked(row.sides[event.side.place], event);
    const edge = 3;
    return {
      x: Math.min(Math.max(x(event.t), -edge), x.range()[1] + edge),
      y: place.y + (isAtMark ? place.marks[event.side.place] : bar.y + bar.h / 2),
    };
  }

  const isInSight = t => t >= state.view[0] && t <= state.view[1];
  const circles = (group, places) => group.selectAll("circle").data(places).join("circle").attr("r", 7)
    .attr("cx", one => one.x).attr("cy", one => one.y);

  function drawSelected() {
    const event = state.selected;
    const at = event && whereIs(event);
    svg.select(".selected-line").attr("d", event && isInSight(event.t) ? `M${x(event.t)},0V${drawing.height}` : null);
    const cause = event && causeOf(event);
    const isSeen = other => isInSight(event.t) || isInSight(other.t);
    const links = !at ? [] : [
      ...(cause && isSeen(cause) ? [{from: whereIs(cause), to: at, kind: "cause"}] : []),
      ...effectsOf(event).filter(isSeen).slice(0, kMostEffects).map(effect => ({from: at, to: whereIs(effect), kind: "effect"})),
    ].filter(link => link.from && link.to);
    const flows = svg.select(".flows");
    flows.selectAll("path").data(links).join("path").attr("class", link => link.kind).attr("marker-end", "url(#arrow)")
      .attr("d", ({from, to}) => {
        const bend = Math.abs(to.x - from.x) < 24 ? 22 : 0;  // so that what is of one instant can be seen
        return `M${from.x},${from.y}C${from.x + bend},${from.y} ${to.x + bend},${to.y} ${to.x + (bend ? 5 : 0)},${to.y}`;
      });
    circles(flows, at && isInSight(event.t) ? [at] : []);
  }

  /** Shows where an event stands; null ends it. */
  function highlight(event) {
    const at = event && isInSight(event.t) ? whereIs(event) : null;
    const group = svg.select(".highlight");
    group.selectAll("path").data(at ? [at] : []).join("path").attr("d", one => `M${one.x},0V${drawing.height}`);
    circles(group, at ? [at] : []);
  }

  /** Shows the time at a place of the plot; null ends it. */
  function drawCursor(px) {
    svg.select(".cursor").attr("d", px === null ? null : `M${px},0V${drawing.height}`);
    pointedTime.style("display", px === null ? "none" : null);
    if (px === null) return;
    const words = sides[0].clock.format(x.invert(px), state.view[1] - state.view[0] > 3 * kDay ? "%a %-d %b %H:%M" : "%H:%M:%S");
    const w = measureText(words) + 12;
    const at = Math.min(Math.max(left + px, w / 2), left + x.range()[1] + kRight - w / 2);
    pointedTime.raise().select("rect").attr("x", at - w / 2).attr("width", w);
    pointedTime.select("text").attr("x", at).text(words);
  }

  /** The card of what is pointed at, and a ring around it if it is the keyboard that points. */
  function drawPointed() {
    const at = state.pointed;
    const place = at && at.byKeyboard && drawing.places.get(at.row);
    const ring = svg.select(".ring").style("display", place ? null : "none");
    if (!place) return showCard(at && at.at ? at : null, at && at.at);
    const {thing} = at;
    const isMark = thing.kind === "event";
    const bar = place.bars[thing.side.place];
    const from = Math.max(-2, x(thing.t) - (isMark ? 7 : 1));
    const to = Math.min(x.range()[1] + 2, isMark ? x(thing.t) + 7 : Math.max(x(thing.end), x(thing.t) + 4) + 1);
    const y = place.y + (isMark ? place.marks[thing.side.place] - 7 : bar.y - 2);
    ring.attr("x", from).attr("width", Math.max(4, to - from)).attr("y", y).attr("height", isMark ? 14 : bar.h + 4);
    const rect = svg.node().getBoundingClientRect();
    const beside = Math.min(Math.max(from, 0) + Math.min(40, to - from), x.range()[1]);
    return showCard(at, {x: rect.left + beside, y: rect.top + y + bar.h + 2});
  }

  // what is where

  /** The place of a pointer in the plot. */
  function placeOf(event) {
    const rect = svg.node().getBoundingClientRect();
    return [event.clientX - rect.left, event.clientY - rect.top];
  }

  /** What lies at a place of the plot: {row, thing}, and how many others, or the crowd of which it is one. */
  function thingAt(px, py) {
    const row = drawing.shown.find(one => {
      const {y, height} = drawing.places.get(one);
      return py >= y - kRowGap / 2 && py < y + height + kRowGap / 2;
    });
    if (!row || px < 0 || px > x.range()[1]) return null;
    const {y, bars, marks: markYs, differenceY} = drawing.places.get(row);
    const inRow = py - y;
    const t = x.invert(px);
    const distance = ({place}) => Math.min(Math.abs(inRow - markYs[place]), Math.abs(inRow - bars[place].y - bars[place].h / 2));
    const {side, intervals, marks} = d3.least(row.sides, one => distance(one.side));
    const isAtMarks = row.kind === "marks" || (row.hasMarks && inRow >= markYs[0] - kMarkH / 2);
    const near = marksNear(marksInSight(marks, x, state.view), t, x, isAtMarks ? 9 : 3);
    if (near.length > 0) return {row, thing: near[0], others: near.length - 1};
    if (t < side.start || t > side.end || intervals.length === 0) return null;
    if (isPair && inRow > differenceY - 1 && inRow < differenceY + kDiffH && row.differences.length > 0) {
      const difference = intervalAt(row.differences, t);
      if (difference.t <= t && t < difference.end) return {row, thing: difference};
    }
    const [from, to] = [x.invert(px - 0.5), x.invert(px + 0.5)];
    const few = intervals.slice(firstWithin(intervals, from), byTime(intervals, to));
    return {row, thing: intervalAt(intervals, t), crowd: few.length > 3 ? {few, from, to} : null};
  }

  /** Selects what there is to tell of a thing, or lets it go if it is selected. */
  function choose(at) {
    showCard(null);
    const event = !at ? null : at.thing.kind === "event" ? at.thing
      : at.thing.kind === "interval" ? beginningOf(at.row.sides[at.thing.side.place].intervals, at.thing) : null;
    select(event !== state.selected ? event : null);
  }

  let frame = 0;
  listeners.on("view.lanes", () => {
    x.domain(state.view);
    cancelAnimationFrame(frame);
    frame = requestAnimationFrame(draw);
  });
  listeners.on("selected.lanes", drawSelected);
  listeners.on("pointed.lanes", drawPointed);
  whenResized(box, () => {
    if (!drawing) return;
    if (isFilling() && box.clientHeight !== heightThen) layOutAll();
    else fit();
  });

  return {
    box, x, layOutAll, highlight, drawCursor, placeOf, thingAt, choose,
    rows: () => drawing.shown,
    showOnlyDiffering(flag) { onlyDiffering = flag; layOutAll(); },
  };
})();

/** A hatching for what is not known, a finer one for what the user has off, and the arrow of what led to what. */
(() => {
  const defs = d3.select("body").append("svg").attr("class", "patterns").attr("aria-hidden", "true").append("defs");
  const hatch = (id, size, turn) => {
    const pattern = defs.append("pattern").attr("id", id).attr("width", size).attr("height", size)
      .attr("patternUnits", "userSpaceOnUse").attr("patternTransform", `rotate(${turn})`);
    pattern.append("rect").attr("class", `${id}-ground`).attr("width", size).attr("height", size);
    pattern.append("path").attr("class", `${id}-line`).attr("d", `M0,0V${size}`);
  };
  hatch("hatch-unknown", 6, 45);
  hatch("hatch-byuser", 4, -45);
  defs.append("marker").attr("id", "arrow").attr("viewBox", "0 0 8 8").attr("refX", 6).attr("refY", 4)
    .attr("markerWidth", 6).attr("markerHeight", 6).attr("orient", "auto-start-reverse")
    .append("path").attr("d", "M0,0L8,4L0,8z");
})();
