// Cards with their ports, and teams with their members.
import { drawSparkline, latest, sparkline } from "./charts.js";
import { el, svg, text } from "./dom.js";
import { Rate } from "./model.js";
import { addressWords, bytesWords, memberPartnerWords, packetsWords, partnerWords, speedWords, stateOf, teamPartnerWords } from "./words.js";

const kMarks = {
  up: "M5 12.5l4.5 4.5L19 7.5",
  lost: "M6 6l12 12M18 6L6 18",
  degraded: "M12 5v9M12 18.5v.5",
  off: "M6 12h12",
  unknown: "M9 9a3 3 0 1 1 3.6 2.9c-.6.2-.6.8-.6 2.1M12 18v.5",
};

/// A state has a shape and a word, and a colour besides.
export function mark(state) {
  return svg("svg", { class: `mark ${state.name}`, viewBox: "0 0 24 24", "aria-hidden": "true" }, svg("path", { d: kMarks[state.name] }));
}

export function badge(status) {
  const state = stateOf(status);
  return el("span", { class: `badge ${state.name}` }, mark(state), state.label);
}

const chip = (path, className, ...content) => el("button", { type: "button", class: `chip ${className}`, "data-open": path }, ...content);

function speedOf(port) {
  const speed = speedWords(port.speed);
  const most = speedWords(port.maxSpeed);
  if (!speed) return most ? `of ${most}` : "";
  const words = most && port.speed < port.maxSpeed ? `${speed} of ${most}` : speed;
  return port.fullDuplex === false ? `${words}, half duplex` : words;
}

function addresses(node) {
  return node.addresses.map((address) =>
    el(
      "li",
      { class: "address" },
      text(addressWords(address), "mono"),
      address.origin ? el("span", { class: "faint" }, ` ${address.origin}`) : null,
      address.gateway ? el("span", { class: "gateway" }, " → gateway ", text(address.gateway, "mono")) : null,
    ),
  );
}

function vlans(node) {
  return node.vlans.map((vlan) =>
    el(
      "li",
      { class: "vlan" },
      chip(vlan.path, "", mark(stateOf(vlan.status)), el("span", {}, `VLAN ${vlan.id} `), text(vlan.name)),
      vlan.addresses.length ? el("ul", { class: "plain" }, addresses(vlan)) : null,
    ),
  );
}

function speedBar(port) {
  if (!port.maxSpeed) return null;
  const share = Math.min(1, (port.speed ?? 0) / port.maxSpeed);
  // As much of the line as the speed's order of magnitude: 1 of 10 Gbit/s is a half, not a tenth.
  const width = share ? Math.max(12, 100 + Math.log10(share) * 45) : 0;
  return svg(
    "svg",
    { class: "speed", viewBox: "0 0 100 3", preserveAspectRatio: "none", "aria-hidden": "true" },
    svg("rect", { class: "possible", width: 100, height: 3 }),
    svg("rect", { class: "is", width, height: 3 }),
  );
}

function rateText(samples) {
  const now = samples.at(-1);
  if (!now) return "";
  const words = `↓\u00a0${bytesWords(now[Rate.in])}  ↑\u00a0${bytesWords(now[Rate.out])}`;
  const errors = latest(samples, "errors");
  return errors ? `${words}  ⚠\u00a0${errors}\u00a0err/s` : words;
}

function partner(port) {
  const words = partnerWords(port);
  return words ? el("li", { class: "partner faint" }, words) : null;
}

export function portTile(port, model) {
  const state = stateOf(port.status);
  const number = port.number ? `Port ${port.number}` : "Port";
  const tile = el(
    "article",
    { class: `port ${state.name}`, "data-path": port.path },
    el(
      "button",
      { type: "button", class: "face", "data-open": port.path },
      el("span", { class: "line" }, mark(state), text(port.name ?? number, "name"), el("span", { class: "state" }, state.label)),
      el("span", { class: "line small" }, el("span", { class: "faint" }, number), el("span", { class: "rate-of" }, speedOf(port))),
    ),
    speedBar(port),
    sparkline(),
    el("p", { class: "rates small faint" }),
    el(
      "ul",
      { class: "plain under" },
      partner(port),
      port.team ? el("li", { class: "member" }, "in ", text(port.team), port.role ? `, ${port.role.toLowerCase()}` : "") : null,
      addresses(port),
      vlans(port),
    ),
  );
  drawRates(tile, model.ratesOf(port.path));
  return tile;
}

export function drawRates(tile, samples) {
  drawSparkline(tile.querySelector(".spark"), samples);
  const words = rateText(samples);
  const line = tile.querySelector(".rates");
  if (line.textContent !== words) line.textContent = words;
  line.title = samples.length ? packetsWords(latest(samples, "packets")) : "";
}

/// What a card says before any of its ports is drawn.
export function cardFrame(card) {
  const software = [
    card.driver.name ? `driver ${[card.driver.name, card.driver.version].filter(Boolean).join(" ")}` : "",
    card.firmware ? `firmware ${card.firmware}` : "",
  ].filter(Boolean);
  return el(
    "section",
    { class: "card", "data-card": card.path, "aria-label": [card.product ?? "Card", card.location].filter(Boolean).join(", ") },
    el(
      "header",
      {},
      el("span", { class: "slot" }, text(card.location ?? "Somewhere")),
      el(
        "div",
        { class: "what" },
        el("h3", {}, el("button", { type: "button", class: "plain-button", "data-open": card.path }, text(card.product ?? "Ethernet card"))),
        el("p", { class: "small faint" }, text([card.manufacturer, ...software].filter(Boolean).join(" · "))),
      ),
      badge(card.status),
    ),
    el("div", { class: "ports" }),
  );
}

function memberRow(member, model) {
  const state = stateOf(member.portStatus);
  const port = [...model.ports()].find((one) => one.port.name === member.port)?.port;
  return el(
    "li",
    { class: `member-row ${state.name}` },
    chip(port?.path ?? "", "", mark(state), text(member.port)),
    el("span", { class: `role ${(member.role ?? "").toLowerCase()}` }, member.role ?? "member"),
    el("span", { class: "faint small" }, [state.label, memberPartnerWords(member)].filter(Boolean).join(" · ")),
  );
}

export function teamPanel(team, model) {
  const state = stateOf(team.status);
  return el(
    "section",
    { class: `team ${state.name}`, "data-card": team.path, "aria-label": `Team ${team.name}` },
    el(
      "header",
      {},
      el(
        "div",
        { class: "what" },
        el("h3", {}, el("button", { type: "button", class: "plain-button", "data-open": team.path }, text(team.name))),
        el("p", { class: "small faint" }, text([team.mode, team.redundancy, speedWords(team.speed), team.macAddress, teamPartnerWords(team)].filter(Boolean).join(" · "))),
      ),
      badge(team.status),
    ),
    el("ul", { class: "plain members", "aria-label": "Members" }, team.members.map((member) => memberRow(member, model))),
    el("ul", { class: "plain under" }, addresses(team), vlans(team)),
  );
}

/// Words that a port can be found by.
export function wordsOfPort(card, port) {
  const parts = [card.product, card.location, card.manufacturer, port.name, port.macAddress, port.team, port.role, stateOf(port.status).label];
  for (const node of [port, ...port.vlans]) {
    parts.push(node.name, ...node.addresses.flatMap((address) => [address.address, address.gateway]));
  }
  return parts.filter(Boolean).join(" ").toLowerCase();
}
