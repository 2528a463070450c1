// Making elements. Texts become text nodes: nothing that a machine says of itself is ever read as markup.

const kSvg = "http://www.w3.org/2000/svg";

function fill(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes ?? {})) {
    if (value === null || value === undefined || value === false) continue;
    if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
    else element.setAttribute(name, value === true ? "" : String(value));
  }
  element.append(...present(children));
  return element;
}

const present = (children) => children.flat().filter((child) => child !== null && child !== undefined && child !== "");

/// Puts children in the place of those that are there.
export function refill(element, ...children) {
  element.replaceChildren(...present(children));
}

export function el(tag, attributes, ...children) {
  return fill(document.createElement(tag), attributes, children);
}

export function svg(tag, attributes, ...children) {
  return fill(document.createElementNS(kSvg, tag), attributes, children);
}

export const byId = (id) => document.getElementById(id);

/// A text of the machine's: of its own direction, so that marks in it turn nothing around it.
export function text(content, className) {
  return el("bdi", { class: className }, content ?? "");
}
