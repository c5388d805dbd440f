// The keyboard on the lanes: from thing to thing along a lane, and from lane to lane. What is reached is read out.

(() => {
  const {box} = lanes;

  /** What there is along one side of a row: its stretches and its marks. */
  function thingsOf(part) {
    part.things = part.things ||
      [...part.intervals, ...part.marks].sort((a, b) => a.t - b.t || d3.descending(a.kind, b.kind));
    return part.things;
  }

  function go(rowStep, thingStep) {
    const parts = lanes.rows().flatMap(row => row.sides.map(part => ({row, part}))).filter(({part}) => thingsOf(part).length > 0);
    if (parts.length === 0) return;
    const {row: rowNow, thing: thingNow} = state.pointed || {};
    const now = parts.findIndex(({row, part}) => row === rowNow && (!thingNow.side || part.side === thingNow.side));
    const {row, part} = parts[now < 0 ? 0 : Math.min(Math.max(now + rowStep, 0), parts.length - 1)];
    const things = thingsOf(part);
    const here = things.indexOf(thingNow);
    const t = Math.max(thingNow ? thingNow.t : -Infinity, state.view[0]);
    const next = here >= 0 && rowStep === 0 ? here + thingStep : afterTime(things, t) - 1;
    goTo(row, things[Math.min(Math.max(next, 0), things.length - 1)]);
  }

  function goTo(row, thing) {
    const end = thing.kind === "event" ? thing.t : thing.end;
    const isInSight = thing.t <= state.view[1] && end >= state.view[0];
    if (!isInSight) reveal(end < state.view[0] ? end : thing.t);
    point({row, thing, byKeyboard: true});
    document.getElementById("voice").textContent = `${row.label}: ${card.innerText.replace(/\s*\n\s*/g, ". ")}`;
  }

  const kSteps = {ArrowLeft: [0, -1], ArrowRight: [0, 1], ArrowUp: [-1, 0], ArrowDown: [1, 0]};
  box.addEventListener("keydown", event => {
    if (isTyping(event)) return;
    if (event.key in kSteps) go(...kSteps[event.key]);
    else if ((event.key === "Enter" || event.key === " ") && state.pointed) lanes.choose(state.pointed);
    else return;
    event.preventDefault();
  });
  box.addEventListener("focus", () => { if (box.matches(":focus-visible") && !state.pointed) go(0, 0); });
  box.addEventListener("blur", () => { if (state.pointed && state.pointed.byKeyboard) point(null); });
})();
