// Rates of the last minutes as lines.
import { svg } from "./dom.js";
import { Rate } from "./model.js";

const kWidth = 120;
const kHeight = 28;
const kSamples = 90;

const sums = {
  bytes: (rates) => rates[Rate.in] + rates[Rate.out],
  packets: (rates) => rates[Rate.packetsIn] + rates[Rate.packetsOut],
  errors: (rates) => rates[Rate.errors],
};

/// The newest at the right edge, the largest at the top.
function line(samples, value, height, floor = 0) {
  const values = samples.map(value);
  const top = Math.max(...values, 1);
  const step = kWidth / (kSamples - 1);
  const begin = kWidth - (values.length - 1) * step;
  return values.map((v, i) => `${(begin + i * step).toFixed(1)} ${(height - floor - (v / top) * (height - floor - 2)).toFixed(1)}`);
}

/// Bytes as an area, packets as a line, errors as ticks from the bottom.
export function sparkline() {
  return svg(
    "svg",
    { class: "spark", viewBox: `0 0 ${kWidth} ${kHeight}`, preserveAspectRatio: "none", "aria-hidden": "true" },
    svg("path", { class: "area" }),
    svg("path", { class: "packets" }),
    svg("path", { class: "errors" }),
  );
}

export function drawSparkline(chart, samples) {
  const [area, packets, errors] = chart.children;
  const idle = samples.length < 2;
  const bytes = idle ? [] : line(samples, sums.bytes, kHeight);
  area.setAttribute("d", idle ? "" : `M${bytes[0].split(" ")[0]} ${kHeight}L${bytes.join("L")}L${kWidth} ${kHeight}Z`);
  packets.setAttribute("d", idle ? "" : `M${line(samples, sums.packets, kHeight, 3).join("L")}`);
  const step = kWidth / (kSamples - 1);
  const ticks = samples.map((rates, i) => (sums.errors(rates) ? kWidth - (samples.length - 1 - i) * step : null));
  errors.setAttribute("d", ticks.filter((x) => x !== null).map((x) => `M${x.toFixed(1)} ${kHeight}v-7`).join(""));
}

/// One kind of rate by itself, for a closer look.
export function chart(kind, samples) {
  const height = 64;
  const points = samples.length > 1 ? line(samples, sums[kind], height) : [`0 ${height}`, `${kWidth} ${height}`];
  return svg(
    "svg",
    { class: `chart ${kind}`, viewBox: `0 0 ${kWidth} ${height}`, preserveAspectRatio: "none", "aria-hidden": "true" },
    svg("path", { class: "area", d: `M${points[0].split(" ")[0]} ${height}L${points.join("L")}L${kWidth} ${height}Z` }),
    svg("path", { class: "line", d: `M${points.join("L")}` }),
  );
}

export const latest = (samples, kind) => (samples.length ? sums[kind](samples.at(-1)) : 0);
export const highest = (samples, kind) => Math.max(0, ...samples.map(sums[kind]));
