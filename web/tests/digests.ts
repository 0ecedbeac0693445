// Usage: node build.mjs run tests/digests.ts > FILE
//
// Prints the digests of all methods as the WebAssembly module has them, in Node; `digests` runs the same anywhere.
import { readFileSync } from "node:fs";
import { systemImports } from "../package/src/module.js";

/** Runs a module that has a `_start` and prints. Needs nothing of its surroundings, so that a page can be handed it. */
export async function printed(bytes: BufferSource, imports: typeof systemImports): Promise<string> {
  const parts: Uint8Array[] = [];
  let memory: WebAssembly.Memory | undefined;
  const { instance } = await WebAssembly.instantiate(
    bytes,
    imports(
      () => memory!,
      (part) => parts.push(part),
    ),
  );
  memory = instance.exports["memory"] as WebAssembly.Memory;
  try {
    (instance.exports["_start"] as () => void)();
  } catch (error) {
    // The end of a program is an exit, here as anywhere.
    if (!String(error).includes("status 0")) throw error;
  }
  return parts.map((part) => new TextDecoder().decode(part)).join("");
}

export const digestsModule = "../build/wasm/web/method_digests32.wasm";

if (process.argv.includes("tests/digests.ts")) {
  process.stdout.write(await printed(readFileSync(digestsModule), systemImports));
}
