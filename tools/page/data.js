// From the blocks of the page to columns. How they are packed is told in columns.hh.

import { labelOf } from "./dom.js";

function bytesOf(base64) {
  const binary = atob(base64);
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < binary.length; ++i) bytes[i] = binary.charCodeAt(i);
  return bytes;
}

export async function unpack(base64) {
  const stream = new Blob([bytesOf(base64)]).stream().pipeThrough(new DecompressionStream("deflate"));
  return new Response(stream).text();
}

// One value for each record, as a text and, of a number, as that.
export class Column {
  constructor(packed, rows) {
    this.name = packed.name;
    this.label = packed.label ?? labelOf(packed.name);
    this.kind = packed.kind;
    this.names = packed.names ?? null;
    this.rows = rows;
    this.values = packed.values ?? ("all" in packed ? [packed.all] : null);
    this.at = "all" in packed ? null : packed.at ?? null;
    this.each = packed.each ?? null;
    if (packed.steps) {
      let sum = 0;
      this.each = packed.steps.map((step) => (sum += step));
    }
  }

  get isNumeric() { return this.kind !== "text"; }

  value(row) {
    if (this.each) return this.each[row];
    return this.values[this.at ? this.at[row] : 0];
  }

  // What a person reads: a number with its name. A type that is not told is -1 here.
  shown(value) {
    const name = this.names?.[value];
    return name === undefined ? String(value) : `${Math.max(value, 0)} ${name}`;
  }
  text(row) { return this.shown(this.value(row)); }

  // The different values, and for each record which: small numbers to count and to filter by.
  coded() {
    if (this.codes) return this.codes;
    let values = this.values;
    let at = this.at;
    if (!values) {
      const known = new Map();
      values = [];
      at = new Uint32Array(this.rows);
      for (let row = 0; row < this.rows; ++row) {
        const value = this.each[row];
        let code = known.get(value);
        if (code === undefined) {
          known.set(value, (code = values.length));
          values.push(value);
        }
        at[row] = code;
      }
    }
    this.codes = { values, at: at ? Uint32Array.from(at) : new Uint32Array(this.rows) };
    return this.codes;
  }
}

// Records of one kind.
export class Table {
  constructor(packed) {
    this.rows = packed.rows;
    this.columns = packed.columns.map((each) => new Column(each, packed.rows));
    this.groups = packed.groups.map((each) => new Group(each));
  }

  column(name) { return this.columns.find((each) => each.name === name); }
  group(name) { return this.groups.find((each) => each.name === name); }
}

// Rows inside rows: those of the outer row i are from first[i] up to first[i + 1].
export class Group extends Table {
  constructor(packed) {
    super(packed);
    this.name = packed.name;
    this.one = packed.one;
    const counts = packed.counts;
    const outer = counts.each?.length ?? counts.steps?.length ?? 0;
    this.counts = new Column({ ...counts, name: packed.name }, outer);
  }

  // `outer` is needed where all counts are the same.
  firsts(outer) {
    if (this.first) return this.first;
    this.counts.rows = outer;
    this.first = new Uint32Array(outer + 1);
    for (let row = 0; row < outer; ++row) this.first[row + 1] = this.first[row] + this.counts.value(row);
    return this.first;
  }

  count(row) { return this.counts.value(row); }
}

// Builds columns from what the page itself finds out.
export class Builder {
  constructor(...columns) {
    this.columns = columns.map((each) => ({ kind: "text", ...each, each: [] }));
  }

  add(...values) {
    this.columns.forEach((column, i) => column.each.push(values[i]));
  }

  table() {
    return new Table({ rows: this.columns[0].each.length, columns: this.columns, groups: [] });
  }
}

// The XML of a document's records, packed in pieces; only the piece in question is unpacked.
const recordsOfPiece = 512;  // as in page_file.cc

export class Source {
  constructor(block) { this.block = block; }

  async of(record) {
    this.pieces ??= this.block.textContent.split("\n");
    const number = Math.floor(record / recordsOfPiece);
    if (this.number !== number) {
      this.texts = (await unpack(this.pieces[number])).split("\0");
      this.number = number;
    }
    return this.texts[record % recordsOfPiece];
  }
}
