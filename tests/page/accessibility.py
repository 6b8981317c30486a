"""What a person with a screen reader, or with weak eyes, needs of a page: names and contrast."""

# Texts that can be seen and are too faint against what is behind them: 4.5 : 1, or 3 : 1 where large.
FAINT_TEXTS = r"""
const parse = (colour) => (colour.match(/[\d.]+/g) ?? []).map(Number);
const luminance = ([r, g, b]) => {
  const part = (value) => (value /= 255) <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4;
  return 0.2126 * part(r) + 0.7152 * part(g) + 0.0722 * part(b);
};
const over = (top, under) => { const a = top[3] ?? 1; return [0, 1, 2].map((i) => top[i] * a + under[i] * (1 - a)); };
const ground = (element) => {
  const layers = [];
  for (let e = element; e; e = e.parentElement) {
    const back = e.ownerSVGElement ? null : parse(getComputedStyle(e).backgroundColor);
    if (back && back.length && (back[3] ?? 1) > 0) { layers.push(back); if ((back[3] ?? 1) === 1) break; }
    if (e.tagName === "text") {
      const box = e.previousElementSibling;
      if (box?.tagName === "rect" && /^shade[1-7]$/.test(box.getAttribute("class"))) { layers.push(parse(getComputedStyle(box).fill)); break; }
    }
  }
  return layers.reverse().reduce((under, top) => over(top, under), matchMedia("(prefers-color-scheme: dark)").matches ? [20, 24, 29] : [255, 255, 255]);
};
const faint = [];
let seen = 0;
const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
for (let node = walker.nextNode(); node; node = walker.nextNode()) {
  const element = node.parentElement;
  if (!node.data.trim() || ["SCRIPT", "STYLE", "TITLE", "title", "NOSCRIPT"].includes(element.tagName)) continue;
  if (!element.checkVisibility({ visibilityProperty: true }) || element.closest(".unseen, .skip")) continue;
  const style = getComputedStyle(element);
  const colour = parse(element.ownerSVGElement ? style.fill : style.color);
  const behind = ground(element);
  const [a, b] = [luminance(over(colour, behind)), luminance(behind)].sort((x, y) => y - x);
  const ratio = (a + 0.05) / (b + 0.05);
  const size = parseFloat(style.fontSize);
  const isLarge = size >= 24 || (size >= 18.66 && Number(style.fontWeight) >= 700);
  ++seen;
  if (ratio < (isLarge ? 3 : 4.5)) faint.push(`${node.data.trim().slice(0, 30)} (${element.className || element.tagName}): ${ratio.toFixed(2)}`);
}
return [seen, faint];
"""


def faint_texts(browser):
    seen, faint = browser.script(FAINT_TEXTS)
    assert seen > 10, "hardly any text was looked at"
    return faint


NAMED_ROLES = {"button", "link", "searchbox", "textbox", "checkbox", "grid", "columnheader", "dialog", "navigation",
               "complementary", "image", "img", "group_with_name", "DisclosureTriangle"}


def nameless(browser):
    """What a screen reader would meet without a name."""
    nodes = browser.command("Accessibility.getFullAXTree")["nodes"]
    found = []
    seen = 0
    for node in nodes:
        role = node.get("role", {}).get("value")
        if node.get("ignored") or role not in NAMED_ROLES:
            continue
        seen += 1
        if not node.get("name", {}).get("value", "").strip():
            found.append(role)
    assert seen > 5, "hardly any element was looked at"
    return found


def wider_than_window(browser):
    return browser.script("return document.documentElement.scrollWidth - innerWidth")
