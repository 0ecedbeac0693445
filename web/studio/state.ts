// What a chart shows beside its prices, as the address tells it and as a file carries it.
//
//   #/                                            the chart
//   #/Oscillator.MACD                             the page of a method
//   #/indicators                                  all of them by purpose
//   #/?study=Oscillator.MACD,ShortCycle=8&type=line&scale=log&volume=off&from=100&to=300
//
// Names and values are percent-encoded one by one. A source that is a column of another study is written N:COLUMN, N
// being that study's place among the studies.
import type { Engine } from "../package/src/engine.js";
import { fullName } from "../package/src/catalogue.js";
import { type Given, namesOf, readSource, type Study } from "./studies.js";

export const KINDS = ["candles", "bars", "line"] as const;
export type Kind = (typeof KINDS)[number];

export interface View {
  readonly kind: Kind;
  readonly volume: boolean;
  readonly log: boolean;
  /** The records in view, from 0, where they are not all of the latest. */
  readonly range?: { readonly from: number; readonly to: number };
}

export const PLAIN_VIEW: View = { kind: "candles", volume: true, log: false };

/** A study as addresses and files have it. */
export interface StudyWords {
  readonly method: string;
  readonly arguments?: Given;
  readonly hidden?: boolean;
  readonly colours?: Readonly<Record<number, string>>;
}

/** What a chart file carries: see chart_page.h, which writes it too. */
export interface ChartData {
  readonly name: string;
  /** Comma-separated values with a header line, oldest first. */
  readonly prices: string;
  readonly studies: readonly StudyWords[];
  readonly view?: Partial<View>;
}

export function wordsOf(studies: readonly Study[]): StudyWords[] {
  const places = new Map(studies.map((study, i) => [study.id, i + 1]));
  return studies.map((study) => ({
    method: fullName(study.calculation),
    arguments: Object.fromEntries(
      Object.entries(study.given).map(([name, value]) => {
        const source = typeof value === "string" ? readSource(value) : undefined;
        return [name, source ? `${places.get(source.id) ?? 0}:${source.column}` : value];
      }),
    ),
    ...(study.hidden && { hidden: true }),
    ...(Object.keys(study.colours).length > 0 && { colours: study.colours }),
  }));
}

/**
 * The studies that words name. A source that is no column of the file and bears the name of an earlier study's column is
 * that column, the latest of that name.
 * @returns them, and what of the words could not be understood.
 */
export function studiesOf(
  words: readonly StudyWords[],
  engine: Engine,
  columns: Readonly<Record<string, unknown>>,
): { studies: Study[]; problems: string[] } {
  const studies: Study[] = [];
  const problems: string[] = [];
  words.forEach((word, place) => {
    const calculation = engine.find(word.method);
    if (!calculation) {
      problems.push(`There is no method "${word.method}".`);
      return;
    }
    const given: Record<string, string | number> = {};
    for (const [name, value] of Object.entries(word.arguments ?? {})) {
      const argument = calculation.arguments.find((each) => each.name.toLowerCase() === name.toLowerCase());
      if (!argument) {
        problems.push(`${word.method} has no argument "${name}".`);
      } else if (argument.type === "Field") {
        given[argument.name] = sourceOf(String(value), studies, columns);
      } else if (argument.type === "String" || typeof value === "number") {
        given[argument.name] = value;
      } else {
        given[argument.name] = value.trim() === "" || Number.isNaN(Number(value)) ? value : Number(value);
      }
    }
    studies.push({
      id: place + 1,
      calculation,
      given,
      hidden: word.hidden ?? false,
      colours: Object.fromEntries(Object.entries(word.colours ?? {}).filter(([, colour]) => /^#[0-9a-f]{6}$/i.test(colour))),
    });
  });
  return { studies, problems };
}

function sourceOf(name: string, earlier: readonly Study[], columns: Readonly<Record<string, unknown>>): string {
  const own = Object.keys(columns).find((each) => each.toLowerCase() === name.toLowerCase());
  if (own !== undefined || readSource(name)) return own ?? name;
  for (const study of [...earlier].reverse()) {
    const column = namesOf(study).find((each) => each.toLowerCase() === name.toLowerCase());
    if (column !== undefined) return `${study.id}:${column}`;
  }
  return name;
}

const encode = (text: string | number): string => encodeURIComponent(text).replace(/%3A/g, ":");

export function encodeState(studies: readonly StudyWords[], view: View): string {
  const parts = studies.map((study) => {
    const words = [encode(study.method)];
    for (const [name, value] of Object.entries(study.arguments ?? {})) words.push(`${encode(name)}=${encode(value)}`);
    if (study.hidden) words.push("hidden");
    for (const [column, colour] of Object.entries(study.colours ?? {})) words.push(`colour${column}=${encode(colour)}`);
    return `study=${words.join(",")}`;
  });
  if (view.kind !== PLAIN_VIEW.kind) parts.push(`type=${view.kind}`);
  if (view.log) parts.push("scale=log");
  if (!view.volume) parts.push("volume=off");
  if (view.range) parts.push(`from=${Math.round(view.range.from) + 1}`, `to=${Math.round(view.range.to) + 1}`);
  return parts.length > 0 ? `#/?${parts.join("&")}` : "#/";
}

/** A text of an address; one that is not well encoded as it is. */
export function decode(text: string): string {
  try {
    return decodeURIComponent(text);
  } catch {
    return text;
  }
}

function splitPair(text: string): [string, string] {
  const equals = text.indexOf("=");
  return equals < 0 ? [decode(text), ""] : [decode(text.slice(0, equals)), decode(text.slice(equals + 1))];
}

function decodeStudy(text: string): StudyWords {
  const [method = "", ...words] = text.split(",");
  const given: Record<string, string> = {};
  const colours: Record<number, string> = {};
  let hidden = false;
  for (const word of words) {
    const [name, value] = splitPair(word);
    const column = /^colour(\d)$/.exec(name);
    if (word === "hidden") hidden = true;
    else if (column) colours[Number(column[1])] = value;
    else given[name] = value;
  }
  return { method: decode(method), arguments: given, hidden, colours };
}

export function decodeState(query: string): { studies: StudyWords[]; view: View } {
  const studies: StudyWords[] = [];
  const told: Record<string, string> = {};
  for (const part of query.split("&").filter(Boolean)) {
    const equals = part.indexOf("=");
    if (part.startsWith("study=")) studies.push(decodeStudy(part.slice(equals + 1)));
    else told[part.slice(0, equals)] = decode(part.slice(equals + 1));
  }
  const from = Number(told["from"]) - 1;
  const to = Number(told["to"]) - 1;
  return {
    studies,
    view: {
      kind: KINDS.find((kind) => kind === told["type"]) ?? PLAIN_VIEW.kind,
      log: told["scale"] === "log",
      volume: told["volume"] !== "off",
      ...(from < to && { range: { from, to } }),
    },
  };
}
