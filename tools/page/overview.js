// How many of what, in numbers and pictures, and what is wrong with it.

import { bars, columns, heatMap, largest } from "./charts.js";
import { counted, grouped, make } from "./dom.js";
import { addressOfValue } from "./sheets.js";
import { linkTo } from "./state.js";

const mostRows = 24;      // of a picture
const mostFindings = 12;  // listed here; all of them have a sheet

function tallies(sheet, name) {
  const column = sheet.column(name);
  const { values, at } = column.coded();
  const counts = new Uint32Array(values.length);
  for (const code of at) ++counts[code];
  return values.map((value, code) => ({
    label: column.shown(value), count: counts[code], href: linkTo(sheet.id, { [name]: addressOfValue(column, value) }),
  }));
}

function heat(sheet) {
  const [subsystem, event] = ["subsystem", "event_type"].map((name) => sheet.column(name));
  const [down, across] = [subsystem.coded(), event.coded()];
  const counts = new Uint32Array(down.values.length * across.values.length);
  const sums = new Uint32Array(down.values.length);
  for (let row = 0; row < sheet.rows; ++row) {
    ++counts[down.at[row] * across.values.length + across.at[row]];
    ++sums[down.at[row]];
  }
  const rows = [...down.values.keys()].sort((a, b) => sums[b] - sums[a]).slice(0, mostRows);
  const events = [...across.values.keys()].sort((a, b) => across.values[a] - across.values[b]);
  const note = down.values.length > mostRows ? `the ${mostRows} largest of ${down.values.length} subsystems` : "";
  return heatMap("Channels by subsystem and event type", note,
    rows.map((code) => String(down.values[code])), events.map((code) => event.shown(across.values[code])),
    (r, c) => counts[rows[r] * across.values.length + events[c]],
    (r, c) => linkTo(sheet.id, {
      subsystem: addressOfValue(subsystem, down.values[rows[r]]), event_type: addressOfValue(event, across.values[events[c]]),
    }));
}

// Sizes by powers of two, from the smallest to the largest that there is.
function sizes(sheet, width) {
  const { values, at } = sheet.column("size").coded();
  const powers = values.map((value) => (value > 0 ? Math.floor(Math.log2(value)) : -1));
  const counts = new Map();
  for (const code of at) counts.set(powers[code], (counts.get(powers[code]) ?? 0) + 1);
  const all = [...counts.keys()].sort((a, b) => a - b);
  const name = (power) => {
    if (power < 0) return "≤ 0";
    if (power < 10) return String(2 ** power);
    return power < 20 ? `${2 ** (power - 10)} Ki` : power < 30 ? `${2 ** (power - 20)} Mi` : `${2 ** (power - 30)} Gi`;
  };
  const shown = all.map((power) => ({ label: name(power), count: counts.get(power), href: null }));
  return columns("Values per sample", "each column from this size to below twice of it", shown, width);
}

function pictures(sheet, width) {
  const half = width > 900 ? Math.floor(width / 2) - 24 : width;
  const found = [];
  if (sheet.id === "channels" && sheet.rows > 0) {
    found.push(heat(sheet), bars("Channels by data type", "", largest(tallies(sheet, "data_type"), mostRows), half),
      bars("Channels by stream", "", largest(tallies(sheet, "stream"), mostRows), half), sizes(sheet, half));
  }
  if (sheet.id === "features" && sheet.rows > 0) {
    found.push(bars("Camera features by type", "", largest(tallies(sheet, "type"), mostRows), half));
  }
  if (sheet.id === "requests") {
    found.push(bars("Requested channels by server block", "", largest(tallies(sheet, "server_block"), mostRows), half));
  }
  return found;
}

function documentTable(data, sheets) {
  const choice = (each) => (data.documents.length > 1 ? { document: each.file } : {});
  const records = (each) => {
    const text = counted(each.records, each.one, each.several);
    return sheets.has(each.several) ? make("a", { href: linkTo(each.several, choice(each)) }, text) : text;
  };
  const rows = data.documents.map((each) => make("tr", {},
    make("th", { scope: "row" }, each.file),
    make("td", {}, each.unusable ? `not used: ${each.unusable}` : each.what),
    make("td", { class: "number" }, each.unusable ? "" : records(each)),
    make("td", { class: "number" }, grouped(each.errors ?? 0)),
    make("td", { class: "number" }, each.findings ? make("a", { href: linkTo("findings", choice(each)) }, grouped(each.findings)) : "0")));
  return make("section", {}, make("h2", {}, counted(data.documents.length, "document")),
    make("div", { class: "wide" }, make("table", { class: "rows" },
      make("thead", {}, make("tr", {}, ["file", "kind", "records", "errors", "findings"].map((label) =>
        make("th", { scope: "col", class: label === "file" || label === "kind" ? null : "number" }, label)))),
      make("tbody", {}, rows))));
}

function findingList(sheets) {
  const sheet = sheets.get("findings");
  if (!sheet) return make("section", {}, make("h2", {}, "Findings"), make("p", {}, "Nothing is wrong or odd."));
  const [document, line, column, text] = ["document", "line", "column", "text"].map((name) => sheet.column(name));
  const weight = sheet.column("severity");
  const items = Array.from({ length: Math.min(sheet.rows, mostFindings) }, (_, row) => make("li", {},
    make("code", {}, `${document.text(row)}${line.value(row) > 0 ? `:${line.value(row)}:${column.value(row)}` : ""}`),
    " ", make("strong", { class: weight.text(row) }, weight.text(row)), ` ${text.text(row)}`));
  return make("section", {}, make("h2", {}, counted(sheet.rows, "finding")), make("ul", { class: "findings" }, items),
    sheet.rows > mostFindings ? make("p", {}, make("a", { href: "#findings" }, `All ${grouped(sheet.rows)}`)) : null);
}

function changeTiles(data, sheets) {
  const sheet = sheets.get("changes");
  if (!data.changes) return null;
  const { before, after, added, removed, changed, one, several } = data.changes;
  const tile = (what, number) => make("a", { class: `tile ${what}`, href: linkTo("changes", { change: what }) },
    make("strong", {}, grouped(number)), ` ${number === 1 ? one : several} ${what}`);
  return make("section", {}, make("h2", {}, "What changed"), make("p", {}, "From ", make("code", {}, before), " to ", make("code", {}, after), "."),
    sheet.rows === 0 ? make("p", {}, "Nothing: they are equal.")
      : make("div", { class: "tiles" }, tile("added", added), tile("removed", removed), tile("changed", changed)));
}

export function overviewOf(data, sheets, width) {
  const tiles = [...sheets.values()].filter((sheet) => !["changes", "findings"].includes(sheet.id)).map((sheet) =>
    make("a", { class: "tile", href: `#${sheet.id}` }, make("strong", {}, grouped(sheet.rows)), ` ${sheet.rows === 1 ? sheet.one : sheet.several}`));
  return make("div", { class: "overview" },
    make("div", { class: "tiles" }, tiles), changeTiles(data, sheets),
    make("div", { class: "pictures" }, [...sheets.values()].flatMap((sheet) => pictures(sheet, width))),
    documentTable(data, sheets), findingList(sheets));
}
