// The chart on the screen: pointing, zooming, moving, and going through it with the keyboard.

const lanes = (() => {
  const kRight = 14;
  const box = document.querySelector(".rows");
  const axisBox = document.querySelector(".axis");
  const names = d3.select(box).append("div").attr("class", "names");
  const svg = d3.select(box).append("svg").attr("class", "plot").attr("aria-hidden", "true");
  const axis = d3.select(axisBox).append("svg");
  const cursorTime = axis.append("g").attr("class", "cursor-time");
  cursorTime.append("rect").attr("rx", 3).attr("y", 21).attr("height", 18);
  cursorTime.append("text").attr("y", 34);

  let onlyDiffering = false;
  let drawing, left, x, laidOutFor;

  const shownRows = () => (onlyDiffering ? rows.filter(row => row.differences.length > 0 || differsInMarks(row)) : rows);

  /** In a wide window the rows have a height of their own, to be filled. */
  const isFilling = () => getComputedStyle(document.body).display === "flex";

  function layOutAll() {
    laidOutFor = box.clientHeight;
    svg.selectAll("*").remove();
    const root = svg.append("g");
    const shown = shownRows();
    drawing = new RowsDrawing(root, shown, stretchFor(shown, isFilling() ? box.clientHeight - 4 : 0));
    const over = svg.append("g").attr("class", "over");
    for (const name of ["cursor", "selected-line"]) over.append("path").attr("class", name);
    over.append("g").attr("class", "flows");
    over.append("rect").attr("class", "ring").attr("rx", 3).style("display", "none");
    over.append("g").attr("class", "highlight");
    svg.attr("height", drawing.height);
    names.style("height", `${drawing.height}px`).selectAll("button").data(drawing.shown, row => row.id).join("button")
      .attr("type", "button").attr("tabindex", -1)
      .style("top", row => `${drawing.places.get(row).y - 2}px`)
      .attr("title", row => `List only what happened here`)
      .on("click", row => setFilter({subjects: sameSet(state.subjects, row.subjects) ? null : new Set(row.subjects)}))
      .each(function fill(row) {
        const place = drawing.places.get(row);
        const total = row.kind === "curve" ? rangeWords(row) : null;
        d3.select(this).style("height", `${Math.max(17, place.height)}px`)
          .html("").call(button => {
            button.append("span").text(row.label);
            if (total) button.append("small").text(total);
          });
        if (isPair && row.kind !== "curve") {
          d3.select(this).selectAll("i").data(sides).join("i").attr("class", side => `side-tag side-${side.letter}`)
            .style("top", side => `${(row.kind === "marks" ? place.marks[side.place] : place.bars[side.place].y + place.bars[side.place].h / 2) - 5}px`)
            .text(side => side.letter);
        }
      });
    resize();
  }

  function rangeWords(row) {
    if (row.words) return null;
    const most = d3.max(row.sides, one => d3.max(one.intervals, sample => sample.value));
    return `0 – ${d3.format(",.3~r")(most)}${row.unit ? ` ${row.unit}` : ""}`;
  }

  function resize() {
    left = names.node().offsetWidth;
    const width = Math.max(60, box.clientWidth - left - kRight);
    svg.attr("width", width + kRight).style("margin-left", `${left}px`);
    axis.attr("width", left + width + kRight).attr("height", 42);
    x = d3.scaleLinear().range([0, width]);
    draw();
  }

  function draw() {
    x.domain(state.view);
    drawing.draw(x, state.view, sides[0].clock);
    drawAxis(axis, x, state.view, sides[0].clock, left);
    drawSelected();
    if (state.pointed && state.pointed.byKeyboard) drawRing();
    describe();
  }

  /** Where an event stands in the plot: its mark, or the start of the bar that it began. */
  function whereIs(event) {
    const row = rowOf(event);
    const place = row && drawing.places.get(row);
    if (!place) return null;
    const isMark = !row.sides[event.side.place].begins.has(event.place) || event.outcome === "kept" || event.outcome === "failed";
    const bar = place.bars[event.side.place];
    return {x: x(event.t), y: place.y + (isMark || bar.h === 0 ? place.marks[event.side.place] : bar.y + bar.h / 2)};
  }

  function drawSelected() {
    const event = state.selected;
    const at = event && whereIs(event);
    svg.select(".selected-line").attr("d", event ? `M${x(event.t)},0V${drawing.height}` : null);
    const links = !at ? [] : [
      ...(causeOf(event) ? [{from: whereIs(causeOf(event)), to: at, kind: "cause"}] : []),
      ...effectsOf(event).slice(0, 40).map(effect => ({from: at, to: whereIs(effect), kind: "effect"})),
    ].filter(link => link.from && link.to);
    const flows = svg.select(".flows");
    flows.selectAll("path").data(links).join("path").attr("class", link => link.kind).attr("marker-end", "url(#arrow)")
      .attr("d", ({from, to}) => {
        const bend = Math.abs(to.x - from.x) < 24 ? 22 : 0;
        return `M${from.x},${from.y}C${from.x + bend},${from.y} ${to.x + bend},${to.y} ${to.x + (bend ? 5 : 0)},${to.y}`;
      });
    flows.selectAll("circle").data(at ? [at] : []).join("circle").attr("r", 7).attr("cx", one => one.x).attr("cy", one => one.y);
  }

  /** Shows where an event stands; null ends it. */
  function highlight(event) {
    const at = event && event.t >= state.view[0] && event.t <= state.view[1] ? whereIs(event) : null;
    const box = svg.select(".highlight");
    box.selectAll("path").data(at ? [at] : []).join("path").attr("d", one => `M${one.x},0V${drawing.height}`);
    box.selectAll("circle").data(at ? [at] : []).join("circle").attr("r", 7).attr("cx", one => one.x).attr("cy", one => one.y);
  }

  /** What lies at a place of the plot. */
  function thingAt(px, py) {
    const row = drawing.shown.find(one => {
      const {y, height} = drawing.places.get(one);
      return py >= y - kRowGap / 2 && py < y + height + kRowGap / 2;
    });
    if (!row) return null;
    const place = drawing.places.get(row);
    const inRow = py - place.y;
    const t = x.invert(px);
    const distance = side => Math.min(Math.abs(inRow - place.marks[side.place]),
      Math.abs(inRow - place.bars[side.place].y - place.bars[side.place].h / 2));
    const {side, intervals, marks} = d3.least(row.sides, one => distance(one.side));
    const isAtMarks = row.hasMarks && inRow >= place.marks[0] - kMarkH / 2;
    const near = marksNear(marksInSight(marks, x, state.view), t, x, isAtMarks || row.kind === "marks" ? 9 : 3);
    if (near.length > 0) return {row, thing: near[0], others: near.length - 1};
    if (t < side.start || t > side.end || intervals.length === 0) return null;
    const bars = place.bars[side.place];
    if (isPair && inRow > place.differenceY - 1 && inRow < place.differenceY + kDiffH && row.differences.length > 0) {
      const difference = intervalAt(row.differences, t);
      if (difference.t <= t && t < difference.end) return {row, thing: difference};
    }
    if (inRow > bars.y + bars.h + kMarkH + 4) return null;
    const [from, to] = [x.invert(px - 0.5), x.invert(px + 0.5)];
    const few = intervals.slice(firstWithin(intervals, from), byTime(intervals, to));
    const thing = intervalAt(intervals, t);
    return few.length > 3 ? {row, thing, crowd: {few, from, to}} : {row, thing};
  }

  // pointing

  let pointer = null;  // where the mouse is, for when the chart moves below it

  function movePointer(event) {
    pointer = event;
    const [px, py] = placeIn(svg.node(), event);
    const isInside = px >= 0 && px <= x.range()[1] && event.pointerType !== "touch";
    drawCursor(isInside ? px : null);
    const at = isInside ? thingAt(px, py) : null;
    point(at && {...at, at: {x: event.clientX, y: event.clientY}});
  }

  function drawCursor(px) {
    svg.select(".cursor").attr("d", px === null ? null : `M${px},0V${drawing.height}`);
    cursorTime.style("display", px === null ? "none" : null);
    if (px === null) return;
    const {clock} = sides[0];
    const t = x.invert(px);
    const words = clock.format(t, state.view[1] - state.view[0] > 3 * kDay ? "%a %-d %b %H:%M" : "%H:%M:%S");
    const w = measureText(words) + 12;
    const at = Math.min(Math.max(left + px, w / 2), left + x.range()[1] + kRight - w / 2);
    cursorTime.raise().select("rect").attr("x", at - w / 2).attr("width", w);
    cursorTime.select("text").attr("x", at).text(words);
  }

  function placeIn(node, event) {
    const rect = node.getBoundingClientRect();
    return [event.clientX - rect.left, event.clientY - rect.top];
  }

  function choose(at) {
    showCard(null);
    if (!at) return select(null);
    const {row, thing} = at;
    const event = thing.kind === "event" ? thing
      : thing.kind === "interval" ? beginningOf(row.sides[thing.side.place].intervals, thing) : null;
    return select(event && event !== state.selected ? event : null);
  }

  // zooming and moving: one finger or the mouse moves, two fingers and the wheel zoom. Up and down stays the page's.

  const pointers = new Map();
  let drag = null;

  function grip() {
    const xs = [...pointers.values()].map(one => one.x);
    drag = {view: state.view, x: d3.mean(xs), spread: xs.length > 1 ? Math.max(20, d3.max(xs) - d3.min(xs)) : null,
      hasMoved: drag ? drag.hasMoved : false};
  }

  box.addEventListener("pointerdown", event => {
    if (event.button !== 0 || event.target.closest(".names")) return;
    const [px, py] = placeIn(svg.node(), event);
    pointers.set(event.pointerId, {x: px, y: py});
    grip();
  });
  box.addEventListener("pointermove", event => {
    if (!pointers.has(event.pointerId)) {
      if (event.target.closest(".names")) leave();
      else movePointer(event);
      return;
    }
    const [px, py] = placeIn(svg.node(), event);
    pointers.set(event.pointerId, {x: px, y: py});
    const xs = [...pointers.values()].map(one => one.x);
    if (!drag.hasMoved && Math.abs(d3.mean(xs) - drag.x) < 4 && xs.length < 2) return;
    if (!drag.hasMoved) {
      drag.hasMoved = true;
      try { box.setPointerCapture(event.pointerId); } catch { /* the pointer is gone already */ }
      box.classList.add("moving");
      leave();
    }
    const [from, to] = drag.view;
    const width = x.range()[1];
    const factor = drag.spread && xs.length > 1 ? drag.spread / Math.max(20, d3.max(xs) - d3.min(xs)) : 1;
    const held = from + drag.x / width * (to - from);
    const length = (to - from) * factor;
    setView(held - d3.mean(xs) / width * length, held - d3.mean(xs) / width * length + length);
  });
  const release = event => {
    if (!pointers.has(event.pointerId)) return;
    const hasMoved = drag.hasMoved;
    const [px, py] = placeIn(svg.node(), event);
    pointers.delete(event.pointerId);
    if (pointers.size > 0) return grip();
    drag = null;
    box.classList.remove("moving");
    if (!hasMoved && event.type === "pointerup") {
      const at = thingAt(px, py);
      choose(at);
      if (event.pointerType === "touch") point(at && {...at, at: {x: event.clientX, y: event.clientY}});
    }
  };
  box.addEventListener("pointerup", release);
  box.addEventListener("pointercancel", release);
  box.addEventListener("pointerleave", event => { if (event.pointerType !== "touch") leave(); });
  box.addEventListener("wheel", event => {
    if (event.target.closest(".names")) return;
    event.preventDefault();
    const pixels = event.deltaMode === 1 ? 16 : event.deltaMode === 2 ? 400 : 1;
    const sideways = event.shiftKey && event.deltaX === 0 ? event.deltaY : event.deltaX;
    if (Math.abs(sideways) > Math.abs(event.shiftKey ? 0 : event.deltaY)) {
      pan(sideways * pixels / x.range()[1]);
    } else {
      zoom(Math.exp(event.deltaY * pixels * (event.ctrlKey ? 0.01 : 0.0022)), x.invert(placeIn(svg.node(), event)[0]));
    }
  }, {passive: false});
  box.addEventListener("dblclick", event => {
    if (!event.target.closest(".names")) zoom(0.35, x.invert(placeIn(svg.node(), event)[0]));
  });

  function leave() {
    pointer = null;
    drawCursor(null);
    if (state.pointed && !state.pointed.byKeyboard) point(null);
  }

  // the keyboard: from thing to thing along a row, and from row to row

  const thingsOf = part => {
    part.things = part.things ||
      [...part.intervals, ...part.marks].sort((a, b) => a.t - b.t || d3.descending(a.kind, b.kind));
    return part.things;
  };
  const parts = () => drawing.shown.flatMap(row => row.sides.map(part => ({row, part}))).filter(({part}) => thingsOf(part).length > 0);

  function go(rowStep, thingStep) {
    const all = parts();
    if (all.length === 0) return;
    const {pointed} = state;
    let at = pointed ? all.findIndex(({row, part}) => row === pointed.row && (!pointed.thing.side || part.side === pointed.thing.side)) : -1;
    const t = pointed ? Math.max(pointed.thing.t, state.view[0]) : state.view[0];
    at = at < 0 ? 0 : Math.min(Math.max(at + rowStep, 0), all.length - 1);
    const {row, part} = all[at];
    const things = thingsOf(part);
    const here = things.indexOf(pointed ? pointed.thing : null);
    const next = here >= 0 && rowStep === 0 ? here + thingStep : afterTime(things, t) - 1;
    goTo(row, things[Math.min(Math.max(next, 0), things.length - 1)]);
  }

  function goTo(row, thing) {
    reveal(Math.min(Math.max(thing.t, whole[0]), whole[1]));
    point({row, thing, byKeyboard: true});
    document.getElementById("voice").textContent = `${row.label}: ${cardWords({row, thing})}`;
  }

  const cardWords = at => cardOf(at).filter(Boolean).map(part => part.textContent).join(". ");

  box.addEventListener("keydown", event => {
    const steps = {ArrowLeft: [0, -1], ArrowRight: [0, 1], ArrowUp: [-1, 0], ArrowDown: [1, 0]}[event.key];
    if (steps && !event.ctrlKey && !event.metaKey && !event.altKey) go(...steps);
    else if ((event.key === "Enter" || event.key === " ") && state.pointed) choose(state.pointed);
    else return;
    event.preventDefault();
  });
  box.addEventListener("focus", () => { if (box.matches(":focus-visible") && !state.pointed) go(0, 0); });
  box.addEventListener("blur", () => { if (state.pointed && state.pointed.byKeyboard) point(null); });

  function drawRing() {
    const at = state.pointed;
    const ring = svg.select(".ring");
    const place = at && at.byKeyboard && drawing.places.get(at.row);
    ring.style("display", place ? null : "none");
    if (!place) return showCard(null);
    const {thing} = at;
    const bar = place.bars[thing.side.place];
    const isMark = thing.kind === "event";
    const x0 = Math.max(-2, isMark ? x(thing.t) - 7 : x(thing.t) - 1);
    const x1 = Math.min(x.range()[1] + 2, isMark ? x(thing.t) + 7 : Math.max(x(thing.end), x(thing.t) + 4) + 1);
    const y = place.y + (isMark ? place.marks[thing.side.place] - 7 : bar.y - 2);
    ring.attr("x", x0).attr("width", Math.max(4, x1 - x0)).attr("y", y).attr("height", isMark ? 14 : bar.h + 4);
    const rect = svg.node().getBoundingClientRect();
    return showCard(at, {x: rect.left + Math.min(Math.max(x0, 0) + Math.min(40, x1 - x0), x.range()[1]), y: rect.top + y + bar.h + 2});
  }

  function drawPointed() {
    const at = state.pointed;
    drawRing();
    if (!at || !at.byKeyboard) showCard(at, at && at.at);
  }

  /** Words for those who do not see the chart: for each row what counts of it in sight. */
  function describe() {
    box.setAttribute("aria-label", `Lanes, ${stretch(sides[0].clock, ...state.view)}`);
  }

  listeners.on("view.lanes", () => {
    draw();
    if (pointer) movePointer(pointer);
  });
  listeners.on("selected.lanes", drawSelected);
  listeners.on("pointed.lanes", drawPointed);
  whenResized(box, () => {
    if (!drawing) return;
    if (isFilling() && box.clientHeight !== laidOutFor) layOutAll();
    else resize();
  });

  return {
    layOutAll,
    highlight,
    showOnlyDiffering(flag) { onlyDiffering = flag; layOutAll(); },
  };
})();

function sameSet(set, list) {
  return set !== null && set.size === list.length && list.every(one => set.has(one));
}

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
