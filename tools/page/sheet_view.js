// One sheet: search, facets, table and card.

import { cardOf } from "./card.js";
import { counted, grouped, make, say } from "./dom.js";
import { Grid } from "./grid.js";
import { filtered, orderBy, Search } from "./search.js";
import { addressOfValue, valueAtAddress } from "./sheets.js";

const valuesOfFacet = 8;  // shown before a person asks for more
const mostValues = 500;

export class SheetView {
  // `go(change, isNew)` changes the state of the page; a new one is gone back from.
  constructor(sheet, sheets, go) {
    Object.assign(this, { sheet, sheets, go, expanded: new Set() });
    this.search = make("input", {
      type: "search", id: "search", autocomplete: "off", spellcheck: "false", placeholder: "Parts of names and descriptions",
      "aria-label": `Search ${sheet.several}`, "aria-controls": "rows", oninput: () => go({ query: this.search.value }),
      onkeydown: (event) => this.searchKey(event),
    });
    this.count = make("p", { class: "count", role: "status" });
    this.clear = make("button", { type: "button", class: "small", onclick: () => go({ query: "", chosen: new Map() }, true) }, "Show all");
    this.columnList = make("fieldset", {}, make("legend", {}, "Shown columns"));
    this.facetList = make("div", { class: "facet-list" });
    this.facetMenu = make("details", { class: "facets", open: matchMedia("(min-width: 900px)").matches },
      make("summary", {}, "Filters"), this.facetList);
    this.grid = new Grid(sheet, {
      opened: (row) => this.openCard(row),
      sorted: (name) => go(this.nextSort(name), true),
    });
    this.grid.element.id = "rows";
    this.cardPlace = make("div", { class: "card-place" });
    this.element = make("div", { class: "sheet" },
      make("div", { class: "tools" }, this.search, this.count, this.clear,
        make("details", { class: "menu" }, make("summary", {}, "Columns"), this.columnList)),
      make("div", { class: "sheet-body" }, sheet.facets.length > 0 ? this.facetMenu : null, this.grid.element, this.cardPlace));
    this.drawColumnList();
  }

  get isNarrow() { return matchMedia("(max-width: 600px)").matches; }

  nextSort(name) {
    const { sort, descending } = this.state;
    if (sort !== name) return { sort: name, descending: false };
    return descending ? { sort: "", descending: false } : { sort: name, descending: true };
  }

  columnsOf(state) {
    const wanted = state.columns ?? (this.isNarrow ? this.sheet.narrow : [...this.sheet.shown, ...this.placeColumns()]);
    const columns = wanted.map((name) => this.sheet.column(name)).filter(Boolean);
    return columns.length > 0 ? columns : this.sheet.columns.slice(0, 1);
  }

  // Whatever tells records apart that are else alike.
  placeColumns() {
    const names = this.sheet.facets.map((facet) => facet.name);
    return ["change", "document"].filter((name) => names.includes(name) && !this.sheet.shown.includes(name));
  }

  drawColumnList() {
    this.columnBoxes = this.sheet.columns.map((column) => {
      const box = make("input", { type: "checkbox", value: column.name, onchange: () => this.chooseColumns() });
      this.columnList.append(make("label", {}, box, ` ${column.label}`));
      return box;
    });
  }

  // Kept in their order; a new one comes last.
  chooseColumns() {
    const checked = this.columnBoxes.filter((box) => box.checked).map((box) => box.value);
    const before = this.columnsOf(this.state).map((column) => column.name);
    const names = [...before.filter((name) => checked.includes(name)), ...checked.filter((name) => !before.includes(name))];
    this.go({ columns: names.length > 0 ? names : null });
  }

  update(state) {
    const begin = performance.now();
    const before = this.state;
    this.state = state;
    if (this.search.value !== state.query) this.search.value = state.query;
    const columns = this.columnsOf(state);
    const header = `${columns.map((each) => each.name)} ${state.sort} ${state.descending}`;
    if (header !== this.header) {
      this.header = header;
      this.grid.setColumns(columns, state.sort, state.descending);
      for (const box of this.columnBoxes) box.checked = columns.some((column) => column.name === box.value);
      this.asked = null;
    }
    this.filter(state);
    if (!before || before.card !== state.card || before.nth !== state.nth) this.drawCard(state, before);
    performance.measure("zrt4-update", { start: begin, end: performance.now() });
  }

  filter(state) {
    const asked = JSON.stringify([state.query, [...state.chosen].map(([name, values]) => [name, ...values]), state.sort, state.descending]);
    if (asked === this.asked) return;
    this.asked = asked;
    const { sheet } = this;
    for (const facet of sheet.facets) {
      facet.chosen = new Set([...(state.chosen.get(facet.name) ?? [])].map((text) => valueAtAddress(facet, text)));
    }
    const hits = this.find(state.query);
    const passes = filtered(sheet.rows, hits, sheet.facets);
    const rows = new Uint32Array(sheet.rows);
    const order = sheet.column(state.sort) ? orderBy(sheet.column(state.sort)) : null;
    let number = 0;
    for (let i = 0; i < sheet.rows; ++i) {
      const row = order ? order[state.descending ? sheet.rows - 1 - i : i] : i;
      if (passes[row]) rows[number++] = row;
    }
    this.grid.setRows(rows.subarray(0, number), state.query.toLowerCase().split(/\s+/).filter(Boolean));
    const isAll = number === sheet.rows;
    this.count.textContent = isAll ? counted(number, sheet.one, sheet.several)
      : `${grouped(number)} of ${counted(sheet.rows, sheet.one, sheet.several)}`;
    this.clear.hidden = state.query === "" && state.chosen.size === 0;
    this.drawFacets();
  }

  find(query) {
    if (query.trim() === "") return null;
    const { sheet } = this;
    this.index ??= new Search(sheet.table, sheet.searched
      ? sheet.searched.map((name) => sheet.table.column(name)).filter(Boolean) : sheet.table.columns);
    return this.index.find(query);
  }

  // Made before a person types, so that the first keystroke is as quick as the others.
  prepare() { this.find("\u0001"); }

  drawFacets() {
    const focused = document.activeElement?.dataset?.facet;
    const opened = new Set([...this.facetList.children].filter((each) => !each.open).map((each) => each.dataset.name));
    this.facetList.replaceChildren(...this.sheet.facets.map((facet) => this.facet(facet, !opened.has(facet.name))));
    if (focused) this.facetList.querySelector(`[data-facet="${CSS.escape(focused)}"]`)?.focus();
  }

  facet(facet, isOpen) {
    const { column, coded, counts, chosen } = facet;
    const codes = [...coded.values.keys()].filter((code) => counts[code] > 0 || chosen.has(code));
    codes.sort((a, b) => chosen.has(b) - chosen.has(a) || counts[b] - counts[a] || a - b);
    const isExpanded = this.expanded.has(facet.name);
    const shown = codes.slice(0, isExpanded ? mostValues : valuesOfFacet);
    const more = codes.length - shown.length;
    const rest = more > 0 && !isExpanded ? make("button", {
      type: "button", class: "link", "data-facet": `${facet.name} more`, onclick: () => { this.expanded.add(facet.name); this.drawFacets(); },
    }, `${grouped(more)} more`) : more > 0 ? make("p", { class: "none" }, `and ${grouped(more)} more: search for them`) : null;
    const largest = Math.max(1, ...shown.map((code) => counts[code]));
    return make("details", { open: isOpen, "data-name": facet.name }, make("summary", {}, facet.label),
      shown.map((code) => this.facetValue(facet, code, column, coded.values[code], counts[code] / largest)), rest);
  }

  facetValue(facet, code, column, value, share) {
    const address = addressOfValue(column, value);
    const text = column.shown(value);
    const box = make("input", {
      type: "checkbox", checked: facet.chosen.has(code), "data-facet": `${facet.name} ${address}`,
      onchange: () => this.choose(facet.name, address, box.checked),
    });
    const bar = make("span", { class: "share", "aria-hidden": "true" });
    bar.style.width = `${Math.round(100 * share)}%`;
    return make("label", { class: "facet" }, box, make("span", { class: text === "" ? "none" : "value" }, text === "" ? "(none)" : text),
      make("span", { class: "number" }, grouped(facet.counts[code])), bar);
  }

  choose(name, address, isChosen) {
    const chosen = new Map([...this.state.chosen].map(([each, values]) => [each, new Set(values)]));
    const values = chosen.get(name) ?? new Set();
    if (isChosen) values.add(address);
    else values.delete(address);
    if (values.size > 0) chosen.set(name, values);
    else chosen.delete(name);
    this.go({ chosen }, true);
  }

  openCard(row) { this.go({ ...this.sheet.addressOf(row), value: "" }, true); }
  closeCard() { this.go({ card: null, nth: 1, value: "" }, true); }

  moveCard(step) {
    if (this.grid.rows.length === 0) return;
    const place = this.grid.rows.indexOf(this.grid.open);
    const next = Math.min(Math.max(0, place + step), this.grid.rows.length - 1);
    this.openCard(this.grid.rows[next]);
  }

  drawCard(state, before) {
    const row = state.card === null ? undefined : this.sheet.rowsOf(state.card)[state.nth - 1];
    const isAsked = state.card !== null;
    this.element.classList.toggle("has-card", isAsked);
    document.body.classList.toggle("prints-card", row !== undefined);
    this.grid.setOpen(row ?? -1);
    if (!isAsked) {
      this.cardPlace.replaceChildren();
      if (before?.card) this.grid.table.focus({ preventScroll: true });
      return;
    }
    if (row === undefined) {
      this.cardPlace.replaceChildren(make("aside", { class: "card" }, make("h2", { id: "card-title", tabindex: "-1" }, "Not here"),
        make("p", {}, `No ${this.sheet.one} of this page is called `, make("code", {}, state.card), "."),
        make("button", { type: "button", onclick: () => this.closeCard() }, "Close")));
    } else {
      this.cardPlace.replaceChildren(cardOf(this.sheet, row, this.sheets, state.value, {
        closed: () => this.closeCard(),
        moved: (step) => this.moveCard(step),
        valueChanged: (value) => { if (value !== this.state.value) this.go({ value }); },
      }));
    }
    this.cardPlace.querySelector("#card-title").focus({ preventScroll: true });
    this.cardPlace.scrollTop = 0;
  }

  searchKey(event) {
    if (event.key === "ArrowDown") {
      this.grid.table.focus({ preventScroll: true });
      event.preventDefault();
    } else if (event.key === "Enter") {
      if (this.grid.rows.length > 0) this.openCard(this.grid.rows[this.grid.current]);
      else say("Nothing is found");
    } else if (event.key === "Escape" && this.search.value !== "") {
      this.go({ query: "" });
      event.stopPropagation();
      event.preventDefault();
    }
  }
}
