// What is shown, as it stands in the address behind '#', so that a view can be sent to a colleague:
//   #channels?q=half+a+name&subsystem=RF&event_type=ENV&sort=-name&columns=name,units&card=PROPERTY
// Everything that is no word of the page's own is the choice of a facet.

const own = new Set(["q", "sort", "columns", "card", "nth", "value"]);

export function parse(hash) {
  const text = hash.replace(/^#/, "");
  const mark = text.indexOf("?");
  const given = new URLSearchParams(mark < 0 ? "" : text.slice(mark + 1));
  const state = {
    view: mark < 0 ? text : text.slice(0, mark),
    query: given.get("q") ?? "",
    sort: (given.get("sort") ?? "").replace(/^-/, ""),
    descending: (given.get("sort") ?? "").startsWith("-"),
    columns: given.has("columns") ? given.get("columns").split(",") : null,
    card: given.get("card"),
    nth: Math.max(1, Number(given.get("nth")) || 1),
    value: given.get("value") ?? "",
    chosen: new Map(),
  };
  for (const [name, value] of given) {
    if (own.has(name)) continue;
    if (!state.chosen.has(name)) state.chosen.set(name, new Set());
    state.chosen.get(name).add(value);
  }
  return state;
}

export function format(state) {
  const told = new URLSearchParams();
  if (state.query) told.set("q", state.query);
  for (const [name, values] of state.chosen ?? []) for (const value of values) told.append(name, value);
  if (state.sort) told.set("sort", (state.descending ? "-" : "") + state.sort);
  if (state.columns) told.set("columns", state.columns.join(","));
  if (state.card !== null && state.card !== undefined) told.set("card", state.card);
  if (state.nth > 1) told.set("nth", state.nth);
  if (state.value) told.set("value", state.value);
  const rest = told.toString();
  return `#${state.view}${rest ? `?${rest}` : ""}`;
}

// The address of a view with these choices, and nothing else.
export function linkTo(view, choices = {}, more = {}) {
  const chosen = new Map(Object.entries(choices).map(([name, value]) => [name, [value]]));
  return format({ view, chosen, ...more });
}
