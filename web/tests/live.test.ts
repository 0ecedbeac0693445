// Live series as users of the npm package have them: what is kept is what a call on all prices gives.
import assert from "node:assert/strict";
import test from "node:test";
import { setTimeout as wait } from "node:timers/promises";
import { setFlagsFromString } from "node:v8";
import { runInNewContext } from "node:vm";
import { pathToFileURL } from "node:url";
import type { Calculation, Kept, LivePrices, LiveRecord, Orvex } from "../package/src/index.js";
import { bits, built, bytes, sample } from "./support.js";

const { daysOf, load, LiveSeries, OrvexError } = (await import(pathToFileURL(`${built}/package/index.js`).href)) as typeof import("../package/src/index.js");
const library: Orvex = await load();
const { engine } = library;
const PRICES = ["Open", "High", "Low", "Close", "Volume"];
const table = engine.readPrices(bytes(sample));
const prices = Object.fromEntries(
  table.columns.flatMap(({ name, values }) => (values instanceof Float64Array && PRICES.includes(name) ? [[name, values]] : [])),
) as Record<string, Float64Array>;
const close = prices["Close"]!;
const dates = table.columns.find(({ name }) => name === "Date")!.values as readonly string[];
const sessions = daysOf(table.times);

const part = (first: number, last: number): LivePrices => ({
  ...Object.fromEntries(Object.entries(prices).map(([name, values]) => [name, values.subarray(first, last)])),
  Date: dates.slice(first, last),
});
const record = (row: number): LiveRecord => ({
  ...(Object.fromEntries(Object.entries(prices).map(([name, values]) => [name.toLowerCase(), values[row]!])) as unknown as LiveRecord),
  date: dates[row]!,
});
/** What a call on the first records gives. */
const fresh = (calculation: Calculation, count: number, given: object) =>
  engine.call(calculation, Object.fromEntries(Object.entries({ ...prices, Session: sessions }).map(([name, values]) => [name, values.subarray(0, count)])), { ...given }).columns;

/** What was thrown, in words. */
function thrown(act: () => unknown): string {
  try {
    act();
  } catch (error) {
    return String(error);
  }
  return "nothing";
}

test("the worked example gives what its page says", () => {
  const live = new LiveSeries(library);
  const rsi = live.keep("relativeStrengthIndex", { periods: 2 });
  const mean = live.keep("simpleMovingAverage", { source: rsi, periods: 2 });
  for (const price of [10, 11, 10.5, 12, 11]) live.append({ close: price, volume: 100 });
  live.append({ open: [], high: [], low: [], close: [], volume: [] });
  live.revise({ close: 13, volume: 100 });
  // Mean gains and losses of 1 and 0.125, then 1 and 0.0625: 100 - 100 / 9 and 100 - 100 / 17, and their mean.
  assert.deepEqual([rsi.last!.toFixed(4), mean.last!.toFixed(4)], ["94.1176", "91.5033"]);
  assert.equal(live.count, 5);
});

test("every calculation is kept as it is called, with the same bits", () => {
  for (const calculation of engine.calculations) {
    const name = `${calculation.class}.${calculation.name}`;
    const live = new LiveSeries(library, part(0, 400));
    if (calculation.columns.length === 0) {
      assert.throws(() => live.keep(calculation), /no columns/, name);
      continue;
    }
    const line = calculation.arguments.some((argument) => argument.name === "TrendLine") ? { TrendLine: "Close" } : {};
    const kept = live.keep(calculation, line);
    const early = kept.columns.map(({ values }) => values.slice());
    live.append(part(400, 470));
    for (let row = 470; row < 500; ++row) {
      live.append({ close: 1, high: 2, low: 0.5, volume: 10, date: "2030-01-01" });
      live.revise(record(row));
      if (row % 7 === 0) assert.equal(kept.columns[0]?.values.length, row + 1, name);
    }
    assert.equal(kept.error, undefined, name);
    assert.equal(kept.count, 500, name);
    const all = fresh(calculation, 500, line);
    kept.columns.forEach(({ values, ...column }, i) => {
      const { values: wanted, ...described } = all[i]!;
      assert.deepEqual(column, described, name);
      assert.deepEqual(bits(values), bits(wanted), `${name} ${column.name}`);
    });
    assert.deepEqual(early.map(bits), fresh(calculation, 400, line).map(({ values }) => bits(values)), name);
    live.release();
  }
});

test("a column of several goes on into another call, behind the rows without a value", () => {
  const live = new LiveSeries(library, part(0, 60));
  const lines = live.keep("macd", { shortCycle: 3, longCycle: 5, signalPeriods: 2 });
  const average = live.keep("simpleMovingAverage", { source: lines.column("macdSignal"), periods: 4 });
  for (let row = 60; row < 120; ++row) live.append(record(row));
  const { macd, macdSignal } = library.macd(close.subarray(0, 120), { shortCycle: 3, longCycle: 5, signalPeriods: 2 });
  assert.deepEqual(bits(lines.values.macd), bits(macd));
  assert.equal(lines.last!.macdSignal, macdSignal.at(-1));
  assert.deepEqual(bits(average.values), bits(library.simpleMovingAverage(macdSignal, { periods: 4 })));
  assert.match(thrown(() => live.drop(lines)), /5, Orvex/);
  live.drop(average);
  live.drop(lines);
  assert.match(thrown(() => lines.last), /kept no more/);
});

test("a record that cannot be computed is told beside what was before it, alone and among others, until it is mended", () => {
  const all = [2, 3, 0, 1, 4];
  const singly = new LiveSeries(library);
  const together = new LiveSeries(library);
  const rates: Kept<Float64Array>[] = [singly, together].map((live) => live.keep("priceRoc", { periods: 1 }));
  for (const price of all) singly.append({ close: price });
  const column = Float64Array.from(all);
  together.append({ open: column, high: column, low: column, close: column, volume: column });
  const words = thrown(() => library.priceRoc(column, { periods: 1 }));
  for (const rate of rates) {
    assert.equal(String(rate.error), words);
    assert.equal(rate.error?.record, 4);
    assert.equal(rate.count, 3);
    assert.equal(rate.last, -100);
  }
  const live = new LiveSeries(library, { close: [2, 3] });
  const rate = live.keep("priceRoc", { periods: 1 });
  live.append({ close: null });
  assert.ok(rate.error instanceof OrvexError);
  assert.equal(rate.last, 50);
  live.revise({ close: 6 });
  assert.equal(rate.error, undefined);
  assert.equal(rate.last, 100);
  live.append({ close: Float32Array.of(6, 12) });
  assert.equal(rate.last, 100);
  live.append({ close: [null, 6] });
  assert.match(String(rate.error), /record 6/);
});

test("what was read stays as long as it is while memory grows, and behind a release", () => {
  const { memory } = (engine as unknown as { exports: { memory: WebAssembly.Memory } }).exports;
  const live = new LiveSeries(library, part(0, 100));
  const kept = live.keep("simpleMovingAverage", { periods: 5 });
  const old = kept.values;
  const expected = bits(old);
  const size = memory.buffer.byteLength;
  const many = Float64Array.from({ length: 3_000_000 }, (_, i) => 50 + (i % 5));
  live.append({ open: many, high: many, low: many, close: many, volume: many });
  assert.ok(memory.buffer.byteLength > size);
  assert.deepEqual(bits(old), expected);
  assert.equal(kept.values.length, 3_000_100);
  // Any five in a row hold each remainder once.
  assert.equal(kept.values.at(-1), 52);
  const later = kept.values;
  live.release();
  assert.equal(later.at(-1), 52);
  assert.match(thrown(() => kept.values), /kept no more/);
  assert.match(thrown(() => live.append({ close: 1 })), /released/);
  live.release();
});

test("memory comes back from what was released and from what was forgotten", async () => {
  setFlagsFromString("--expose-gc");
  const collect = runInNewContext("gc") as () => void;
  const { memory } = (engine as unknown as { exports: { memory: WebAssembly.Memory } }).exports;
  const values = Float64Array.from({ length: 50_000 }, (_, i) => 1 + (i % 3));
  const make = (): InstanceType<typeof LiveSeries> => {
    const live = new LiveSeries(library, { close: values });
    live.keep("exponentialMovingAverage", { periods: 20 });
    assert.throws(() => live.keep("exponentialMovingAverage", { source: "Price" }), /Invalid FieldName/);
    return live;
  };
  make().release();
  const before = memory.buffer.byteLength;
  for (let i = 0; i < 50; ++i) make().release();
  assert.equal(memory.buffer.byteLength, before);
  for (let i = 0; i < 40; ++i) {
    make();
    collect();
    await wait(5);
  }
  assert.ok(memory.buffer.byteLength < before + 20 * values.byteLength, `${before} to ${memory.buffer.byteLength}`);
});

test("what fits nothing is refused", () => {
  const live = new LiveSeries(library, part(0, 30));
  const other = new LiveSeries(library, part(0, 30)).keep("momentum");
  const lines = live.keep("macd", { shortCycle: 2, longCycle: 3, signalPeriods: 2 });
  const cases: [() => unknown, RegExp][] = [
    [() => live.append({ open: 1 } as never), /needs its close/],
    [() => live.append({ cloes: 1 } as never), /no "cloes"/],
    [() => live.append({ close: "1" } as never), /must be a number/],
    [() => live.append({ close: [1, 2] }), /no column "Open"/],
    [() => live.append({ ...part(0, 2), Close: [1] }), /Close has 1 records/],
    [() => new LiveSeries(library).revise({ close: 1 }), /no record/],
    [() => new LiveSeries(library, { close: "12" } as never), /close is no column/],
    [() => live.append({ ...part(0, 1), Close: ["1"] } as never), /Close must be numbers, and has a string/],
    [() => new LiveSeries(library, { price: [1] }), /no prices: .*Open, High/],
    [() => live.keep("momentun" as never), /no function "momentun"/],
    [() => live.keep("momentum", 3 as never), /takes its options in an object/],
    [() => live.keep(undefined as never), /undefined is no calculation/],
    [() => live.keep("momentum", { period: 3 } as never), /no option "period"; it has .*periods/],
    [() => live.keep("momentum", { periods: 2.5 }), /whole number/],
    [() => live.keep("momentum", { source: [1] as never }), /name of a price/],
    [() => live.keep("momentum", { source: "price" }), /Invalid FieldName/],
    [() => live.keep("momentum", { source: other }), /another series/],
    [() => live.keep("momentum", { source: lines as never }), /several columns/],
    [() => lines.column("line" as never), /has no column "line" to choose; it has macd, /],
    [() => live.keep("bollingerBands", { maType: "Best" as never }), /Simple/],
    [() => live.keep("isPrime" as never), /no columns/],
  ];
  for (const [act, words] of cases) assert.match(thrown(act), words);
  assert.equal(live.count, 30);
  assert.equal(lines.count, 30);
});
