// Of two nights, which things happened in both: what says the same of the same subject at the same time.

const allEvents = sides.length === 1 ? sides[0].events : d3.merge(sides.map(side => side.events)).sort((a, b) => a.t - b.t);

if (isPair) {
  const key = event => [event.t, event.subject, event.outcome, event.text, event.reason].join("\u0000");
  const waiting = d3.group(sides[0].events, key);
  for (const event of sides[1].events) {
    const [twin] = (waiting.get(key(event)) || []).splice(0, 1);
    if (!twin) continue;
    event.twin = twin;
    twin.twin = event;
  }
}

/** What happened in one of the two nights only. */
const isAlone = event => isPair && !event.twin;

const differsInMarks = row => row.sides.some(one => one.events.some(isAlone));
