// Usage: node build.mjs run measures/studio.ts
//
// Measures the studio in Debian's Chromium, drawing in software: the file's size, the time to the first chart, what an
// indicator on 32,766 bars costs beyond the chart library's own line, and how 100,000 bars scroll.
import { statSync } from "node:fs";
import { addIndicator, choose, launch, open } from "../tests/browser.js";
import { studio } from "../tests/support.js";

function prices(count: number): string {
  let state = 1;
  let price = 100;
  const lines = ["Date,Open,High,Low,Close,Volume"];
  for (let i = 0; i < count; ++i) {
    state = (state * 48_271) % 2_147_483_647;
    const next = price * (1 + (state / 2_147_483_647 - 0.5) / 50);
    const time = new Date(Date.UTC(2000, 0, 1) + i * 60_000).toISOString().slice(0, 19).replace("T", " ");
    const row = [price, Math.max(price, next) * 1.002, Math.min(price, next) * 0.998, next].map((each) => each.toFixed(2));
    lines.push([time, ...row, String(1000 + (state % 9000))].join(","));
    price = next;
  }
  return lines.join("\n");
}

const median = (numbers: readonly number[]): number => [...numbers].sort((a, b) => a - b)[numbers.length >> 1]!;
const ms = (value: number): string => `${value.toFixed(0)} ms`;

const browser = await launch();
console.log(`size of the file: ${(statSync(studio).size / 1e6).toFixed(2)} MB`);

const starts: number[] = [];
for (let i = 0; i < 7; ++i) {
  const { page } = await open(browser);
  // From the beginning of the navigation to the first frame after the chart is there.
  await page.waitForFunction(() => performance.getEntriesByName("orvex-shown").length > 0);
  starts.push(await page.evaluate(() => performance.getEntriesByName("orvex-shown")[0]!.startTime));
  await page.context().close();
}
console.log(`first chart after opening: median ${ms(median(starts))}, worst ${ms(Math.max(...starts))}`);

{
  const { page } = await open(browser);
  await choose(page, "bars.csv", prices(32_766));
  await page.waitForFunction(() => document.querySelector(".file-facts")?.textContent?.startsWith("32,766"));
  await addIndicator(page, "simple moving average");
  await page.waitForTimeout(500);
  const measured = await page.evaluate(() => performance.getEntriesByType("measure").map(({ name, duration }) => ({ name, duration })));
  const total = measured.filter(({ name }) => name === "orvex-add").map(({ duration }) => duration);
  const drawn = measured.filter(({ name }) => name === "orvex-library").map(({ duration }) => duration);
  const library = drawn.reduce((sum, each) => sum + each, 0);
  console.log(`an indicator on 32,766 bars: ${ms(total[0]! - library)} beyond the ${ms(library)} of the chart library`);
}

{
  const { page } = await open(browser);
  await choose(page, "bars.csv", prices(100_000));
  await page.waitForFunction(() => document.querySelector(".file-facts")?.textContent?.startsWith("100,000"), undefined, { timeout: 60_000 });
  await addIndicator(page, "bollinger");
  await addIndicator(page, "macd");
  await page.waitForTimeout(1000);
  const box = (await page.locator(".canvas").boundingBox())!;
  await page.mouse.move(box.x + box.width / 2, box.y + 200);
  await page.evaluate(() => {
    const frames: number[] = [];
    Object.assign(window, { frames });
    const note = (time: number): void => {
      frames.push(time);
      requestAnimationFrame(note);
    };
    requestAnimationFrame(note);
  });
  await page.mouse.down();
  for (let i = 0; i < 240; ++i) await page.mouse.move(box.x + box.width / 2 + 300 * Math.sin(i / 12), box.y + 200);
  await page.mouse.up();
  const frames = (await page.evaluate("window.frames")) as number[];
  const steps = frames.slice(1).map((time, i) => time - frames[i]!);
  console.log(`scrolling 100,000 bars with two studies: median ${(1000 / median(steps)).toFixed(0)} frames a second over ${frames.length} frames`);
}
await browser.close();
