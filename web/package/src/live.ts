// Series that grow: a record is appended or revised, and what is kept on the series is up to date.
import { type Argument, type Calculation, checkNames, fullName, functionName, namedArguments, shaped } from "./catalogue.js";
import { type Columns, commonLength, type Engine, findColumn, isValues, PRICE_NAMES, readValue, type ResultColumn, type Values } from "./engine.js";
import { failure, type Failure, NAME_UNKNOWN, OrvexError, refuse } from "./errors.js";
import type { LiveCalls } from "./generated.js";
import { type Exports, type Library, made } from "./module.js";

/** The prices of one record, null where it has none. Those that are left out are those of `close`, and its volume is 0. */
export interface LiveRecord {
  readonly open?: number | null;
  readonly high?: number | null;
  readonly low?: number | null;
  readonly close: number | null;
  readonly volume?: number | null;
  /** For those that begin anew with each session, day or week: "2024-01-31", with a time behind it or without. */
  readonly date?: string | null;
}

/** Columns of prices by name, whatever the case of its letters, and the dates of the records as texts. */
export interface LivePrices {
  readonly [name: string]: Values | readonly string[] | undefined;
}

/** What a call is kept on: a price by its name, or a column that is kept already. */
export type LiveSource = string | Kept<Float64Array>;

/** What a kept call takes and what it gives. */
export interface LiveCall<Options, Result> {
  readonly options: Options;
  readonly result: Result;
}

type Words<Options> = Record<never, never> extends Options ? [options?: Options] : [options: Options];

/** The last values of a result. */
export type Last<Result> = Result extends Float64Array ? number : { readonly [Name in keyof Result]: number };

/** The names of a result's columns, where there are several. */
type ColumnName<Result> = unknown extends Result ? string : Result extends Float64Array ? never : keyof Result & string;

/** A call that is kept, as the module has it, with copies of its columns: those grow as the columns do. */
class Course {
  private rooms: Float64Array[] = [];
  private copied: Float64Array[] = [];

  constructor(
    readonly series: LiveSeries,
    readonly calculation: Calculation,
    private place: number,
    private readonly library: Library,
  ) {}

  get address(): number {
    if (this.place === 0 || this.series.released) throw new TypeError(`${functionName(this.calculation)} is kept no more`);
    return this.place;
  }

  end(): void {
    this.place = 0;
  }

  get count(): number {
    return this.library.exports.orvex_kept_count(this.address);
  }

  /** How many columns there are already. */
  get width(): number {
    return this.library.exports.orvex_kept_columns(this.address);
  }

  get error(): OrvexError | undefined {
    const address = this.library.exports.orvex_kept_error(this.address);
    return address === 0 ? undefined : failure(this.calculation, JSON.parse(this.library.text(address)) as Failure);
  }

  last(column: number): number {
    return this.library.exports.orvex_kept_last(this.address, column);
  }

  /** The columns. Only rows that are not as they were at the last reading are copied. */
  values(): readonly Float64Array[] {
    const { exports } = this.library;
    const { address, count } = this;
    const standing = Math.min(exports.orvex_kept_standing(address), this.copied[0]?.length ?? 0);
    if (this.copied.length === this.width && standing === count) return this.copied;
    this.copied = Array.from({ length: this.width }, (_, i) => {
      const room = this.roomFor(i, count, standing);
      const rows = this.library.doubles(exports.orvex_kept_rows(address, i), count);
      room.set(rows.subarray(standing), standing);
      return room.subarray(0, count);
    });
    return this.copied;
  }

  /** Where a column is copied to. What was given out before stays as it is there, but for the last record. */
  private roomFor(column: number, count: number, standing: number): Float64Array {
    const room = this.rooms[column];
    const given = this.copied[column]?.length ?? 0;
    if (room && count <= room.length && standing >= given - 1) return room;
    const larger = new Float64Array(standing > 0 ? Math.max(count, 2 * standing) : count);
    if (room) larger.set(room.subarray(0, standing));
    this.rooms[column] = larger;
    return larger;
  }

  columns(): readonly ResultColumn[] {
    const { exports } = this.library;
    const { address } = this;
    return this.values().map((values, i) => ({
      name: this.library.text(exports.orvex_kept_name(address, i)),
      values,
      first: exports.orvex_kept_first_row(address, i),
      last: exports.orvex_kept_last_row(address, i),
    }));
  }
}

/** A call that is kept on a live series, as `LiveSeries.keep` returns it. */
export class Kept<Result = unknown> {
  /** @internal */
  constructor(
    /** @internal */
    readonly course: Course,
    /** @internal */
    readonly only?: number,
  ) {}

  /** Of how many records the values are: those of the series, or fewer where the last change has failed. */
  get count(): number {
    return this.course.count;
  }

  /** What the last change has failed with. The values are those of the records before then. */
  get error(): OrvexError | undefined {
    return this.course.error;
  }

  /**
   * The column, or an object of the columns, NaN in rows that are not computed.
   *
   * An array stays as long as it is, and readable, whatever becomes of the series: records that come, and revisions, show
   * in a new one. What it has for the last record may change with a revision. Reading costs what has changed since the
   * last time, whatever the length of the series.
   */
  get values(): Result {
    const { calculation } = this.course;
    const columns = this.course.values();
    const all = columns.length > 0 ? columns : calculation.columns.map(() => new Float64Array());
    return (this.only === undefined ? shaped(calculation, all) : all[this.only]) as Result;
  }

  /** The last value, or an object of the last values of the columns; nothing where there is none yet. */
  get last(): Last<Result> | undefined {
    const { width } = this.course;
    if (width === 0) return undefined;
    const lasts = this.only === undefined ? Array.from({ length: width }, (_, i) => this.course.last(i)) : [];
    return (this.only === undefined ? shaped(this.course.calculation, lasts) : this.course.last(this.only)) as Last<Result>;
  }

  /** The columns under the names that the library gives them, with their computed rows; none where there are none yet. */
  get columns(): readonly ResultColumn[] {
    const columns = this.course.columns();
    return this.only === undefined ? columns : columns.slice(this.only, this.only + 1);
  }

  /** One column of several, to be looked at or to keep another call on. */
  column(name: ColumnName<Result>): Kept<Float64Array> {
    const { calculation } = this.course;
    const names = Object.keys(shaped(calculation, []) ?? {});
    const place = names.indexOf(name);
    if (this.only !== undefined || place < 0) {
      throw new TypeError(`${functionName(calculation)} has no column "${String(name)}" to choose; it has ${names.join(", ") || "one"}`);
    }
    return new Kept<Float64Array>(this.course, place);
  }
}

/** Gives back the memory of series that were forgotten without being released. */
const forgotten = new FinalizationRegistry<{ exports: Exports; address: number }>(({ exports, address }) => exports.orvex_live_end(address));

/**
 * Prices that grow, and calls that are kept on them.
 *
 * Only records that are new are computed, with the same bits as a call on all of them: a change costs the same however
 * long the series is.
 *
 * ```js
 * const live = new LiveSeries(await load());
 * const rsi = live.keep("relativeStrengthIndex", { periods: 14 });
 * live.append({ close: 10.5, volume: 100 });
 * console.log(rsi.last, rsi.values, rsi.error);
 * ```
 */
export class LiveSeries {
  private readonly engine: Engine;
  private readonly library: Library;
  private readonly exports: Exports;
  /** A bit for each price that it has. */
  private readonly has: number;
  private address: number;
  private records = 0;

  /**
   * @param orvex what `load` gives.
   * @param prices what there is already. What they do not have of `open`, `high`, `low`, `close` and `volume` the series
   *   never has. Without them it is empty. `date` may be among them.
   */
  constructor(orvex: { readonly engine: Engine }, prices: LivePrices = {}) {
    this.engine = orvex.engine;
    this.library = this.engine.library;
    this.exports = this.library.exports;
    const given = pricesOf(prices);
    this.has = given.count === 0 ? ALL_PRICES : given.bits;
    this.address = this.withRows(given, (...rows) => made(this.exports.orvex_live_begin(...rows)));
    this.records = given.count;
    forgotten.register(this, { exports: this.exports, address: this.address }, this);
  }

  /** How many records there are. */
  get count(): number {
    return this.records;
  }

  /** @internal */
  get released(): boolean {
    return this.address === 0;
  }

  /** Adds a record, `append({ close: 10.5, volume: 100 })`, or all records of an object of columns, in one change. */
  append(prices: LiveRecord | LivePrices): void {
    if (Object.values(prices).some(isValues)) {
      const given = pricesOf(prices as LivePrices);
      const missing = PRICE_NAMES.find((_, i) => this.has & ~given.bits & (1 << i));
      if (missing !== undefined) refuse(`There is no column "${missing}", which the series has`, NAME_UNKNOWN);
      const live = this.open();
      this.withRows(given, (...rows) => this.check(this.exports.orvex_live_append_rows(live, ...rows)));
      this.records += given.count;
    } else {
      this.withRecord(prices as LiveRecord, (...numbers) => this.exports.orvex_live_append(...numbers));
      ++this.records;
    }
  }

  /** Puts another record in the place of the last one. */
  revise(record: LiveRecord): void {
    if (this.records === 0) throw new RangeError("there is no record to revise");
    this.withRecord(record, (...numbers) => this.exports.orvex_live_revise(...numbers));
  }

  /**
   * Keeps a call of a function and computes it at once: `keep("macd", { shortCycle: 12 })`, `keep("standard.ema")`.
   *
   * A column is a price by its name, `{ source: "high" }`, or what is kept already, `{ source: other }`: the call then
   * begins behind the rows that have no value. Other options are those of the function. Where the call itself fails, now
   * or later, that is told by `error` and not thrown.
   */
  keep<Name extends keyof LiveCalls>(name: Name, ...options: Words<LiveCalls[Name]["options"]>): Kept<LiveCalls[Name]["result"]>;
  /** The same of a calculation of `engine`, its arguments under the catalogue's names. */
  keep(calculation: Calculation, given?: Readonly<Record<string, unknown>>): Kept;
  keep(wanted: string | Calculation, ...words: readonly unknown[]): Kept {
    const { place, calculation } = this.engine.own(typeof wanted === "string" ? this.find(wanted) : wanted);
    const given = typeof wanted === "string" ? namedArguments(calculation, words) : ((words[0] ?? {}) as Readonly<Record<string, unknown>>);
    checkNames(calculation, given);
    if (calculation.columns.length === 0) throw new TypeError(`${functionName(calculation)} gives no columns to keep`);
    const live = this.open();
    const kept = made(this.exports.orvex_kept_begin(place));
    try {
      calculation.arguments.forEach((argument, i) => {
        if (given[argument.name] !== undefined) this.give(kept, i, argument, given[argument.name]);
      });
      this.check(this.exports.orvex_kept_keep(kept, live), calculation);
    } catch (error) {
      this.exports.orvex_kept_end(kept);
      throw error;
    }
    return new Kept(new Course(this, calculation, kept, this.library));
  }

  /** Lets go of a kept call, which is not computed any further. An OrvexError where another one is kept on it. */
  drop(kept: Kept): void {
    this.check(this.exports.orvex_kept_drop(this.addressOf(kept), this.open()), kept.course.calculation);
    kept.course.end();
  }

  /** Gives the memory of the series and of all that is kept on it back. What was read stays; nothing else works any more. */
  release(): void {
    if (this.released) return;
    forgotten.unregister(this);
    this.exports.orvex_live_end(this.address);
    this.address = 0;
  }

  private open(): number {
    if (this.released) throw new TypeError("the series was released");
    return this.address;
  }

  /** Hands those prices that the series has to the module, and the dates. */
  private withRows<T>({ found, dates, count }: Given, use: (room: number, count: number, columns: number, dates: number, sizes: number) => T): T {
    const columns = found.filter(({ bit }) => this.has & bit);
    return this.library.withColumns(columns, (room) =>
      dates ? this.library.withTexts(dates, (texts, sizes) => use(room, count, this.has, texts, sizes)) : use(room, count, this.has, 0, 0),
    );
  }

  private withRecord(record: LiveRecord, use: (...words: [number, ...RecordNumbers, number, number]) => number): void {
    const live = this.open();
    const numbers = numbersOf(record);
    if (typeof record.date !== "string") this.check(use(live, ...numbers, 0, 0));
    else this.library.withText(record.date, (text, size) => this.check(use(live, ...numbers, text, size)));
  }

  private find(name: string): Calculation {
    const found = this.engine.calculations.find((each) => functionName(each) === name);
    if (!found) throw new TypeError(`there is no function "${name}"`);
    return found;
  }

  private give(kept: number, place: number, argument: Argument, value: unknown): void {
    if (value instanceof Kept) {
      if (argument.type !== "Field") throw new TypeError(`${argument.name} is no column`);
      made(this.exports.orvex_kept_column(kept, place, this.addressOf(value), onlyColumn(value)));
      return;
    }
    if (argument.type === "Field" && typeof value !== "string") {
      throw new TypeError(`${argument.name} is the name of a price or what is kept already`);
    }
    const read = argument.type === "Field" ? (value as string) : readValue(argument, value);
    if (typeof read === "number") made(this.exports.orvex_kept_number(kept, place, read));
    else this.library.withText(read, (text, size) => made(this.exports.orvex_kept_text(kept, place, text, size)));
  }

  private addressOf(kept: Kept): number {
    if (kept.course.series !== this) throw new TypeError(`${functionName(kept.course.calculation)} is kept on another series`);
    return kept.course.address;
  }

  /** Throws what the module tells of, if anything. */
  private check(address: number, calculation?: Calculation): void {
    if (address === 0) return;
    const error = JSON.parse(this.library.text(address)) as Failure;
    if (calculation) throw failure(calculation, error);
    throw new OrvexError(error.description, error.number, error.source, error.description);
  }
}

const ALL_PRICES = (1 << PRICE_NAMES.length) - 1;

/** Records as they were given. */
interface Given {
  readonly found: readonly { readonly name: string; readonly bit: number; readonly values: Values }[];
  /** A bit for each price that is there. */
  readonly bits: number;
  readonly dates: readonly string[] | undefined;
  readonly count: number;
}

function pricesOf(columns: LivePrices): Given {
  const dates = findColumn(columns as Columns, "Date") as readonly unknown[] | undefined;
  const found = PRICE_NAMES.flatMap((name, i) => {
    const values = findColumn(columns as Columns, name);
    return values ? [{ name, bit: 1 << i, values }] : [];
  });
  if (found.length === 0 && Object.keys(columns).length > 0) refuse(`There are no prices: they are columns called ${PRICE_NAMES.join(", ")}`);
  const count = commonLength([...found, ...(dates ? [{ name: "Date", values: dates }] : [])]);
  const bits = found.reduce((all, { bit }) => all | bit, 0);
  return { found, bits, dates: dates && Array.from(dates, (date) => String(date ?? "")), count };
}

type RecordNumbers = [open: number, high: number, low: number, close: number, volume: number];

const RECORD_NAMES: readonly string[] = [...PRICE_NAMES.map((name) => name.toLowerCase()), "date"];

function numbersOf(record: LiveRecord): RecordNumbers {
  const { close, open = close, high = close, low = close, volume = 0 } = record;
  for (const [name, value] of Object.entries(record) as [string, unknown][]) {
    if (!RECORD_NAMES.includes(name)) throw new TypeError(`a record has no "${name}"; it has ${RECORD_NAMES.join(", ")}`);
    const wanted = name === "date" ? "string" : "number";
    if (value !== undefined && value !== null && typeof value !== wanted) throw new TypeError(`${name} must be a ${wanted}`);
  }
  if (close === undefined) throw new TypeError("a record needs its close");
  return [open ?? NaN, high ?? NaN, low ?? NaN, close ?? NaN, volume ?? NaN];
}

/** The column that a call is kept on. */
function onlyColumn(kept: Kept): number {
  const { calculation } = kept.course;
  if (kept.only === undefined && calculation.columns.length > 1) {
    throw new TypeError(`${fullName(calculation)} has several columns; choose one of them: kept.column("...")`);
  }
  return kept.only ?? 0;
}
