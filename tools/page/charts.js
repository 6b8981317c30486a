// Pictures, each of whose parts leads to the records that it counts.

import { draw, grouped, make } from "./dom.js";

const measure = document.createElement("canvas").getContext("2d");

function widthOf(text) {
  measure.font = `13px ${getComputedStyle(document.body).fontFamily}`;  // as in style.css
  return measure.measureText(text).width;
}

// Names of a machine differ at their end.
function shortened(text, letters) {
  return text.length > letters ? `…${text.slice(text.length - letters + 1)}` : text;
}

function widest(texts) { return Math.ceil(Math.max(0, ...texts.map(widthOf))); }

function labelled(value) { return value === "" ? "(none)" : value; }

// Values that are rare stand together: `most` and "others".
export function largest(tallies, most) {
  const sorted = [...tallies].sort((a, b) => b.count - a.count);
  if (sorted.length <= most) return sorted;
  const others = sorted.slice(most - 1);
  const count = others.reduce((sum, each) => sum + each.count, 0);
  return [...sorted.slice(0, most - 1), { label: `${others.length} others`, count, href: null }];
}

function linked(href, name, ...parts) {
  if (!href) return draw("g", { role: "img", "aria-label": name }, draw("title", {}, name), parts);
  return draw("a", { href, "aria-label": name }, draw("title", {}, name), parts);
}

function figure(title, note, width, height, parts) {
  const image = draw("svg", { width, height, viewBox: `0 0 ${width} ${height}`, role: "group", "aria-label": title }, parts);
  return make("figure", {}, make("figcaption", {}, make("strong", {}, title), note ? ` ${note}` : ""),
    make("div", { class: "wide" }, image));
}

// Tallies are {label, count, href}.
export function bars(title, note, tallies, width) {
  const height = 24;
  const most = Math.max(1, ...tallies.map((each) => each.count));
  const labels = tallies.map((each) => shortened(labelled(each.label), width < 500 ? 18 : 30));
  const left = widest(labels) + 10;
  const right = widthOf(grouped(most)) + 10;
  const room = Math.max(40, width - left - right);
  const parts = tallies.map((each, i) => {
    const length = Math.max(2, (room * each.count) / most);
    const label = labelled(each.label);
    return linked(each.href, `${label}: ${grouped(each.count)}`,
      draw("rect", { class: "hit", x: 0, y: i * height, width, height }),
      draw("text", { x: left - 6, y: i * height + 16, "text-anchor": "end" }, labels[i]),
      draw("rect", { class: "bar", x: left, y: i * height + 4, width: length, height: height - 8, rx: 2 }),
      draw("text", { class: "count", x: left + length + 5, y: i * height + 16 }, grouped(each.count)));
  });
  return figure(title, note, width, tallies.length * height, parts);
}

// Columns that stand side by side: `tallies` in the order of what they count.
export function columns(title, note, tallies, width) {
  const [top, bottom] = [18, 22];
  const height = 180;
  const most = Math.max(1, ...tallies.map((each) => each.count));
  const step = Math.max(44, Math.min(90, width / tallies.length));
  const parts = tallies.map((each, i) => {
    const length = each.count === 0 ? 0 : Math.max(2, ((height - top - bottom) * each.count) / most);
    const middle = i * step + step / 2;
    return linked(each.href, `${each.label}: ${grouped(each.count)}`,
      draw("rect", { class: "hit", x: i * step, y: 0, width: step, height }),
      draw("rect", { class: "bar", x: i * step + 4, y: height - bottom - length, width: step - 8, height: length, rx: 2 }),
      draw("text", { class: "count", x: middle, y: height - bottom - length - 5, "text-anchor": "middle" }, each.count ? grouped(each.count) : ""),
      draw("text", { x: middle, y: height - 6, "text-anchor": "middle" }, each.label));
  });
  return figure(title, note, Math.ceil(step * tallies.length), height, parts);
}

const shades = 7;  // as in style.css

// `count(row, column)`, `href(row, column)`; rows and columns are labels. Seven shades of one colour,
// by the order of magnitude, and the number in each.
export function heatMap(title, note, rows, columnLabels, count, href) {
  const [step, height, top] = [Math.max(56, widest(columnLabels) + 14), 28, 26];
  const rowLabels = rows.map((row) => shortened(labelled(row), 22));
  const left = widest(rowLabels) + 10;
  const logs = rows.flatMap((_, r) => columnLabels.map((_, c) => Math.log(count(r, c)))).filter(Number.isFinite);
  const [least, range] = [Math.min(...logs), Math.max(1, Math.max(...logs) - Math.min(...logs))];
  const shadeOf = (number) => (number === 0 ? 0 : 1 + Math.round(((shades - 1) * (Math.log(number) - least)) / range));
  const parts = columnLabels.map((label, c) =>
    draw("text", { x: left + c * step + step / 2, y: 17, "text-anchor": "middle" }, label));
  rows.forEach((row, r) => {
    parts.push(draw("text", { x: left - 6, y: top + r * height + 18, "text-anchor": "end" }, rowLabels[r]));
    columnLabels.forEach((label, c) => {
      const number = count(r, c);
      const shade = shadeOf(number);
      const cell = [
        draw("rect", { class: `shade${shade}`, x: left + c * step + 1, y: top + r * height + 1, width: step - 2, height: height - 2, rx: 3 }),
        draw("text", { class: `on-shade${shade}`, x: left + c * step + step / 2, y: top + r * height + 18, "text-anchor": "middle" }, number ? grouped(number) : "·")];
      parts.push(number === 0 ? draw("g", { "aria-hidden": "true" }, cell)
        : linked(href(r, c), `${labelled(row)}, ${label}: ${grouped(number)}`, cell));
    });
  });
  return figure(title, note, Math.ceil(left + columnLabels.length * step), top + rows.length * height, parts);
}
