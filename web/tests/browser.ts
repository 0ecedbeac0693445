// Debian's Chromium, and the studio in it.
import { pathToFileURL } from "node:url";
import { type Browser, type BrowserContextOptions, chromium, type Download, type Page } from "playwright-core";
import { readFileSync } from "node:fs";
import { studio } from "./support.js";

export async function launch(): Promise<Browser> {
  return chromium.launch({
    executablePath: "/usr/bin/chromium",
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking", "--disable-component-update", "--disable-sync"],
  });
}

export interface Opened {
  readonly page: Page;
  /** Addresses that the page asked for, its own apart. */
  readonly requests: string[];
  /** What went wrong in it without being caught. */
  readonly faults: string[];
}

/** A page with the studio, ready to be used. */
export async function open(browser: Browser, fragment = "", options: BrowserContextOptions = {}, file = studio): Promise<Opened> {
  const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, reducedMotion: "reduce", ...options });
  const page = await context.newPage();
  const requests: string[] = [];
  const faults: string[] = [];
  page.on("request", (request) => {
    if (!request.url().startsWith("file:") && !request.url().startsWith("blob:") && !request.url().startsWith("data:")) requests.push(request.url());
  });
  page.on("pageerror", (error) => faults.push(String(error)));
  page.on("console", (message) => {
    if (message.type() === "error") faults.push(message.text());
  });
  await page.goto(pathToFileURL(file).href + fragment);
  await page.waitForSelector("html[data-ready]");
  return { page, requests, faults };
}

export async function addIndicator(page: Page, words: string): Promise<void> {
  await page.keyboard.press("Escape");
  await page.evaluate(() => (document.activeElement as HTMLElement | null)?.blur());
  await page.keyboard.press("/");
  await page.keyboard.type(words);
  await page.keyboard.press("Enter");
}

export async function saved(page: Page, act: () => Promise<void>): Promise<{ name: string; bytes: Buffer; path: string }> {
  const [download] = await Promise.all([page.waitForEvent("download") as Promise<Download>, act()]);
  const path = await download.path();
  return { name: download.suggestedFilename(), bytes: readFileSync(path), path };
}

export async function choose(page: Page, name: string, content: string | Buffer): Promise<void> {
  await page.setInputFiles("input[type=file]", { name, mimeType: "text/csv", buffer: Buffer.from(content) });
}
