// One CIM instance: its properties in words, what it is associated with, and its path.
import { chart, highest, latest } from "./charts.js";
import { byId, el, refill, text } from "./dom.js";
import { changeForm } from "./settings.js";
import { badge } from "./tiles.js";
import { bytesWords, nameWords, packetsWords, partnerWords, speedWords } from "./words.js";

const dialog = byId("detail");
const trail = []; // paths that led here
let shown = null; // what is shown

export function openDetail(path, model) {
  trail.length = 0;
  if (!dialog.open) dialog.showModal();
  show(path, model);
}

/// Shows again what is open: the instance of a path, or its rates alone.
export function refreshDetail(model, path) {
  if (!dialog.open || !shown) return;
  if (path === null) return drawCharts(model);
  if ((path === undefined || path === shown.path) && !dialog.querySelector("form :focus")) show(shown.path, model, true);
}

async function show(path, model, again = false) {
  try {
    const answer = await fetch(`instance?path=${encodeURIComponent(path)}`);
    const instance = await answer.json();
    if (!answer.ok) throw new Error(instance.error);
    if (again && shown?.path === path) instance.why = shown.why;
    shown = instance;
    const top = again ? dialog.scrollTop : 0;
    draw(instance, model, again);
    dialog.scrollTop = top;
    if (instance.why) drawWhy();
    else if (!again) showWhy(path);
  } catch (error) {
    if (again) return;
    shown = null;
    refill(dialog, head("Not there", null), el("p", { role: "alert" }, text(error.message)), pathLine(path));
  }
}

function head(title, status, back) {
  return el(
    "header",
    {},
    back ? el("button", { type: "button", class: "back", onclick: back, "aria-label": "Back" }, "←") : null,
    el("h2", { id: "detail-title", tabindex: "-1" }, text(title)),
    status ? badge(status) : null,
    el("button", { type: "button", class: "close", onclick: () => dialog.close(), "aria-label": "Close" }, "✕"),
  );
}

function pathLine(path) {
  const copy = el("button", { type: "button", class: "chip", onclick: () => copyPath(path, copy) }, "Copy");
  return el("div", { class: "path" }, el("code", {}, text(path)), copy);
}

async function copyPath(path, button) {
  try {
    await navigator.clipboard.writeText(path);
    button.textContent = "Copied";
  } catch {
    // Pages without TLS may not: what is selected can be copied by hand.
    getSelection().selectAllChildren(button.previousElementSibling);
    button.textContent = "Selected";
  }
}

const kNothing = "–";

function valueOf(property, go) {
  if (property.path) return el("button", { type: "button", class: "chip wide", onclick: () => go(property.path) }, text(property.path));
  if (property.value === null || property.value === "") return el("span", { class: "faint" }, property.value === "" ? "empty" : kNothing);
  const words = property.words.filter((word) => word !== null);
  if (/Speed$/.test(property.name) && Number(property.value)) words.push(speedWords(Number(property.value)));
  if (!words.length) return text(property.value);
  return [text(words.join(", ")), el("span", { class: "faint" }, " ", text(property.value))];
}

function propertyRow(property, go) {
  return el(
    "tr",
    { "data-property": property.name },
    el("th", { scope: "row" }, el("span", { class: "wordy" }, nameWords(property.name)), el("span", { class: "small faint mono" }, property.name, property.key ? " · key" : "")),
    el("td", {}, valueOf(property, go), property.description ? el("details", { class: "small faint" }, el("summary", {}, "Meaning"), el("p", {}, text(property.description))) : null),
    el("td", { class: "why small faint" }),
  );
}

function reason(fact) {
  const whose = fact.interface ? [" of ", text(fact.interface)] : null;
  const says = fact.value === null ? " is not known" : [" is ", text(typeof fact.value === "string" ? fact.value : JSON.stringify(fact.value))];
  return el("li", {}, el("span", { class: "mono" }, fact.fact), whose, says, el("span", { class: "origin" }, text(fact.from), fact.otherwise ? [", else ", text(fact.otherwise)] : null));
}

/// Which fact of the kernel's gave each value. It takes the server a moment to find out.
async function showWhy(path, tries = 100) {
  const line = byId("detail-why");
  if (shown?.path !== path || !line) return;
  line.textContent = "Finding out where each value comes from …";
  const answer = await fetch(`explain?path=${encodeURIComponent(path)}`).catch(() => null);
  if (answer?.status === 202 && tries > 0) return setTimeout(() => showWhy(path, tries - 1), 2000);
  const explained = answer?.status === 200 ? await answer.json() : null;
  if (shown?.path !== path || !byId("detail-why")) return;
  line.textContent = explained ? "" : "Where values come from cannot be found out now.";
  shown.why = new Map(explained?.properties.map((one) => [one.property, one]));
  drawWhy();
}

function drawWhy() {
  for (const row of dialog.querySelectorAll("tr[data-property]")) {
    const why = shown.why?.get(row.dataset.property);
    if (!why) continue;
    const ofFacts = !["key", "end"].includes(why.source);
    refill(row.querySelector(".why"), el("span", { class: `source ${why.source}` }, why.words), ofFacts ? el("ul", { class: "plain" }, why.facts.map(reason)) : null);
  }
}

function associations(instance, model, go) {
  const groups = Map.groupBy ? Map.groupBy(instance.associations, (one) => one.association) : grouped(instance.associations);
  return [...groups].map(([association, ends]) =>
    el(
      "li",
      {},
      el("span", { class: "small faint mono" }, association),
      el(
        "ul",
        { class: "plain ends" },
        ends.map((end) =>
          el(
            "li",
            {},
            el("button", { type: "button", class: "chip wide", onclick: () => go(end.path) }, el("span", { class: "faint" }, `${end.role}: `), text(labelOf(end, model))),
            el("button", { type: "button", class: "chip", onclick: () => go(end.instance), "aria-label": `The association ${association} itself` }, "⇄"),
          ),
        ),
      ),
    ),
  );
}

function grouped(list) {
  const groups = new Map();
  for (const one of list) groups.set(one.association, [...(groups.get(one.association) ?? []), one]);
  return groups;
}

function labelOf(end, model) {
  const name = model.nameOf(end.path);
  const number = /"JXV:[^"]*?([0-9]+)"$/.exec(end.path)?.[1];
  return name ? `${name} (${end.class})` : `${end.class}${number ? ` ${number}` : ""}`;
}

function drawCharts(model) {
  const place = byId("detail-charts");
  const samples = model.ratesOf(shown.path);
  if (!place || !samples.length) return;
  const one = (kind, label, words) =>
    el("figure", {}, el("figcaption", {}, `${label}: `, el("strong", {}, words(latest(samples, kind))), el("span", { class: "faint" }, `  most ${words(highest(samples, kind))}`)), chart(kind, samples));
  place.replaceChildren(one("bytes", "Throughput", bytesWords), one("packets", "Packets", packetsWords), one("errors", "Errors", (count) => `${count}/s`));
}

function draw(instance, model, again) {
  const go = (path) => {
    trail.push(instance.path);
    show(path, model);
  };
  const back = trail.length ? () => show(trail.pop(), model) : null;
  const node = model.thing(instance.path)?.node;
  const partner = node ? partnerWords(node) : "";
  refill(
    dialog,
    head(model.nameOf(instance.path) || nameWords(instance.class.replace(/^ZEB_/, "")), node?.status, back),
    el("p", { class: "faint" }, el("span", { class: "mono" }, instance.class), instance.description ? " – " : "", text(instance.description)),
    partner ? el("p", { class: "partner" }, partner) : null,
    pathLine(instance.path),
    el("div", { id: "detail-charts", class: "charts" }),
    changeForm(instance, () => show(instance.path, model)),
    el("p", { id: "detail-why", class: "small faint", role: "status" }),
    el(
      "table",
      {},
      el("caption", { class: "hidden" }, "Properties"),
      el("thead", { class: "hidden" }, el("tr", {}, ["Property", "Value", "Why"].map((word) => el("th", { scope: "col" }, word)))),
      el("tbody", {}, instance.properties.map((property) => propertyRow(property, go))),
    ),
    el("h3", {}, "Associated with"),
    instance.associations.length ? el("ul", { class: "plain associations" }, associations(instance, model, go)) : el("p", { class: "faint" }, "Nothing."),
  );
  drawCharts(model);
  if (!again) byId("detail-title").focus();
}
