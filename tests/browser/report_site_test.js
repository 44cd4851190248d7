// Writes a report site with the built kestro tool, serves it on loopback and works it in
// headless Chromium: navigation between frames, column sort, the help tip, styles and images.
//
// usage: node report_site_test.js KESTRO_TOOL ARTEFACT_DIR

"use strict";

const assert = require("node:assert/strict");
const { spawnSync } = require("node:child_process");
const fs = require("node:fs");
const http = require("node:http");
const os = require("node:os");
const path = require("node:path");

function loadPlaywright() {
  try {
    return require("playwright-core");
  } catch (error) {
    console.error("playwright-core is not installed: run `npm ci` in tests/browser (scripts/test.sh does)");
    throw error;
  }
}

const { chromium } = loadPlaywright();

const CHROMIUM = "/usr/bin/chromium";
const FIXTURE = path.join(__dirname, "fixtures", "windows_events.xml");
const CONTENT_TYPES = {
  ".html": "text/html; charset=utf-8",
  ".css": "text/css",
  ".js": "text/javascript",
  ".png": "image/png",
  ".gif": "image/gif",
  ".txt": "text/plain",
};

function runTool(tool, args, env) {
  const run = spawnSync(tool, args, { encoding: "utf8", env: { ...process.env, ...env } });
  assert.equal(run.status, 0, `kestro ${args[0]} failed:\n${run.stdout}${run.stderr}`);
}

// A site from the fixture file, and one from a live inventory of a host root that says it is RHEL.
function writeSites(tool, artefacts) {
  const sites = { report: path.join(artefacts, "site"), inventory: path.join(artefacts, "inventory") };
  for (const site of Object.values(sites)) fs.rmSync(site, { recursive: true, force: true });
  runTool(tool, ["report", FIXTURE, "--output", sites.report]);
  const root = fs.mkdtempSync(path.join(os.tmpdir(), "kestro-root-"));
  fs.mkdirSync(path.join(root, "etc"));
  fs.writeFileSync(path.join(root, "etc", "os-release"), "ID=rhel\n");
  runTool(tool, ["inventory", "--output", sites.inventory], { KESTRO_ROOT: root });
  fs.rmSync(root, { recursive: true, force: true });
  return sites;
}

// Serves the site folder; anything outside it, or missing, is a 404.
function serve(root) {
  const server = http.createServer((request, response) => {
    const relative = decodeURIComponent(new URL(request.url, "http://x").pathname);
    const file = path.join(root, path.normalize(relative));
    if (!file.startsWith(root + path.sep) || !fs.existsSync(file) || !fs.statSync(file).isFile()) {
      response.writeHead(404);
      response.end();
      return;
    }
    response.writeHead(200, { "Content-Type": CONTENT_TYPES[path.extname(file)] || "application/octet-stream" });
    fs.createReadStream(file).pipe(response);
  });
  return new Promise((resolve) => server.listen(0, "127.0.0.1", () => resolve(server)));
}

async function frameNamed(page, name, fileName) {
  for (let i = 0; i < 100; i++) {
    const frame = page.frame({ name });
    if (frame && frame.url().endsWith(fileName)) {
      await frame.waitForLoadState("load");
      return frame;
    }
    await page.waitForTimeout(100);
  }
  throw new Error(`frame ${name} never showed ${fileName}`);
}

async function columnTexts(table, column) {
  return table.evaluate(
    (element, index) =>
      Array.from(element.rows)
        .filter((row) => row.querySelector("td"))
        .map((row) => row.cells[index].textContent.trim()),
    column);
}

async function checkSorting(content) {
  const table = content.locator("table.sortable").first();
  const headings = await table.locator("th").allTextContents();
  const eventId = headings.indexOf("Event ID");
  const source = headings.indexOf("Source");
  const category = headings.indexOf("Category");
  assert.ok(eventId >= 0 && source >= 0 && category >= 0, `headings: ${headings}`);

  assert.deepEqual(await columnTexts(table, eventId), ["9", "100", "20", "1000", "3"], "file order first");
  await table.locator("th").nth(eventId).click();
  assert.deepEqual(await columnTexts(table, eventId), ["3", "9", "20", "100", "1000"], "numbers ascend by value");
  await table.locator("th").nth(eventId).click();
  assert.deepEqual(await columnTexts(table, eventId), ["1000", "100", "20", "9", "3"], "second click reverses");

  await table.locator("th").nth(source).click();
  assert.deepEqual(await columnTexts(table, source),
                   ["Application Error", "Disk", "Kernel-General", "Service Control Manager", "Time-Service"]);
  // Rows move whole, and the stripes follow the new order.
  assert.deepEqual(await columnTexts(table, eventId), ["3", "100", "1000", "9", "20"]);

  // Signs, decimals and thousands separators count as numbers; empty cells stay last.
  await table.locator("th").nth(category).click();
  assert.deepEqual(await columnTexts(table, category), ["-1", "2.5", "10", "1,024", ""]);
  await table.locator("th").nth(category).click();
  assert.deepEqual(await columnTexts(table, category), ["1,024", "10", "2.5", "-1", ""]);
  const stripes = await table.evaluate((element) =>
    Array.from(element.rows).filter((row) => row.querySelector("td")).map((row) => row.className));
  assert.deepEqual(stripes, ["bg0", "bg1", "bg0", "bg1", "bg0"]);
}

async function checkToolTip(content) {
  // The first button belongs to the page title, the second to the event table.
  const button = content.locator("button.questionmark").nth(1);
  const tip = content.locator("div.tooltip").nth(1);
  assert.equal(await tip.isVisible(), false, "the style sheet hides tips until asked");
  await button.click();
  assert.equal(await tip.isVisible(), true, "the tip shows on a click");
  assert.equal(await tip.textContent(), "Entries of the application event log of the fixture host.");
  const [buttonBox, tipBox] = [await button.boundingBox(), await tip.boundingBox()];
  assert.ok(tipBox.y >= buttonBox.y + buttonBox.height, "the tip opens below its button");
}

async function checkImages(frame) {
  const broken = await frame.evaluate(() =>
    Array.from(document.images)
      .filter((image) => !image.complete || image.naturalWidth === 0)
      .map((image) => image.src));
  assert.deepEqual(broken, [], "every image decodes");
  return frame.evaluate(() => document.images.length);
}

// Opens index.html of the site at `base` and records failed requests and script errors.
async function openSite(browser, base) {
  const page = await browser.newPage();
  const problems = [];
  page.on("requestfailed", (request) => problems.push("failed: " + request.url()));
  page.on("response", (response) => response.status() >= 400 && problems.push("missing: " + response.url()));
  page.on("pageerror", (error) => problems.push("script: " + error.message));
  await page.goto(base + "/index.html");
  return { page, problems };
}

async function checkReportSite(browser, base, artefacts) {
  const { page, problems } = await openSite(browser, base);
  const header = await frameNamed(page, "header_frame", "header.html");
  assert.equal(await checkImages(header), 1, "the banner shows its logo");
  await frameNamed(page, "content_frame", "system_overview.html");

  const navigator = await frameNamed(page, "navigator_frame", "navigator.html");
  await navigator.locator('a[href="application_event.html"]').click();
  const content = await frameNamed(page, "content_frame", "application_event.html");
  assert.equal(await content.locator(".pagetitle").first().evaluate((e) => getComputedStyle(e).color),
               "rgb(255, 255, 255)", "the style sheet is applied");

  await checkSorting(content);
  assert.equal(await checkImages(content), 5, "one severity icon a row");
  await checkToolTip(content);
  await page.screenshot({ path: path.join(artefacts, "report-site.png") });

  // The title links to the full log, a page the navigator does not list.
  await content.locator(".pagetitle a.cyan").click();
  const full = await frameNamed(page, "content_frame", "application_event_all.html");
  assert.match(await full.locator(".pagetitle").textContent(), /Application Event \(All\)/);
  assert.deepEqual(problems, []);
}

async function checkInventorySite(browser, base, artefacts) {
  const { page, problems } = await openSite(browser, base);
  const overview = await frameNamed(page, "content_frame", "system_overview.html");
  assert.deepEqual(await overview.locator(".tabletitle").allTextContents(), ["Data Source"]);
  assert.equal(await overview.locator("table.coltable th").first().textContent(), "Name");

  // Groups with data link to their page; the others stay plain text in the list.
  const navigator = await frameNamed(page, "navigator_frame", "navigator.html");
  const links = await navigator.locator("#navigator a")
    .evaluateAll((anchors) => anchors.map((a) => a.getAttribute("href")));
  assert.ok(links.includes("system_overview.html"), `links: ${links}`);
  assert.ok((await navigator.locator("#navigator td").count()) > links.length, "empty groups are listed too");
  await navigator.locator('a[href="system_overview.html"]').click();
  await frameNamed(page, "content_frame", "system_overview.html");
  await page.screenshot({ path: path.join(artefacts, "inventory-site.png") });
  assert.deepEqual(problems, []);
}

async function main() {
  const [tool, artefacts] = process.argv.slice(2);
  assert.ok(tool && artefacts, "usage: node report_site_test.js KESTRO_TOOL ARTEFACT_DIR");
  assert.ok(fs.existsSync(CHROMIUM), `${CHROMIUM} is missing; scripts/install-deps.sh installs it`);
  const out = path.resolve(artefacts);
  fs.mkdirSync(out, { recursive: true });
  const sites = writeSites(tool, out);

  const servers = { report: await serve(sites.report), inventory: await serve(sites.inventory) };
  const base = (server) => `http://127.0.0.1:${server.address().port}`;
  const profile = fs.mkdtempSync(path.join(os.tmpdir(), "kestro-chromium-"));
  const browser = await chromium.launchPersistentContext(profile, {
    executablePath: CHROMIUM,
    headless: true,
    viewport: { width: 1366, height: 768 },
    args: ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync"],
  });
  try {
    await checkReportSite(browser, base(servers.report), out);
    await checkInventorySite(browser, base(servers.inventory), out);
  } finally {
    await browser.close();
    for (const server of Object.values(servers)) server.close();
    fs.rmSync(profile, { recursive: true, force: true });
  }
  console.log("report sites work in Chromium; screenshots in " + out);
}

main().catch((error) => {
  console.error(error);
  process.exit(1);
});
