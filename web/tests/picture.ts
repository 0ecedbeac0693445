// Usage: node build.mjs run tests/picture.ts
//
// Makes the picture of the README, docs/studio.png, from the sample prices.
import { launch, open } from "./browser.js";
import { root } from "./support.js";

const browser = await launch();
const studies = ["Bands.BollingerBands", "Oscillator.MACD", "Index.RelativeStrengthIndex"].map((method) => `study=${method}`);
const { page } = await open(browser, `#/?${studies.join("&")}`, { colorScheme: "dark", viewport: { width: 1280, height: 720 } });
await page.locator(".studies .name").first().click();
await page.waitForTimeout(500);
await page.screenshot({ path: `${root}docs/studio.png` });
await browser.close();
