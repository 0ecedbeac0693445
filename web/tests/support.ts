// What the tests share: paths, the built package, the native programs.
import { execFileSync } from "node:child_process";
import { existsSync, readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";

/** The repository: its parts are found from where the tests are started, which is web/. */
export const root = fileURLToPath(new URL("..", `file://${process.cwd()}/`));
export const built = `${root}build/web`;
export const studio = `${built}/orvex-studio.html`;
export const sample = `${root}examples/prices.csv`;

/** The command line, as `scripts/test native` or the step of these tests has built it. */
export const program = `${root}build/release/cli/orvex`;

export function orvex(...words: string[]): string {
  if (!existsSync(program)) throw new Error(`build the command line first: ${program} is not there`);
  return execFileSync(program, words, { encoding: "utf8", maxBuffer: 1 << 28 });
}

export const bytes = (file: string): Uint8Array => new Uint8Array(readFileSync(file));

/** The bits of numbers, so that -0 differs from 0 and one NaN equals another. */
export function bits(values: Float64Array): string[] {
  const words = new BigUint64Array(values.buffer, values.byteOffset, values.length);
  return Array.from(words, (word, i) => (Number.isNaN(values[i]) ? "NaN" : word.toString(16)));
}
