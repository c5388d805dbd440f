// The page comes to life: its head, its theme, its keys, and what the address asks for.

(() => {
  const [first] = sides;
  document.getElementById("d3-version").textContent = d3.version;
  document.body.classList.toggle("pair", isPair);
  document.querySelector("h1").replaceChildren(...(isPair
    ? sides.map(side => el("span", {class: "side-name"}, sideTag(side), side.label)) : [document.title]));
  const length = days(whole[1] - whole[0]);
  document.querySelector(".when").textContent = `${stretch(first.clock, first.start, first.end)}, ${length}, ${first.zone}`;
  if (isPair && sides[1].shift !== 0) {
    document.querySelector(".when").append(`; B is of ${stretch(sides[1].clock, sides[1].start, sides[1].end)}, moved here`);
  }

  // facts

  const facts = document.getElementById("facts");
  const isOf = new Map();
  for (const side of sides) {
    const all = [{name: "trace", text: side.name}, {name: "strategies", text: side.strategies.join(", ") || "none"},
      ...side.head, {name: "record", text: `${count(side.record[0], "message")}, ${count(side.record[1], "call")}, ${count(side.record[2], "log line")}`}];
    for (const {name, text: words} of all) {
      const key = `${name}\u0000${words}`;
      isOf.set(key, {name, words, sides: [...(isOf.has(key) ? isOf.get(key).sides : []), side]});
    }
  }
  const byName = d3.groups([...isOf.values()], fact => fact.name).flatMap(([, few]) => few);
  facts.append(el("dl", {}, byName.map(fact =>
    el("div", {}, el("dt", {}, isPair && fact.sides.length < 2 ? sideTag(fact.sides[0]) : null, fact.name), el("dd", {}, fact.words)))));
  const factsButton = document.getElementById("facts-button");
  factsButton.addEventListener("click", () => {
    facts.hidden = !facts.hidden;
    factsButton.setAttribute("aria-expanded", String(!facts.hidden));
  });

  // legend

  const legend = document.querySelector(".legend");
  legend.append(...kOutcomes.filter(outcome => rows.some(row => row.sides.some(one => one.marks.some(mark => mark.outcome === outcome))))
    .reverse().map(outcome => el("span", {}, markIcon(outcome), kMarks[outcome].words)));
  const swatch = (look, words) => el("span", {}, el("span", {class: `swatch ${look}`}), words);
  const used = new Set(rows.flatMap(row => row.sides.flatMap(one => [...new Set(one.intervals.map(interval => interval.look))])));
  const depths = d3.range(1, kDeepest + 1).map(depth => `depth${depth}`);
  if (depths.some(look => used.has(look))) {
    legend.append(el("span", {class: "ramp"}, depths.map(look => el("span", {class: `swatch ${look}`})), el("span", {}, "from DARK to DEEP")));
  }
  for (const [look, words] of [["maintenance", "maintenance"], ["measure", "held back by the plugin"], ["byuser", "off by the user"], ["unknown", "not known"]]) {
    if (used.has(look)) legend.append(swatch(look, words));
  }
  if (isPair) {
    const box = el("input", {type: "checkbox", onchange: () => lanes.showOnlyDiffering(box.checked)});
    legend.append(swatch("difference", "differs"), el("label", {}, box, "only lanes that differ"));
  }

  // theme

  const kThemes = [{id: "", words: "auto"}, {id: "light", words: "light"}, {id: "dark", words: "dark"}];
  const themeButton = document.getElementById("theme-button");
  const setTheme = id => {
    const theme = kThemes.find(one => one.id === id) || kThemes[0];
    document.documentElement.dataset.theme = theme.id;
    themeButton.textContent = `Theme: ${theme.words}`;
  };
  themeButton.addEventListener("click", () => {
    const at = kThemes.findIndex(one => one.id === document.documentElement.dataset.theme);
    setTheme(kThemes[(at + 1) % kThemes.length].id);
  });

  // keys

  const help = document.getElementById("keys");
  document.getElementById("keys-button").addEventListener("click", () => help.showModal());
  window.addEventListener("keydown", event => {
    if (isTyping(event)) {
      if (event.key === "Escape" && event.target.id === "words") event.target.blur();
      return;
    }
    switch (event.key) {
      case "w": case "+": case "=": zoom(0.6); break;
      case "s": case "-": zoom(1 / 0.6); break;
      case "a": pan(-0.25); break;
      case "d": pan(0.25); break;
      case "0": setView(...whole); break;
      case "/": document.getElementById("words").focus(); break;
      case "?": help.showModal(); break;
      case "Escape": point(null); select(null); break;
      default: return;
    }
    event.preventDefault();
  });

  // the address: #view=FROM,TO&at=TIME&about=SUBJECT&side=B&theme=dark. A time is one of the wall clock in milliseconds or
  // of the local clock; what is selected is the last event of the subject until then.

  function readTime(words, side) {
    if (/^-?\d+$/.test(words)) return Number(words) + side.shift;
    const shown = Date.parse(`${words}Z`);
    return Number.isNaN(shown) ? NaN : side.clock.when(shown);
  }

  function followAddress() {
    const asked = new URLSearchParams(location.hash.slice(1));
    if (asked.has("theme")) setTheme(asked.get("theme"));
    const view = (asked.get("view") || "").split(",").map(words => readTime(words, first));
    if (view.length === 2 && view.every(Number.isFinite)) setView(...view);
    const side = sides.find(one => one.letter === asked.get("side")) || first;
    const until = side.events.slice(0, afterTime(side.events, readTime(asked.get("at") || "", side)));
    const event = until.reverse().find(one => one.subject === asked.get("about"));
    if (event) select(event);
  }

  let waiting = 0;
  function writeAddress() {
    clearTimeout(waiting);
    waiting = setTimeout(() => {
      const say = new URLSearchParams();
      if (state.view[0] !== whole[0] || state.view[1] !== whole[1]) say.set("view", state.view.map(Math.round).join(","));
      if (state.selected) {
        say.set("at", state.selected.t - state.selected.side.shift);
        say.set("about", state.selected.subject);
      }
      if (state.selected && state.selected.side !== first) say.set("side", state.selected.side.letter);
      if (document.documentElement.dataset.theme) say.set("theme", document.documentElement.dataset.theme);
      try { history.replaceState(null, "", `#${decodeURIComponent(say.toString())}`); } catch { /* not every place has an address */ }
    }, 300);
  }

  setTheme("");
  lanes.layOutAll();
  followAddress();
  list.update();
  listeners.on("view.address", writeAddress);
  listeners.on("selected.address", writeAddress);
  window.addEventListener("hashchange", followAddress);
})();
