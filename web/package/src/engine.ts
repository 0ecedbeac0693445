// The library as it is called from JavaScript, with the catalogue's own names.
import { type Argument, type Calculation, checkNames, columnNames, fullName, usualColumn } from "./catalogue.js";
import { checkOptions, failure, type Failure, NAME_UNKNOWN, OrvexError, refuse } from "./errors.js";
import { type Exports, Library, made } from "./module.js";

/**
 * One value a record: a typed array or another array of numbers. What is not computed, or was never there, is NaN, null or
 * undefined: at the beginning and at the end of it.
 */
export type Values = ArrayLike<number | null | undefined>;

/** Columns by name; `Open`, `High`, `Low`, `Close` and `Volume` are found whatever the case of their letters. */
export interface Columns {
  readonly [name: string]: Values | undefined;
}

export interface ResultColumn {
  readonly name: string;
  /** NaN in the rows that are not computed. */
  readonly values: Float64Array;
  /** The computed rows, counted from 1; none where `first` is above `last`. */
  readonly first: number;
  readonly last: number;
}

export interface Note {
  readonly record: number;
  readonly value: number;
  readonly text: string;
}

/** What came of a call: columns, a note or a plain value. */
export interface Outcome {
  readonly columns: readonly ResultColumn[];
  readonly note?: Note;
  readonly value?: number | string | boolean;
}

const SECONDS_A_DAY = 86_400;

/** A column of a price file: numbers, NaN where there are none, or texts. */
export interface PriceColumn {
  readonly name: string;
  readonly values: Float64Array | readonly string[];
}

/** What a price file holds, the oldest record first. */
export interface PriceTable {
  readonly count: number;
  /** In the order of the file, under the names of the six price columns where they are these. */
  readonly columns: readonly PriceColumn[];
  /** Seconds since 1970; none where the dates were not read as such. */
  readonly times: Float64Array;
  /** What was decided and is not certain. */
  readonly remarks: readonly string[];
}

export interface ReadOptions {
  /** One character. Found out where it is left out, and so are the others. */
  readonly delimiter?: string | undefined;
  readonly decimal?: "." | "," | undefined;
  /** Records that are not in the order of their dates: newest first is turned round and anything else refused, or all is kept. */
  readonly order?: "check" | "keep" | undefined;
  /** A record without a price between others: refused, left out, or given the price of the record before. */
  readonly missing?: "refuse" | "skip" | "previous" | undefined;
}

interface TableReply {
  count: number;
  remarks: string[];
  columns: { name: string; texts?: string[] }[];
  error?: Failure & { line: number };
}

interface Reply {
  each?: { period: number; value: number; text: string }[];
  columns?: { name: string; rows: number; first: number; last: number }[];
  note?: { period: number; value: number; text: string };
  value?: number | string | boolean;
  error?: Failure;
}

const encoder = new TextEncoder();

const isWhole = (argument: Argument): boolean => argument.type === "Integer" || argument.type === "Long";

export function isValues(value: unknown): value is Values {
  return Array.isArray(value) || (ArrayBuffer.isView(value) && !(value instanceof DataView));
}

/** What to hand over, said where something else was. */
export const A_COLUMN = "a column is an array with a value for each record, null or NaN where there is none";

/** The column of that name, whatever the case of its letters. */
export function findColumn<Column extends Values>(columns: { readonly [name: string]: Column | undefined }, name: string): Column | undefined {
  const found = Object.keys(columns).find((each) => each.toLowerCase() === name.toLowerCase());
  const column = found === undefined ? undefined : (columns[found] ?? undefined);
  if (column !== undefined && !isValues(column)) refuse(`${found} is no column: ${A_COLUMN}`);
  return column;
}

/** The day of each time in seconds since 1970, as a number: a column of sessions for the methods that begin anew with each. */
export function daysOf(times: Values): Float64Array {
  return Float64Array.from(times, (time) => Math.floor((time ?? NaN) / SECONDS_A_DAY));
}

/** How many records the columns have, which must be as many each. */
export function commonLength(columns: readonly { readonly name: string; readonly values: ArrayLike<unknown> }[]): number {
  const count = columns.reduce((longest, { values }) => Math.max(longest, values.length), 0);
  for (const { name, values } of columns) {
    if (values.length !== count) refuse(`${name} has ${values.length} records, and another column ${count}`);
  }
  return count;
}

/** A column of results where nothing is computed. */
function withoutValues(name: string, count: number): ResultColumn {
  return { name, values: new Float64Array(count).fill(NaN), first: 1, last: 0 };
}

/** The options of a price file in the order in which the module takes them, what they may be, and how that is told. */
const READ_OPTIONS = [
  ["delimiter", /^[^\n]?$/u, "one character"],
  ["decimal", /^[.,]?$/, '"." or ","'],
  ["order", /^(check|keep|)$/, '"check" or "keep"'],
  ["missing", /^(refuse|skip|previous|)$/, '"refuse", "skip" or "previous"'],
] as const;

/** The options as the module reads them: lines, empty where it is to find out by itself. */
function readWords(options: ReadOptions): string {
  checkOptions("readPrices", options, READ_OPTIONS.map(([name]) => name));
  const words = READ_OPTIONS.map(([name, fits, known]) => {
    const word = String(options[name] ?? "");
    if (!fits.test(word)) refuse(`readPrices: ${name} must be ${known}, not ${JSON.stringify(word)}`);
    return word;
  });
  return words.join("\n");
}

export class Engine {
  /** All calculations, in the order of the library. */
  readonly calculations: readonly Calculation[];

  private readonly exports: Exports;
  private readonly places: ReadonlyMap<string, number>;

  private constructor(
    /** @internal */
    readonly library: Library,
  ) {
    this.exports = library.exports;
    this.calculations = JSON.parse(library.text(this.exports.orvex_catalogue())) as Calculation[];
    this.places = new Map(this.calculations.map((calculation, i) => [fullName(calculation), i]));
  }

  static async start(module: WebAssembly.Module): Promise<Engine> {
    return new Engine(await Library.start(module));
  }

  /** The calculation of that name, `Oscillator.MACD` or, of the house, `MACD`, whatever the case of its letters. */
  find(name: string): Calculation | undefined {
    const wanted = name.toLowerCase();
    return (
      this.calculations.find((each) => fullName(each).toLowerCase() === wanted) ??
      this.calculations.find((each) => each.module === "" && each.name.toLowerCase() === wanted)
    );
  }

  /**
   * Where a calculation stands here, and as it is here: it may be a copy, or that of another library.
   * @internal
   */
  own(calculation: Calculation): { readonly place: number; readonly calculation: Calculation } {
    // What is found by a name that does not exist is undefined, in a program without types.
    const name = typeof calculation === "object" && calculation !== null ? fullName(calculation) : String(calculation);
    const place = this.places.get(name);
    if (place === undefined) refuse(`${name} is no calculation of this library: take one of engine.calculations, or what engine.find finds`);
    return { place, calculation: this.calculations[place]! };
  }

  /**
   * Calls a calculation.
   * @param prices the columns of the series, as many records each.
   * @param given its arguments by the catalogue's names: numbers, texts, names of choices; a column, or the name of one.
   *   What is left out is as usual.
   */
  call(calculation: Calculation, prices: Columns, given: Readonly<Record<string, unknown>> = {}): Outcome {
    return this.make(calculation, prices, given, (call, count, own) => {
      const reply = this.reply(own, this.exports.orvex_call_run(call));
      const columns = (reply.columns ?? []).map(({ name, rows, first, last }, i) => {
        const values = this.library.doubles(this.exports.orvex_call_rows(call, i), rows).slice();
        return { name, first, last, values: values.fill(NaN, 0, first - 1).fill(NaN, last) };
      });
      return {
        // There are none where no record has a value in all columns that were given.
        columns: columns.length > 0 ? columns : columnNames(own, given).map((name) => withoutValues(name, count)),
        ...(reply.note && { note: { record: reply.note.period, value: reply.note.value, text: reply.note.text } }),
        ...(reply.value !== undefined && { value: reply.value }),
      };
    });
  }

  /**
   * Calls a calculation that returns a note once for each record.
   * @param record the argument that is the record.
   * @returns the notes of those records in which it found something.
   */
  callEach(calculation: Calculation, record: Argument, prices: Columns, given: Readonly<Record<string, unknown>> = {}): Note[] {
    return this.make(calculation, prices, { ...given, [record.name]: 1 }, (call, _, own) => {
      const place = own.arguments.findIndex(({ name }) => name === record.name);
      const { each } = this.reply(own, this.exports.orvex_call_run_each(call, place));
      return each!.map(({ period, value, text }) => ({ record: period, value, text }));
    });
  }

  /** Reads a price file as people have them, finding out how it is written. An OrvexError tells what it does not understand. */
  readPrices(file: Uint8Array | ArrayBuffer | string, options: ReadOptions = {}): PriceTable {
    const words = readWords(options);
    const bytes = typeof file === "string" ? encoder.encode(file) : file instanceof ArrayBuffer ? new Uint8Array(file) : file;
    if (!(bytes instanceof Uint8Array)) refuse("readPrices takes what a file holds: a Uint8Array, an ArrayBuffer or a text");
    const table = this.library.withText(words, (chosen, chosenSize) =>
      this.library.withBytes(bytes, (address, size) => made(this.exports.orvex_read(address, size, chosen, chosenSize))),
    );
    try {
      const reply = JSON.parse(this.library.text(this.exports.orvex_read_reply(table))) as TableReply;
      const { error } = reply;
      if (error) {
        const where = error.line > 0 ? `line ${error.line}: ` : "";
        throw new OrvexError(where + error.description, error.number, error.source, error.description);
      }
      const columns = reply.columns.map(({ name, texts }, i) => ({
        name,
        values: texts ?? this.library.doubles(this.exports.orvex_read_numbers(table, i), reply.count).slice(),
      }));
      const times = this.exports.orvex_read_times(table);
      return {
        count: reply.count,
        columns,
        times: times === 0 ? new Float64Array() : this.library.doubles(times, reply.count).slice(),
        remarks: reply.remarks,
      };
    } finally {
      this.exports.orvex_read_end(table);
    }
  }

  /** Columns of equal length as comma-separated values, to the byte as the command line prints them; NaN is left empty. */
  csv(columns: readonly PriceColumn[]): string {
    const table = made(this.exports.orvex_table_begin(commonLength(columns)));
    try {
      for (const { name, values } of columns) {
        if (values instanceof Float64Array) this.giveNumbers(table, name, values);
        else this.giveTexts(table, name, values);
      }
      return this.library.text(this.exports.orvex_table_csv(table));
    } finally {
      this.exports.orvex_table_end(table);
    }
  }

  private giveNumbers(table: number, name: string, values: Float64Array): void {
    let first = 0;
    let last = values.length;
    while (first < last && Number.isNaN(values[first])) ++first;
    while (last > first && Number.isNaN(values[last - 1])) --last;
    const rows = this.library.withText(name, (text, size) => this.exports.orvex_table_numbers(table, text, size, first + 1, last));
    this.library.fill(rows, name, values);
  }

  private giveTexts(table: number, name: string, texts: readonly string[]): void {
    this.library.withText(name, (text, size) =>
      this.library.withTexts(texts, (all, sizes) => made(this.exports.orvex_table_texts(table, text, size, all, sizes))),
    );
  }

  /** Builds a call, makes it and clears it away. */
  private make<T>(
    wanted: Calculation,
    prices: Columns,
    given: Readonly<Record<string, unknown>>,
    run: (call: number, count: number, own: Calculation) => T,
  ): T {
    const { place, calculation } = this.own(wanted);
    checkNames(calculation, given);
    const inputs = this.inputs(calculation, prices, given);
    const count = commonLength(inputs);
    const call = made(this.exports.orvex_call_begin(place, count));
    try {
      for (const input of inputs) this.giveColumn(call, input);
      calculation.arguments.forEach((argument, i) => {
        const value = given[argument.name];
        if (value !== undefined && argument.type !== "Field") this.giveValue(call, i, argument, value);
      });
      return run(call, count, calculation);
    } finally {
      this.exports.orvex_call_end(call);
    }
  }

  private reply(calculation: Calculation, address: number): Reply {
    const reply = JSON.parse(this.library.text(address)) as Reply;
    if (reply.error) throw failure(calculation, reply.error);
    return reply;
  }

  /** The columns that a call reads: those of its arguments, and the prices where it takes them all. */
  private inputs(calculation: Calculation, prices: Columns, given: Readonly<Record<string, unknown>>): Input[] {
    const inputs: Input[] = [];
    calculation.arguments.forEach((argument, i) => {
      if (argument.type === "RecordSet") {
        for (const name of PRICE_NAMES) {
          const values = findColumn(prices, name);
          if (values) inputs.push({ name, values });
        }
      } else if (argument.type === "Field") {
        const value = given[argument.name] ?? usualColumn(argument);
        if (isValues(value)) {
          inputs.push({ argument: i, name: argument.name, values: value });
        } else {
          const values = findColumn(prices, String(value));
          const help = argument.session ? ` of numbers that change where a session begins; daysOf(times) makes one of days` : "";
          if (!values) refuse(`${argument.name}: there is no column "${String(value)}"${help}`, NAME_UNKNOWN);
          inputs.push({ argument: i, name: String(value), values });
        }
      }
    });
    return inputs;
  }

  private giveColumn(call: number, { argument, name, values }: Input): void {
    const rows = this.library.withText(name, (text, size) =>
      argument === undefined
        ? this.exports.orvex_call_price(call, text, size, values.length)
        : this.exports.orvex_call_column(call, argument, text, size, values.length),
    );
    this.library.fill(rows, name, values);
  }

  private giveValue(call: number, place: number, argument: Argument, value: unknown): void {
    const read = readValue(argument, value);
    if (typeof read === "number") made(this.exports.orvex_call_number(call, place, read));
    else this.library.withText(read, (text, size) => made(this.exports.orvex_call_text(call, place, text, size)));
  }
}

/** The value of an argument that is no column: a text, or a number, that of a choice by its name as well. */
export function readValue(argument: Argument, value: unknown): number | string {
  if (argument.type === "String") {
    if (typeof value !== "string") refuse(`${argument.name} must be a text`);
    return value;
  }
  const choice = argument.choices?.find((each) => each.name.toLowerCase() === String(value).toLowerCase());
  const number = choice ? choice.code : typeof value === "boolean" ? Number(value) : value;
  if (typeof number !== "number") {
    const names = argument.choices?.map((each) => `${each.code} ${each.name}`).join(", ");
    refuse(`${argument.name} must be ${names ? `one of ${names}` : "a number"}`);
  }
  if (isWhole(argument) && !Number.isInteger(number)) refuse(`${argument.name} must be a whole number, not ${number}`);
  return number;
}

interface Input {
  argument?: number;
  name: string;
  values: Values;
}

/** The columns that a set of prices may have. */
export const PRICE_NAMES = ["Open", "High", "Low", "Close", "Volume"];
