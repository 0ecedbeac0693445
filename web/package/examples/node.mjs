// Usage: node node.mjs PRICES
//
// Prints the last five values of an average and of the strength index of a price file.
import { readFile } from "node:fs/promises";
import { load } from "orvex";

const { engine, simpleMovingAverage, relativeStrengthIndex } = await load();
const { columns } = engine.readPrices(await readFile(process.argv[2]));
const prices = Object.fromEntries(columns.map(({ name, values }) => [name, values]));
const average = simpleMovingAverage(prices, { periods: 20 });
const strength = relativeStrengthIndex(prices);
for (let record = average.length - 5; record < average.length; ++record) {
  console.log(prices.Date[record], average[record].toFixed(4), strength[record].toFixed(2));
}
