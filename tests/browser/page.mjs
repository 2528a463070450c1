// A server that plays a recording, and a browser that looks at it.
import { spawn } from "node:child_process";
import { existsSync, mkdirSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import path from "node:path";
import { fileURLToPath } from "node:url";
import { chromium } from "playwright-core";

export const top = path.resolve(path.dirname(fileURLToPath(import.meta.url)), "../..");
const build = process.env.ZEB_BUILD ?? path.join(top, "build/optimized");
export const zebcim = path.join(build, "manager/zebcim");
export const plugin = path.join(build, "provider/libZEBEthernetPortProvider.so");
export const snapshot = (name) => path.join(top, "tests/data/snapshots", name);

/// Users are root and daemon, with the password "secret"; only root may write.
function configure(folder) {
  const password = path.join(folder, "password");
  mkdirSync(path.join(folder, "pam"));
  writeFileSync(password, "#!/bin/sh\n[ \"$(tr -d '\\0')\" = secret ]\n", { mode: 0o700 });
  writeFileSync(path.join(folder, "pam/zebcim"), `auth required pam_exec.so quiet expose_authtok ${password}\naccount required pam_permit.so\n`);
  const file = path.join(folder, "zebcim.toml");
  writeFileSync(file, `[access]\npam-folder = "${folder}/pam"\nwrite-group = "root"\n[state]\ndirectory = "${folder}/state"\n`);
  return file;
}

/// Ends with `stop`.
export async function serve(source) {
  const folder = mkdtempSync(path.join(tmpdir(), "zeb-page-"));
  const server = spawn(
    zebcim,
    ["--source", source, "--plugin", plugin, "serve", "--config", configure(folder), "--http", "127.0.0.1:0", "--https", "none"],
    { env: { ...process.env, ZEB_RUN_DIR: folder }, stdio: ["ignore", "pipe", "inherit"] },
  );
  let said = "";
  const address = await new Promise((resolve, reject) => {
    server.stdout.on("data", (bytes) => {
      const found = /http (\S+)\n/.exec((said += bytes));
      if (found) resolve(`http://${found[1]}/`);
    });
    server.once("exit", (code) => reject(new Error(`the server ended with ${code}: ${said}`)));
  });
  const stop = async () => {
    server.removeAllListeners("exit");
    const ended = new Promise((resolve) => server.once("exit", resolve));
    server.kill("SIGTERM");
    await ended;
    rmSync(folder, { recursive: true, force: true });
  };
  return { address, pid: server.pid, stop };
}

export async function launch() {
  const executablePath = process.env.ZEB_CHROMIUM ?? "/usr/bin/chromium";
  if (!existsSync(executablePath)) throw new Error(`there is no ${executablePath}`);
  // As root, as tests are run, the browser has no sandbox of its own; what it is shown comes from this test.
  return chromium.launch({ executablePath, args: ["--no-sandbox", "--disable-gpu"] });
}

/// A page that notes what goes wrong in it, and what it asks for elsewhere.
export async function look(browser, address, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
  const page = await context.newPage();
  page.wrong = [];
  page.on("console", (message) => {
    if (["error", "warning"].includes(message.type())) page.wrong.push(message.text());
  });
  page.on("pageerror", (error) => page.wrong.push(String(error)));
  page.on("request", (request) => {
    if (!request.url().startsWith(address)) page.wrong.push(`asked for ${request.url()}`);
  });
  await page.goto(address);
  await page.locator("#connection.live").waitFor();
  await page.locator(".card, .empty:text('No Ethernet')").first().waitFor();
  return page;
}
