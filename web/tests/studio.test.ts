// The studio as a person uses it: in Debian's Chromium, opened from a disk.
import type { AxeResults } from "axe-core";
import assert from "node:assert/strict";
import { copyFileSync, mkdtempSync, readFileSync, rmSync, truncateSync, writeFileSync } from "node:fs";
import { type AddressInfo, createServer } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import test, { after, before } from "node:test";
import { gzipSync } from "node:zlib";
import type { Browser, Page } from "playwright-core";
import { addIndicator, choose, launch, open, saved } from "./browser.js";
import { orvex, root, sample } from "./support.js";

let browser: Browser;
let folder: string;
before(async () => {
  browser = await launch();
  folder = mkdtempSync(join(tmpdir(), "orvex-studio-"));
});
after(async () => {
  await browser.close();
  rmSync(folder, { recursive: true, force: true });
});

const legend = (page: Page): Promise<string> => page.locator(".legends").innerText();
const notices = (page: Page): Promise<string> => page.locator(".notices").innerText();
const facts = (page: Page): Promise<string> => page.locator(".file").innerText();

/** Rows as a file has them, from date, open, high, low, close, volume: prices that rise and fall. */
function rows(count: number, join: (cells: readonly string[]) => string, date = (i: number) => new Date(Date.UTC(2024, 0, 1 + i)).toISOString().slice(0, 10)): string[] {
  return Array.from({ length: count }, (_, i) => join([date(i), ...[100, 102, 99, 101].map((price) => (price + i / 4 + 3 * (i % 3)).toFixed(2)), String(1000 + i)]));
}

test("it opens from a disk, shows the sample and asks nobody for anything", async () => {
  const { page, requests, faults } = await open(browser);
  assert.match(await facts(page), /500 records/);
  assert.ok((await page.locator("canvas").count()) > 2);
  await addIndicator(page, "macd");
  assert.deepEqual(requests, []);
  // Nothing that could get into the page reaches anybody either.
  let heard = 0;
  const server = createServer((socket) => {
    ++heard;
    socket.destroy();
  });
  await new Promise<void>((ready) => server.listen(0, "127.0.0.1", ready));
  await page.evaluate(async (address) => {
    await fetch(address).catch(() => undefined);
    new Image().src = `${address}x.png`;
    document.body.append(Object.assign(document.createElement("script"), { textContent: "window.injected = 1" }));
    document.body.append(Object.assign(document.createElement("script"), { src: `${address}x.js` }));
    navigator.sendBeacon(address, "prices");
    await new Promise((done) => setTimeout(done, 200));
  }, `http://127.0.0.1:${(server.address() as AddressInfo).port}/`);
  server.close();
  assert.equal(heard, 0);
  assert.equal(await page.evaluate("window.injected"), undefined);
  // What the policy held back is told on the console, and nothing else is.
  assert.ok(faults.length > 0 && faults.every((fault) => fault.includes("Content Security Policy") || fault.includes("Fetch API cannot load")), faults.join("\n"));
});

test("every kind of file is read, with the remarks and errors of the reader", async () => {
  const { page, faults } = await open(browser);
  const header = "Date,Open,High,Low,Close,Volume";
  const plain = [header, ...rows(60, (cells) => cells.join(","))].join("\n");
  const semicolons = ["Datum;Eröffnung;Hoch;Tief;Schluss;Volumen", ...rows(61, (cells) => cells.map((cell) => cell.replace(".", ",")).join(";"))].join("\r\n");
  const newestFirst = [header, ...rows(62, (cells) => cells.join(",")).reverse()].join("\n");
  const kinds: [string, string | Buffer, RegExp, RegExp | undefined][] = [
    ["plain.csv", plain, /60 records · 2024-01-01/, undefined],
    ["comma.csv", semicolons, /61 records/, undefined],
    ["newest.csv", newestFirst, /62 records · 2024-01-01/, /newest|revers/i],
    ["packed.csv.gz", gzipSync(plain), /packed.csv\s+60 records/, undefined],
    ["wide.txt", Buffer.from(`\ufeff${plain}`, "utf16le"), /60 records/, undefined],
  ];
  for (const [name, content, shown, remark] of kinds) {
    await choose(page, name, content);
    await page.waitForFunction((text) => document.querySelector(".file-name")?.textContent === text, name.replace(/\.gz$/, ""));
    assert.match(await facts(page), shown, name);
    if (remark) assert.match(await notices(page), remark, name);
    else assert.equal(await notices(page), "", name);
  }
  const shownBefore = await facts(page);
  const broken: [string, string | Buffer, RegExp][] = [
    ["binary.csv", Buffer.from(Uint8Array.from({ length: 4096 }, (_, i) => (i * 7919) % 256)), /binary.csv: /],
    ["words.csv", "to be or not to be\nthat is the question\n", /words.csv: /],
    ["empty.csv", "", /empty.csv: /],
    ["gap.csv", [header, ...rows(30, (cells) => cells.join(",")).map((row, i) => (i === 9 ? "2024-01-10,1,2,0.5,,100" : row))].join("\n"), /line 11/],
  ];
  for (const [name, content, error] of broken) {
    await choose(page, name, content);
    await page.waitForFunction((text) => document.querySelector(".notices")?.textContent?.includes(text), name);
    assert.match(await notices(page), error, name);
    assert.equal(await facts(page), shownBefore, `${name} leaves what was there`);
  }
  await page.getByRole("button", { name: "Leave such records out" }).click();
  assert.match(await facts(page), /gap.csv\s+29 records/);

  await page.getByRole("button", { name: "Paste prices as text" }).click();
  await page.fill("#pasted", plain);
  await page.getByRole("button", { name: "Show", exact: true }).click();
  assert.match(await facts(page), /pasted.csv\s+60 records/);
  assert.deepEqual(faults, []);
});

test("add, change, chain, hide, recolour and remove indicators", async () => {
  const { page, faults } = await open(browser);
  await addIndicator(page, "simple moving average");
  await page.fill("[name=Periods]", "20");
  const last = orvex("run", "MovingAverage.SimpleMovingAverage", sample, "Source=Close", "Periods=20", "--last", "1").trim().split(",").at(-1)!;
  assert.ok((await legend(page)).includes(Number(last).toFixed(4).replace(/0+$/, "")), `${await legend(page)} has ${last}`);

  await addIndicator(page, "exponential moving average");
  await page.selectOption("[name=Source]", { label: "SimpleMovingAverage of SMA 20" });
  await page.fill("[name=Periods]", "5");
  // The same by the command line: the average's empty rows are not values.
  const chained = join(folder, "chained.csv");
  writeFileSync(chained, orvex("run", "MovingAverage.SimpleMovingAverage", sample, "Source=Close", "Periods=20", "--append", "--warmup", "blank", "--format", "csv"));
  const expected = orvex("run", "MovingAverage.ExponentialMovingAverage", chained, "Source=SimpleMovingAverage", "Periods=5", "--format", "csv", "--warmup", "blank");
  const file = await saved(page, () => page.getByRole("button", { name: "CSV of this study" }).click());
  assert.equal(file.bytes.toString(), expected);

  // A change of the first reaches the second.
  await page.locator(".studies .name").first().click();
  await page.fill("[name=Periods]", "30");
  await page.locator(".studies .name").nth(1).click();
  const moved = await saved(page, () => page.getByRole("button", { name: "CSV of this study" }).click());
  assert.notEqual(moved.bytes.toString(), expected);

  await page.locator(".colour input").first().fill("#ff0000");
  assert.equal(await page.locator(".legend .value").last().evaluate((element) => getComputedStyle(element).color), "rgb(255, 0, 0)");
  await page.locator(".studies li").first().getByRole("button", { name: /^Hide/ }).click();
  assert.ok(await page.locator(".studies li.off").count());
  await page.locator(".studies li").first().getByRole("button", { name: /^Remove/ }).click();
  assert.match(await page.locator(".problem").innerText(), /was removed/);
  await page.selectOption("[name=Source]", "Close");
  assert.equal(await page.locator(".problem:visible").count(), 0);
  assert.deepEqual(faults, []);
});

test("an argument that cannot be is told beside the form, and forgotten when it is mended", async () => {
  const { page } = await open(browser);
  await addIndicator(page, "bollinger");
  await page.fill("[name=Periods]", "0");
  assert.match(await page.locator(".problem").innerText(), /Bands\.BollingerBands/);
  await page.fill("[name=Periods]", "2.5");
  assert.match(await page.locator(".problem").innerText(), /whole number/);
  await page.fill("[name=Periods]", "10");
  assert.equal(await page.locator(".problem:visible").count(), 0);
});

test("tables are the command line's bytes, pictures are pictures", async () => {
  const { page } = await open(browser);
  await addIndicator(page, "macd");
  const one = await saved(page, () => page.getByRole("button", { name: "CSV of this study" }).click());
  assert.equal(one.bytes.toString(), orvex("run", "Oscillator.MACD", sample, "--format", "csv", "--warmup", "blank"));
  await page.getByRole("button", { name: "Save", exact: true }).click();
  const all = await saved(page, () => page.getByRole("menuitem", { name: /^CSV/ }).click());
  assert.equal(all.bytes.toString(), orvex("run", "Oscillator.MACD", sample, "--append", "--format", "csv", "--warmup", "blank"));
  await page.getByRole("button", { name: "Save", exact: true }).click();
  const picture = await saved(page, () => page.getByRole("menuitem", { name: /^PNG/ }).click());
  assert.equal(picture.bytes.subarray(1, 4).toString(), "PNG");
  assert.ok(picture.bytes.length > 10_000);
});

test("an address and a saved page bring a chart back", async () => {
  const { page } = await open(browser);
  await addIndicator(page, "macd");
  await page.fill("[name=ShortCycle]", "8");
  await addIndicator(page, "rsi");
  await page.getByRole("button", { name: "Line", exact: true }).click();
  await page.getByRole("button", { name: "Log", exact: true }).click();
  await page.waitForFunction(() => location.hash.includes("ShortCycle=8") && location.hash.includes("scale=log"));
  const shown = await page.locator(".studies").innerText();
  const values = await legend(page);
  await page.reload();
  await page.waitForSelector("html[data-ready]");
  assert.equal(await page.locator(".studies").innerText(), shown);
  assert.equal(await legend(page), values);
  assert.equal(await page.getByRole("button", { name: "Line", exact: true }).getAttribute("aria-pressed"), "true");

  await choose(page, "</script><script>window.injected=1</script>.csv", ["Date,Open,High,Low,Close,<img src=x onerror=window.injected=1>", ...rows(60, (cells) => [...cells.slice(0, 5), "</script><script>window.injected=1</script>"].join(","))].join("\n"));
  await page.waitForFunction(() => document.querySelector(".file-facts")?.textContent?.startsWith("60"));
  await page.getByRole("button", { name: "Save", exact: true }).click();
  const file = await saved(page, () => page.getByRole("menuitem", { name: /^Page/ }).click());
  const copy = join(folder, "saved.html");
  copyFileSync(file.path, copy);
  const again = await open(browser, "", {}, copy);
  assert.match(await facts(again.page), /60 records/);
  assert.equal(await again.page.locator(".studies").innerText(), shown);
  assert.equal(await again.page.evaluate("window.injected"), undefined);
  assert.deepEqual(again.faults, []);
});

/** The first records of a file in a file of their own. */
function beginning(file: string, count: number): string {
  const path = join(folder, `first-${count}.csv`);
  writeFileSync(path, readFileSync(file, "utf8").split("\n").slice(0, count).join("\n") + "\n");
  return path;
}

test("a file is replayed record after record, and what is drawn is what a call on the records so far gives", async () => {
  const { page, faults } = await open(browser);
  const come = async (): Promise<number> => Number(await page.locator(".replay .place").inputValue());
  const exported = async (): Promise<string> => (await saved(page, () => page.getByRole("button", { name: "CSV of this study" }).click())).bytes.toString();
  const expected = (count: number, ...words: string[]): string => orvex("run", words[0]!, beginning(sample, count), ...words.slice(1), "--format", "csv", "--warmup", "blank");

  await addIndicator(page, "macd");
  await addIndicator(page, "williams %r");
  await addIndicator(page, "exponential moving average");
  await page.selectOption("[name=Source]", { label: "MACDSignal of MACD 12 26 9" });
  await page.fill("[name=Periods]", "5");
  await addIndicator(page, "identify pattern");
  await page.getByRole("button", { name: "Replay", exact: true }).click();
  assert.equal(await come(), 250);
  assert.match(await legend(page), /2019-12-17/);
  assert.match(await page.locator(".replay-facts").innerText(), /250 of 500/);

  // One by one, by the keyboard.
  await page.getByRole("button", { name: "One record on" }).focus();
  for (let i = 0; i < 3; ++i) await page.keyboard.press("Enter");
  assert.equal(await come(), 253);
  assert.match(await page.locator(".stage [aria-live]").innerText(), /^Record 253 of 500/);
  const words = ["Oscillator.MACD"];
  await page.locator(".studies .name").first().click();
  assert.equal(await exported(), expected(253, ...words));

  // By itself, at a speed.
  await page.selectOption("[aria-label=Speed]", "100");
  await page.getByRole("button", { name: "Play", exact: true }).click();
  await page.waitForFunction(() => Number(document.querySelector<HTMLInputElement>(".replay .place")!.value) > 290);
  await page.getByRole("button", { name: "Pause", exact: true }).click();
  const reached = await come();
  await page.waitForTimeout(100);
  assert.equal(await come(), reached);
  assert.equal(await exported(), expected(reached, ...words));
  await page.locator(".studies .name").nth(1).click();
  assert.equal(await exported(), expected(reached, "Oscillator.WilliamsPctR"));
  await page.locator(".studies .name").nth(2).click();
  const chained = join(folder, "signal.csv");
  writeFileSync(chained, orvex("run", "Oscillator.MACD", beginning(sample, reached), "--append", "--warmup", "blank", "--format", "csv"));
  assert.equal(await exported(), orvex("run", "MovingAverage.ExponentialMovingAverage", chained, "Source=MACDSignal", "Periods=5", "--format", "csv", "--warmup", "blank"));

  // Arguments change while it goes on, and the place is chosen, also backwards.
  await page.fill("[name=Periods]", "7");
  await page.locator(".replay .place").fill("120");
  assert.equal(await come(), 120);
  assert.match(await page.locator(".replay .place").getAttribute("aria-valuetext") ?? "", /^Record 120 of 500, 2019-/);
  await page.locator(".studies .name").first().click();
  await page.fill("[name=ShortCycle]", "8");
  await page.getByRole("button", { name: "One record on" }).click();
  assert.equal(await exported(), expected(121, "Oscillator.MACD", "ShortCycle=8"));

  // To the end, where it stops.
  await page.locator(".replay .place").fill("470");
  await page.selectOption("[aria-label=Speed]", "500");
  await page.getByRole("button", { name: "Play", exact: true }).click();
  await page.waitForFunction(() => document.querySelector<HTMLButtonElement>(".replay .play")!.disabled);
  assert.equal(await exported(), orvex("run", "Oscillator.MACD", sample, "ShortCycle=8", "--format", "csv", "--warmup", "blank"));
  await page.getByRole("button", { name: "End the replay" }).click();
  assert.equal(await page.locator(".replay").isVisible(), false);
  assert.match(await legend(page), /2020-12-/);

  // Another file ends it.
  await page.keyboard.press("r");
  assert.equal(await page.locator(".replay").isVisible(), true);
  await choose(page, "other.csv", ["Date,Open,High,Low,Close,Volume", ...rows(60, (cells) => cells.join(","))].join("\n"));
  await page.waitForFunction(() => document.querySelector(".file-facts")?.textContent?.startsWith("60"));
  assert.equal(await page.locator(".replay").isVisible(), false);
  assert.deepEqual(faults, []);
});

test("hostile files do no harm and get a clear word", async () => {
  const { page, faults } = await open(browser);
  const big = join(folder, "big.csv");
  writeFileSync(big, "Date,Close\n2024-01-01,1\n");
  truncateSync(big, 200 * 2 ** 20);
  await page.setInputFiles("input[type=file]", big);
  await page.waitForSelector(".notice.error");
  assert.match(await notices(page), /200 MB/);
  await choose(page, "bomb.csv.gz", gzipSync(Buffer.alloc(100 * 2 ** 20)));
  await page.waitForFunction(() => document.querySelector(".notices")?.textContent?.includes("bomb"));
  assert.match(await notices(page), /64 MB/);
  const many = Array.from({ length: 1_000_000 }, (_, i) => `c${i}`).join(",");
  await choose(page, "columns.csv", `${many}\n${"1,".repeat(999_999)}1\n`);
  await page.waitForFunction(() => document.querySelector(".notices")?.textContent?.includes("columns.csv"), undefined, { timeout: 60_000 });
  assert.match(await notices(page), /columns/);
  assert.match(await facts(page), /500 records/);
  await addIndicator(page, "rsi");
  assert.match(await legend(page), /RSI|Relative/);
  assert.deepEqual(faults, []);
});

test("everything can be done with the keyboard alone", async () => {
  const { page } = await open(browser);
  await page.keyboard.press("/");
  await page.keyboard.type("bands");
  await page.keyboard.press("ArrowDown");
  await page.keyboard.press("Enter");
  // The first field of the form has the focus.
  assert.ok(await page.evaluate(() => document.activeElement?.closest(".fields") !== null));
  await page.locator(".stage").focus();
  await page.keyboard.press("Home");
  assert.match(await legend(page), /2019-01-02/);
  await page.keyboard.press("Shift+ArrowRight");
  assert.match(await page.locator("[aria-live]").innerText(), /Record 11/);
  await page.keyboard.press("t");
  assert.match(await page.locator(".values .current").innerText(), /^11\b/);
  await page.getByRole("button", { name: "Save", exact: true }).focus();
  await page.keyboard.press("Enter");
  await page.keyboard.press("ArrowDown");
  assert.match(await page.evaluate(() => document.activeElement?.textContent ?? ""), /^CSV/);
  await page.keyboard.press("Escape");
  assert.equal(await page.locator(".menu").isVisible(), false);
});

test("each calculation has a page, and the index leads to it", async () => {
  const { page, faults } = await open(browser, "#/indicators");
  await page.getByRole("link", { name: "MACD", exact: true }).first().click();
  // The page changes behind the click, when the browser tells of the new address.
  await page.locator("h1", { hasText: "MACD" }).waitFor();
  assert.match(await page.locator(".reference").innerText(), /Oscillator\.MACD/);
  for (const [language, call] of [
    ["Python", /ox\.macd\(/],
    ["C++", /orvex\/oscillators\/oscillator\.h/],
    ["JavaScript", /macd\(/],
    ["Command line", /orvex run Oscillator\.MACD/],
    ["VBScript", /CreateObject\("Orvex\.Oscillator"\)/],
    ["VBA", /As New Orvex\.Oscillator/],
  ] as const) {
    await page.selectOption("select[aria-label=Language]", language);
    assert.match(await page.locator(".calls code").innerText(), call, language);
  }
  await page.getByRole("button", { name: "Add to the chart" }).click();
  assert.match(await legend(page), /MACD/);
  const all = await page.evaluate(async () => {
    const links: string[] = [];
    location.hash = "#/indicators";
    await new Promise((done) => setTimeout(done, 100));
    for (const link of document.querySelectorAll<HTMLAnchorElement>(".index-list a")) links.push(link.hash);
    return links;
  });
  assert.ok(all.length > 60);
  for (const hash of all) {
    await page.evaluate((to) => (location.hash = to), hash);
    await page.waitForFunction((name) => document.title.startsWith(name), hash.slice(2));
  }
  assert.deepEqual(faults, []);
});

test("nothing serious stands between the studio and those who do not see it", async () => {
  const source = readFileSync(`${root}web/node_modules/axe-core/axe.min.js`, "utf8");
  const check = async (page: Page, what: string): Promise<void> => {
    await page.evaluate(source).catch(() => undefined);
    const found = (await page.evaluate("axe.run(document, { resultTypes: ['violations'] })")) as AxeResults;
    const serious = found.violations.filter((violation) => violation.impact === "serious" || violation.impact === "critical");
    assert.deepEqual(serious.map((violation) => `${violation.id}: ${violation.nodes.map((node) => node.html).join(" ")}`), [], what);
  };
  for (const colorScheme of ["light", "dark"] as const) {
    const { page } = await open(browser, "", { colorScheme, bypassCSP: true });
    await addIndicator(page, "macd");
    await addIndicator(page, "bollinger");
    await page.fill("[name=Periods]", "0");
    await page.keyboard.press("Tab");
    await page.getByRole("button", { name: "Table", exact: true }).click();
    await check(page, `${colorScheme}, chart`);
    await page.getByRole("button", { name: "Replay", exact: true }).click();
    await check(page, `${colorScheme}, replay`);
    await page.evaluate(() => (document.activeElement as HTMLElement).blur());
    await page.keyboard.press("/");
    await check(page, `${colorScheme}, list`);
    await page.keyboard.press("Escape");
    await page.evaluate(() => (location.hash = "#/Bands.BollingerBands"));
    await page.waitForSelector(".article");
    await check(page, `${colorScheme}, page`);
    await page.evaluate(() => (location.hash = "#/indicators"));
    await page.waitForSelector(".index");
    await check(page, `${colorScheme}, index`);
  }
});

test("a narrow screen has everything, and does not scroll sideways", async () => {
  const { page } = await open(browser, "", { viewport: { width: 390, height: 844 } });
  await addIndicator(page, "rsi");
  assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 390);
  assert.ok(await page.locator("[name=Periods]").isVisible());
  const box = async (part: string): Promise<{ y: number; height: number }> => (await page.locator(part).boundingBox())!;
  assert.ok((await box(".canvas")).height > 250);
  await page.getByRole("button", { name: "Replay", exact: true }).click();
  assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 390);
  const above = await box(".spans");
  assert.ok((await box(".panel")).y >= above.y + above.height, "nothing covers the list of indicators");
});
