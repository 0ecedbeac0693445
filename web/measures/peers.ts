// Usage: node build.mjs run measures/peers.ts
//
// Times the indicators that two JavaScript libraries have as well, over 32,766 records of a random walk, columns in and
// columns out, all in one run: the median of many passes in milliseconds, and how many times as fast Orvex is.
import * as technical from "technicalindicators";
import * as signals from "trading-signals";
import { performance } from "node:perf_hooks";
import { pathToFileURL } from "node:url";
import { built } from "../tests/support.js";

const { load } = (await import(pathToFileURL(`${built}/package/index.js`).href)) as typeof import("../package/src/index.js");
const library = await load();

const COUNT = 32_766;
let state = 1;
const random = (): number => (state = (state * 48_271) % 2_147_483_647) / 2_147_483_647;
const close = new Float64Array(COUNT);
const open = new Float64Array(COUNT);
const high = new Float64Array(COUNT);
const low = new Float64Array(COUNT);
const volume = new Float64Array(COUNT);
for (let i = 0, price = 100; i < COUNT; ++i) {
  open[i] = price;
  price *= 1 + (random() - 0.5) / 50;
  close[i] = price;
  high[i] = Math.max(open[i]!, price) * (1 + random() / 100);
  low[i] = Math.min(open[i]!, price) * (1 - random() / 100);
  volume[i] = Math.round(1000 + 9000 * random());
}
const prices = { open, high, low, close, volume };

// The peers take lists of numbers, or of objects.
const plain = { open: [...open], high: [...high], low: [...low], close: [...close], volume: [...volume] };
const values = plain.close;
const candles = values.map((each, i) => ({ open: open[i]!, high: high[i]!, low: low[i]!, close: each, volume: volume[i]! }));

interface Updating {
  update(input: never, replace: boolean): unknown;
}
const each = (indicator: Updating, inputs: readonly unknown[]): unknown[] => inputs.map((input) => indicator.update(input as never, false));

interface Case {
  name: string;
  ours: () => unknown;
  technical?: () => unknown;
  signals?: () => unknown;
}

const cases: Case[] = [
  { name: "SMA 20", ours: () => library.simpleMovingAverage(close, { periods: 20 }), technical: () => technical.sma({ period: 20, values }), signals: () => each(new signals.SMA(20), values) },
  { name: "EMA 20", ours: () => library.exponentialMovingAverage(close, { periods: 20 }), technical: () => technical.ema({ period: 20, values }), signals: () => each(new signals.EMA(20), values) },
  { name: "WMA 20", ours: () => library.weightedMovingAverage(close, { periods: 20 }), technical: () => technical.wma({ period: 20, values }), signals: () => each(new signals.WMA(20), values) },
  { name: "Bollinger 20 2", ours: () => library.bollingerBands(close, { periods: 20, standardDeviations: 2 }), technical: () => technical.bollingerbands({ period: 20, stdDev: 2, values }), signals: () => each(new signals.BollingerBands(20, 2), values) },
  {
    name: "MACD 12 26 9",
    ours: () => library.macd(close, { shortCycle: 12, longCycle: 26, signalPeriods: 9 }),
    technical: () => technical.macd({ fastPeriod: 12, slowPeriod: 26, signalPeriod: 9, SimpleMAOscillator: false, SimpleMASignal: false, values }),
    signals: () => each(new signals.MACD(new signals.EMA(12), new signals.EMA(26), new signals.EMA(9)), values),
  },
  { name: "RSI 14", ours: () => library.relativeStrengthIndex(close, { periods: 14 }), technical: () => technical.rsi({ period: 14, values }), signals: () => each(new signals.RSI(14), values) },
  { name: "ROC 10", ours: () => library.priceRoc(close, { periods: 10 }), technical: () => technical.roc({ period: 10, values }), signals: () => each(new signals.ROC(10), values) },
  { name: "TRIX 18", ours: () => library.trix(close, { periods: 18 }), technical: () => technical.trix({ period: 18, values }), signals: () => each(new signals.TRIX(18), values) },
  { name: "CMO 14", ours: () => library.cmo(close, { periods: 14 }), signals: () => each(new signals.CMO(14), values) },
  { name: "true range", ours: () => library.trueRange(prices), technical: () => technical.truerange({ ...plain }), signals: () => each(new signals.TR(), candles) },
  { name: "ATR 14", ours: () => library.averageTrueRange(prices, { period: 14 }), technical: () => technical.atr({ period: 14, ...plain }), signals: () => each(new signals.ATR(14), candles) },
  { name: "ADX 14", ours: () => library.directionalMovementSystem(prices, { periods: 14 }), technical: () => technical.adx({ period: 14, ...plain }), signals: () => each(new signals.ADX(14), candles) },
  { name: "Aroon 14", ours: () => library.aroon(prices, { periods: 14 }), signals: () => each(new signals.Aroon(14), candles) },
  {
    name: "stochastic 14 3 3",
    ours: () => library.stochasticOscillator(prices, { kPeriods: 14, kSlowingPeriods: 3, dPeriods: 3, maType: 1 }),
    technical: () => technical.stochastic({ period: 14, signalPeriod: 3, ...plain }),
    signals: () => each(new signals.StochasticOscillator({ kPeriod: 14, kSlowingPeriod: 3, dPeriod: 3 }), candles),
  },
  { name: "Williams %R 14", ours: () => library.williamsPctR(prices, { periods: 14 }), technical: () => technical.williamsr({ period: 14, ...plain }), signals: () => each(new signals.WilliamsR(14), candles) },
  { name: "CCI 20", ours: () => library.commodityChannelIndex(prices, { periods: 20, maType: 1 }), technical: () => technical.cci({ period: 20, ...plain }), signals: () => each(new signals.CCI(20), candles) },
  { name: "MFI 14", ours: () => library.moneyFlowIndex(prices, { periods: 14 }), technical: () => technical.mfi({ period: 14, ...plain }), signals: () => each(new signals.MFI(14), candles) },
  { name: "OBV", ours: () => library.onBalanceVolume(close, volume), technical: () => technical.obv({ ...plain }), signals: () => each(new signals.OBV(2), candles) },
  { name: "parabolic SAR", ours: () => library.parabolicSar(high, low), technical: () => technical.psar({ step: 0.02, max: 0.2, ...plain }), signals: () => each(new signals.PSAR({ accelerationStep: 0.02, accelerationMax: 0.2 }), candles) },
];

/** The median time of one pass, over passes that take about half a second together. */
function time(run: () => unknown): number {
  run();
  const times: number[] = [];
  const end = performance.now() + 500;
  do {
    const start = performance.now();
    run();
    times.push(performance.now() - start);
  } while (performance.now() < end || times.length < 5);
  return times.sort((a, b) => a - b)[times.length >> 1]!;
}

const mean = (ratios: readonly number[]): number => Math.exp(ratios.reduce((sum, ratio) => sum + Math.log(ratio), 0) / ratios.length);

console.log(`${"".padEnd(20)}${["Orvex", "technicalindicators", "trading-signals"].map((name) => name.padStart(22)).join("")}   ms; times as fast`);
const ratios = { technical: [] as number[], signals: [] as number[] };
for (const { name, ours, ...peers } of cases) {
  const own = time(ours);
  const cells = (["technical", "signals"] as const).map((peer) => {
    const run = peers[peer];
    if (!run) return "-".padStart(22);
    const other = time(run);
    ratios[peer].push(other / own);
    return `${other.toFixed(2)} (${(other / own).toFixed(1)})`.padStart(22);
  });
  console.log(`${name.padEnd(20)}${own.toFixed(3).padStart(22)}${cells.join("")}`);
}
console.log(`${"geometric mean".padEnd(42)}${[ratios.technical, ratios.signals].map((list) => mean(list).toFixed(1).padStart(22)).join("")}`);
