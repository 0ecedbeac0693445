// What the library knows of its calculations. The module tells it in JSON; these are its types.
import { checkOptions, refuse } from "./errors.js";

export interface Choice {
  readonly code: number;
  readonly name: string;
}

export interface Argument {
  /** Its name in the catalogue: `ShortCycle`. */
  readonly name: string;
  /** Its name in snake_case: `short_cycle`. */
  readonly key: string;
  readonly type: "Database" | "RecordSet" | "Field" | "Integer" | "Long" | "Double" | "String" | "Boolean";
  readonly help: string;
  readonly optional: boolean;
  readonly written: boolean;
  /** It is a record of the series, so that the call can be made for each. */
  readonly record: boolean;
  /** It is a column whose changes of value begin sessions. */
  readonly session: boolean;
  readonly default?: number | string | boolean;
  /** What people take unless they know better: a number, the name of a price column, an expression of the count N. */
  readonly usual?: number | string;
  /** What its codes mean, where it is one. */
  readonly choices?: readonly Choice[];
}

export interface Column {
  /** Its name, or what follows the alias in it. */
  readonly name: string;
  readonly aliased: boolean;
  /** Its name where nothing else is asked for. */
  readonly title: string;
  /** The same in snake_case. */
  readonly key: string;
  readonly firstRow: string;
  readonly lastRow: string;
  readonly help: string;
  readonly unit: string;
  readonly low: number | null;
  readonly high: number | null;
  readonly place: "Pane" | "Over" | "Apart";
  readonly style: "Line" | "Bars" | "Dots" | "Marks" | "BandEdge";
}

export interface Fault {
  readonly number: number;
  readonly source: string;
  readonly description: string;
}

export interface Guide {
  readonly formula: string;
  readonly reading: string;
  readonly origin: string;
  readonly difference: string;
  readonly fails: string;
}

/** One calculation: `Oscillator.MACD`. */
export interface Calculation {
  readonly class: string;
  /** What a program in C++ includes for it. */
  readonly header: string;
  readonly name: string;
  /** Its name in snake_case: `macd`. */
  readonly key: string;
  /** The part of the package in which it is found: that of its class where it has a name that another bears already. */
  readonly module: string;
  readonly help: string;
  readonly signature: string;
  readonly purpose: string;
  readonly abbreviations: readonly string[];
  readonly guide: Guide;
  /** The heights of the lines that guide the eye in its pane. */
  readonly levels: readonly number[];
  readonly arguments: readonly Argument[];
  readonly result: string;
  readonly columns: readonly Column[];
  readonly errors: readonly Fault[];
}

/** The column of prices that a call takes where none is given. Texts are no column, so sessions are not told by dates. */
export function usualColumn(argument: Argument): string {
  return argument.session ? "Session" : String(argument.usual ?? argument.name);
}

export function fullName(calculation: Calculation): string {
  return `${calculation.class}.${calculation.name}`;
}

/** `short_cycle` becomes `shortCycle`, "di+" `diPlus`, "%K" `percentK`, "quadrant 75" `quadrant75`. */
export function camelCase(key: string): string {
  const words = key
    .replace(/%/g, "percent ")
    .replace(/\+$/, " plus")
    .replace(/-$/, " minus")
    .split(/[^A-Za-z0-9]+/)
    .filter(Boolean);
  return words.map((word, i) => (i === 0 ? word.charAt(0).toLowerCase() : word.charAt(0).toUpperCase()) + word.slice(1)).join("");
}

/** What callers write for it: `macd`, `standard.ema`. */
export function functionName(calculation: Calculation): string {
  return (calculation.module ? `${calculation.module}.` : "") + camelCase(calculation.key);
}

/** The arguments that callers give by name: series and their sets of prices are made of the columns. */
function givenByName(calculation: Calculation): readonly Argument[] {
  return calculation.arguments.filter(({ type }) => type !== "Database" && type !== "RecordSet");
}

/** Refuses arguments that are not those of the calculation under the catalogue's names. */
export function checkNames(calculation: Calculation, given: unknown): void {
  checkOptions(fullName(calculation), given, givenByName(calculation).map(({ name }) => name), "argument");
}

/** Arguments as callers write them, in one object behind the columns, by their names in the catalogue. */
export function namedArguments(calculation: Calculation, words: readonly unknown[]): Record<string, unknown> {
  const [options = {}, ...more] = words;
  const names = new Map(givenByName(calculation).map((argument) => [camelCase(argument.key), argument.name]));
  checkOptions(functionName(calculation), options, [...names.keys()]);
  if (more.length > 0) refuse(`${functionName(calculation)} takes nothing behind its options`);
  return Object.fromEntries(Object.entries(options).map(([key, value]) => [names.get(key), value]));
}

/** The names of its result's columns: its own, or those of the alias that it was given. */
export function columnNames(calculation: Calculation, given: Readonly<Record<string, unknown>>): string[] {
  const alias = aliasOf(calculation, given);
  return calculation.columns.map((column) => (column.aliased && alias ? alias + column.name : column.title));
}

export function aliasOf(calculation: Calculation, given: Readonly<Record<string, unknown>>): string {
  const argument = calculation.arguments.find((each) => each.type === "String");
  return String((argument && given[argument.name]) ?? "");
}

/** What each column holds, as callers want it: one by itself, several by name. */
export function shaped(calculation: Calculation, columns: readonly unknown[]): unknown {
  if (calculation.columns.length === 1) return columns[0];
  return Object.fromEntries(calculation.columns.map((column, i) => [camelCase(column.key), columns[i]]));
}
