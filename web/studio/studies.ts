// The studies of a chart: what is computed, from what, and how it came out.
import type { Argument, Calculation } from "../package/src/catalogue.js";
import { aliasOf, columnNames, fullName, usualColumn } from "../package/src/catalogue.js";
import type { Engine, Note, Outcome } from "../package/src/engine.js";
import type { Series } from "./series.js";

export type Given = Readonly<Record<string, string | number>>;

export interface Study {
  readonly id: number;
  readonly calculation: Calculation;
  /** What is not as usual. A column of another study is named "ID:COLUMN". */
  readonly given: Given;
  readonly hidden: boolean;
  /** Colours that a person chose, by column. */
  readonly colours: Readonly<Record<number, string>>;
}

export interface Result {
  readonly outcome?: Outcome;
  /** What a calculation for single records found, record after record. */
  readonly notes?: readonly Note[];
  readonly error?: string;
}

/** "3:MACD": the study and the column of its result. */
export function readSource(text: string): { id: number; column: string } | undefined {
  const match = /^(\d+):(.+)$/s.exec(text);
  return match ? { id: Number(match[1]), column: match[2]! } : undefined;
}

/** The study that a column comes from; nothing for one of the file. */
export function studyOf(value: unknown, series: Series, studies: readonly Study[]): { study: Study; column: string } | undefined {
  if (typeof value !== "string" || series.numbers[value]) return undefined;
  const source = readSource(value);
  const study = studies.find((each) => each.id === source?.id);
  return source && study ? { study, column: source.column } : undefined;
}

/** The studies that a study computes from, directly or through others; also those that are there no more. */
export function dependencies(study: Study, series: Series, studies: readonly Study[], seen = new Set<number>()): Set<number> {
  for (const value of Object.values(study.given)) {
    const id = typeof value === "string" && !series.numbers[value] ? readSource(value)?.id : undefined;
    if (id === undefined || seen.has(id)) continue;
    seen.add(id);
    const source = studies.find((each) => each.id === id);
    if (source) dependencies(source, series, studies, seen);
  }
  return seen;
}

/** The names of a study's columns. */
export function namesOf({ calculation, given }: Study): string[] {
  return columnNames(calculation, given);
}

/** Studies after one of them has got other names for its columns: those that are computed from these follow. */
export function renamed(studies: readonly Study[], before: Study, after: Study): Study[] {
  const names = namesOf(after);
  const moved = new Map(namesOf(before).map((name, i) => [`${before.id}:${name}`, `${after.id}:${names[i]}`]));
  return studies.map((study) => {
    if (!Object.values(study.given).some((value) => moved.has(String(value)))) return study;
    return { ...study, given: Object.fromEntries(Object.entries(study.given).map(([name, value]) => [name, moved.get(String(value)) ?? value])) };
  });
}

/** The one record that a calculation looks at, so that it can be made for each; nothing where it has none or several. */
export function recordArgument(calculation: Calculation): Argument | undefined {
  const records = calculation.arguments.filter((argument) => argument.record);
  return calculation.result === "Note" && records.length === 1 ? records[0] : undefined;
}

/** What a person sees in the form for an argument that was not given. */
export function usualOf(argument: Argument, series: Series): string | number {
  const usual = argument.usual ?? argument.default;
  if (typeof usual === "boolean") return usual ? "True" : "False";
  if (argument.type !== "Field" && argument.type !== "String" && usual === "N") return series.count;
  if (argument.type === "Field") return usualColumn(argument);
  return usual ?? "";
}

/** Computes studies, each once, those it builds on before it. */
export class Computation {
  private readonly results = new Map<number, Result>();

  constructor(
    private readonly engine: Engine,
    private readonly series: Series,
    private readonly studies: readonly Study[],
    /** Results that still hold. */
    kept: ReadonlyMap<number, Result> = new Map(),
  ) {
    for (const [id, result] of kept) this.results.set(id, result);
  }

  all(): ReadonlyMap<number, Result> {
    for (const study of this.studies) this.result(study, []);
    return this.results;
  }

  private result(study: Study, path: readonly number[]): Result {
    let result = this.results.get(study.id);
    if (!result) {
      try {
        result = this.compute(study, [...path, study.id]);
      } catch (error) {
        result = { error: this.dated(error instanceof Error ? error.message : String(error)) };
      }
      this.results.set(study.id, result);
    }
    return result;
  }

  /** A message with the date of the record that it names. */
  private dated(text: string): string {
    return text.replace(/ in record (\d+)/, (words, record) => {
      const label = this.series.labels[Number(record) - 1];
      return label === undefined || label === record ? words : `${words} (${label})`;
    });
  }

  private compute(study: Study, path: readonly number[]): Result {
    const given: Record<string, unknown> = {};
    for (const [name, value] of Object.entries(study.given)) {
      const argument = study.calculation.arguments.find((each) => each.name === name);
      given[name] = argument?.type === "Field" ? this.column(String(value), path) : value;
    }
    const record = recordArgument(study.calculation);
    if (record) return { notes: this.engine.callEach(study.calculation, record, this.series.numbers, given) };
    return { outcome: this.engine.call(study.calculation, this.series.numbers, given) };
  }

  /** A column of the file, or of another study: by its number, or the latest that has one of that name. */
  private column(name: string, path: readonly number[]): unknown {
    if (this.series.numbers[name]) return name;
    const source = readSource(name);
    if (!source) return name;
    const study = this.studies.find((each) => each.id === source.id);
    if (!study) throw new Error(`The study that "${source.column}" came from was removed. Choose another source.`);
    if (path.includes(study.id)) throw new Error("A study cannot be computed from itself.");
    const { outcome, error } = this.result(study, path);
    if (error) throw new Error(`Its source, ${fullName(study.calculation)}, could not be computed.`);
    const column = outcome?.columns.find((each) => each.name === source.column);
    if (!column) throw new Error(`${fullName(study.calculation)} has no column "${source.column}".`);
    return column.values;
  }
}

/** "MACD 12 26 9": a study's name and what it was told, as legends have it. */
export function titleOf(study: Study, series: Series): string {
  const alias = aliasOf(study.calculation, study.given);
  const short = alias || (study.calculation.abbreviations[0] ?? spaced(study.calculation.name));
  const values = study.calculation.arguments
    .filter((argument) => !["Database", "RecordSet", "String"].includes(argument.type) && !argument.record)
    .filter((argument) => argument.type !== "Field" || study.given[argument.name] !== undefined)
    .map((argument) => {
      const value = study.given[argument.name] ?? usualOf(argument, series);
      const choice = argument.choices?.find((each) => each.code === Number(value));
      return choice ? choice.name : String(readSource(String(value))?.column ?? value);
    });
  const { module } = study.calculation;
  return [...(module ? [module] : []), short, ...values].join(" ");
}

/** "Bollinger Bands" of "BollingerBands". */
export function spaced(name: string): string {
  return name
    .replace(/_/g, " ")
    .replace(/([a-z0-9])([A-Z])/g, "$1 $2")
    .replace(/([A-Z])([A-Z][a-z])/g, "$1 $2");
}
