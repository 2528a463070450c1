// What the server has told: the machine, its alerts, and how much goes through its ports.

const kSamples = 90;
const kMostAlerts = 200;

export const Rate = { in: 0, out: 1, packetsIn: 2, packetsOut: 3, errors: 4 };
const kIdle = [0, 0, 0, 0, 0];

export class Model {
  host = "";
  source = "";
  cards = [];
  teams = [];
  alerts = [];
  samples = 0; // that every port has
  #version = 0;
  #places = []; // paths of ports
  #rates = new Map(); // by path
  #things = new Map(); // by path: what it is, and what carries it

  setState(state) {
    this.source = state.source;
    this.alerts = state.alerts;
    this.setTree(state);
    this.#rates.clear();
    for (const [place, rates] of Object.entries(state.history)) {
      this.#rates.set(this.#places[place], rates);
      this.samples = Math.max(this.samples, rates.length);
    }
  }

  setTree({ version, tree }) {
    this.#version = version;
    this.host = tree.host;
    this.cards = tree.cards;
    this.teams = tree.teams;
    this.#index();
  }

  /// Cards and teams in the place of those with the same path.
  setParts(tree) {
    for (const list of ["cards", "teams"]) {
      const newer = new Map(tree[list].map((part) => [part.path, part]));
      this[list] = this[list].map((part) => newer.get(part.path) ?? part);
    }
    this.#index();
  }

  /// What an alert has changed of one port or team. Gives what carries it.
  change({ path, set }) {
    const thing = this.#things.get(path);
    if (!thing) return null;
    Object.assign(thing.node, set);
    return thing.carrier;
  }

  addAlert(alert) {
    if (this.alerts.some((known) => known.number === alert.number)) return false;
    this.alerts.unshift(alert);
    this.alerts.length = Math.min(this.alerts.length, kMostAlerts);
    return true;
  }

  addRates({ version, ports }) {
    if (version !== this.#version) return;
    this.samples = Math.min(this.samples + 1, kSamples);
    const newer = new Map(ports.map(([place, ...rates]) => [this.#places[place], rates]));
    for (const path of newer.keys()) {
      if (!this.#rates.has(path)) this.#rates.set(path, Array(this.samples - 1).fill(kIdle));
    }
    for (const [path, rates] of this.#rates) {
      rates.push(newer.get(path) ?? kIdle);
      if (rates.length > kSamples) rates.shift();
    }
  }

  ratesOf(path) {
    return this.#rates.get(path) ?? [];
  }

  thing(path) {
    return this.#things.get(path);
  }

  nameOf(path) {
    const thing = this.#things.get(path);
    return thing ? thing.node.name || thing.node.product || thing.label : "";
  }

  /// Every port with its card.
  *ports() {
    for (const card of this.cards) for (const port of card.ports) yield { card, port };
  }

  #index() {
    this.#things.clear();
    this.#places = [];
    const add = (node, carrier, label) => this.#things.set(node.path, { node, carrier, label });
    for (const card of this.cards) {
      add(card, card, "card");
      for (const port of card.ports) {
        this.#places.push(port.path);
        add(port, card, `port ${port.number ?? ""}`);
        for (const vlan of port.vlans) add(vlan, card, `VLAN ${vlan.id}`);
      }
    }
    for (const team of this.teams) {
      add(team, team, "team");
      for (const vlan of team.vlans) add(vlan, team, `VLAN ${vlan.id}`);
    }
  }
}
