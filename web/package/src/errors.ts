// What goes wrong, as an error of JavaScript.
import { type Calculation, fullName } from "./catalogue.js";

/** A call that failed. The library has made nothing then, and may be called again. */
export class OrvexError extends Error {
  override readonly name = "OrvexError";
  constructor(
    message: string,
    /** The number by which the library knows the error. */
    readonly number: number,
    /** What raised it. */
    readonly source: string,
    /** The library's own words. */
    readonly description: string,
    /** The record at which it happened, from 1, where it happened at one. */
    readonly record?: number,
    /** What went wrong there, where that is more than the description says. */
    readonly reason?: string,
  ) {
    super(message);
  }
}

export const TYPE_MISMATCH = 13;
export const NAME_UNKNOWN = 1110;
export const OUT_OF_MEMORY = 7;

export function refuse(message: string, number = TYPE_MISMATCH): never {
  throw new OrvexError(message, number, "Orvex", message);
}

/** Refuses options that are no object, and those that nobody knows: a slip of the pen would go unnoticed. */
export function checkOptions(owner: string, options: unknown, names: readonly string[], word = "option"): asserts options is Record<string, unknown> {
  const isObject = typeof options === "object" && options !== null && !Array.isArray(options) && !ArrayBuffer.isView(options);
  const known = names.join(", ") || "none";
  if (!isObject) refuse(`${owner} takes its ${word}s in an object, { name: value }; it has ${known}`);
  for (const name of Object.keys(options)) if (!names.includes(name)) refuse(`${owner} has no ${word} "${name}"; it has ${known}`);
}

/** An error as the module tells it. */
export interface Failure {
  number: number;
  source: string;
  description: string;
  /** What was met first, and in which record. */
  cause?: { description: string };
  record?: number;
  gap?: { column: string; record: number };
}

/** The library's words, and what is known of what lies behind them. */
export function failure(calculation: Calculation, error: Failure): OrvexError {
  const { gap, cause } = error;
  const record = error.record ?? gap?.record;
  // A word goes on in small letters; EOF and BOF stay what they are.
  const met = cause?.description.replace(/^[A-Z](?![A-Z])/, (letter) => letter.toLowerCase());
  const reason = gap ? `${gap.column} has no value in record ${gap.record}, and values before and behind it` : met;
  const where = gap || record === undefined ? "" : ` in record ${record}`;
  const fails = reason !== undefined && calculation.guide.fails ? ` Fails ${calculation.guide.fails}.` : "";
  const text = `${fullName(calculation)}: ${reason ?? error.description}${where}.${fails} (${error.number}, ${error.source})`;
  return new OrvexError(text, error.number, error.source, error.description, record, reason);
}
