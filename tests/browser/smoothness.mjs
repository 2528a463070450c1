// How soon the page shows a machine with many ports, and how smoothly it scrolls.
//   node smoothness.mjs PORTS RUNS    prints both as JSON
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import path from "node:path";
import { pathToFileURL } from "node:url";
import { launch, look, serve } from "./page.mjs";
import { many } from "./recordings.mjs";

/// Of a page that is open: milliseconds to first sight, and of each of sixty steps of scrolling, in order of length.
export const smoothnessOf = (page) =>
  page.evaluate(async () => {
    const tick = () => new Promise((resolve) => requestAnimationFrame(resolve));
    const sight = performance.getEntriesByName("first sight")[0].startTime;
    const frames = [];
    for (let y = 0; y < 60; ++y) {
      const begin = performance.now();
      scrollBy(0, 400);
      await tick();
      frames.push(performance.now() - begin);
    }
    return { sight, frames: frames.sort((a, b) => a - b) };
  });

async function measure(ports, runs) {
  const folder = mkdtempSync(path.join(tmpdir(), "zeb-smoothness-"));
  const server = await serve(many(path.join(folder, "many.json"), ports));
  const browser = await launch();
  try {
    const sights = [];
    const frames = [];
    for (let run = 0; run <= runs; ++run) {
      const page = await look(browser, server.address);
      const seen = await smoothnessOf(page);
      await page.context().close();
      if (run === 0) continue; // the server's and the browser's own beginning
      sights.push(seen.sight);
      frames.push(...seen.frames);
    }
    return { sights, frames };
  } finally {
    await browser.close();
    await server.stop();
    rmSync(folder, { recursive: true, force: true });
  }
}

if (import.meta.url === pathToFileURL(process.argv[1]).href) {
  console.log(JSON.stringify(await measure(Number(process.argv[2]), Number(process.argv[3]))));
}
