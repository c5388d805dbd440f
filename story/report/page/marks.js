// Marks for what happened: a shape and a colour for each outcome. The shapes are SVG paths around (x, y).

const kMarks = {
  noted: {words: "said", path: (x, y) => `M${x - 3},${y}h6`},
  happened: {words: "happened", path: (x, y) => `M${x - 3},${y}a3,3 0 1,0 6,0a3,3 0 1,0 -6,0`},
  done: {words: "done", path: (x, y) => `M${x - 3.2},${y - 3.2}h6.4v6.4h-6.4z`},
  kept: {words: "left as it was", path: (x, y) => `M${x},${y - 4.6}l4.6,4.6l-4.6,4.6l-4.6,-4.6z`},
  failed: {words: "failed", path: (x, y) => `M${x - 3.6},${y - 3.6}l7.2,7.2m0,-7.2l-7.2,7.2`},
};
/** From the least to the most important: the last is drawn on top and found first. */
const kOutcomes = Object.keys(kMarks);

/** A mark of its own, for a line of text. */
function markIcon(outcome) {
  const svg = d3.create("svg").attr("class", "icon").attr("viewBox", "-6 -6 12 12").attr("role", "img")
    .attr("aria-label", kMarks[outcome].words);
  svg.append("path").attr("class", `mark ${outcome}`).attr("d", kMarks[outcome].path(0, 0));
  return svg.node();
}

/** Of marks of one kind closer than this only the first is drawn; the card tells how many there are. */
const kMarkRoomPx = 5;
/** Where there are more of them, only what is out of the ordinary is marked. */
const kPlainRoomPx = 8;
const kPlain = new Set(["noted", "happened", "done"]);

/** The marks of a row's side that are in sight and have room. */
function marksInSight(marks, x, view) {
  const inSight = marks.slice(byTime(marks, view[0]), afterTime(marks, view[1]));
  const most = x.range()[1] / kPlainRoomPx;
  return inSight.length <= most ? inSight : inSight.filter(one => !kPlain.has(one.outcome));
}

/** The path of all marks of one outcome. */
function marksPath(marks, outcome, x, y) {
  let path = "", last = -Infinity;
  for (const mark of marks) {
    if (mark.outcome !== outcome) continue;
    const at = Math.round(x(mark.t) * 2) / 2;
    if (at - last < kMarkRoomPx) continue;
    path += kMarks[outcome].path(at, y);
    last = at;
  }
  return path;
}

/** The marks within `reach` pixels of a place, the nearest first; of equally near ones the more important. */
function marksNear(marks, t, x, reach) {
  const at = x(t);
  return marks.filter(mark => Math.abs(x(mark.t) - at) <= reach)
    .sort((a, b) => Math.abs(x(a.t) - at) - Math.abs(x(b.t) - at) || kOutcomes.indexOf(b.outcome) - kOutcomes.indexOf(a.outcome));
}
