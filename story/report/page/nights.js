// Which stretch of time is in sight: a night to choose, an overview of the whole to draw a stretch in, and the buttons.

/** From noon to noon, by the first night's clock. One that is not much longer than a night is one. */
const nights = (() => {
  const {clock} = sides[0];
  const [from, to] = whole;
  const kOneNight = 36 * kHour, kMost = 2000 * kDay;
  if (to - from <= kOneNight || to - from > kMost) return [{from, to}];
  const noons = [];
  for (let day = Math.floor(clock.shown(from) / kDay) * kDay + kDay / 2; clock.when(day) < to; day += kDay) noons.push(clock.when(day));
  const edges = [from, ...noons.filter(t => t > from), to];
  return edges.slice(1).map((end, i) => ({from: edges[i], to: end}));
})();

/** "Mon 6 – Tue 7 Mar 2017"; of one that lies within a day, that day. */
function nightName(night) {
  const {clock} = sides[0];
  const [first, last] = ["%a %-d", " %b", " %Y"].map(part => [night.from, night.to - 1].map(t => clock.format(t, part)))
    .reduce(([a, b], [c, d]) => [a + (c === d ? "" : c), b + d]);
  return clock.format(night.from, "%x") === clock.format(night.to - 1, "%x") ? last : `${first} – ${last}`;
}

(() => {
  const picker = document.getElementById("night");
  const isLong = nights.length > 1;
  document.querySelector(".picker").hidden = !isLong;
  const kWhole = "whole", kOther = "other";
  const option = (value, words) => el("option", {value}, words);
  const other = option(kOther, "a stretch of your own");
  picker.append(option(kWhole, `All ${count(nights.length, "night")}`), ...nights.map((night, i) => option(String(i), nightName(night))));
  const isInView = ({from, to}) => Math.abs(from - state.view[0]) < kSecond && Math.abs(to - state.view[1]) < kSecond;
  const showNight = i => setView(nights[i].from, nights[i].to);
  picker.addEventListener("change", () => {
    if (picker.value === kWhole) setView(...whole);
    else if (picker.value !== kOther) showNight(Number(picker.value));
  });

  const neighbour = step => {
    const middle = (state.view[0] + state.view[1]) / 2;
    const isWhole = isInView({from: whole[0], to: whole[1]});
    const here = nights.findIndex(night => middle < night.to);
    showNight(isWhole ? (step > 0 ? 0 : nights.length - 1) : Math.min(Math.max(here + step, 0), nights.length - 1));
  };
  document.getElementById("earlier-night").addEventListener("click", () => neighbour(-1));
  document.getElementById("later-night").addEventListener("click", () => neighbour(1));
  document.getElementById("whole").addEventListener("click", () => setView(...whole));
  document.getElementById("zoom-in").addEventListener("click", () => zoom(0.5));
  document.getElementById("zoom-out").addEventListener("click", () => zoom(2));

  function showView() {
    const isWhole = isInView({from: whole[0], to: whole[1]});
    document.getElementById("whole").disabled = document.getElementById("zoom-out").disabled = isWhole;
    if (!isLong) return;
    const at = nights.findIndex(isInView);
    const value = isWhole ? kWhole : at >= 0 ? String(at) : kOther;
    if (value === kOther) {
      const night = nights.find(one => state.view[0] >= one.from && state.view[1] <= one.to);
      other.textContent = night ? `within ${nightName(night)}` : stretch(sides[0].clock, ...state.view.map(t => Math.round(t / kMinute) * kMinute));
      if (!other.parentNode) picker.append(other);
    } else {
      other.remove();
    }
    picker.value = value;
  }

  // the overview: state and user of the whole, and the stretch in sight, which can be drawn and moved

  const kHeight = 30;
  const box = document.querySelector(".overview");
  const svg = d3.select(box).append("svg").attr("height", kHeight);
  const shown = ["screen", "state", "sleep"].map(id => rows.find(row => row.id === id)).filter(Boolean);
  const brush = d3.brushX();
  const ground = svg.append("g"), brushed = svg.append("g").attr("class", "brush");
  const x = d3.scaleLinear().domain(whole);
  brush.on("brush end", () => {
    const {sourceEvent, selection} = d3.event;
    if (!sourceEvent || sourceEvent.type === "view") return;
    if (selection && selection[1] - selection[0] > 1) setView(...selection.map(x.invert));
    else if (d3.event.type === "end") moveTo(x.invert(d3.mouse(brushed.node())[0]));
  });
  const moveTo = t => {
    const half = (state.view[1] - state.view[0]) / 2;
    setView(t - half, t + half);
    showBrush();
  };
  let isDrawn = false;
  const showBrush = () => { if (isDrawn) brushed.call(brush.move, state.view.map(x)); };

  function resize() {
    const width = box.clientWidth;
    if (width === 0) return;
    svg.attr("width", width);
    x.range([0, width]);
    ground.selectAll("*").remove();
    const heights = {screen: 4, state: 16, sleep: 5};
    let y = 1;
    for (const row of shown) {
      const bar = {y, h: heights[row.id]};
      y += bar.h + 2;
      const {intervals} = row.sides[0];
      ground.append("g").selectAll("path").data([...barPaths(intervals, x, whole, bar, row.kind === "depth")]).join("path")
        .attr("class", ([look]) => `bar ${look}`).attr("d", ([, path]) => path);
    }
    if (isLong && nights.length < width / 4) {
      ground.append("path").attr("class", "noon").attr("d", nights.slice(1).map(night => `M${x(night.from)},0V${kHeight}`).join("") || null);
    }
    brush.extent([[0, 0], [width, kHeight]]);
    brushed.call(brush);
    isDrawn = true;
    showBrush();
  }

  listeners.on("view.nights", () => { showView(); showBrush(); });
  whenResized(box, resize);
  showView();
  window.addEventListener("keydown", event => {
    if (event.key === "n" && !isTyping(event)) neighbour(1);
    if (event.key === "p" && !isTyping(event)) neighbour(-1);
  });
})();

/** Whether a key belongs to a field or a combination of the browser's own. */
function isTyping(event) {
  return event.ctrlKey || event.metaKey || event.altKey || event.target.closest("input, select, textarea, dialog") !== null;
}
