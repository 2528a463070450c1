// Numbers and states in words.

const kStates = {
  2: { name: "up", label: "Up" },
  3: { name: "degraded", label: "Degraded" },
  6: { name: "lost", label: "No link" },
  15: { name: "off", label: "Off" },
};

/// How a status of a port, team or VLAN is shown; 0 and what is not known are alike.
export function stateOf(status) {
  return kStates[status?.code] ?? { name: "unknown", label: status?.text || "Not known" };
}

export const kStateOrder = ["lost", "degraded", "up", "off", "unknown"];
export const kStateLabels = {
  lost: "No link",
  degraded: "Degraded",
  up: "Up",
  off: "Off",
  unknown: "Not known",
};

function scaled(number, units, unit) {
  let step = 0;
  while (number >= 1000 && step < units.length - 1) {
    number /= 1000;
    ++step;
  }
  const digits = number >= 100 || step === 0 || Number.isInteger(number) ? 0 : number >= 10 ? 1 : 2;
  return `${number.toFixed(digits)}\u00a0${units[step]}${unit}`;
}

const kUnits = ["", "k", "M", "G", "T"];

export const speedWords = (bits) => (bits ? scaled(bits, kUnits, "bit/s") : "");
export const bytesWords = (bytes) => scaled(bytes * 8, kUnits, "bit/s");
export const packetsWords = (packets) => scaled(packets, kUnits, "pkt/s");

/// Nothing is known any more of what was at the other end of a link that has gone.
const isGone = (status) => ["lost", "off"].includes(stateOf(status).name);

/// What the other end of a port's cable offers.
export function partnerWords(port) {
  if (!port.partner || isGone(port.status)) return "";
  const { speed, fullDuplex } = port.partner;
  const duplex = fullDuplex === null ? "" : fullDuplex ? ", full duplex" : ", half duplex";
  return `Link partner: up to ${speedWords(speed)}${duplex}`;
}

/// Who answers LACP at the other end of a team.
export function teamPartnerWords({ lacp, status }) {
  if (!lacp || isGone(status)) return "";
  return lacp.partner ? `LACP partner ${lacp.partner}` : "nobody answers LACP";
}

/// What a member and the other end of its cable say to each other.
export function memberPartnerWords({ lacp, portStatus }) {
  if (!lacp || lacp.partner === null || isGone(portStatus)) return "";
  if (!lacp.partner) return "no LACP partner";
  return lacp.synchronized ? "LACP in sync" : "LACP not in sync";
}

export function countWords(count, one, many = `${one}s`) {
  return `${count} ${count === 1 ? one : many}`;
}

export function timeWords(milliseconds) {
  const time = new Date(milliseconds);
  const today = new Date().toDateString() === time.toDateString();
  const clock = time.toLocaleTimeString([], { hour: "2-digit", minute: "2-digit", second: "2-digit", hour12: false });
  return today ? clock : `${time.toLocaleDateString()} ${clock}`;
}

export function addressWords(address) {
  const length = address.prefixLength;
  return address.address + (length !== null ? `/${length}` : address.mask ? ` mask ${address.mask}` : "");
}

/// "InternalMACReceiveErrors" as "Internal MAC receive errors".
export function nameWords(name) {
  const parts = name.match(/[A-Z]+(?=[A-Z][a-z])|[A-Z]?[a-z]+|[A-Z]+|[0-9]+/g) ?? [name];
  return parts.map((part, i) => (i === 0 || /^[A-Z0-9]{2,}$/.test(part) ? part : part.toLowerCase())).join(" ");
}
