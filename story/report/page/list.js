// The list of what happened in sight. Of a long one only a part around the place of reading is in the page.

const list = (() => {
  const kPiece = 120;
  const box = document.querySelector(".list");
  const words = document.getElementById("words");
  const counter = document.querySelector(".filters .count");
  const chipsBox = d3.select(".subjects");
  // what happened in both nights stands in the list once, as the first one's
  const told = allEvents.filter(event => !event.isRepeat && !(event.twin && event.side.place === 1));
  const subjects = [...new Set(told.map(event => event.subject))];
  const order = new Map(kRows.flatMap(row => row.subjects).map((subject, i) => [subject, i]));
  subjects.sort((a, b) => order.get(a) - order.get(b));
  const kKinds = [
    {id: "kept", words: "left as it was", fits: event => event.outcome === "kept"},
    {id: "failed", words: "failed", fits: event => event.outcome === "failed"},
    {id: "differs", words: "only in one", fits: isAlone},
  ].filter(kind => told.some(kind.fits));

  let matching = [], begin = 0, end = 0;

  const isOfKind = event => state.only === "all" || kKinds.find(kind => kind.id === state.only).fits(event);
  const isOfSubject = event => state.subjects === null || state.subjects.has(event.subject);
  const holdsWords = event => state.words === "" || `${event.subject} ${wordsOf(event)}`.toLowerCase().includes(state.words);

  function update() {
    const inSight = told.slice(byTime(told, state.view[0]), afterTime(told, state.view[1]));
    const right = inSight.filter(holdsWords);
    matching = right.filter(event => isOfKind(event) && isOfSubject(event));
    drawChips(right);
    counter.textContent = matching.length === inSight.length ? count(matching.length, "event")
      : `${d3.format(",")(matching.length)} of ${count(inSight.length, "event")}`;
    const at = state.selected ? matching.indexOf(state.selected.twin && state.selected.side.place === 1 ? state.selected.twin : state.selected) : -1;
    begin = Math.max(0, (at < 0 ? 0 : at) - kPiece / 2);
    end = Math.min(matching.length, begin + kPiece);
    box.replaceChildren(...piece(begin, end));
    if (matching.length === 0) box.append(el("li", {class: "nothing"}, inSight.length === 0 ? "Nothing happened here." : "Nothing of this happened here."));
    if (at < 0) box.scrollTop = 0;
    watchEnds();
    showSelected();
  }

  function drawChips(events) {
    const counts = d3.rollup(events.filter(isOfKind), few => few.length, event => event.subject);
    const chips = [
      ...kKinds.map(kind => ({id: kind.id, words: kind.words, isOn: state.only === kind.id, count: events.filter(event => kind.fits(event) && isOfSubject(event)).length,
        toggle: () => setFilter({only: state.only === kind.id ? "all" : kind.id})})),
      ...subjects.map(subject => ({id: subject, words: subject, isOn: state.subjects !== null && state.subjects.has(subject), count: counts.get(subject) || 0,
        toggle: () => toggleSubject(subject)})),
    ];
    chipsBox.selectAll("button").data(chips, chip => chip.id).join(enter => {
      const button = enter.append("button").attr("type", "button").attr("class", chip => `chip chip-${chip.id}`);
      button.filter(chip => kMarks[chip.id]).append(chip => markIcon(chip.id));
      button.append("span").text(chip => chip.words);
      button.append("small");
      return button;
    }).attr("aria-pressed", chip => String(chip.isOn)).classed("none", chip => chip.count === 0)
      .on("click", chip => chip.toggle()).select("small").text(chip => d3.format(",")(chip.count));
    chipsBox.selectAll("button.clear").remove();
  }

  function toggleSubject(subject) {
    const chosen = new Set(state.subjects || []);
    if (!chosen.delete(subject)) chosen.add(subject);
    setFilter({subjects: chosen.size > 0 ? chosen : null});
  }

  /** The lines of a part of what matches, with the days between them. */
  function piece(from, to) {
    const day = event => event.side.clock.format(event.t, "%A %-d %B %Y");
    return matching.slice(from, to).flatMap((event, i) => {
      const before = matching[from + i - 1];
      const lines = [];
      if (!before || day(before) !== day(event)) lines.push(el("li", {class: "day"}, day(event)));
      lines.push(line(event, before && before.t === event.t));
      return lines;
    });
  }

  function line(event, isSameTime) {
    const item = el("li", {class: `event ${event.outcome}${isAlone(event) ? " alone" : ""}`},
      el("button", {type: "button", "aria-expanded": "false", onclick: () => select(state.selected === event ? null : event)},
        el("time", {class: isSameTime ? "same" : null}, timeOfDay(event.side.clock, event.t)), markIcon(event.outcome),
        el("span", {class: "subject"}, event.subject),
        el("span", {class: "sentence"}, isAlone(event) ? sideTag(event.side) : null, sentenceOf(event))));
    item.event = event;
    return item;
  }

  const linkTo = near => event =>
    el("button", {type: "button", class: "link", onclick: () => select(event)}, ...asText(near)(event).childNodes);

  function showSelected() {
    for (const item of box.querySelectorAll(".event.selected")) {
      item.classList.remove("selected");
      item.firstChild.setAttribute("aria-expanded", "false");
      while (item.children.length > 1) item.lastChild.remove();
    }
    const event = state.selected;
    if (!event) return;
    const item = [...box.children].find(one => one.event && (one.event === event || one.event.twin === event));
    if (!item) {
      if (matching.includes(event)) update();
      return;
    }
    item.classList.add("selected");
    item.firstChild.setAttribute("aria-expanded", "true");
    const details = detailsOf(event, linkTo(event.t), {mostApps: 40, mostEffects: 30}).filter(Boolean);
    if (details.length > 0) item.append(el("div", {class: "details"}, details));
    bringIntoView(item);
  }

  /** Scrolls the list, not the page, so that the line is seen. */
  function bringIntoView(item) {
    const room = box.clientHeight, kDayLine = 28;
    const isSeen = item.offsetTop >= box.scrollTop + kDayLine && item.offsetTop + item.offsetHeight <= box.scrollTop + room;
    if (!isSeen) box.scrollTop = item.offsetTop - Math.max(kDayLine, Math.min(room / 3, room - item.offsetHeight));
  }

  const watcher = new IntersectionObserver(entries => {
    for (const entry of entries.filter(one => one.isIntersecting)) grow(entry.target);
  }, {root: null, rootMargin: "400px"});

  function watchEnds() {
    watcher.disconnect();
    const items = box.querySelectorAll(".event");
    if (items.length === 0) return;
    if (begin > 0) watcher.observe(items[0]);
    if (end < matching.length) watcher.observe(items[items.length - 1]);
  }

  function grow(item) {
    if (item === box.querySelector(".event") && begin > 0) {
      const from = Math.max(0, begin - kPiece), height = box.scrollHeight;
      if (box.firstChild.classList.contains("day")) box.firstChild.remove();
      box.prepend(...piece(from, begin + 1).slice(0, -1));
      begin = from;
      box.scrollTop += box.scrollHeight - height;
    } else if (end < matching.length) {
      const to = Math.min(matching.length, end + kPiece);
      box.append(...piece(end, to));
      end = to;
    }
    watchEnds();
  }

  box.addEventListener("pointerover", event => {
    const item = event.target.closest(".event");
    lanes.highlight(item ? item.event : null);
  });
  box.addEventListener("pointerleave", () => lanes.highlight(null));
  words.addEventListener("input", () => setFilter({words: words.value.trim().toLowerCase()}));

  let waiting = 0;
  listeners.on("view.list", () => {
    clearTimeout(waiting);
    waiting = setTimeout(update, 120);
  });
  listeners.on("filter.list", update);
  listeners.on("selected.list", showSelected);
  return {update};
})();
