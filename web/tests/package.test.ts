// The npm package as its users have it: what it computes, what it refuses, and that it is complete.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { cpSync, mkdtempSync, readFileSync, rmSync, symlinkSync, mkdirSync, writeFileSync } from "node:fs";
import { createServer } from "node:http";
import type { AddressInfo } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import test from "node:test";
import { pathToFileURL } from "node:url";
import type { Orvex } from "../package/src/index.js";
import { launch } from "./browser.js";
import { bits, built, bytes, orvex, root, sample } from "./support.js";

const { daysOf, LiveSeries, load, OrvexError } = (await import(pathToFileURL(`${built}/package/index.js`).href)) as typeof import("../package/src/index.js");
const library: Orvex = await load();
const { engine } = library;
const table = engine.readPrices(bytes(sample));
const prices = Object.fromEntries(table.columns.flatMap(({ name, values }) => (values instanceof Float64Array ? [[name, values]] : [])));
const close = prices["Close"]!;

test("an average is that of the records by hand", () => {
  const average = library.simpleMovingAverage([1, 2, 4, 8, 16], { periods: 2 });
  // Its first value stands in record P + 1.
  assert.deepEqual(bits(average), bits(Float64Array.of(NaN, NaN, 3, 6, 12)));
});

test("columns come by name, prices in an object, codes by name", () => {
  const { bollingerBandsTop: top, bollingerBandsMedian: median } = library.bollingerBands(close, { periods: 20, standardDeviations: 2, maType: "Exponential" });
  assert.equal(top.length, close.length);
  assert.deepEqual(bits(median), bits(library.exponentialMovingAverage({ close }, { periods: 20 })));
  const range = library.trueRange({ open: prices["Open"]!, high: prices["High"]!, low: prices["Low"]!, close, volume: prices["Volume"]! });
  assert.ok(Number.isNaN(range[0]!) && range.slice(1).every((value: number) => value > 0));
});

test("a column is any array of numbers, with null or undefined where there is none", () => {
  for (const column of [[null, 1, 2, 4, undefined], Float32Array.of(NaN, 1, 2, 4, NaN)]) {
    const average = library.simpleMovingAverage({ Close: column }, { periods: 1 });
    assert.deepEqual(bits(average), bits(Float64Array.of(NaN, NaN, 2, 4, NaN)));
    assert.deepEqual(bits(library.simpleMovingAverage(column, { periods: 1 })), bits(average));
  }
  assert.deepEqual(engine.readPrices(bytes(sample).buffer as ArrayBuffer), table);
  assert.deepEqual(bits(daysOf([null, 86_400])), bits(Float64Array.of(NaN, 1)));
});

test("sessions begin where days do, or a column changes", () => {
  const days = table.times.map((time) => Math.floor(time / 86_400));
  const volume = prices["Volume"]!;
  const typical = close.map((last, i) => (prices["High"]![i]! + prices["Low"]![i]! + last) / 3);
  const byDay = library.standard.vwap(prices, daysOf(table.times));
  assert.deepEqual(bits(byDay), bits(library.standard.vwap({ ...prices, Session: days })));
  // A day a record: each mean is of one record alone.
  byDay.forEach((value, i) => assert.ok(Math.abs(value - typical[i]!) < 1e-9 * value));
  const all = library.standard.vwap(prices, new Float64Array(close.length));
  const second = (typical[0]! * volume[0]! + typical[1]! * volume[1]!) / (volume[0]! + volume[1]!);
  assert.ok(Math.abs(all[1]! - second) < 1e-9 * second);
  assert.throws(() => library.standard.vwap(prices), /daysOf/);
});

test("results go in again: the next call begins where its source does", () => {
  const first = library.simpleMovingAverage(close, { periods: 10 });
  const second = library.simpleMovingAverage(first, { periods: 5 });
  const start = first.findIndex((value) => !Number.isNaN(value));
  const alone = library.simpleMovingAverage(first.slice(start), { periods: 5 });
  assert.deepEqual(bits(second.slice(start)), bits(alone));
  assert.equal(second.findIndex((value) => !Number.isNaN(value)), start + 5);
});

test("every calculation answers with its usual arguments, or with an error of the library", () => {
  const failed: string[] = [];
  for (const calculation of engine.calculations) {
    const name = `${calculation.class}.${calculation.name}`;
    const given: Record<string, unknown> = {};
    for (const argument of calculation.arguments) {
      if (argument.session) given[argument.name] = daysOf(table.times);
      if (argument.name === "TrendLine") given[argument.name] = "Close";
    }
    try {
      const outcome = engine.call(calculation, prices, given);
      assert.equal(outcome.columns.length, calculation.columns.length, name);
      outcome.columns.forEach(({ name: title, values, first, last }, i) => {
        assert.equal(title, calculation.columns[i]!.title, name);
        assert.equal(values.length, close.length, name);
        values.forEach((value, row) => assert.equal(Number.isNaN(value), row + 1 < first || row + 1 > last, `${name} ${title} row ${row + 1}`));
      });
    } catch (error) {
      assert.ok(error instanceof OrvexError, String(error));
      failed.push(name);
    }
  }
  // Those that need an argument for which nobody has a usual value.
  assert.ok(failed.length < engine.calculations.length / 10, failed.join(", "));
});

test("calculations are found wherever they come from", async () => {
  const average = engine.find("MovingAverage.SimpleMovingAverage")!;
  const expected = engine.call(average, { close }, { Periods: 5 });
  const other = await load();
  for (const same of [structuredClone(average), other.engine.find("SimpleMovingAverage")!]) {
    assert.deepEqual(engine.call(same, { close }, { Periods: 5 }), expected);
    assert.deepEqual(new LiveSeries(library, { close }).keep(same, { Periods: 5 }).columns, expected.columns);
  }
  const pattern = other.engine.find("CandleStick.IdentifyPattern")!;
  assert.ok(engine.callEach(pattern, pattern.arguments.find(({ record }) => record)!, prices).length > 0);
});

test("columns, texts and numbers are the command line's to the byte", () => {
  for (const [method, given] of [
    ["Oscillator.MACD", { ShortCycle: 12, LongCycle: 26, SignalPeriods: 9 }],
    ["Bands.BollingerBands", { Periods: 20, StandardDeviations: 2, MA_Type: 1 }],
    ["Oscillator.WilliamsPctR", { Periods: 14 }],
  ] as const) {
    const words = Object.entries(given).map(([name, value]) => `${name}=${value}`);
    const calculation = engine.find(method)!;
    const source = calculation.arguments.some((argument) => argument.type === "Field") ? ["Source=Close"] : [];
    const expected = orvex("run", method, sample, ...source, ...words, "--format", "csv", "--warmup", "blank");
    const { columns } = engine.call(calculation, prices, given);
    const dates = table.columns.find(({ name }) => name === "Date")!;
    assert.equal(engine.csv([dates, ...columns]), expected, method);
  }
});

test("errors carry what the library knows, and the next call is as if nothing had been", () => {
  assert.throws(
    () => library.simpleMovingAverage(close, { periods: 0 }),
    (error: unknown) => error instanceof OrvexError && error.number > 0 && error.source.includes("SimpleMovingAverage"),
  );
  assert.throws(() => library.simpleMovingAverage([1, null, 3, 4], { periods: 2 }), /record 2/);
  // The change of the fourth record is a share of the third.
  assert.throws(
    () => library.priceRoc([1, 2, 0, 4, 5], { periods: 1 }),
    (error: unknown) => error instanceof OrvexError && error.record === 4 && error.number === 1105 && /division by zero in record 4\./i.test(error.message),
  );
  assert.throws(() => library.simpleMovingAverage(close, { periods: 2.5 }), /whole number/);
  assert.throws(() => library.bollingerBands(close, { maType: "Best" as never }), /Simple/);
  assert.throws(() => library.simpleMovingAverage(close, { period: 20 } as never), /periods/);
  assert.throws(() => library.parabolicSar(close, close.slice(1)), /records/);
  assert.throws(() => library.averageTrueRange({ high: close, low: close }), OrvexError);
  const call = engine.call.bind(engine) as (...words: unknown[]) => unknown;
  const average = library.simpleMovingAverage as (...words: unknown[]) => unknown;
  const read = engine.readPrices.bind(engine) as (...words: unknown[]) => unknown;
  const cases: [() => unknown, RegExp][] = [
    [() => call(engine.find("nope"), { close }), /undefined is no calculation/],
    [() => call({ class: "No", name: "Method" }, { close }), /No\.Method is no calculation/],
    [() => call(engine.find("MACD"), { close }, 5), /Oscillator\.MACD takes its arguments in an object, .* it has Source, /],
    [() => call(engine.find("MACD"), { close }, { data: 1 }), /no argument "data"; it has Source/],
    [() => average(close, 5), /takes its options in an object, .* it has source, periods/],
    [() => average(close, close), /takes its options in an object/],
    [() => average(close, { periods: 5 }, 5), /nothing behind its options/],
    [() => average(close, { data: 1 }), /no option "data"; it has source, periods, alias/],
    [() => average(new Array(3e8)), /Out of memory/],
    [() => read("Close\n1\n", { delimeter: ";" }), /no option "delimeter"; it has delimiter, decimal, order, missing/],
    [() => read("Close\n1\n", { missing: "Skip" }), /missing must be "refuse", "skip" or "previous", not "Skip"/],
    [() => read("Close\n1\n", "skip"), /takes its options in an object/],
    [() => read(close), /a Uint8Array, an ArrayBuffer or a text/],
    [() => average("123"), /a column is an array/],
    [() => average({ Close: "123" }), /Close is no column: a column is an array/],
    [() => average([1, "2"]), /Source must be numbers, and has a string in record 2; Number/],
    [() => average(BigInt64Array.of(1n)), /has a bigint in record 1/],
  ];
  for (const [act, words] of cases) assert.throws(act, (error: unknown) => error instanceof OrvexError && words.test(error.message), String(words));
  assert.deepEqual(bits(library.simpleMovingAverage([1, 2, 3], { periods: 1 })).slice(1), bits(Float64Array.of(2, 3)));
});

test("a column of no records, of none with a value, of one and of many", () => {
  const empty = new Float64Array();
  assert.deepEqual(library.macd([]), { macd: empty, macdSignal: empty, macdHistogram: empty });
  const detached = Float64Array.of(1, 2);
  structuredClone(detached, { transfer: [detached.buffer] });
  assert.deepEqual(library.simpleMovingAverage(detached, { periods: 2 }), empty);
  const { columns } = engine.call(engine.find("MACD")!, { Close: [null, NaN] }, { Alias: "Line" });
  assert.deepEqual(columns.map(({ name }) => name), ["Line", "LineSignal", "LineHistogram"]);
  assert.deepEqual(columns[2], { name: "LineHistogram", values: Float64Array.of(NaN, NaN), first: 1, last: 0 });
  assert.throws(() => library.maxValue([], { startPeriod: 1, endPeriod: 1 }), (error: unknown) => error instanceof OrvexError && error.number !== 7);
  assert.throws(() => library.momentum([5], { periods: 1 }), /EOF/);
  const many = Float64Array.from({ length: 200_000 }, (_, i) => 100 + (i % 97));
  const average = library.simpleMovingAverage(many, { periods: 97 });
  // Any 97 records in a row hold each remainder once.
  assert.equal(average.at(-1), 148);
});

test("memory is given back", () => {
  const { memory } = (engine as unknown as { exports: { memory: WebAssembly.Memory } }).exports;
  const values = Float64Array.from({ length: 50_000 }, () => 1);
  const call = (): unknown => library.exponentialMovingAverage(values, { periods: 20 });
  const fail = (): void => assert.throws(() => library.exponentialMovingAverage(values, { periods: 0 }), OrvexError);
  for (let i = 0; i < 3; ++i) [call, fail].forEach((each) => each());
  const before = memory.buffer.byteLength;
  for (let i = 0; i < 50; ++i) [call, fail].forEach((each) => each());
  assert.equal(memory.buffer.byteLength, before);
});

test("the example page computes in a browser", async () => {
  const types: Record<string, string> = { html: "text/html", js: "text/javascript", wasm: "application/wasm" };
  const server = createServer((request, response) => {
    const path = join(built, "package", request.url!);
    const type = types[path.split(".").at(-1)!];
    response.writeHead(type ? 200 : 404, { "Content-Type": type ?? "text/plain" });
    response.end(type && readFileSync(path));
  });
  await new Promise<void>((ready) => server.listen(0, "127.0.0.1", ready));
  const browser = await launch();
  try {
    const page = await browser.newPage();
    await page.goto(`http://127.0.0.1:${(server.address() as AddressInfo).port}/examples/page.html`);
    await page.waitForFunction(() => document.getElementById("band")!.textContent !== "...");
    const days = Float64Array.from({ length: 60 }, (_, day) => 100 + day / 10 + Math.sin(day));
    // The mean of the last twenty days, and twice the root of the mean squared distance of the twenty before the last from it.
    const mean = days.slice(40).reduce((sum, each) => sum + each, 0) / 20;
    const spread = Math.sqrt(days.slice(39, 59).reduce((sum, each) => sum + (each - mean) ** 2, 0) / 20);
    assert.equal(await page.locator("#band").innerText(), (mean + 2 * spread).toFixed(2));
  } finally {
    await browser.close();
    server.close();
  }
});

test("published files are whole: they install, type-check and run the example", () => {
  const folder = mkdtempSync(join(tmpdir(), "orvex-package-"));
  try {
    execFileSync("npm", ["pack", "--silent", "--pack-destination", folder, `${built}/package`], { stdio: "pipe" });
    const archive = execFileSync("ls", [folder], { encoding: "utf8" }).trim();
    execFileSync("tar", ["-xzf", join(folder, archive), "-C", folder]);
    mkdirSync(join(folder, "node_modules"));
    symlinkSync(join(folder, "package"), join(folder, "node_modules", "orvex"));
    cpSync(join(folder, "package", "examples", "node.mjs"), join(folder, "node.mjs"));
    const printed = execFileSync(process.execPath, [join(folder, "node.mjs"), sample], { encoding: "utf8" });
    const last = orvex("run", "MovingAverage.SimpleMovingAverage", sample, "Source=Close", "Periods=20", "--format", "csv").trim().split("\n").at(-1)!;
    assert.equal(printed.trim().split("\n").length, 5);
    assert.equal(printed.trim().split("\n").at(-1)!.split(" ")[1], Number(last.split(",")[1]).toFixed(4));

    writeFileSync(join(folder, "use.ts"), 'import { load } from "orvex";\nconst { macd } = await load();\nconst signal: Float64Array = macd([1, 2, 3], { shortCycle: 3 }).macdSignal;\nexport { signal };\n');
    writeFileSync(join(folder, "package.json"), '{ "type": "module" }');
    writeFileSync(join(folder, "tsconfig.json"), '{ "compilerOptions": { "strict": true, "noEmit": true, "module": "nodenext", "target": "es2022", "lib": ["es2022", "dom"], "types": [] }, "files": ["use.ts"] }');
    const manifest = JSON.parse(readFileSync(`${root}web/node_modules/typescript/package.json`, "utf8")) as { bin: { tsc: string } };
    execFileSync(process.execPath, [`${root}web/node_modules/typescript/${manifest.bin.tsc}`, "-p", folder], { stdio: "pipe" });
  } finally {
    rmSync(folder, { recursive: true, force: true });
  }
});
