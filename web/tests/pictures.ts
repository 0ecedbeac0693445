// Usage: node build.mjs run tests/pictures.ts [FOLDER]
//
// Makes the picture of the README, docs/studio.png, from the sample prices; with a folder, pictures of the studio's other views
// there, to be looked at after a change of how it looks.
import { join } from "node:path";
import type { Page } from "playwright-core";
import { addIndicator, choose, launch, open } from "./browser.js";
import { root } from "./support.js";

interface Picture {
  readonly file: string;
  readonly fragment: string;
  readonly dark?: boolean;
  readonly narrow?: boolean;
  readonly act?: (page: Page) => Promise<void>;
}

const chart = (...words: string[]): string => `#/?${words.join("&")}`;
const bands = "study=Bands.BollingerBands";

const views: readonly Picture[] = [
  { file: "light.png", fragment: "" },
  { file: "dark-several.png", fragment: chart(bands, "study=MovingAverage.SimpleMovingAverage,Periods=50", "study=Oscillator.MACD", "study=Index.RelativeStrengthIndex"), dark: true },
  { file: "light-many-panes.png", fragment: chart("study=Oscillator.ParabolicSAR", "study=Index.MoneyFlowIndex", "study=Oscillator.Aroon", "study=Oscillator.StochasticOscillator,KPeriods=14,KSlowingPeriods=3,DPeriods=3") },
  { file: "patterns.png", fragment: chart("study=CandleStick.IdentifyPattern", "from=420", "to=500") },
  { file: "table-log-line.png", fragment: chart("study=Oscillator.MACD", "type=line", "scale=log"), dark: true, act: (page) => page.getByRole("button", { name: "Table", exact: true }).click() },
  {
    file: "list.png",
    fragment: "",
    act: async (page) => {
      await page.keyboard.press("/");
      await page.keyboard.type("band");
    },
  },
  {
    file: "errors.png",
    fragment: "",
    act: async (page) => {
      await choose(page, "words.csv", "to be or not to be\nthat is the question\n");
      await addIndicator(page, "bollinger");
      await page.fill("[name=Periods]", "0");
    },
  },
  { file: "replay.png", fragment: chart(bands, "study=Oscillator.MACD"), act: (page) => page.getByRole("button", { name: "Replay", exact: true }).click() },
  { file: "reference-page.png", fragment: "#/Oscillator.MACD" },
  { file: "reference-index.png", fragment: "#/indicators", dark: true },
  { file: "narrow-light.png", fragment: chart(bands, "study=Index.RelativeStrengthIndex"), narrow: true },
  { file: "narrow-replay.png", fragment: chart(bands), narrow: true, act: (page) => page.getByRole("button", { name: "Replay", exact: true }).click() },
  { file: "narrow-dark.png", fragment: "#/Bands.BollingerBands", narrow: true, dark: true },
];
const readme: Picture = {
  file: `${root}docs/studio.png`,
  fragment: chart(bands, "study=Oscillator.MACD", "study=Index.RelativeStrengthIndex"),
  dark: true,
};

const folder = process.argv[4];
const browser = await launch();
for (const { file, fragment, dark, narrow, act } of folder === undefined ? [readme] : views) {
  const { page } = await open(browser, fragment, {
    colorScheme: dark ? "dark" : "light",
    viewport: narrow ? { width: 390, height: 844 } : { width: 1360, height: 800 },
  });
  await act?.(page);
  await page.waitForTimeout(500);
  await page.screenshot({ path: folder === undefined ? file : join(folder, file) });
  await page.context().close();
}
await browser.close();
