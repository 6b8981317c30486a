// Elements are made here and nowhere else. What a document holds becomes a text node or the value of
// an attribute, never markup.

const svgNamespace = "http://www.w3.org/2000/svg";

function fill(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (value === null || value === undefined || value === false) continue;
    if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
    else element.setAttribute(name, value === true ? "" : value);
  }
  element.append(...children.flat(Infinity).filter((child) => child !== null && child !== undefined));
  return element;
}

// make("a", {href: "#x", onclick: f}, "text", otherElement)
export function make(tag, attributes = {}, ...children) {
  return fill(document.createElement(tag), attributes, children);
}

export function draw(tag, attributes = {}, ...children) {
  return fill(document.createElementNS(svgNamespace, tag), attributes, children);
}

export function find(id) {
  return document.getElementById(id);
}

// For those who do not see what changed.
export function say(text) {
  find("said").textContent = text;
}

export function grouped(number) {
  return number.toLocaleString("en");
}

export function counted(number, one, several = `${one}s`) {
  return `${grouped(number)} ${number === 1 ? one : several}`;
}

// "event_type" as a person reads it.
export function labelOf(name) {
  const known = { db_key: "DB key", sb_name: "server block" };
  return known[name] ?? name.replaceAll("_", " ");
}

async function copy(text) {
  if (navigator.clipboard && window.isSecureContext) {
    await navigator.clipboard.writeText(text);
    return;
  }
  // A page that came over plain HTTP has no clipboard; an old command still does it.
  const place = make("textarea", { class: "unseen", "aria-hidden": "true" });
  place.value = text;
  document.body.append(place);
  place.select();
  const done = document.execCommand("copy");
  place.remove();
  if (!done) throw new Error("refused");
}

export function copyButton(text, what) {
  const label = `Copy ${what}`;
  const button = make("button", { type: "button", class: "small" }, label);
  button.addEventListener("click", async () => {
    try {
      await copy(typeof text === "function" ? text() : text);
      button.textContent = "Copied";
      say(`Copied ${what}`);
    } catch {
      button.textContent = "Not copied";
      say(`Could not copy ${what}`);
    }
    setTimeout(() => { button.textContent = label; }, 1500);
  });
  return button;
}
