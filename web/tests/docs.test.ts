// The documents' programs run, each as a module of its own, and print what they say.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, rmSync, symlinkSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import test from "node:test";
import { built, root } from "./support.js";

/** What the programs take for granted. A name that one of them declares itself is its own. */
const GIVEN = `
import { load } from "orvex";
const close = Float64Array.from({ length: 60 }, (_, day) => 100 + day / 10 + Math.sin(day));
Object.assign(globalThis, { load, close, high: close.map((price) => price + 1), low: close.map((price) => price - 1) });
`;

test("the programs of the documents run", () => {
  const folder = mkdtempSync(join(tmpdir(), "orvex-docs-"));
  try {
    mkdirSync(join(folder, "node_modules"));
    symlinkSync(`${built}/package`, join(folder, "node_modules", "orvex"));
    writeFileSync(join(folder, "given.mjs"), GIVEN);
    for (const page of ["docs/live.md", "web/package/README.md"]) {
      const programs = [...readFileSync(root + page, "utf8").matchAll(/^```js\n(.*?)^```/gms)].map(([, program]) => program!);
      assert.ok(programs.length > 0, page);
      for (const program of programs) {
        const own = program.replace("[ /* one price a record, oldest first */ ]", "globalThis.close");
        writeFileSync(join(folder, "program.mjs"), `import "./given.mjs";\n${own}`);
        const printed = execFileSync(process.execPath, ["program.mjs"], { cwd: folder, encoding: "utf8", maxBuffer: 1 << 28 });
        for (const [, promised] of program.matchAll(/^console\.log\(.*\); \/\/ (.*)$/gm)) assert.ok(printed.includes(promised!), `${page}: ${promised}`);
      }
    }
  } finally {
    rmSync(folder, { recursive: true, force: true });
  }
});
