// The mouse and fingers on the lanes. One finger or the mouse moves the chart, two fingers and the wheel zoom; up and down
// stays the page's.

(() => {
  const {box, x} = lanes;
  const kClickPx = 4, kLeastSpreadPx = 20, kLinePx = 16, kPagePx = 400;
  const isOnNames = event => event.target.closest(".names") !== null;
  let hovering = null;  // the mouse's last move, for when the chart moves below it

  function hover(event) {
    hovering = event;
    const [px, py] = lanes.placeOf(event);
    const at = lanes.thingAt(px, py);
    lanes.drawCursor(px >= 0 && px <= x.range()[1] ? px : null);
    point(at && {...at, at: {x: event.clientX, y: event.clientY}});
  }

  function leave() {
    hovering = null;
    lanes.drawCursor(null);
    if (state.pointed && !state.pointed.byKeyboard) point(null);
  }

  listeners.on("view.pointing", () => { if (hovering) hover(hovering); });

  const pointers = new Map();  // where each pressed pointer is
  let held = null;             // what they held when they came down

  const middle = () => d3.mean(pointers.values());
  const spread = () => Math.max(kLeastSpreadPx, d3.max(pointers.values()) - d3.min(pointers.values()));

  function grip() {
    held = {view: state.view, x: middle(), spread: spread(), hasMoved: held !== null && held.hasMoved};
  }

  function drag(event) {
    if (!held.hasMoved && pointers.size < 2 && Math.abs(middle() - held.x) < kClickPx) return;
    if (!held.hasMoved) {
      held.hasMoved = true;
      try { box.setPointerCapture(event.pointerId); } catch { /* it is gone already */ }
      box.classList.add("moving");
      leave();
    }
    const [from, to] = held.view, width = x.range()[1];
    const length = (to - from) * (pointers.size > 1 ? held.spread / spread() : 1);
    const start = from + held.x / width * (to - from) - middle() / width * length;
    setView(start, start + length);
  }

  box.addEventListener("pointerdown", event => {
    if (event.button !== 0 || isOnNames(event)) return;
    pointers.set(event.pointerId, lanes.placeOf(event)[0]);
    grip();
  });
  box.addEventListener("pointermove", event => {
    if (pointers.has(event.pointerId)) {
      pointers.set(event.pointerId, lanes.placeOf(event)[0]);
      drag(event);
    } else if (isOnNames(event)) {
      leave();
    } else if (event.pointerType !== "touch") {
      hover(event);
    }
  });
  function release(event) {
    if (!pointers.delete(event.pointerId)) return;
    if (pointers.size > 0) {
      grip();
      return;
    }
    const isClick = !held.hasMoved && event.type === "pointerup";
    held = null;
    box.classList.remove("moving");
    if (!isClick) return;
    const at = lanes.thingAt(...lanes.placeOf(event));
    lanes.choose(at);
    if (event.pointerType === "touch") point(at && {...at, at: {x: event.clientX, y: event.clientY}});
  }
  box.addEventListener("pointerup", release);
  box.addEventListener("pointercancel", release);
  box.addEventListener("pointerleave", event => {
    release(event);  // one that was not captured goes up elsewhere
    if (event.pointerType !== "touch") leave();
  });

  window.addEventListener("scroll", leave, {passive: true});  // what was touched goes away from its card

  box.addEventListener("wheel", event => {
    if (isOnNames(event)) return;
    event.preventDefault();
    const pixels = [1, kLinePx, kPagePx][event.deltaMode];
    const sideways = event.shiftKey ? event.deltaX || event.deltaY : event.deltaX;
    if (event.shiftKey || Math.abs(sideways) > Math.abs(event.deltaY)) pan(sideways * pixels / x.range()[1]);
    else zoom(Math.exp(event.deltaY * pixels * (event.ctrlKey ? 0.01 : 0.0022)), x.invert(lanes.placeOf(event)[0]));
  }, {passive: false});
  box.addEventListener("dblclick", event => {
    if (!isOnNames(event)) zoom(0.35, x.invert(lanes.placeOf(event)[0]));
  });
})();
