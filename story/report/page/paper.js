// On paper each night in sight has a page of its own.

(() => {
  const paper = document.querySelector(".paper");
  const kWidth = 1040, kNames = 104;

  function sheet(view) {
    const {clock} = sides[0];
    const box = el("div", {class: "sheet"},
      el("h2", {}, document.title),
      el("p", {class: "faint"}, `${stretch(clock, ...view)}, ${sides[0].zone}`, isPair ? sides.map(side => [" ", sideTag(side), ` ${side.label}`]) : null),
      el("div", {class: "figures"}, figuresOf(view).map(figureElement)));
    const x = d3.scaleLinear().domain(view).range([0, kWidth - kNames - 12]);
    const axis = d3.create("svg").attr("class", "axis").attr("width", kWidth).attr("height", 42);
    drawAxis(axis, x, view, clock, kNames);
    const svg = d3.create("svg").attr("class", "plot");
    const drawing = new RowsDrawing(svg.append("g").attr("transform", `translate(${kNames},0)`), rows);
    drawing.draw(x, view, clock);
    svg.attr("viewBox", `0 0 ${kWidth} ${drawing.height}`);
    svg.append("g").selectAll("text").data(rows).join("text").attr("class", "row-name").attr("x", 0)
      .attr("y", row => drawing.places.get(row).y + 11).text(row => row.label);
    box.append(axis.node(), svg.node(), telling(view));
    return box;
  }

  /** What was decided, as much of it as there is room for. */
  function telling(view) {
    const kMost = isPair ? 24 : 54;
    const matter = allEvents.filter(event => event.t >= view[0] && event.t <= view[1] && !event.isRepeat &&
      (isPair ? isAlone(event) : !["debug", "info", "message"].includes(event.subject)));
    const rank = event => -kOutcomes.indexOf(event.outcome);
    const few = matter.length <= kMost ? matter
      : [...matter].sort((a, b) => rank(a) - rank(b) || a.t - b.t).slice(0, kMost).sort((a, b) => a.t - b.t);
    return el("div", {class: "telling"},
      few.map(event => el("p", {}, el("time", {}, timeOf(event)), " ", markIcon(event.outcome), sideTag(event.side), " ", el("b", {}, event.subject), " ", sentenceOf(event))),
      matter.length > few.length ? el("p", {class: "faint"}, `and ${matter.length - few.length} more`) : null);
  }

  window.addEventListener("beforeprint", () => {
    const stretches = nights.map(({from, to}) => [Math.max(from, state.view[0]), Math.min(to, state.view[1])]).filter(([from, to]) => from < to);
    paper.replaceChildren(...stretches.map(sheet));
  });
  window.addEventListener("afterprint", () => paper.replaceChildren());
  document.getElementById("print-button").addEventListener("click", () => print());
})();
