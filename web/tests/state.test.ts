// What the studio keeps of a chart: its studies, what they compute from one another, and how an address tells them.
import assert from "node:assert/strict";
import test from "node:test";
import { readFileSync } from "node:fs";
import { Engine } from "../package/src/engine.js";
import { camelCase } from "../package/src/catalogue.js";
import { writerOf } from "../studio/dom.js";
import { embedded } from "../studio/files.js";
import { readSeries } from "../studio/series.js";
import { decodeState, encodeState, PLAIN_VIEW, studiesOf, type StudyWords, wordsOf } from "../studio/state.js";
import { Computation, dependencies, namesOf, renamed, type Study, titleOf } from "../studio/studies.js";
import { bits, built, bytes, sample } from "./support.js";

const engine = await Engine.start(await WebAssembly.compile(readFileSync(`${built}/package/orvex.wasm`)));
const series = readSeries(engine, "sample.csv", bytes(sample));

const study = (id: number, method: string, given: Study["given"] = {}): Study => ({ id, calculation: engine.find(method)!, given, hidden: false, colours: {} });
const computed = (...studies: Study[]) => new Computation(engine, series, studies).all();

test("an address tells a chart, whatever the names in it", () => {
  const odd = "a,b=c&d:e %2C#/?";
  const words: StudyWords[] = [
    { method: "Oscillator.MACD", arguments: { ShortCycle: 8, Source: odd } },
    { method: "Index.RelativeStrengthIndex", arguments: { Source: "1:MACD" }, hidden: true, colours: { 0: "#ff0000" } },
  ];
  const view = { kind: "line", volume: false, log: true, range: { from: 99, to: 299 } } as const;
  const told = decodeState(encodeState(words, view).replace("#/?", ""));
  assert.deepEqual(told.view, view);
  assert.deepEqual(
    told.studies.map((each) => ({ method: each.method, arguments: each.arguments, hidden: each.hidden, colours: each.colours })),
    [
      { method: "Oscillator.MACD", arguments: { ShortCycle: "8", Source: odd }, hidden: false, colours: {} },
      { method: "Index.RelativeStrengthIndex", arguments: { Source: "1:MACD" }, hidden: true, colours: { 0: "#ff0000" } },
    ],
  );
  assert.equal(encodeState([], PLAIN_VIEW), "#/");
});

test("studies that an address names become studies again, or are told", () => {
  const { studies, problems } = studiesOf(
    [
      { method: "oscillator.macd", arguments: { shortcycle: "8", Source: "close" }, colours: { 0: "red; background: url(x)", 1: "#00ff00" } },
      { method: "No.Such", arguments: {} },
      { method: "SimpleMovingAverage", arguments: { Source: "MACD", Periods: "9", Nonsense: 1 } },
      { method: "SimpleMovingAverage", arguments: { Source: "1:MACDSignal" } },
    ],
    engine,
    series.numbers,
  );
  assert.deepEqual(studies.map(({ id, given }) => [id, given]), [
    [1, { ShortCycle: 8, Source: "Close" }],
    [3, { Source: "1:MACD", Periods: 9 }],
    [4, { Source: "1:MACDSignal" }],
  ]);
  assert.deepEqual(studies[0]!.colours, { 1: "#00ff00" });
  assert.equal(problems.length, 2);
  assert.match(problems.join(" "), /No\.Such.*Nonsense/);
  // Places in an address count the studies that there are.
  assert.deepEqual(wordsOf(studies).map((each) => each.arguments?.["Source"]), ["Close", "1:MACD", "1:MACDSignal"]);
  assert.deepEqual(wordsOf(studies.slice(1)).map((each) => each.arguments?.["Source"]), ["0:MACD", "0:MACDSignal"]);
});

test("a study is computed from another's columns, and a circle or a source that is gone is told", () => {
  const macd = study(1, "MACD");
  const average = study(2, "SimpleMovingAverage", { Source: "1:MACD", Periods: 5 });
  const results = computed(average, macd);
  const source = results.get(1)!.outcome!.columns[0]!.values;
  const alone = engine.call(average.calculation, {}, { Source: source, Periods: 5 }).columns[0]!.values;
  assert.deepEqual(bits(results.get(2)!.outcome!.columns[0]!.values), bits(alone));
  assert.deepEqual([...dependencies(study(3, "MACD", { Source: "2:SimpleMovingAverage" }), series, [macd, average])], [2, 1]);

  for (const [studies, id, error] of [
    [[average], 2, /was removed/],
    [[study(1, "MACD", { Source: "2:SimpleMovingAverage" }), average], 1, /could not be computed/],
    [[study(1, "MACD", { Source: "1:MACD" })], 1, /from itself/],
    [[study(1, "MACD", { Source: "Price" })], 1, /no column "Price"/],
    [[macd, study(2, "SimpleMovingAverage", { Source: "1:Signal" })], 2, /no column "Signal"/],
    [[study(1, "MACD", { ShortCycle: 0 }), average], 2, /could not be computed/],
    [[study(1, "StochRSI", { Periods: 1 })], 1, /in record \d+ \(20\d\d-\d\d-\d\d\)/],
  ] as const) {
    assert.match(computed(...studies).get(id)!.error ?? "", error);
  }
});

test("another name for a column reaches those that compute from it", () => {
  const before = study(1, "MACD");
  const after = study(1, "MACD", { Alias: "Fast" });
  assert.deepEqual(namesOf(after), ["Fast", "FastSignal", "FastHistogram"]);
  assert.match(titleOf(after, series), /^Fast 12 26 9$/);
  const other = study(2, "SimpleMovingAverage", { Source: "1:MACDSignal", Periods: 5 });
  const moved = renamed([before, other], before, after);
  assert.deepEqual(moved[1]!.given, { Source: "1:FastSignal", Periods: 5 });
  assert.equal(computed(after, moved[1]!).get(2)!.error, undefined);
});

test("numbers are written as people read them", () => {
  for (const [values, texts] of [
    [[1, 20, 3000], ["1", "20", "3,000"]],
    [[1.5, 2.25, 3], ["1.50", "2.25", "3.00"]],
    [[1 / 3, 100], ["0.3333", "100.0000"]],
    [[1 / 3e4, 2 / 3e4], ["0.00003333", "0.00006667"]],
    [[NaN, Infinity, 7], ["–", "–", "7"]],
    [[0, -0.5], ["0.0", "-0.5"]],
  ] as const) {
    assert.deepEqual(values.map(writerOf(values)), texts);
  }
  for (const [key, name] of [["short_cycle", "shortCycle"], ["di+", "diPlus"], ["di-", "diMinus"], ["%K", "percentK"], ["quadrant 75", "quadrant75"]] as const) {
    assert.equal(camelCase(key), name);
  }
});

test("what a page embeds ends no element of it", () => {
  const data = { name: "</script><!--", prices: "Date,Close\n1,</script>\n", studies: [] };
  assert.ok(!embedded(data).includes("<"));
  assert.deepEqual(JSON.parse(embedded(data)), data);
});
