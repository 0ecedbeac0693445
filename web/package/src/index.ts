// Technical analysis of price series: `const { macd } = await load(); macd(close, { shortCycle: 12 })`.
import { type Calculation, camelCase, functionName, namedArguments, shaped } from "./catalogue.js";
import { A_COLUMN, type Columns, Engine, isValues, type Outcome } from "./engine.js";
import { refuse } from "./errors.js";
import type { Functions, Modules } from "./generated.js";

export type { Argument, Calculation, Choice, Column, Fault, Guide } from "./catalogue.js";
export { camelCase, fullName } from "./catalogue.js";
export type { Columns, Note, Outcome, PriceColumn, PriceTable, ReadOptions, ResultColumn, Values } from "./engine.js";
export { daysOf, Engine } from "./engine.js";
export { OrvexError } from "./errors.js";
export type * from "./generated.js";
export { LiveSeries } from "./live.js";
export type { Kept, LiveCall, LivePrices, LiveRecord, LiveSource } from "./live.js";

/** All calculations as functions, and what they are made of. */
export type Orvex = Functions & Modules & { readonly engine: Engine };

type Source = BufferSource | WebAssembly.Module | Response | URL;

async function compile(source: Source): Promise<WebAssembly.Module> {
  if (source instanceof WebAssembly.Module) return source;
  if (source instanceof URL) {
    if (source.protocol === "file:" && "process" in globalThis) {
      const files = (await import("node:fs/promises")) as typeof import("node:fs/promises");
      return WebAssembly.compile(await files.readFile(source));
    }
    return compile(await fetch(source));
  }
  if (typeof Response !== "undefined" && source instanceof Response) {
    return WebAssembly.compile(await source.arrayBuffer());
  }
  return WebAssembly.compile(source as BufferSource);
}

/** The columns of a call as its callers write it: one after the other, or all prices in one object. */
function bind(engine: Engine, calculation: Calculation): (...words: unknown[]) => unknown {
  const columns = calculation.arguments.filter((argument) => argument.type === "Field" || argument.type === "RecordSet");
  return (...words) => {
    const given: Record<string, unknown> = {};
    let prices: Columns = {};
    let at = 0;
    for (const argument of columns) {
      const word = words[at];
      if (isValues(word) && argument.type === "Field") {
        given[argument.name] = word;
        ++at;
      } else if (at === 0 && typeof word === "object" && word !== null && !isValues(word)) {
        // One object of prices serves all that follow, but for those that come by themselves.
        prices = word as Columns;
        ++at;
      } else if (at === 0 || isValues(words[0])) {
        const wanted = argument.type === "Field" ? `a column is wanted for ${argument.name}; ${A_COLUMN}` : `an object of prices is wanted for ${argument.name}`;
        refuse(`${functionName(calculation)}: ${wanted}`);
      }
    }
    Object.assign(given, namedArguments(calculation, words.slice(at)));
    return shape(calculation, engine.call(calculation, prices, given));
  };
}

/** Columns, or a note or a value as it is. */
function shape(calculation: Calculation, outcome: Outcome): unknown {
  if (calculation.result !== "RecordSet") return outcome.note ?? outcome.value;
  return shaped(calculation, outcome.columns.map((column) => column.values));
}

/**
 * Starts the library.
 * @param source the module, or where it is; the file beside this one unless told otherwise.
 */
export async function load(source: Source = new URL("./orvex.wasm", import.meta.url)): Promise<Orvex> {
  const engine = await Engine.start(await compile(source));
  const library: Record<string, unknown> = { engine };
  for (const calculation of engine.calculations) {
    const name = camelCase(calculation.key);
    const module = calculation.module;
    const home = module ? ((library[module] ??= {}) as Record<string, unknown>) : library;
    home[name] ??= bind(engine, calculation);
  }
  return library as unknown as Orvex;
}
