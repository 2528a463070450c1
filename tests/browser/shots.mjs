import { launch, look, serve, snapshot } from "./page.mjs";
const [out, source, ...more] = process.argv.slice(2);
const server = await serve(snapshot(source));
const browser = await launch();
for (const colorScheme of ["light", "dark"]) for (const width of [1400, 390]) {
  const page = await look(browser, server.address, { colorScheme, viewport: { width, height: width > 500 ? 1000 : 844 } });
  await page.waitForTimeout(Number(more[0] ?? 2500));
  await page.screenshot({ path: `${out}-${colorScheme}-${width}.png`, fullPage: width < 500 });
  if (more[1]) { await page.locator(more[1]).first().click(); await page.waitForTimeout(600); await page.screenshot({ path: `${out}-open-${colorScheme}-${width}.png` }); }
  console.log(page.wrong);
  await page.context().close();
}
await browser.close(); await server.stop();
