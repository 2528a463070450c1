// The page in a real browser.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, rmSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import path from "node:path";
import { after, before, test } from "node:test";
import { launch, look, plugin, serve, snapshot, top, zebcim } from "./page.mjs";
import { alone, busy, hostile, kHostile, many } from "./recordings.mjs";
import { smoothnessOf } from "./smoothness.mjs";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
const folder = mkdtempSync(path.join(tmpdir(), "zeb-browser-"));
const pictures = process.env.ZEB_PICTURES ?? path.join(top, "build/pictures");
let browser;

before(async () => {
  mkdirSync(pictures, { recursive: true });
  browser = await launch();
});
after(async () => {
  await browser?.close();
  rmSync(folder, { recursive: true, force: true });
});

/// Runs a test on a server that plays a recording; afterwards nothing may have gone wrong in any page.
async function on(source, run) {
  const server = await serve(source);
  const pages = [];
  try {
    await run(async (more) => {
      const page = await look(browser, server.address, more);
      pages.push(page);
      return page;
    }, server);
    for (const page of pages) assert.deepEqual(page.wrong, []);
  } finally {
    for (const page of pages) await page.context().close();
    await server.stop();
  }
}

const texts = (page, selector) => page.locator(selector).allTextContents();
const tile = (page, name) => page.locator(".port", { has: page.locator(`.name:text-is("${name}")`) });

test("first sight is what the tree says", async (t) => {
  for (const name of ["two_cards", "teams", "on_board", "bare_port", "one_port", "empty"]) {
    await t.test(name, () =>
      on(snapshot(`${name}.json`), async (open) => {
        const tree = JSON.parse(execFileSync(zebcim, ["--plugin", plugin, "--source", snapshot(`${name}.json`), "--json", "tree"]));
        const page = await open();
        assert.equal(await page.locator("#host").textContent(), tree.host);
        const ports = tree.cards.flatMap((card) => card.ports);
        assert.deepEqual(await texts(page, ".card h3"), tree.cards.map((card) => card.product ?? "Ethernet card"));
        assert.deepEqual(await texts(page, ".port .name"), ports.map((port) => port.name ?? (port.number ? `Port ${port.number}` : "Port")));
        const words = { 2: "Up", 3: "Degraded", 6: "No link", 15: "Off" };
        assert.deepEqual(await texts(page, ".port .state"), ports.map((port) => words[port.status.code] ?? (port.status.text || "Not known")));
        assert.deepEqual(await texts(page, ".team h3"), tree.teams.map((team) => team.name));
        assert.deepEqual(await texts(page, ".members .chip"), tree.teams.flatMap((team) => team.members.map((member) => member.port)));
        const carriers = [...ports, ...tree.teams];
        const addresses = carriers.flatMap((one) => [...one.addresses, ...one.vlans.flatMap((vlan) => vlan.addresses)]);
        const shown = (await texts(page, ".address")).join("\n");
        for (const { address, gateway } of addresses) {
          assert.ok(shown.includes(address), address);
          if (gateway) assert.ok(shown.includes(gateway), gateway);
        }
        const vlans = carriers.flatMap((one) => one.vlans);
        assert.equal(await page.locator(".vlan").count(), vlans.length);
      }),
    );
  }
});

test("what is at the other end of a cable is said where it is known", async () => {
  await on(snapshot("teams.json"), async (open) => {
    const page = await open();
    const words = "Link partner: up to 1\u00a0Gbit/s, full duplex";
    for (const name of ["eth0", "eth2"]) assert.deepEqual(await tile(page, name).locator(".partner").allTextContents(), [words]);
    assert.equal(await page.locator(".port .partner").count(), 2);
    const team = (name) => page.locator(`.team[aria-label="Team ${name}"]`);
    const member = (name) => team("bond1").locator(".member-row", { hasText: name }).textContent();
    assert.match(await team("bond1").locator(".what").textContent(), /802\.3ad .* LACP partner 00:1c:73:00:00:01$/);
    assert.doesNotMatch(await team("bond0").textContent(), /LACP/);
    assert.match(await member("eth2"), /Up · LACP in sync$/);
    assert.match(await member("eth3"), /No link$/);
    await tile(page, "eth0").locator(".face").click();
    await page.locator("#detail .partner", { hasText: words }).waitFor();
  });
  await on(alone(path.join(folder, "alone.json")), async (open) => {
    const page = await open();
    const team = page.locator('.team[aria-label="Team bond1"]');
    assert.match(await team.locator(".what").textContent(), / · nobody answers LACP$/);
    assert.match(await team.locator(".member-row", { hasText: "eth2" }).textContent(), /Up · no LACP partner$/);
  });
  await on(snapshot("two_cards.json"), async (open) => {
    const page = await open();
    await tile(page, "eth0").and(page.locator(".up")).waitFor();
    assert.equal(await page.locator(".partner").count(), 0);
  });
});

test("a link that has gone takes what its other end offered along", () =>
  on(busy(path.join(folder, "partner.json"), 6), async (open) => {
    const page = await open();
    await tile(page, "eth2").locator(".partner").waitFor();
    await tile(page, "eth2").and(page.locator(".lost")).waitFor({ timeout: 15000 });
    assert.equal(await tile(page, "eth2").locator(".partner").count(), 0);
  }));

test("a pulled cable is seen without reloading", () =>
  on(busy(path.join(folder, "busy.json"), 6), async (open) => {
    const page = await open();
    await tile(page, "eth2").and(page.locator(".up")).waitFor();
    assert.ok(await page.locator("#lost .chip", { hasText: "eth3" }).isVisible());
    await tile(page, "eth2").and(page.locator(".lost")).waitFor({ timeout: 15000 });
    await page.locator("#lost .chip", { hasText: "eth2" }).waitFor();
    await page.locator(".alert", { hasText: "Ethernet connectivity lost" }).first().waitFor();
    await page.locator(".alert summary").first().click();
    assert.ok((await page.locator(".alert details li").first().textContent()).length > 10);
    // Traffic is a line and a number.
    await page.locator('.port .rates:has-text("Mbit/s")').first().waitFor({ timeout: 8000 });
    assert.match(await tile(page, "eth4").locator(".spark .area").getAttribute("d"), /^M.*L/);
  }));

test("alerts come within 150 ms of the indication", () =>
  on(busy(path.join(folder, "quick.json"), 4), async (open) => {
    const page = await open();
    // What the server gave the alert and the moment when the browser has it are of one clock.
    const late = await page.evaluate(
      () =>
        new Promise((resolve) => {
          const source = new EventSource("events");
          source.addEventListener("alert", (event) => resolve(Date.now() - JSON.parse(event.data).time));
        }),
    );
    assert.ok(late < 150, `${late} ms`);
  }));

test("a page that was away catches up", () =>
  on(busy(path.join(folder, "away.json"), 5), async (open) => {
    const page = await open();
    await tile(page, "eth2").and(page.locator(".up")).waitFor();
    await page.context().setOffline(true);
    await page.locator("#connection.away").waitFor({ timeout: 20000 }).catch(() => {});
    await page.waitForTimeout(6000);
    await page.context().setOffline(false);
    await page.locator("#connection.live").waitFor({ timeout: 20000 });
    await tile(page, "eth2").and(page.locator(".lost")).waitFor({ timeout: 15000 });
    page.wrong = page.wrong.filter((line) => !/ERR_INTERNET_DISCONNECTED|ERR_NETWORK/.test(line));
  }));

test("everything can be opened, walked and copied", () =>
  on(snapshot("teams.json"), async (open) => {
    const page = await open();
    await tile(page, "eth3").locator(".face").click();
    const dialog = page.locator("#detail");
    await dialog.locator("#detail-title", { hasText: "eth3" }).waitFor();
    assert.match(await dialog.locator(".path code").textContent(), /ZEB_EthernetPort\..*DeviceID="JXV:ZEB_EthernetPort:4"$/);
    const row = dialog.locator('[data-property="OperationalStatus"]');
    assert.match(await row.textContent(), /Error/);
    const why = dialog.locator('[data-property="ActiveMaximumTransmissionUnit"] .why', { hasText: "RTM_NEWLINK IFLA_MTU" });
    await why.waitFor({ timeout: 60000 });
    assert.match(await why.textContent(), /links\.mtu of eth3 is 1500/);
    await dialog.locator(".associations .chip", { hasText: "ZEB_EthernetPortController" }).first().click();
    await dialog.locator(".path code", { hasText: "ZEB_EthernetPortController." }).waitFor();
    await dialog.locator(".back").click();
    await dialog.locator("#detail-title", { hasText: "eth3" }).waitFor();
    await dialog.locator(".path button").click();
    await dialog.locator(".path button", { hasText: /Copied|Selected/ }).waitFor();
    await page.keyboard.press("Escape");
    assert.equal(await dialog.isVisible(), false);
    for (const one of [".card h3 button", ".team h3 button", ".vlan .chip", ".member-row .chip"]) {
      await page.locator(one).first().click();
      await dialog.locator("table tr").first().waitFor();
      await page.keyboard.press("Escape");
    }
  }));

test("the keyboard reaches everything", () =>
  on(snapshot("teams.json"), async (open) => {
    const page = await open();
    await page.keyboard.press("/");
    assert.equal(await page.evaluate(() => document.activeElement.id), "filter");
    await page.keyboard.type("bond1");
    await tile(page, "eth0").waitFor({ state: "detached" });
    await page.keyboard.press("Control+a");
    await page.keyboard.press("Delete");
    await tile(page, "eth0").waitFor();
    const reached = new Set();
    for (let i = 0; i < 80; ++i) {
      await page.keyboard.press("Tab");
      reached.add(await page.evaluate(() => document.activeElement.dataset.open ?? document.activeElement.dataset.state ?? document.activeElement.id));
    }
    const openers = await page.locator("[data-open]").evaluateAll((all) => all.map((one) => one.dataset.open));
    assert.deepEqual(openers.filter((one) => !reached.has(one)), []);
    await tile(page, "eth3").locator(".face").focus();
    await page.keyboard.press("Enter");
    await page.locator("#detail-title", { hasText: "eth3" }).waitFor();
    await page.keyboard.press("Escape");
    assert.equal(await page.evaluate(() => document.activeElement.textContent.includes("eth3")), true);
  }));

test("there is nothing that a screen reader stumbles over", () =>
  on(snapshot("teams.json"), async (open) => {
    for (const colorScheme of ["light", "dark"]) {
      const page = await open({ colorScheme });
      const findings = async () => {
        await page.evaluate(axe);
        const { violations } = await page.evaluate(() => axe.run(document, { runOnly: ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "best-practice"] }));
        return violations.map(({ id, nodes }) => `${id}: ${nodes[0].html.slice(0, 120)} ${nodes[0].any[0]?.message ?? ""}`);
      };
      assert.deepEqual(await findings(), []);
      await tile(page, "eth3").locator(".face").click();
      await page.locator("#detail table tr").first().waitFor();
      assert.deepEqual(await findings(), []);
    }
  }));

test("a hostile name is text", () =>
  on(hostile(path.join(folder, "hostile.json")), async (open) => {
    const page = await open();
    assert.equal((await texts(page, ".card h3"))[0], kHostile.product);
    assert.equal((await texts(page, ".port .name"))[0], kHostile.name);
    assert.ok((await texts(page, ".card .what p"))[0].includes(kHostile.driver));
    await page.locator(".port .face").first().click();
    await page.locator('#detail [data-property="Caption"] bdi', { hasText: kHostile.product }).waitFor();
    await page.waitForTimeout(500);
    assert.equal(await page.locator("main script, main img, #detail script, #detail img").count(), 0);
    assert.doesNotMatch(await page.title(), /taken/);
  }));

test("settings are changed by those who may, and refused to others", () =>
  on(snapshot("two_cards.json"), async (open) => {
      const change = async (page, value) => {
        await page.locator("#settings").click();
        const field = page.locator('input[name="FloodThreshold"]');
        await field.fill(String(value));
        await page.locator("form.change button").click();
      };
      // Of credentials that are wrong only the change is told: to read, this machine needs none.
      const nobody = await open({ httpCredentials: { username: "root", password: "guess" } });
      await change(nobody, 11);
      await nobody.locator(".result.refused", { hasText: "Not signed in" }).waitFor();
      nobody.wrong = nobody.wrong.filter((line) => !/401/.test(line));
      const reader = await open({ httpCredentials: { username: "daemon", password: "secret", send: "always" } });
      await change(reader, 12);
      await reader.locator(".result.refused", { hasText: "may only read" }).waitFor();
      const writer = await open({ httpCredentials: { username: "root", password: "secret", send: "always" } });
      await change(writer, 13);
      await writer.locator(".result", { hasText: "Changed." }).waitFor();
      await writer.locator('[data-property="FloodThreshold"] td', { hasText: "13" }).waitFor();
  }));

test("a member's filter is changed by those who may, and refused to others", () =>
  on(snapshot("two_cards.json"), async (open) => {
    const member = async (user) => {
      const page = await open({ httpCredentials: { username: user, password: "secret", send: "always" } });
      await tile(page, "eth0").locator(".face").click();
      const row = page.locator(".associations > li", { hasText: "ZEB_EthernetMemberOfCollection" });
      await row.locator("button[aria-label]").click();
      await page.locator('#detail [data-property="Included"]').waitFor();
      return page;
    };
    const included = (page) => page.locator('[data-property="Included"] td bdi').first().textContent();
    const change = async (page) => {
      await page.locator('form.change input[name="Included"]').click();
      await page.locator("form.change button").click();
    };
    const reader = await member("daemon");
    assert.equal(await included(reader), "TRUE");
    await change(reader);
    // What CIM answers, as it is.
    await reader.locator(".result.refused", { hasText: /^CIM error 2: .*may only read/ }).waitFor();
    const writer = await member("root");
    assert.equal(await included(writer), "TRUE");
    await change(writer);
    await writer.locator(".result", { hasText: "Changed." }).waitFor();
    await writer.locator('[data-property="Included"] td', { hasText: "FALSE" }).waitFor();
    // Of the other members none has changed, and whoever comes next sees what has.
    const next = await member("daemon");
    assert.equal(await included(next), "FALSE");
    await next.keyboard.press("Escape");
    await tile(next, "eth1").locator(".face").click();
    await next.locator(".associations > li", { hasText: "ZEB_EthernetMemberOfCollection" }).locator("button[aria-label]").click();
    await next.locator('[data-property="Included"] td', { hasText: "TRUE" }).waitFor();
  }));

test("4,000 ports are seen within a second and scroll smoothly", () =>
  on(many(path.join(folder, "many.json"), 4000), async (open) => {
    await (await open()).locator(".port").first().waitFor();
    const page = await open();
    const { sight, frames } = await smoothnessOf(page);
    console.log(`first sight ${sight.toFixed(0)} ms, frames: median ${frames[30].toFixed(0)} ms, longest ${frames[59].toFixed(0)} ms`);
    assert.ok(sight < 1000, `first sight after ${sight} ms`);
    assert.ok(frames[30] < 50, `frames of ${frames[30]} ms`);
    assert.match(await page.locator("#lost").textContent(), /^100 ports have no link/);
  }));

test("it is looked at in three sizes, light and dark", () =>
  on(busy(path.join(folder, "picture.json"), 16), async (open) => {
    const kinds = [];
    for (const colorScheme of ["light", "dark"]) {
      for (const [width, height] of [[1440, 1000], [360, 780], [3840, 2160]]) kinds.push({ colorScheme, viewport: { width, height } });
    }
    const pages = [];
    for (const kind of kinds) pages.push([kind, await open(kind)]);
    await tile(pages[0][1], "eth2").and(pages[0][1].locator(".lost")).waitFor({ timeout: 40000 });
    await pages[0][1].waitForTimeout(9000);
    for (const [{ colorScheme, viewport }, page] of pages) {
      const { scrollWidth } = await page.evaluate(() => ({ scrollWidth: document.documentElement.scrollWidth }));
      assert.ok(scrollWidth <= viewport.width, `${scrollWidth} of ${viewport.width} pixels`);
      await page.screenshot({ path: path.join(pictures, `page-${colorScheme}-${viewport.width}.png`) });
      await tile(page, "eth4").locator(".face").click();
      await page.locator("#detail table tr").first().waitFor();
      await page.waitForTimeout(300);
      await page.screenshot({ path: path.join(pictures, `instance-${colorScheme}-${viewport.width}.png`) });
    }
  }));
