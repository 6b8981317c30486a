// The word of a channel with its bits: a picture, and a value taken apart.

import { find, make, say } from "./dom.js";

const wordSize = 32;
const bitsOfLine = 8;

// "43", "-1", "0x2B", "0b10_1011"; null when it is no number, or none of 32 bits.
export function parseValue(text) {
  const plain = text.trim().replace(/[_' ]/g, "").toLowerCase();
  if (!/^(-?\d+|0x[0-9a-f]+|0b[01]+)$/.test(plain)) return null;
  const isNegative = plain.startsWith("-");
  const value = BigInt(isNegative ? plain.slice(1) : plain) * (isNegative ? -1n : 1n);
  if (value < -(1n << 31n) || value >= 1n << 32n) return null;
  return Number(BigInt.asUintN(wordSize, value));
}

export function isSet(value, bit) {
  return Math.floor(value / 2 ** bit) % 2 === 1;
}

function hex(value) { return `0x${value.toString(16).toUpperCase()}`; }

// A value in words: in its forms, and what it says.
export function told(value, nameOf) {
  const set = [];
  const nameless = [];
  for (let bit = 0; bit < wordSize; ++bit) {
    if (!isSet(value, bit)) continue;
    if (nameOf(bit)) set.push(nameOf(bit));
    else nameless.push(bit);
  }
  const names = set.length > 0 ? `set: ${set.join(", ")}` : nameless.length > 0 ? "no named bit is set" : "no bit is set";
  const rest = nameless.length > 0 ? `; without a name: ${nameless.join(", ")}` : "";
  return { forms: `${hex(value)} = ${value} = 0b${value.toString(2)}`, set: names + rest };
}

// `bits` are {number, name, description}. `changed(text)` is told what stands in the box.
export function wordOf(bits, text, changed) {
  const inWord = new Map();
  for (const bit of bits) {
    if (bit.number < 0 || bit.number >= wordSize) continue;
    const before = inWord.get(bit.number);
    inWord.set(bit.number, before ? { ...bit, name: `${before.name} / ${bit.name}` } : bit);
  }
  const nameOf = (bit) => inWord.get(bit)?.name;
  const input = make("input", {
    id: "value", type: "text", autocomplete: "off", spellcheck: "false", inputmode: "text",
    placeholder: "0x2B, 0b101011 or 43", "aria-describedby": "value-forms value-set",
  });
  input.value = text;
  const forms = make("output", { id: "value-forms", for: "value" });
  const set = make("p", { id: "value-set", role: "status" });
  const description = make("p", { class: "bit-told", "aria-hidden": "true" });
  const cells = [];

  const describe = (bit) => {
    const known = inWord.get(bit);
    const about = known?.description ? `: ${known.description}` : "";
    return known ? `Bit ${bit} ${known.name}${about}` : `Bit ${bit}, without a name`;
  };
  const update = () => {
    const value = parseValue(input.value);
    const isWrong = value === null && input.value.trim() !== "";
    input.setAttribute("aria-invalid", String(isWrong));
    const parts = value === null ? { forms: "", set: "" } : told(value, nameOf);
    forms.textContent = parts.forms;
    set.textContent = isWrong ? "Not a number of 32 bits: write 43, 0x2B or 0b101011." : parts.set;
    set.classList.toggle("wrong", isWrong);
    for (const [bit, cell] of cells) {
      const on = value !== null && isSet(value, bit);
      cell.setAttribute("aria-pressed", String(on));
      cell.lastChild.textContent = value === null ? "" : on ? "1" : "0";
    }
    changed(input.value, value);
  };
  const toggle = (bit) => {
    const value = parseValue(input.value) ?? 0;
    input.value = hex(isSet(value, bit) ? value - 2 ** bit : value + 2 ** bit);
    update();
    say(`${describe(bit)} is ${isSet(parseValue(input.value), bit) ? "set" : "not set"}`);
  };
  const cellOf = (bit) => {
    const tell = () => { description.textContent = describe(bit); };
    const cell = make("button", {
      type: "button", class: inWord.has(bit) ? "bit named" : "bit", "aria-pressed": "false", "aria-label": describe(bit),
      "data-bit": bit, onclick: () => toggle(bit), onfocus: tell, onmouseenter: tell, tabindex: inWord.has(bit) ? null : "-1",
    }, make("span", { class: "bit-number" }, String(bit)), make("span", { class: "bit-name" }, nameOf(bit) ?? ""),
    make("span", { class: "bit-value" }));
    cells.push([bit, cell]);
    return cell;
  };
  const lines = [];
  for (let top = wordSize - 1; top > 0; top -= bitsOfLine) {
    const all = Array.from({ length: bitsOfLine }, (_, i) => top - i);
    const isNamed = all.some((bit) => inWord.has(bit));
    lines.push(make("div", { class: isNamed ? "bits" : "bits empty" }, all.map(cellOf)));
  }
  input.addEventListener("input", update);
  queueMicrotask(update);
  return make("section", { class: "word", "aria-labelledby": "word-title" },
    make("h3", { id: "word-title" }, "The word, bit 31 to bit 0"),
    make("div", { class: "decode" }, make("label", { for: "value" }, "Value"), input, forms), set,
    make("div", { role: "group", "aria-label": "Bits 31 to 0; press to set or clear" }, lines), description);
}

export function focusValue() {
  find("value")?.focus();
  find("value")?.select();
}
