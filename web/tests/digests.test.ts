// Results are the native bits, in Node and in a browser.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import test from "node:test";
import { systemImports } from "../package/src/module.js";
import { launch } from "./browser.js";
import { digestsModule, printed } from "./digests.js";
import { root } from "./support.js";

/** One line a method and kernel level; the kernels of wider processors give the same. */
const native = new Map(
  execFileSync(`${root}build/release/tests/method_digests32`, { encoding: "utf8" })
    .trim()
    .split("\n")
    .map((line) => line.split(" ") as [string, string]),
);

function compare(text: string): void {
  const lines = text.trim().split("\n").map((line) => line.split(" "));
  assert.ok(lines.length >= native.size);
  const other = lines.filter(([name, digest]) => native.get(name!) !== digest).map(([name]) => name);
  assert.deepEqual(other, []);
}

test("in Node", async () => {
  compare(await printed(readFileSync(digestsModule), systemImports));
});

test("in Chromium", async () => {
  const browser = await launch();
  try {
    const page = await browser.newPage();
    const base64 = readFileSync(digestsModule).toString("base64");
    const program = `(async () => {
      const systemImports = ${systemImports.toString()};
      const printed = ${printed.toString()};
      return printed(Uint8Array.from(atob("${base64}"), (letter) => letter.charCodeAt(0)), systemImports);
    })()`;
    compare((await page.evaluate(program)) as string);
  } finally {
    await browser.close();
  }
});
