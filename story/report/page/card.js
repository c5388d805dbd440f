// What there is to say of one thing: of something that happened, of a stretch of a lane, of a reading.

/** An element with attributes and children; a child that is null is left out. Texts of the night come in as texts only. */
function el(name, attributes = {}, ...children) {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (key.startsWith("on")) element.addEventListener(key.slice(2), value);
    else if (value !== null && value !== undefined && value !== false) element.setAttribute(key, value === true ? "" : value);
  }
  element.append(...children.flat(Infinity).filter(child => child !== null && child !== undefined && child !== false));
  return element;
}

const sideTag = side => (isPair ? el("span", {class: `side-tag side-${side.letter}`, title: side.label}, side.letter) : null);

/** The time of an event; with its day where that is not the day of `near`. */
function timeOf(event, near) {
  const {clock} = event.side;
  const day = t => clock.format(t, "%a %-d %b");
  return (near !== undefined && day(near) !== day(event.t) ? `${day(event.t)} ` : "") + timeOfDay(clock, event.t);
}

const sentenceOf = event =>
  [el("bdi", {}, event.text), event.reason ? el("span", {class: "reason"}, ": ", el("bdi", {}, event.reason)) : null];
const wordsOf = event => event.text + (event.reason ? `: ${event.reason}` : "");

function valuesOf(event) {
  if (event.values.length === 0) return null;
  return el("dl", {class: "values"}, event.values.map(value => el("div", {}, el("dt", {}, value.name), el("dd", {}, value.text))));
}

/** What an event came from, step by step, and what it led to; `link` makes an event something to go to. */
function causesOf(event, link, mostEffects) {
  const chain = [];
  for (let cause = causeOf(event); cause && chain.length < 4 && !chain.includes(cause); cause = causeOf(cause)) chain.push(cause);
  const effects = effectsOf(event);
  const line = other => el("li", {}, link(other));
  return [
    chain.length > 0 ? el("div", {class: "because"}, el("h4", {}, "Because of"), el("ul", {}, chain.map(line))) : null,
    effects.length > 0 ? el("div", {class: "because"}, el("h4", {}, "Led to"), el("ul", {}, effects.slice(0, mostEffects).map(line),
      effects.length > mostEffects ? el("li", {class: "faint"}, `and ${effects.length - mostEffects} more`) : null)) : null,
  ];
}

/** What became of which application. */
function appsLines(event, most) {
  const groups = [...d3.group(appsOf(event), one => `${one.aspect}: ${one.value}${one.reason ? ` (${one.reason})` : ""}`)];
  if (groups.length === 0) return null;
  return el("ul", {class: "apps"}, groups.map(([what, few]) => {
    const names = few.map(one => one.app);
    return el("li", {}, el("span", {class: "faint"}, `${what} `), names.slice(0, most).join(", ") +
      (names.length > most ? ` and ${names.length - most} more` : ""));
  }));
}

/** How often the same was said again, and until when. */
const againWords = event =>
  `${timesWords(event.again)}, ${event.again > 1 ? "until" : "at"} ${timeOf({side: event.side, t: event.againUntil}, event.t)}`;

/** The details of an event, below its sentence. */
function detailsOf(event, link, {mostApps, mostEffects}) {
  return [
    valuesOf(event),
    event.again > 0 ? el("p", {}, el("span", {class: "faint"}, "Again: "), againWords(event)) : null,
    event.next ? el("p", {class: "next"}, el("span", {class: "faint"}, "Next: "), event.next) : null,
    appsLines(event, mostApps),
    ...causesOf(event, link, mostEffects),
  ];
}

const asText = near => event =>
  el("span", {}, markIcon(event.outcome), " ", el("time", {}, timeOf(event, near)), ` ${event.subject} `, sentenceOf(event));

function eventCard(event, others) {
  return [
    el("p", {class: "card-head"}, sideTag(event.side), markIcon(event.outcome), el("time", {}, timeOf(event)), el("b", {}, event.subject),
      el("span", {class: "faint"}, kMarks[event.outcome].words)),
    el("p", {class: "sentence"}, sentenceOf(event)),
    ...detailsOf(event, asText(event.t), {mostApps: 6, mostEffects: 4}),
    others > 0 ? el("p", {class: "faint"}, `and ${others} more here; zoom in`) : null,
  ];
}

function fromTo(one) {
  const {clock} = one.side;
  const isSameDay = clock.format(one.t, "%j") === clock.format(one.end, "%j");
  const end = one.end >= one.side.end ? "the end" : (isSameDay ? "" : clock.format(one.end, "%a %-d ")) + timeOfDay(clock, one.end);
  return [`${one.t <= one.side.start ? "the start" : timeOfDay(clock, one.t)} – ${end}`, duration(one.end - one.t)];
}

function intervalCard(row, one) {
  const [when, length] = fromTo(one);
  const begun = beginningOf(row.sides[one.side.place].intervals, one);
  return [
    el("p", {class: "card-head"}, sideTag(one.side), el("span", {class: `swatch ${one.look}`}), el("b", {}, row.label), row.tell(one)),
    el("p", {class: "faint"}, el("time", {}, when), `, ${length}`),
    begun ? el("p", {class: "sentence"}, markIcon(begun.outcome), " ", el("time", {}, timeOf(begun)), " ", sentenceOf(begun)) : null,
    ...(begun ? detailsOf(begun, asText(begun.t), {mostApps: 6, mostEffects: 4}) : []),
  ];
}

/** Of intervals too short to point at: what share of the time each kind has. */
function crowdCard(row, side, few, from, to) {
  const total = d3.sum(few, one => Math.min(one.end, to) - Math.max(one.t, from));
  const shares = d3.rollups(few, some => d3.sum(some, one => Math.min(one.end, to) - Math.max(one.t, from)), one => row.tell(one))
    .sort((a, b) => b[1] - a[1]);
  return [
    el("p", {class: "card-head"}, sideTag(side), el("b", {}, row.label), `${few.length - 1} changes in ${duration(to - from)}; zoom in`),
    el("dl", {class: "values"}, shares.slice(0, 5).map(([what, ms]) =>
      el("div", {}, el("dt", {}, what), el("dd", {}, `${d3.format(".0%")(ms / total)}, ${duration(ms)}`)))),
  ];
}

function sampleCard(row, one) {
  const [when, length] = fromTo(one);
  const value = one.value === null ? "not known" : row.words ? row.words[one.value] || String(one.value)
    : `${d3.format(",.4~r")(one.value)}${row.unit ? ` ${row.unit}` : ""}`;
  return [
    el("p", {class: "card-head"}, sideTag(one.side), el("b", {}, row.label), value),
    el("p", {class: "faint"}, el("time", {}, when), `, ${length}`),
  ];
}

function differenceCard(row, one) {
  return [
    el("p", {class: "card-head"}, el("span", {class: "swatch difference"}), el("b", {}, row.label), `differs for ${duration(one.end - one.t)}`),
    el("dl", {class: "values"}, row.sides.map(({side, intervals}) => {
      const what = intervalAt(intervals, one.t);
      return el("div", {}, el("dt", {}, sideTag(side)), el("dd", {}, row.kind === "curve" ? String(what.value ?? "not known") : row.tell(what)));
    })),
  ];
}

function cardOf({row, thing, others = 0, crowd = null}) {
  if (crowd) return crowdCard(row, thing.side, crowd.few, crowd.from, crowd.to);
  switch (thing.kind) {
    case "event": return eventCard(thing, others);
    case "interval": return intervalCard(row, thing);
    case "sample": return sampleCard(row, thing);
    default: return differenceCard(row, thing);
  }
}

const card = document.querySelector(".card");

/** Shows the card beside a place of the window; null hides it. */
function showCard(at, place) {
  card.hidden = !at;
  if (!at) return;
  card.replaceChildren(...cardOf(at).filter(Boolean));
  const gap = 14, edge = 8;
  const {offsetWidth: w, offsetHeight: h} = card;
  const right = place.x + gap + w < innerWidth - edge;
  const left = right ? place.x + gap : Math.max(edge, Math.min(place.x - gap - w, innerWidth - edge - w));
  const fitsBelow = place.y + gap + h < innerHeight - edge;
  const top = fitsBelow ? place.y + gap : right || place.x - gap - w > edge
    ? Math.max(edge, innerHeight - edge - h) : Math.max(edge, place.y - gap - h);
  card.style.transform = `translate(${Math.round(left)}px,${Math.round(top)}px)`;
}
