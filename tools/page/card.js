// The card of one record: all that is known of it.

import { isSet, wordOf } from "./bits.js";
import { copyButton, labelOf, make } from "./dom.js";
import { linkTo } from "./state.js";

const placeholder = "(none)";

function fieldsOf(sheet, row) {
  const units = sheet.table.column("units")?.text(row) ?? "";
  return sheet.table.columns.map((column) => {
    const text = column.text(row);
    const unit = column.name === "size" ? (text === "1" ? " value" : " values") : "";
    const link = sheet.links[column.name]?.(row);
    return make("div", { class: column.name === "units" && units === "" ? "empty" : null },
      make("dt", {}, column.label),
      make("dd", {}, text === "" ? make("span", { class: "none" }, placeholder)
        : link ? make("a", { href: link }, text) : text + unit));
  });
}

// Rows inside the record as tables, one inside the other.
function groupTable(group, first, end, level, mark) {
  const columns = group.columns;
  const inner = group.groups.filter((each) => each.rows > 0);
  for (const each of inner) each.firsts(group.rows);
  const rows = [];
  for (let row = first; row < end; ++row) {
    rows.push(make("tr", { "data-number": columns[0].text(row) },
      mark ? make("td", { class: "is-set" }) : null,
      columns.map((column) => make("td", { class: column.isNumeric ? "number" : null }, column.text(row)))));
    for (const each of inner) {
      if (each.first[row] === each.first[row + 1]) continue;
      rows.push(make("tr", {}, make("td", { colspan: columns.length, class: "inside" },
        make("span", { class: "inside-label" }, labelOf(each.name)),
        groupTable(each, each.first[row], each.first[row + 1], level + 1))));
    }
  }
  return make("table", { class: "rows" },
    make("thead", {}, make("tr", {}, mark ? make("th", { scope: "col" }, "set") : null,
      columns.map((column) => make("th", { scope: "col", class: column.isNumeric ? "number" : null }, column.label)))),
    make("tbody", {}, rows));
}

function bitsOf(group, first, end) {
  const bits = [];
  for (let row = first; row < end; ++row) {
    bits.push({
      number: group.column("number").value(row),
      name: group.column("name").text(row),
      description: group.column("description").text(row),
    });
  }
  return bits;
}

function sections(sheet, row, value, valueChanged) {
  return sheet.table.groups.map((group) => {
    const firsts = group.firsts(sheet.rows);
    const [first, end] = [firsts[row], firsts[row + 1]];
    if (first === end) return null;
    const isWord = group.name === "bits" && group.column("name") !== undefined;
    const table = groupTable(group, first, end, 0, isWord);
    const title = make("h3", {}, `${labelOf(group.name)} (${end - first})`);
    if (!isWord) return make("section", {}, title, make("div", { class: "wide" }, table));
    const word = wordOf(bitsOf(group, first, end), value, (text, number) => {
      for (const line of table.querySelectorAll("tr[data-number]")) {
        const bit = Number(line.dataset.number);
        const inWord = number !== null && bit >= 0 && bit < 32;
        line.firstChild.textContent = inWord ? (isSet(number, bit) ? "yes" : "no") : "";
      }
      valueChanged(text);
    });
    return [word, make("section", {}, title, make("div", { class: "wide" }, table))];
  });
}

// The same lines without the indentation that all of them have.
function outdented(text) {
  const lines = text.split("\n");
  const margins = lines.slice(1).filter((line) => line.trim() !== "").map((line) => line.match(/^[ \t]*/)[0].length);
  const margin = margins.length > 0 ? Math.min(...margins) : 0;
  return [lines[0], ...lines.slice(1).map((line) => line.slice(margin))].join("\n");
}

function sourceOf(sheet, row) {
  const code = make("code", {}, "…");
  const block = make("pre", { tabindex: "0", "aria-label": "The XML that describes it" }, code);
  let text = "";
  const section = make("section", { class: "source" },
    make("h3", {}, "The XML that describes it ", copyButton(() => text, "XML")), block);
  sheet.source(row).then((found) => {
    text = found ? outdented(found) : "";
    code.textContent = text || "Not kept: it stands inside another record or an entity, or its encoding is unknown.";
  }, () => { code.textContent = "Cannot be unpacked."; });
  return section;
}

function placeOf(sheet, row) {
  const document = sheet.documentOf(row);
  if (!document) return null;
  const line = sheet.column("line").value(row);
  const place = line > 0 ? `${document.file}:${line}` : document.file;
  return make("section", { class: "place" }, make("h3", {}, "Where it stands"),
    make("p", {}, make("code", { id: "place" }, place), " ", copyButton(place, "place"),
      line > 0 ? null : " (line not known)"));
}

function links(title, entries) {
  if (entries.length === 0) return null;
  return make("section", {}, make("h3", {}, title),
    make("ul", {}, entries.slice(0, 20).map(([href, text]) => make("li", {}, make("a", { href }, text))),
      entries.length > 20 ? make("li", {}, `… and ${entries.length - 20} more`) : null));
}

// What other documents say about the same channel.
function related(sheet, row, sheets) {
  const key = sheet.column(sheet.key).value(row);
  const others = sheet.rowsOf(key).filter((each) => each !== row);
  const found = [links("Also described in", others.map((other) =>
    [sheet.linkTo(other), `${sheet.documentOf(other)?.file ?? ""}:${sheet.column("line")?.value(other)}`]))];
  if (sheet.id !== "channels") return found;
  const requests = sheets.get("requests");
  const asked = requests?.eventsOf(row) ?? [];
  found.push(links("Requested by", asked.map((request) =>
    [requests.linkTo(request), `${requests.column("event_type").text(request)}, ${requests.column("server_block").text(request)}`])));
  const entries = sheets.get("entries");
  found.push(links("In the dictionary", (entries?.rowsOf(key) ?? []).map((entry) =>
    [entries.linkTo(entry), `index ${entries.column("index").text(entry)}, thresholds ` +
      `${entries.column("absolute_threshold").text(entry)} absolute, ${entries.column("relative_threshold").text(entry)} relative`])));
  return found;
}

// What --diff found of this record.
function changeList(sheet, row, sheets) {
  const changes = sheets.get("changes");
  if (!changes || changes.of !== sheet.id) return null;
  const rows = changes.rowsOf(sheet.column(sheet.key).value(row));
  if (rows.length === 0) return null;
  const line = (each) => {
    const [what, inside, field, before, after] = ["change", "inside", "field", "before", "after"]
      .map((name) => changes.column(name).text(each));
    const where = [inside, field].filter(Boolean).join(": ");
    return make("li", { class: what }, make("strong", {}, what), where ? ` ${where}` : "",
      before || after ? [" ", make("del", {}, before || placeholder), " → ", make("ins", {}, after || placeholder)] : null);
  };
  return make("section", { class: "changed-list" }, make("h3", {}, "Changed"), make("ul", {}, rows.map(line)),
    make("p", {}, make("a", { href: linkTo("changes", {}, { query: String(sheet.column(sheet.key).value(row)) }) }, "In the list of changes")));
}

// `closed()`, `moved(step)` and `valueChanged(text)` are told what a person does.
export function cardOf(sheet, row, sheets, value, { closed, moved, valueChanged }) {
  const key = String(sheet.column(sheet.key).text(row));
  const name = sheet.table.column("name")?.text(row) || key;
  const description = ["tool_tip", "description"].map((each) => sheet.table.column(each)?.text(row)).filter(Boolean);
  const button = (text, label, act) => make("button", { type: "button", class: "small", "aria-label": label, title: label, onclick: act }, text);
  return make("aside", { class: "card", "aria-labelledby": "card-title" },
    make("div", { class: "card-tools" },
      button("‹", `${sheet.one} before ([)`, () => moved(-1)), button("›", `Next ${sheet.one} (])`, () => moved(1)),
      make("span", { class: "stretch" }),
      button("Print", "Print this card", () => print()), button("Close", "Close (Esc)", closed)),
    make("h2", { id: "card-title", tabindex: "-1" }, name),
    make("p", { class: "key" }, key !== name ? [make("code", {}, key), " ", copyButton(key, sheet.column(sheet.key).label), " "] : null,
      copyButton(name, key !== name ? "name" : sheet.column(sheet.key).label)),
    description.map((text) => make("p", { class: "description" }, text)),
    changeList(sheet, row, sheets),
    make("section", {}, make("h3", { class: "unseen" }, "Fields"), make("dl", { class: "fields" }, fieldsOf(sheet, row))),
    sections(sheet, row, value, valueChanged),
    related(sheet, row, sheets), placeOf(sheet, row),
    sheet.documentOf(row) ? sourceOf(sheet, row) : null);
}
