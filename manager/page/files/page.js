// The page: what the server tells as it comes, and what is asked of it.
import { openDetail, refreshDetail } from "./detail.js";
import { byId, el, refill, text } from "./dom.js";
import { Model } from "./model.js";
import { badge, cardFrame, drawRates, mark, portTile, teamPanel, wordsOfPort } from "./tiles.js";
import { countWords, kStateLabels, kStateOrder, speedWords, stateOf, timeWords } from "./words.js";

const model = new Model();
let wanted = ""; // state that ports are narrowed to
let sought = "";

// ---- Cards and teams. What is far from being seen is drawn when it comes near.

const drawn = new Set(); // paths of cards whose ports are there
const near = new Set(); // elements
const watcher = new IntersectionObserver(
  (entries) => {
    for (const { target, isIntersecting } of entries) {
      isIntersecting ? near.add(target) : near.delete(target);
      if (isIntersecting) drawPorts(target);
    }
  },
  { rootMargin: "600px" },
);
const cardElements = new Map(); // by path

function isShown(card, port) {
  return (!wanted || stateOf(port.status).name === wanted) && (!sought || wordsOfPort(card, port).includes(sought));
}

function drawPorts(element) {
  const path = element.dataset.card;
  const card = model.thing(path)?.node;
  if (!card?.ports || drawn.has(path)) return;
  drawn.add(path);
  element.querySelector(".ports").replaceChildren(...card.ports.filter((port) => isShown(card, port)).map((port) => portTile(port, model)));
}

/// Puts an element in the place of another and leaves the keyboard where it was.
function replace(old, fresh) {
  const focused = old.contains(document.activeElement) ? document.activeElement.dataset.open : null;
  old.replaceWith(fresh);
  if (focused) fresh.querySelector(`[data-open="${CSS.escape(focused)}"]`)?.focus();
}

function drawCard(card, changed) {
  const old = cardElements.get(card.path);
  const fresh = cardFrame(card);
  const before = old && drawn.delete(card.path) ? new Map([...old.querySelectorAll(".port")].map((tile) => [tile.dataset.path, tile])) : null;
  fresh.hidden = !card.ports.some((port) => isShown(card, port)) && (card.ports.length > 0 || wanted || sought);
  if (before) drawPorts(fresh);
  for (const tile of changed ? fresh.querySelectorAll(".port") : []) {
    const was = before?.get(tile.dataset.path);
    if (was && (was.className !== tile.className || was.textContent !== tile.textContent)) tile.classList.add("changed");
  }
  if (old) {
    watcher.unobserve(old);
    near.delete(old);
    replace(old, fresh);
  }
  cardElements.set(card.path, fresh);
  watcher.observe(fresh);
  return fresh;
}

function drawTeam(team, changed) {
  const fresh = teamPanel(team, model);
  const old = cardElements.get(team.path);
  fresh.hidden = Boolean(wanted) || (sought && !fresh.textContent.toLowerCase().includes(sought));
  if (changed && old && old.textContent !== fresh.textContent) fresh.classList.add("changed");
  if (old) replace(old, fresh);
  cardElements.set(team.path, fresh);
  return fresh;
}

function drawAll() {
  for (const element of cardElements.values()) watcher.unobserve(element);
  cardElements.clear();
  drawn.clear();
  near.clear();
  byId("host").textContent = model.host;
  document.title = `${model.host} – Ethernet`;
  byId("source").hidden = !model.source;
  refill(byId("source"), "playing ", text(model.source.replace(/^.*\//, "")));
  const cards = model.cards.map((card) => drawCard(card, false));
  byId("cards").replaceChildren(...(cards.length ? cards : [el("p", { class: "empty" }, "No Ethernet adapters.")]));
  byId("team-part").hidden = model.teams.length === 0;
  byId("teams").replaceChildren(...model.teams.map((team) => drawTeam(team, false)));
  byId("machine").classList.toggle("crowded", model.cards.length > 24);
  drawSummary();
}

// ---- What stands out.

function drawSummary() {
  const counts = new Map(kStateOrder.map((name) => [name, 0]));
  const lost = [];
  for (const { card, port } of model.ports()) {
    const { name } = stateOf(port.status);
    counts.set(name, counts.get(name) + 1);
    if (name === "lost") lost.push({ card, port });
  }
  const all = [...counts.values()].reduce((sum, count) => sum + count, 0);
  const button = (name, label, count) =>
    el(
      "button",
      { type: "button", class: `tally ${name}`, "aria-pressed": String(wanted === name), "data-state": name },
      name ? mark({ name }) : null,
      el("strong", {}, count),
      ` ${label}`,
    );
  const shown = kStateOrder.filter((name) => counts.get(name) > 0);
  const focused = document.activeElement?.dataset?.state;
  byId("summary").replaceChildren(button("", all === 1 ? "port" : "ports", all), ...shown.map((name) => button(name, kStateLabels[name], counts.get(name))));
  if (focused !== undefined) byId("summary").querySelector(`[data-state="${focused}"]`)?.focus();
  drawLost(lost);
}

function drawLost(lost) {
  const kMost = 8;
  const banner = byId("lost");
  banner.hidden = lost.length === 0;
  if (!lost.length) return banner.replaceChildren();
  banner.replaceChildren(
    mark({ name: "lost" }),
    el("p", {}, el("strong", {}, countWords(lost.length, "port has", "ports have"), " no link")),
    el(
      "ul",
      { class: "plain" },
      lost.slice(0, kMost).map(({ card, port }) =>
        el("li", {}, el("button", { type: "button", class: "chip", "data-open": port.path }, text(port.name), el("span", { class: "small" }, " ", text(card.location), port.number ? ` port ${port.number}` : ""))),
      ),
      lost.length > kMost ? el("li", {}, `and ${lost.length - kMost} more`) : null,
    ),
  );
}

// ---- Alerts.

function alertItem(alert, isNew) {
  const name = model.nameOf(alert.path);
  const bad = alert.severity.code >= 5 ? "lost" : alert.severity.code >= 3 ? "degraded" : "up";
  const detail = /\(([^()]*(?:\([^()]*\)[^()]*)*)\)$/.exec(alert.description)?.[1];
  return el(
    "li",
    { class: `alert ${bad}${isNew ? " changed" : ""}` },
    el("p", { class: "small faint" }, el("time", { datetime: new Date(alert.time).toISOString() }, timeWords(alert.time)), " · ", el("span", { class: `severity ${bad}` }, mark({ name: bad }), alert.severity.text)),
    el("p", { class: "summary" }, name ? el("button", { type: "button", class: "chip", "data-open": alert.path }, text(name)) : null, " ", text(alert.summary)),
    detail || alert.comment ? el("p", { class: "small" }, text([detail, alert.comment].filter(Boolean).join("; "))) : null,
    alert.place ? el("p", { class: "small faint" }, text(alert.place)) : null,
    alert.advice.length ? el("details", {}, el("summary", {}, "What to do"), el("ul", {}, alert.advice.map((line) => el("li", {}, text(line))))) : null,
  );
}

function drawAlerts() {
  byId("alerts").replaceChildren(...model.alerts.map((alert) => alertItem(alert, false)));
  countAlerts();
}

function countAlerts() {
  byId("no-alerts").hidden = model.alerts.length > 0;
  byId("alert-count").textContent = model.alerts.length || "";
}

function addAlert(alert) {
  if (!model.addAlert(alert)) return;
  const list = byId("alerts");
  list.prepend(alertItem(alert, true));
  while (list.children.length > model.alerts.length) list.lastElementChild.remove();
  countAlerts();
  byId("news").textContent = `${alert.severity.text}: ${model.nameOf(alert.path)} ${alert.summary}`;
}

// ---- What the server tells.

const kEvents = {
  state(data) {
    model.setState(data);
    drawAll();
    drawAlerts();
    trouble("");
    requestAnimationFrame(() => performance.mark("first sight"));
  },
  tree(data) {
    model.setTree(data);
    drawAll();
  },
  parts(tree) {
    model.setParts(tree);
    for (const card of tree.cards) drawCard(card, true);
    // A team shows its ports, too.
    for (const team of model.teams) drawTeam(team, true);
    drawSummary();
    refreshDetail(model);
  },
  change(data) {
    const carrier = model.change(data);
    if (!carrier) return;
    carrier.ports ? drawCard(carrier, true) : drawTeam(carrier, true);
    drawSummary();
    refreshDetail(model, data.path);
  },
  rates(data) {
    model.addRates(data);
    for (const element of near) {
      for (const tile of element.querySelectorAll(".port")) drawRates(tile, model.ratesOf(tile.dataset.path));
    }
    refreshDetail(model, null);
  },
  alert: addAlert,
  trouble: ({ text: words }) => trouble(words),
};

function trouble(words) {
  byId("trouble").hidden = !words;
  byId("trouble").replaceChildren(words ? "The server cannot read this machine: " : "", text(words));
}

function say(state, words) {
  byId("connection").className = state;
  byId("connection-text").textContent = words;
}

function connect() {
  const source = new EventSource("events");
  source.onopen = () => say("live", "Live");
  source.onerror = () => {
    say("away", "Away – connecting again …");
    if (source.readyState === EventSource.CLOSED) setTimeout(connect, 2000);
  };
  for (const [name, take] of Object.entries(kEvents)) {
    source.addEventListener(name, (event) => take(JSON.parse(event.data)));
  }
}

// ---- What people do.

document.addEventListener("click", (event) => {
  const opener = event.target.closest("[data-open]");
  if (opener?.dataset.open && !opener.closest("dialog")) return openDetail(opener.dataset.open, model);
  const tile = event.target.closest(".port");
  if (tile && !event.target.closest("button, a, li")) openDetail(tile.dataset.path, model);
});

byId("summary").addEventListener("click", (event) => {
  const button = event.target.closest("[data-state]");
  if (!button) return;
  wanted = wanted === button.dataset.state ? "" : button.dataset.state;
  drawAll();
});

byId("filter").addEventListener("input", (event) => {
  sought = event.target.value.trim().toLowerCase();
  drawAll();
});

document.addEventListener("keydown", (event) => {
  if (event.key !== "/" || event.ctrlKey || event.metaKey || event.target.closest("input, dialog")) return;
  event.preventDefault();
  byId("filter").focus();
});

byId("settings").addEventListener("click", () => openDetail('root/jxv:ZEB_EthEventSettings.InstanceId="JXV:0"', model));

connect();
