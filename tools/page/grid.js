// A table that draws only the rows in sight, so that their number costs nothing. The focus is on the
// table; the current row is its active descendant, which survives that rows come and go.

import { make } from "./dom.js";

const rowHeight = 30;             // as in style.css
const rowsBeyond = 12;            // drawn above and below what is in sight
const highestTable = 15_000_000;  // pixels; browsers draw nothing beyond a little more
const rowsOfPrint = 1000;

// `text` with what was searched for marked.
export function marked(text, words) {
  if (words.length === 0) return [text];
  const lower = text.toLowerCase();
  if (lower.length !== text.length) return [text];
  const parts = [];
  let from = 0;
  while (from < text.length) {
    let at = -1;
    let length = 0;
    for (const word of words) {
      const place = lower.indexOf(word, from);
      if (place === -1 || (at !== -1 && (place > at || (place === at && word.length <= length)))) continue;
      at = place;
      length = word.length;
    }
    if (at === -1) break;
    if (at > from) parts.push(text.slice(from, at));
    parts.push(make("mark", {}, text.slice(at, at + length)));
    from = at + length;
  }
  if (from < text.length) parts.push(text.slice(from));
  return parts;
}

export class Grid {
  // `opened(row)` and `sorted(name)` are told what a person asks for.
  constructor(sheet, { opened, sorted }) {
    Object.assign(this, { sheet, opened, sorted, rows: new Uint32Array(0), current: 0, words: [], open: -1 });
    this.columnWidths = make("colgroup");
    this.head = make("tr", { "aria-rowindex": "1" });
    this.body = make("tbody");
    this.table = make("table", {
      role: "grid", tabindex: "0", "aria-label": sheet.title, onkeydown: (event) => this.key(event),
      onclick: (event) => this.click(event), onfocus: () => this.activate(),
    }, this.columnWidths, make("thead", {}, this.head), this.body);
    this.element = make("div", { class: "grid" }, this.table);
    this.element.addEventListener("scroll", () => this.drawSoon(), { passive: true });
    new ResizeObserver(() => this.drawSoon()).observe(this.element);
    addEventListener("beforeprint", () => { if (this.element.isConnected) this.drawAll(); });
    addEventListener("afterprint", () => { if (this.element.isConnected) this.draw(); });
  }

  setColumns(columns, sort, descending) {
    this.columns = columns;
    this.table.setAttribute("aria-colcount", columns.length);
    let width = 0;
    this.columnWidths.replaceChildren(...columns.map((column) => {
      const element = make("col");
      element.style.width = `${this.sheet.widthOf(column)}px`;
      width += this.sheet.widthOf(column);
      return element;
    }));
    this.table.style.minWidth = `${width}px`;
    this.head.replaceChildren(...columns.map((column) => {
      const isSorted = column.name === sort;
      return make("th", {
        scope: "col", class: column.isNumeric && !column.names ? "number" : null,
        "aria-sort": isSorted ? (descending ? "descending" : "ascending") : "none",
      }, make("button", { type: "button", onclick: () => this.sorted(column.name) },
        column.label, make("span", { "aria-hidden": "true" }, isSorted ? (descending ? " ▼" : " ▲") : "")));
    }));
  }

  // `rows` in their order; the current row stays current while it is among them.
  setRows(rows, words) {
    const before = this.rows[this.current];
    this.rows = rows;
    this.words = words;
    const place = rows.indexOf(before);
    this.current = Math.max(0, place);
    this.table.setAttribute("aria-rowcount", rows.length + 1);
    if (place < 0) this.element.scrollTop = 0;
    this.draw();
  }

  get scale() { return Math.min(1, highestTable / (this.rows.length * rowHeight)); }
  get rowsInSight() { return Math.max(1, Math.floor((this.element.clientHeight - rowHeight) / rowHeight)); }

  drawSoon() {
    if (this.isWaiting) return;
    this.isWaiting = true;
    requestAnimationFrame(() => { this.isWaiting = false; this.draw(); });
  }

  draw() {
    const step = rowHeight * this.scale;
    const top = Math.floor(this.element.scrollTop / step);
    const first = Math.max(0, top - rowsBeyond);
    this.drawRows(first, Math.min(this.rows.length, top + this.rowsInSight + 1 + rowsBeyond), step);
  }

  drawAll() { this.drawRows(0, Math.min(this.rows.length, rowsOfPrint), 0); }

  drawRows(first, end, step) {
    const drawn = [];
    for (let place = first; place < end; ++place) drawn.push(this.row(place));
    const above = first * step;
    const below = Math.max(0, this.rows.length * step - above - (end - first) * rowHeight);
    if (above > 0) drawn.unshift(this.space(above));
    if (below > 0 && step > 0) drawn.push(this.space(below));
    if (step === 0 && this.rows.length > end) {
      drawn.push(make("tr", {}, make("td", { colspan: this.columns.length }, `… and ${this.rows.length - end} more`)));
    }
    this.body.replaceChildren(...drawn);
    this.activate();
  }

  space(height) {
    const cell = make("td", { colspan: this.columns.length });
    const row = make("tr", { class: "space", "aria-hidden": "true" }, cell);
    cell.style.height = `${height}px`;
    return row;
  }

  row(place) {
    const row = this.rows[place];
    return make("tr", {
      id: `row-${place}`, "data-place": place, "aria-rowindex": place + 2,
      class: place === this.current ? "current" : null, "aria-selected": String(row === this.open),
    }, this.columns.map((column) => this.cell(column, row)));
  }

  cell(column, row) {
    const text = column.text(row);
    const parts = marked(text, this.words);
    const link = this.sheet.links[column.name]?.(row);
    return make("td", { class: column.isNumeric && !column.names ? "number" : null, title: text.length > 24 ? text : null },
      link ? make("a", { href: link, tabindex: "-1" }, parts) : parts);
  }

  activate() {
    const row = this.body.querySelector(`#row-${this.current}`);
    if (row) this.table.setAttribute("aria-activedescendant", row.id);
    else this.table.removeAttribute("aria-activedescendant");
  }

  moveTo(place) {
    if (this.rows.length === 0) return;
    this.current = Math.min(Math.max(0, place), this.rows.length - 1);
    const step = rowHeight * this.scale;
    const top = this.current * step;
    const height = this.rowsInSight * rowHeight * this.scale;
    if (top < this.element.scrollTop) this.element.scrollTop = top;
    else if (top + step > this.element.scrollTop + height) this.element.scrollTop = top + step - height;
    this.draw();
  }

  // The row whose card is shown becomes the current one.
  setOpen(row) {
    this.open = row;
    const place = row < 0 ? -1 : this.rows.indexOf(row);
    if (place >= 0) this.moveTo(place);
    else this.draw();
  }

  key(event) {
    if (event.ctrlKey || event.altKey || event.metaKey || event.target !== this.table) return;
    const moves = {
      ArrowDown: this.current + 1, ArrowUp: this.current - 1,
      PageDown: this.current + this.rowsInSight, PageUp: this.current - this.rowsInSight,
      Home: 0, End: this.rows.length - 1,
    };
    if (event.key in moves) this.moveTo(moves[event.key]);
    else if (event.key === "Enter" && this.rows.length > 0) this.opened(this.rows[this.current]);
    else return;
    event.preventDefault();
  }

  click(event) {
    const row = event.target.closest("tr[data-place]");
    if (!row || event.target.closest("a") || String(getSelection()) !== "") return;
    this.current = Number(row.dataset.place);
    this.opened(this.rows[this.current]);
  }
}
