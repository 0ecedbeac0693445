// The pages that the command line writes.
import assert from "node:assert/strict";
import { execFileSync, spawnSync } from "node:child_process";
import { copyFileSync, existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import test, { after, before } from "node:test";
import { pathToFileURL } from "node:url";
import type { Browser } from "playwright-core";
import { launch, open, saved } from "./browser.js";
import { orvex, program, sample } from "./support.js";

let browser: Browser;
let folder: string;
before(async () => {
  browser = await launch();
  folder = mkdtempSync(join(tmpdir(), "orvex-chart-"));
});
after(async () => {
  await browser.close();
  rmSync(folder, { recursive: true, force: true });
});

test("prices and studies are in the page, one study computed from another", async () => {
  const page = join(folder, "page.html");
  orvex("chart", sample, "Oscillator.MACD", "ShortCycle=8", "--", "MovingAverage.SimpleMovingAverage", "Source=MACD", "Periods=5", "--", "CandleStick.IdentifyPattern", "-o", page);
  const opened = await open(browser, "", {}, page);
  assert.match(await opened.page.locator(".file").innerText(), /prices.csv\s+500 records/);
  assert.match(await opened.page.locator(".legends").innerText(), /MACD 8 26 9/);
  await opened.page.locator(".studies .name").nth(1).click();
  const file = await saved(opened.page, () => opened.page.getByRole("button", { name: "CSV of this study" }).click());
  const chained = join(folder, "chained.csv");
  writeFileSync(chained, orvex("run", "Oscillator.MACD", sample, "ShortCycle=8", "--append", "--format", "csv"));
  assert.equal(file.bytes.toString(), orvex("run", "MovingAverage.SimpleMovingAverage", chained, "Source=MACD", "Periods=5", "--format", "csv"));
  assert.deepEqual(opened.faults, []);
  assert.deepEqual(opened.requests, []);
});

test("a frame within another page runs the chart, and neither sees the other", async () => {
  const page = join(folder, "framed.html");
  orvex("chart", sample, "MACD", "-o", page);
  const notebook = join(folder, "notebook.html");
  const escaped = readFileSync(page, "utf8").replaceAll("&", "&amp;").replaceAll('"', "&quot;");
  writeFileSync(notebook, `<!doctype html><meta charset="utf-8"><iframe srcdoc="${escaped}" sandbox="allow-scripts allow-downloads allow-modals" style="width: 100%; height: 640px"></iframe>`);
  const tab = await browser.newPage();
  const faults: string[] = [];
  tab.on("pageerror", (error) => faults.push(String(error)));
  await tab.goto(pathToFileURL(notebook).href);
  const frame = tab.frameLocator("iframe");
  await frame.locator("html[data-ready]").waitFor();
  assert.match(await frame.locator(".legends").innerText(), /MACD/);
  await frame.getByRole("link", { name: "Reference" }).click();
  await frame.getByRole("link", { name: "MACD", exact: true }).first().click();
  assert.match(await frame.locator("h1").innerText(), /MACD/);
  assert.deepEqual(faults, []);
  await tab.close();
});

test("no cell and no name becomes part of the page", async () => {
  const evil = "</script><script>window.injected=1</script><!--";
  const prices = join(folder, "<img src=x onerror=window.injected=1>.csv");
  writeFileSync(prices, [`Date,Open,High,Low,Close,"${evil}"`, ...Array.from({ length: 40 }, (_, i) => `2024-01-${String((i % 28) + 1).padStart(2, "0")},1,2,1,${1 + (i % 7)},${evil}`).slice(0, 28)].join("\n"));
  const page = join(folder, "evil.html");
  orvex("chart", prices, "-o", page);
  const text = readFileSync(page, "utf8");
  assert.ok(!text.includes(evil));
  const opened = await open(browser, "", {}, page);
  assert.match(await opened.page.locator(".file").innerText(), /28 records/);
  assert.equal(await opened.page.evaluate("window.injected"), undefined);
  assert.deepEqual(opened.faults, []);
});

test("what cannot be written is told, and nothing is overwritten that is no chart", () => {
  const run = (...words: string[]) => spawnSync(program, ["chart", ...words], { encoding: "utf8", cwd: folder });
  copyFileSync(sample, join(folder, "mine.csv"));
  writeFileSync(join(folder, "mine.html"), "my own page");
  for (const [words, status, told] of [
    [["mine.csv"], 2, /mine\.html is there/],
    [["mine.csv", "Oscillator.MCAD", "-o", "x.html"], 2, /MACD/],
    [["mine.csv", "Oscillator.MACD", "Short=8", "-o", "x.html"], 2, /ShortCycle/],
    [["mine.csv", "Oscillator.MACD", "ShortCycle=0", "-o", "x.html"], 1, /Oscillator\.MACD/],
    [["mine.csv", "Oscillator.MACD", "--", "-o", "x.html"], 2, /no method/],
    [["none.csv", "-o", "x.html"], 1, /none\.csv/],
    [["mine.csv", "-o", "no/such/folder/x.html"], 1, /could not be written/],
  ] as const) {
    const ended = run(...words);
    assert.equal(ended.status, status, ended.stderr);
    assert.match(ended.stderr, told);
    assert.ok(!existsSync(join(folder, "x.html")));
  }
  assert.equal(readFileSync(join(folder, "mine.html"), "utf8"), "my own page");
  rmSync(join(folder, "mine.html"));
  assert.equal(run("mine.csv").stdout, "mine.html\n");
  assert.equal(run("mine.csv").status, 0);

  // From a pipe to a pipe.
  const page = execFileSync(program, ["chart", "-", "-o", "-"], { input: readFileSync(sample), encoding: "utf8", maxBuffer: 1 << 26 });
  assert.equal(page, readFileSync(join(folder, "mine.html"), "utf8").replace('"name":"mine.csv"', '"name":"prices.csv"'));
});
