// Sheets: tables as the page shows them, with what can be searched, counted and linked.

import { Builder, Column, Source, Table } from "./data.js";
import { find, grouped } from "./dom.js";
import { linkTo } from "./state.js";

// What a sheet shows at first, wide and on a phone; what it counts; what it searches where that is
// not every text.
const choices = {
  channels: {
    title: "Channels",
    shown: ["name", "property", "description", "units", "event_type", "data_type", "subsystem"],
    narrow: ["name", "description"],
    facets: ["subsystem", "event_type", "data_type", "stream", "server_block", "units", "set_point"],
    searched: ["name", "property", "description"],
  },
  events: {
    title: "Events",
    shown: ["event_type", "trigger_mask", "min_time_seconds", "min_time_microseconds", "priority"],
    narrow: ["event_type", "priority"],
    facets: ["event_type", "priority"],
  },
  requests: {
    title: "Requested",
    shown: ["event_type", "server_block", "channel", "described_as"],
    narrow: ["event_type", "channel"],
    facets: ["event_type", "server_block", "is_described"],
  },
  entries: {
    title: "Dictionary",
    shown: ["index", "property", "absolute_threshold", "relative_threshold"],
    narrow: ["property", "absolute_threshold"],
    facets: [],
  },
  features: {
    title: "Camera features",
    shown: ["name", "type", "control_name", "tool_tip", "description"],
    narrow: ["name", "tool_tip"],
    facets: ["type"],
  },
  changes: {
    title: "Changes",
    shown: ["change", "key", "inside", "field", "before", "after"],
    narrow: ["change", "key", "field"],
    facets: ["change", "field", "inside"],
  },
  findings: {
    title: "Findings",
    shown: ["document", "line", "column", "severity", "finding", "text"],
    narrow: ["line", "text"],
    facets: ["severity", "finding", "document"],
  },
};

const widths = {
  property: 300, name: 220, description: 280, tool_tip: 260, text: 480, key: 300, channel: 300,
  described_as: 240, server_block: 250, document: 220, event_type: 110, data_type: 140, before: 220,
  after: 220, control_name: 200, inside: 170,
};

function yesOrNo(name, label, column, rows) {
  const at = new Uint32Array(rows);
  for (let row = 0; row < rows; ++row) at[row] = column.value(row) ? 1 : 0;
  return new Column({ name, label, kind: "text", values: ["no", "yes"], at }, rows);
}

export class Sheet {
  constructor(id, one, table, more = {}) {
    const choice = choices[id];
    Object.assign(this, { id, one, table, several: more.several ?? `${one}s`, title: choice.title });
    this.columns = [...table.columns, ...table.groups.map((group) => (group.firsts(table.rows), group.counts)),
      ...(more.columns ?? [])];
    this.key = more.key ?? table.columns[0]?.name;
    this.shown = choice.shown;
    this.narrow = choice.narrow;
    this.searched = choice.searched;
    this.facetNames = [...choice.facets, ...(more.facets ?? [])];
    this.links = more.links ?? {};
    this.source = more.source ?? (() => null);
    this.documentOf = more.documentOf ?? (() => null);
  }

  get rows() { return this.table.rows; }
  column(name) { return this.columns.find((each) => each.name === name); }
  widthOf(column) { return widths[column.name] ?? (column.isNumeric ? 96 : 150); }

  get facets() {
    if (this.madeFacets) return this.madeFacets;
    const columns = this.facetNames.map((name) => this.column(name)).filter(Boolean);
    for (const group of this.table.groups) {
      if (group.rows > 0) columns.push(yesOrNo(`has_${group.name}`, `has ${group.name}`, group.counts, this.rows));
    }
    this.madeFacets = columns
      .map((column) => ({ name: column.name, label: column.label, column, coded: column.coded(), chosen: new Set() }))
      .filter((facet) => facet.coded.values.length > 1);
    return this.madeFacets;
  }

  // Rows by key; several may share one.
  rowsOf(key) {
    if (!this.byKey) {
      this.byKey = new Map();
      const column = this.column(this.key);
      for (let row = 0; row < this.rows; ++row) {
        const text = String(column.value(row));
        if (this.byKey.has(text)) this.byKey.get(text).push(row);
        else this.byKey.set(text, [row]);
      }
    }
    return this.byKey.get(String(key)) ?? [];
  }

  // The key of a row, and which of those that share it the row is.
  addressOf(row) {
    const key = String(this.column(this.key).value(row));
    return { card: key, nth: this.rowsOf(key).indexOf(row) + 1 };
  }

  linkTo(row) { return linkTo(this.id, {}, this.addressOf(row)); }
}

// The text of a facet's value in an address: its name where only one value has it.
export function addressOfValue(column, value) {
  const name = column.names?.[value];
  if (name === undefined) return String(value);
  const shared = Object.values(column.names).filter((each) => each === name).length > 1;
  return shared ? String(value) : name;
}

export function valueAtAddress(facet, text) {
  const { column, coded } = facet;
  return coded.values.findIndex((value) => addressOfValue(column, value) === text || String(value) === text);
}

function sheetOfRecords(packed, data) {
  const table = new Table(packed.table);
  const files = data.documents.map((each) => each.file);
  const document = new Column({ ...packed.document, name: "document" }, table.rows);
  const file = new Column({
    name: "document", kind: "text", values: files,
    at: Uint32Array.from({ length: table.rows }, (_, row) => document.value(row)),
  }, table.rows);
  const line = new Column({ ...packed.line, name: "line" }, table.rows);
  const documentOf = (row) => data.documents[document.value(row)];
  const columns = [file, line];
  if (packed.change) columns.push(new Column(packed.change.columns[0], table.rows));
  return new Sheet(packed.id, packed.one, table, {
    columns,
    several: packed.several,
    facets: ["change", "document"],
    documentOf,
    source: (row) => {
      const of = documentOf(row);
      of.source ??= new Source(find(`source-${document.value(row)}`));
      return of.source.of(row - of.first);
    },
  });
}

// One row for each channel that an event asks for; an event without server blocks, and a block
// without channels, ask for all of them.
function requestsOf(events, channels) {
  const builder = new Builder(
    { name: "event_type", kind: "number", names: events.column("event_type").names },
    { name: "server_block" }, { name: "channel" }, { name: "described_as" },
    { name: "is_described", label: "described here" }, { name: "event", kind: "number" });
  const type = events.column("event_type");
  const blocks = events.table.group("server_blocks");
  const blockFirsts = blocks?.firsts(events.rows);
  const inBlocks = blocks?.group("channels");
  const channelFirsts = inBlocks?.firsts(blocks.rows);
  const rowsOfRequests = [];
  const add = (event, block, name) => {
    const row = name === null || !channels ? undefined : channelNamed(channels, name);
    rowsOfRequests.push(row);
    const description = row === undefined ? "" : channels.column("description").text(row);
    const isDescribed = name === null ? "all channels" : row === undefined ? "no" : "yes";
    builder.add(type.value(event), block, name ?? "all channels", description, isDescribed, event + 1);
  };
  for (let event = 0; event < events.rows; ++event) {
    if (!blocks || blockFirsts[event] === blockFirsts[event + 1]) add(event, "all server blocks", null);
    for (let block = blockFirsts?.[event]; block < blockFirsts?.[event + 1]; ++block) {
      const name = blocks.column("name").text(block);
      if (!inBlocks || channelFirsts[block] === channelFirsts[block + 1]) add(event, name, null);
      for (let channel = channelFirsts?.[block]; channel < channelFirsts?.[block + 1]; ++channel) {
        add(event, name, inBlocks.column("name").text(channel));
      }
    }
  }
  const sheet = new Sheet("requests", "request", builder.table(), {
    key: "channel",
    links: { channel: (row) => (rowsOfRequests[row] === undefined ? null : channels.linkTo(rowsOfRequests[row])) },
  });
  sheet.eventsOf = (channelRow) => rowsOfRequests.flatMap((each, row) => (each === channelRow ? [row] : []));
  return sheet;
}

// By property, or by DAQ name.
export function channelNamed(channels, name) {
  const byProperty = channels.rowsOf(name);
  if (byProperty.length > 0) return byProperty[0];
  if (!channels.byName) {
    channels.byName = new Map();
    const column = channels.column("name");
    for (let row = channels.rows - 1; row >= 0; --row) channels.byName.set(column.value(row), row);
  }
  return name === "" ? undefined : channels.byName.get(name);
}

function changesOf(packed, sheets) {
  const table = new Table(packed.table);
  const sheet = sheets.get(packed.of);
  const changes = new Sheet("changes", "change", table, {
    key: "key",
    links: {
      key: (row) => {
        const found = sheet?.rowsOf(table.column("key").value(row)) ?? [];
        return found.length > 0 ? sheet.linkTo(found[0]) : null;
      },
    },
  });
  changes.of = packed.of;
  return changes;
}

// All sheets, by their names in the address, in the order in which they are offered.
export function sheetsOf(data) {
  const sheets = new Map();
  for (const packed of data.tables) {
    if (packed.table.rows > 0) sheets.set(packed.id, sheetOfRecords(packed, data));
  }
  const events = sheets.get("events");
  if (events) sheets.set("requests", requestsOf(events, sheets.get("channels")));
  if (data.changes) sheets.set("changes", changesOf(data.changes, sheets));
  if (data.findings) sheets.set("findings", new Sheet("findings", "finding", new Table(data.findings), { key: "text" }));
  const order = ["channels", "changes", "requests", "events", "entries", "features", "findings"];
  return new Map([...sheets].sort(([a], [b]) => order.indexOf(a) - order.indexOf(b)));
}

export function titleOf(sheet) {
  return `${sheet.title} ${grouped(sheet.rows)}`;
}
