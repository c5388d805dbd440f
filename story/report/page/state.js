// What the reader of the page has chosen. Whoever changes it says so; whoever draws it listens.

const state = {
  view: whole,        // the stretch of time in sight
  selected: null,     // an event
  pointed: null,      // what the pointer or the keyboard is at: {row, thing}
  subjects: null,     // the set of subjects that the list tells; null for all
  only: "all",        // "all", "kept", "failed", "differs"
  words: "",          // the list tells only what holds these
};

const listeners = d3.dispatch("view", "selected", "pointed", "filter");
const kLeastView = 2 * kSecond;

function setView(from, to) {
  const length = Math.min(Math.max(to - from, kLeastView), whole[1] - whole[0]);
  const middle = (from + to) / 2;
  const start = Math.min(Math.max(middle - length / 2, whole[0]), whole[1] - length);
  if (start === state.view[0] && start + length === state.view[1]) return;
  state.view = [start, start + length];
  listeners.call("view");
}

/** Makes the view `factor` times as long; `at` stays where it is. */
function zoom(factor, at = (state.view[0] + state.view[1]) / 2) {
  const [from, to] = state.view;
  const length = Math.min(Math.max((to - from) * factor, kLeastView), whole[1] - whole[0]);
  const start = at - (at - from) * length / (to - from);
  setView(start, start + length);
}

function pan(share) {
  const by = (state.view[1] - state.view[0]) * share;
  setView(state.view[0] + by, state.view[1] + by);
}

/** Moves the view as little as it takes to see `t` with some room around it. */
function reveal(t) {
  const [from, to] = state.view;
  const room = (to - from) * 0.1;
  if (t < from) setView(t - room, t - room + to - from);
  else if (t > to) setView(t + room - (to - from), t + room);
}

function select(event) {
  if (state.selected === event) return;
  state.selected = event;
  if (event) reveal(event.t);
  listeners.call("selected");
}

function point(at) {
  if (!at && !state.pointed) return;
  state.pointed = at;
  listeners.call("pointed");
}

function setFilter(change) {
  Object.assign(state, change);
  listeners.call("filter");
}

/** Calls `action` when an element has got another size, and at first. */
function whenResized(element, action) {
  let frame = 0;
  new ResizeObserver(() => {
    cancelAnimationFrame(frame);
    frame = requestAnimationFrame(action);  // what it changes may change sizes again
  }).observe(element);
  window.addEventListener("resize", action);
}
