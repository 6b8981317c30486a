// Which records have all words of a query, each in one of the searched columns. Fast enough to be
// asked at each keystroke: a column of few different texts is searched in those, any other as one
// long text.

class FewTexts {
  constructor(column) {
    const { values, at } = column.coded();
    this.values = values.map((value) => String(value).toLowerCase());
    this.at = at;
  }

  mark(word, hits) {
    const has = this.values.map((value) => value.includes(word));
    if (!has.includes(true)) return;
    const at = this.at;
    for (let row = 0; row < at.length; ++row) if (has[at[row]]) hits[row] = 1;
  }
}

class ManyTexts {
  constructor(column) {
    let texts = column.each;
    let joined = texts.join("\n").toLowerCase();
    this.ends = new Uint32Array(texts.length);
    let end = 0;
    texts.forEach((text, row) => { this.ends[row] = end += text.length + 1; });
    if (end !== joined.length + 1) {  // some letters become longer
      texts = texts.map((text) => text.toLowerCase());
      joined = texts.join("\n");
      end = 0;
      texts.forEach((text, row) => { this.ends[row] = end += text.length + 1; });
    }
    this.joined = joined;
  }

  mark(word, hits) {
    const { joined, ends } = this;
    let row = 0;
    for (let place = joined.indexOf(word); place !== -1; place = joined.indexOf(word, ends[row])) {
      while (ends[row] <= place) ++row;
      hits[row] = 1;
      if (row + 1 === ends.length) return;
    }
  }
}

// What is found inside a record is found in the record.
class Inside {
  constructor(searched, firsts) {
    this.searched = searched;
    this.outerOf = new Uint32Array(firsts[firsts.length - 1]);
    for (let row = 0; row + 1 < firsts.length; ++row) this.outerOf.fill(row, firsts[row], firsts[row + 1]);
  }

  mark(word, hits) {
    const inner = new Uint8Array(this.outerOf.length);
    for (const each of this.searched) each.mark(word, inner);
    for (let row = 0; row < inner.length; ++row) if (inner[row]) hits[this.outerOf[row]] = 1;
  }
}

function searchable(columns) {
  return columns
    .filter((column) => column.kind === "text")
    .map((column) => (column.each ? new ManyTexts(column) : new FewTexts(column)));
}

function inside(table) {
  return table.groups.map((group) => new Inside(
    [...searchable(group.columns.filter((each) => each.name !== "units")), ...inside(group)],
    group.firsts(table.rows)));
}

export class Search {
  // Of the table's own columns those in `columns`; of what is inside its records all but units.
  constructor(table, columns) {
    this.rows = table.rows;
    this.searched = [...searchable(columns), ...inside(table)];
  }

  // One byte for each record; null when nothing is asked for.
  find(query) {
    const words = query.toLowerCase().split(/\s+/).filter(Boolean);
    if (words.length === 0) return null;
    let all = null;
    for (const word of words) {
      const hits = new Uint8Array(this.rows);
      for (const each of this.searched) each.mark(word, hits);
      if (all) for (let row = 0; row < hits.length; ++row) all[row] &= hits[row];
      else all = hits;
    }
    return all;
  }
}

// --- order

// Numbers in a text count as numbers: BPM.9 stands before BPM.10.
function natural(text) {
  return text.toLowerCase().replace(/\d+/g, (digits) => digits.padStart(9, "0"));
}

function compare(a, b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

// All records by this column; equal ones stay as they were.
export function orderBy(column) {
  if (column.order) return column.order;
  const { values, at } = column.coded();
  const keys = column.isNumeric ? values.map(Number) : values.map(natural);
  const sorted = Uint32Array.from(keys.keys()).sort((a, b) => compare(keys[a], keys[b]) || a - b);
  const begins = new Uint32Array(values.length + 1);
  const rank = new Uint32Array(values.length);
  sorted.forEach((code, place) => { rank[code] = place; });
  for (const code of at) ++begins[rank[code] + 1];
  for (let place = 0; place < values.length; ++place) begins[place + 1] += begins[place];
  column.order = new Uint32Array(at.length);
  for (let row = 0; row < at.length; ++row) column.order[begins[rank[at[row]]]++] = row;
  return column.order;
}

// --- facets

// Counts, for each facet, the records that pass everything but that facet's own choice, and returns
// those that pass all. `hits` is what the search found, or null.
export function filtered(rows, hits, facets) {
  const chosen = facets.filter((facet) => facet.chosen.size > 0);
  for (const facet of facets) facet.counts = new Uint32Array(facet.coded.values.length);
  for (const facet of chosen) facet.allows = facet.coded.values.map((value, code) => facet.chosen.has(code));
  const passes = new Uint8Array(rows);
  for (let row = 0; row < rows; ++row) {
    if (hits && !hits[row]) continue;
    let refused = null;
    let several = false;
    for (const facet of chosen) {
      if (facet.allows[facet.coded.at[row]]) continue;
      if (refused) { several = true; break; }
      refused = facet;
    }
    if (several) continue;
    if (refused) {
      ++refused.counts[refused.coded.at[row]];
    } else {
      passes[row] = 1;
      for (const facet of facets) ++facet.counts[facet.coded.at[row]];
    }
  }
  return passes;
}
