// Begins: unpacks the data, and shows what the address asks for.

import { focusValue } from "./bits.js";
import { unpack } from "./data.js";
import { find, make } from "./dom.js";
import { overviewOf } from "./overview.js";
import { SheetView } from "./sheet_view.js";
import { sheetsOf, titleOf } from "./sheets.js";
import { format, parse } from "./state.js";

class Page {
  constructor(data) {
    this.data = data;
    this.sheets = sheetsOf(data);
    this.views = new Map();
    document.title = data.title;
    find("title").textContent = data.title;
    find("about").textContent = `made ${data.made.replace("T", " ").replace("Z", " UTC")} by ${data.tool}`;
    this.links = new Map([["overview", make("a", { href: "#overview" }, "Overview")]]);
    for (const [id, sheet] of this.sheets) this.links.set(id, make("a", { href: `#${id}` }, titleOf(sheet)));
    find("views").replaceChildren(...this.links.values());
    addEventListener("hashchange", () => this.show(parse(location.hash)));
    addEventListener("popstate", () => this.show(parse(location.hash)));
    addEventListener("keydown", (event) => this.key(event));
    addEventListener("resize", () => { if (this.state.view === "overview") this.drawOverview(); });
    find("help-button").addEventListener("click", () => find("help").showModal());
    find("skip").addEventListener("click", (event) => { event.preventDefault(); find("main").focus(); });
    this.show(parse(location.hash));
  }

  // A new state is one that the browser's "back" leads back from.
  go(change, isNew = false) {
    const state = { ...this.state, ...change };
    history[isNew ? "pushState" : "replaceState"](null, "", format(state));
    this.show(state);
  }

  show(state) {
    if (!this.links.has(state.view)) {
      state.view = state.view === "" && this.sheets.has("channels") && this.data.changes ? "changes" : "overview";
    }
    const isOther = this.state?.view !== state.view;
    this.state = state;
    if (isOther) {
      for (const [id, link] of this.links) {
        if (id === state.view) link.setAttribute("aria-current", "page");
        else link.removeAttribute("aria-current");
      }
      this.links.get(state.view).scrollIntoView({ block: "nearest", inline: "nearest" });
      document.body.classList.remove("prints-card");
    }
    if (state.view === "overview") {
      if (isOther) this.drawOverview();
      return;
    }
    const view = this.viewOf(state.view);
    if (isOther) {
      find("main").replaceChildren(view.element);
      view.state = null;
      view.asked = null;
    }
    view.update(state);
    if (isOther) setTimeout(() => view.prepare());
  }

  viewOf(id) {
    if (!this.views.has(id)) {
      this.views.set(id, new SheetView(this.sheets.get(id), this.sheets, (change, isNew) => this.go(change, isNew)));
    }
    return this.views.get(id);
  }

  drawOverview() {
    const width = Math.max(280, find("main").clientWidth - 32);
    if (this.overviewWidth === width && find("main").firstChild?.className === "overview") return;
    this.overviewWidth = width;
    find("main").replaceChildren(overviewOf(this.data, this.sheets, width));
  }

  key(event) {
    if (event.ctrlKey || event.altKey || event.metaKey || event.defaultPrevented || find("help").open) return;
    const view = this.state.view === "overview" ? null : this.viewOf(this.state.view);
    const types = event.target.closest("input:not([type=checkbox]), textarea");
    if (event.key === "Escape") {
      if (this.state.card !== null && view) view.closeCard();
      else if (types) event.target.blur();
      return;
    }
    if (types) return;
    const links = [...this.links.values()];
    if (event.key === "/") this.search();
    else if (event.key === "?") find("help").showModal();
    else if (event.key === "[" || event.key === "]") { if (view && this.state.card !== null) view.moveCard(event.key === "[" ? -1 : 1); }
    else if (event.key === "v") focusValue();
    else if (/^[1-9]$/.test(event.key) && links[event.key - 1]) links[event.key - 1].click();
    else return;
    event.preventDefault();
  }

  // From the overview, that of the first sheet.
  search() {
    if (this.state.view === "overview" && this.sheets.size > 0) {
      this.go({ view: [...this.sheets.keys()][0], query: "", chosen: new Map(), card: null, sort: "", columns: null }, true);
    }
    find("search")?.focus();
    find("search")?.select();
  }
}

async function begin() {
  try {
    const packed = find("data");
    const page = new Page(JSON.parse(await unpack(packed.textContent)));
    packed.textContent = "";
    window.zrt4 = { page };  // for a person at the console
    performance.mark("zrt4-ready");
  } catch (reason) {
    const isOld = typeof DecompressionStream === "undefined";
    find("main").replaceChildren(make("p", { class: "note", role: "alert" }, isOld
      ? "This browser is too old to unpack the page: it has no DecompressionStream (Chrome 80, Firefox 113, Safari 16.4)."
      : `The page cannot be shown: ${reason.message}`));
    throw reason;
  }
}

begin();
