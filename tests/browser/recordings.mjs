// Recordings that tests make of those that there are.
import { readFileSync, writeFileSync } from "node:fs";
import { snapshot } from "./page.mjs";

const read = (name) => JSON.parse(readFileSync(snapshot(name)));
const copy = (value) => structuredClone(value);
const timeline = (steps) => ({ format: "zeb-host-timeline", version: 1, steps });

function write(file, recording) {
  writeFileSync(file, JSON.stringify(recording));
  return file;
}

function loseLink(link) {
  link.carrier = false;
  link.operState = "DOWN";
  link.flags = link.flags.filter((flag) => flag !== "RUNNING" && flag !== "LOWER_UP");
  link.ethtool.linkDetected = false;
  delete link.ethtool.speed;
  delete link.ethtool.fullDuplex;
}

/// Traffic on every port that has a link; at second `pulled` the cable of eth2 is pulled.
export function busy(file, pulled, seconds = 240) {
  const host = read("teams.json");
  const steps = [];
  for (let at = 0; at < seconds; ++at) {
    for (const [i, link] of host.links.entries()) {
      if (!link.statistics || link.carrier === false) continue;
      const wave = 1 + Math.sin((at + i * 11) / (7 + i)) * 0.8;
      const bytes = Math.round(4e6 * (i + 1) * wave);
      link.statistics.rxBytes += bytes;
      link.statistics.txBytes += Math.round(bytes / 3);
      link.statistics.rxPackets += Math.round(bytes / 900);
      link.statistics.txPackets += Math.round(bytes / 2000);
      if (link.ethtool && link.name === "eth4" && at % 9 === 0) {
        link.ethtool.mac = { ...link.ethtool.mac, fcsErrors: (link.ethtool.mac?.fcsErrors ?? 0) + 40 };
      }
    }
    if (at === pulled) loseLink(host.links.find((link) => link.name === "eth2"));
    steps.push({ at, snapshot: copy(host) });
  }
  return write(file, timeline(steps));
}

/// Nobody at the other end of bond1 speaks LACP, so its member has made up a partner.
export function alone(file) {
  const host = read("teams.json");
  host.links.find((link) => link.name === "bond1").bond.aggregator = { id: 1, ports: 1 };
  Object.assign(host.links.find((link) => link.name === "eth2").bondMember, { actorState: 69, partnerState: 1 });
  return write(file, host);
}

export const kHostile = {
  name: `"><b>&'\u202e`,
  product: `<script>document.title = "taken"</script><img src=x onerror="document.title='taken'">`,
  driver: "'\"`--></style><svg onload=alert(1)>",
};

/// A machine whose names would be markup if anybody took them for it.
export function hostile(file) {
  const host = read("two_cards.json");
  host.links[0].name = kHostile.name;
  host.links[0].hardware.deviceName = kHostile.product;
  host.links[0].driver = { name: kHostile.driver, version: "</script>", firmwareVersion: "\u202e<!--" };
  return write(file, host);
}

/// So many ports, four on each card, the other ends of which all offer something; every fortieth has no link.
export function many(file, count) {
  const model = read("two_cards.json").links.find((link) => link.name === "eth0");
  const links = [];
  for (let i = 0; i < count; ++i) {
    const link = copy(model);
    const card = Math.floor(i / 4);
    const address = `0000:${(card >> 5).toString(16).padStart(2, "0")}:${(card & 31).toString(16).padStart(2, "0")}.${i % 4}`;
    link.index = i + 2;
    link.name = `port${i}`;
    link.address = link.permanentAddress = ["02", "00", "00", i >> 16, (i >> 8) & 255, i & 255].map((part) => (typeof part === "string" ? part : part.toString(16).padStart(2, "0"))).join(":");
    link.parentDevice = link.hardware.device = link.hardware.pci = address;
    link.hardware.slot = card + 1;
    link.ethtool.partner = link.ethtool.advertised;
    if (i % 40 === 7) loseLink(link);
    links.push(link);
  }
  return write(file, { format: "zeb-host-snapshot", version: 1, time: 1700000000, links });
}
