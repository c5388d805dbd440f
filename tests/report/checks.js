// Looks at a report as a reader does: at what stands in it and what it answers to the mouse and the keys.

const verdicts = [];
const check = (what, holds, found) => verdicts.push(holds ? null : `${what}${found === undefined ? "" : `: found ${JSON.stringify(found)}`}`);
const same = (what, found, expected) => check(`${what}: expected ${JSON.stringify(expected)}`, JSON.stringify(found) === JSON.stringify(expected), found);
const one = selector => document.querySelector(selector);
const all = selector => [...document.querySelectorAll(selector)];
const words = element => element.textContent.replace(/\s+/g, " ").trim();
const later = ms => new Promise(done => setTimeout(done, ms));
/** Waits for what a later frame draws, on a busy machine too; what does not come about is left to the check behind it. */
async function until(holds) {
  for (let i = 0; i < 100 && !holds(); ++i) await later(50);
}
const chip = name => all(".chip").find(button => button.querySelector("span").textContent === name);
const lineOf = item => `${words(item.querySelector("time"))} ${words(item.querySelector(".subject"))} ${words(item.querySelector(".sentence"))}`;
const lines = () => all(".list .event").map(lineOf);
/** The timeline's events. It marks a change of the clock with a line of its own, the page with a mark on its axis. */
const told = one("#timeline").textContent.split("\n").filter(line => /^\d\d:\d\d:\d\d  (?!clock )\w/.test(line)).map(line => line.replace(/ +/g, " "));
/** What the timeline tells of a subject at a time. */
const toldAt = (time, subject) => told.find(line => line.startsWith(`${time} ${subject} `)).slice(time.length + subject.length + 2);
const figure = name => words(all(".figure").find(box => words(box.querySelector(".figure-name")) === name).querySelector("b"));
const rect = selector => one(selector).getBoundingClientRect();

/** The mouse at a local time and over a row's bar. */
function at(row, share) {
  const ground = rect(`.row-${row} .ground`);
  return {clientX: ground.left + share * ground.width, clientY: ground.top + ground.height / 2, bubbles: true, cancelable: true, pointerType: "mouse", pointerId: 1};
}
const send = (type, where, Kind = PointerEvent) => one(".rows").dispatchEvent(new Kind(type, where));
const press = (key, target = one(".rows")) => target.dispatchEvent(new KeyboardEvent("keydown", {key, bubbles: true, cancelable: true}));

const checks = {
  async "typical-night"() {
    same("the lanes", all(".rows .row").map(row => row.dataset.row), ["screen", "charger", "light", "stillness", "proximity",
      "condition", "state", "sleep", "bluetooth", "wifi", "modem", "firewall", "frozen", "locks", "timers", "apps", "device"]);
    same("the list tells what the timeline tells", lines(), told);
    const summary = one("#timeline").textContent.split("Summary\n")[1];
    for (const name of ["asleep", "Bluetooth off", "firewall on", "frozen", "timers stretched", "killed"]) {
      const line = summary.split("\n").find(some => some.startsWith(name.toLowerCase()));
      check(`${name} is the summary's`, figure(name) !== "–" && line.includes(figure(name)), [line, figure(name)]);
    }
    same("a radio that stayed on", figure("Wi-Fi off"), "–");
    check("a bar for Bluetooth off", one(".row-bluetooth path.bar.measure").getAttribute("d").split("M").length === 5);
    check("marks for refusals", one(".row-firewall path.mark.kept").getAttribute("d") !== null);

    // 02:00 is 5 of 11.25 hours behind the start
    const [off, maintained] = ["bluetooth", "state"].map(subject => toldAt("00:47:00", subject));
    const holds = (selector, ...parts) => check(`${selector} tells ${parts}`, parts.every(part => words(one(selector)).includes(part)), words(one(selector)));
    send("pointermove", at("bluetooth", 5 / 11.25));
    holds(".card", "bluetooth", "00:47:00 – 02:47:00, 2 h", `00:47:00 ${off}`, `Because of 00:47:00 state ${maintained}`);
    same("the axis tells the pointer's time", words(one(".cursor-time text")), "02:00:00");
    for (const type of ["pointerdown", "pointerup"]) send(type, at("bluetooth", 5 / 11.25));
    same("a click selects in the list", words(one(".event.selected .sentence")), off);
    holds(".event.selected .details", `Because of 00:47:00 state ${maintained}`);
    one(".event.selected .details button.link").click();
    same("a cause can be followed", words(one(".event.selected .sentence")), maintained);
    check("... and shows what it led to in the lanes", all(".flows path.effect").length >= 3);
    press("Escape", document.body);
    same("Escape lets go", all(".event.selected").length, 0);

    all(".list .event").find(item => /^22:45:00 state /.test(lineOf(item))).firstChild.click();
    holds(".event.selected .details", "Again: twice, until 22:55:00");
    press("Escape", document.body);

    one(".rows").focus();
    for (let i = 0; i < 20 && !/^sleep/.test(words(one("#voice"))); ++i) press("ArrowDown");
    for (let i = 0; i < 20 && !/00:25:01 – 07:15:01/.test(words(one("#voice"))); ++i) press("ArrowRight");
    holds("#voice", "6 h 50 min", toldAt("00:25:01", "sleep"));
    check("... and shows where it is", one(".ring").style.display !== "none" && !one(".card").hidden);
    press("Enter");
    same("Enter selects", words(one(".event.selected .sentence")), toldAt("00:25:01", "sleep"));
    press("Escape", document.body);

    chip("bluetooth").click();
    same("the list of one subject", lines(), told.filter(line => / bluetooth /.test(line.slice(8, 19))));
    chip("bluetooth").click();
    one("#words").value = "Alarm";
    one("#words").dispatchEvent(new Event("input"));
    same("the list of a word", lines(), told.filter(line => /alarm/i.test(line)));
    one("#words").value = "";
    one("#words").dispatchEvent(new Event("input"));
    chip("left as it was").click();
    same("the list of refusals", lines().length, all(".list .event.kept").length);
    chip("left as it was").click();

    for (let i = 0; i < 12; ++i) send("wheel", {...at("state", 5 / 11.25), deltaY: -120}, WheelEvent);
    const ticks = () => all(".axis text.tick").map(words);
    const isZoomed = () => ticks().length > 3 && ticks().every(tick => /^0[12]:\d\d/.test(tick));
    await until(() => isZoomed() && lines().length < 12);
    check("the wheel zooms in where the mouse is", isZoomed(), ticks());
    check("... and the list goes with it", lines().length < 12, lines().length);
    press("0", document.body);
    await until(() => lines().length === told.length);
    same("0 shows the whole", lines().length, told.length);

    const colours = ["light", "dark"].map(theme => {
      for (let i = 0; i < 3 && !words(one("#theme-button")).endsWith(theme); ++i) one("#theme-button").click();
      return getComputedStyle(document.body).backgroundColor;
    });
    check("light and dark", colours[0] !== colours[1], colours);
    const unnamed = all("button, select, input, [role]").filter(some => !some.getAttribute("aria-label") && words(some) === "" && !some.closest("label"));
    same("everything to act on has a name", unnamed.map(some => some.outerHTML.slice(0, 80)), []);
  },

  async "clocks-change"() {
    same("local times are the trace's", lines(), told);
    check("the hour that comes twice", lines().findIndex(line => line.startsWith("02:23:00")) > lines().findIndex(line => line.startsWith("02:4")), lines());
    same("the change is marked", all(".axis .clock-change").map(words), ["clocks back 1 h: 03:00 → 02:00"]);
    check("... through the lanes", one(".clock-changes path").getAttribute("d") !== null);
    same("each hour on the axis", all(".axis text.tick").map(words).join(" ").includes("01:00 02:00 02:00 03:00"), true);
  },

  async evil() {
    const name = "<\/script><img src=x onerror=errors.push('evil')><!-- \u2028 \"' &amp; ";
    same("no name becomes a part of the page", all("img").length, 0);
    check("names are shown as they are", one(".list").textContent.includes(name), lines());
  },

  async days() {
    const nights = all("#night option").map(words);
    same("a night from noon to noon each", nights, ["All 3 nights", "Mon 9 – Tue 10 Mar 2026", "Tue 10 – Wed 11 Mar 2026", "Wed 11 – Thu 12 Mar 2026"]);
    one("#night").value = "1";
    one("#night").dispatchEvent(new Event("change"));
    await until(() => lines().length > 0 && lines()[0].slice(0, 8) >= "12:00:00" && lines()[lines().length - 1].slice(0, 8) < "12:00:00");
    const [first, last] = [lines()[0], lines()[lines().length - 1]].map(line => line.slice(0, 8));
    check("a chosen night begins and ends at noon", first >= "12:00:00" && last < "12:00:00" && all(".list .day").length >= 1, [first, last]);
    press("n", document.body);
    same("the key for the next one", one("#night").value, "2");
    one("#whole").click();
    window.dispatchEvent(new Event("beforeprint"));
    same("a page of paper for each night", all(".sheet").length, 3);
    check("... with lanes and words", all(".sheet").every(sheet => sheet.querySelector("path.bar") && sheet.querySelectorAll(".telling p").length > 5));
  },

  async pair() {
    same("two sides", all("h1 .side-name").map(words), ["Aown.json", "Btry.json"]);
    check("both in a lane", one(".row-state .side-A path.bar.depth6") && one(".row-state .side-B path.bar.depth6"));
    same("differences are marked", all(".rows path.difference").map(path => path.closest(".row").dataset.row).filter(row => ["state", "bluetooth", "screen"].includes(row)),
      ["state", "bluetooth"]);
    check("the figures tell how much", /^[+−]\d+ min$/.test(words(one(".figure-bluetooth .figure-difference"))), words(one(".figure-bluetooth")));
    const both = lines().length;
    chip("only in one").click();
    check("what happened in one only", lines().length > 5 && lines().length < both && all(".list .event").every(item => item.querySelector(".side-tag")));
    one(".legend input").click();
    check("only lanes that differ", !one(".row-charger") && one(".row-bluetooth"));
  },

  async moved() {
    check("a night of another day is moved onto the first", /B is of Tue 10 Mar 2026 22:00/.test(words(one(".when"))), words(one(".when")));
    const grounds = ["A", "B"].map(letter => rect(`.row-state .side-${letter} .ground`));
    check("... by whole days", Math.abs(grounds[1].left - grounds[0].left - grounds[0].width / 11.25) < 3, grounds);
    check("... and keeps its own times", lines().some(line => /^22:20:00 screen Boff$/.test(line)), lines());
  },
};

(async () => {
  try {
    await later(300);
    await checks[page]();
    same("no script went wrong", errors, []);
  } catch (error) {
    verdicts.push(`${error}\n${error.stack}`);
  }
  const wrong = verdicts.filter(verdict => verdict !== null);
  one("#verdict").textContent = wrong.length === 0 ? `all ${verdicts.length} checks hold` : wrong.join("\n");
})();
