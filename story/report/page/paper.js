// On paper each night in sight has a page of its own.

(() => {
  const paper = document.querySelector(".paper");
  // millimetres of an A4 page that lies; what the head and the figures take, and the most that the chart may
  const kPage = {width: 277, height: 189, head: isPair ? 37 : 31, chart: isPair ? 118 : 104};
  const kLine = {height: 3, letters: 74, columns: 3};
  const kNames = 104, kAxis = 42;

  function sheet(view) {
    const {clock} = sides[0];
    const {svg, share} = chartOf(view, clock);
    const room = kPage.height - kPage.head - share * kPage.width;
    return el("div", {class: "sheet"},
      el("h2", {}, document.title),
      el("p", {class: "faint"}, `${stretch(clock, ...view)}, ${sides[0].zone}`, isPair ? sides.map(side => [" ", sideTag(side), side.label]) : null),
      el("div", {class: "figures"}, figuresOf(view).map(figureElement)),
      svg, telling(view, (Math.floor(room / kLine.height) - 1) * kLine.columns));
  }

  /** Axis and rows in one drawing, and how high it is as a share of its width. */
  function chartOf(view, clock) {
    const {height} = placeRows(rows, 1);
    const width = Math.max(1040, (height + kAxis) * kPage.width / kPage.chart);
    const x = d3.scaleLinear().domain(view).range([0, width - kNames - 12]);
    const svg = d3.create("svg").attr("class", "plot").attr("viewBox", `0 0 ${width} ${height + kAxis}`);
    const drawing = new RowsDrawing(svg.append("g").attr("transform", `translate(${kNames},${kAxis})`), rows);
    drawing.draw(x, view, clock);
    drawAxis(svg.append("g"), x, view, clock, kNames);
    svg.append("g").selectAll("text").data(rows).join("text").attr("class", "row-name")
      .attr("y", row => kAxis + drawing.places.get(row).y + 11).text(row => row.label);
    if (isPair) {
      const letters = rows.filter(row => row.kind !== "curve").flatMap(row => sides.map(side => {
        const {y, bars, marks} = drawing.places.get(row);
        return {letter: side.letter, y: kAxis + y + (row.kind === "marks" ? marks[side.place] : bars[side.place].y + bars[side.place].h / 2) + 4};
      }));
      svg.append("g").selectAll("text").data(letters).join("text").attr("class", one => `letter-${one.letter}`)
        .attr("x", kNames - 14).attr("y", one => one.y).text(one => one.letter);
    }
    return {svg: svg.node(), share: (height + kAxis) / width};
  }

  /** What matters most comes first: what failed, what was refused, what the plugin did; then states; then use. */
  function rank(event) {
    if (event.outcome === "failed") return 0;
    if (event.outcome === "kept") return 1;
    if (["sleep", "bluetooth", "wifi", "modem", "firewall", "freeze", "clean", "service", "fault", "warning", "error"].includes(event.subject)) return 2;
    return ["state", "timer", "lock", "push", "night"].includes(event.subject) ? 3 : 4;
  }

  /** As much of what happened as there are lines for. */
  function telling(view, lines) {
    const matter = allEvents.filter(event => event.t >= view[0] && event.t <= view[1] && !event.isRepeat &&
      (isPair ? isAlone(event) : !["debug", "info"].includes(event.subject)));
    let left = lines;
    const told = new Set();
    for (const [of, few] of d3.groups(matter, rank).sort((a, b) => a[0] - b[0])) {
      const needed = event => Math.ceil((wordsOf(event).length + event.subject.length + 12) / kLine.letters);
      if (of > 2 && d3.sum(few, needed) > left) break;  // a few of many states would say nothing
      for (const event of few) {
        left -= needed(event);
        if (left >= 0) told.add(event);
      }
    }
    return el("div", {class: "telling"},
      matter.filter(event => told.has(event)).map(event => el("p", {}, el("time", {}, timeOf(event)), " ", markIcon(event.outcome), " ",
        isPair ? sideTag(event.side) : null, el("b", {}, event.subject), " ", sentenceOf(event))),
      matter.length > told.size ? el("p", {class: "faint"}, `and ${count(matter.length - told.size, "more event")}`) : null);
  }

  window.addEventListener("beforeprint", () => {
    const stretches = nights.map(({from, to}) => [Math.max(from, state.view[0]), Math.min(to, state.view[1])]).filter(([from, to]) => from < to);
    paper.replaceChildren(...stretches.map(sheet));
  });
  window.addEventListener("afterprint", () => paper.replaceChildren());
  document.getElementById("print-button").addEventListener("click", () => print());
})();
