// A price series as the studio holds it: what was read, and the time axis made of it.
import { daysOf, type Engine, type PriceColumn } from "../package/src/engine.js";

export interface Series {
  readonly name: string;
  readonly count: number;
  readonly columns: readonly PriceColumn[];
  /** Those of numbers, by name; the days of the records as sessions where it has dates and no such column. */
  readonly numbers: Readonly<Record<string, Float64Array>>;
  /** The text of each record's date; its number where there are no dates. */
  readonly labels: readonly string[];
  /** For the axis: seconds since 1970 that rise from record to record, or the records' places where dates do not. */
  readonly times: readonly number[];
  readonly dated: boolean;
  readonly remarks: readonly string[];
}

/** What a page can show well, and what a person can choose from. */
const LARGEST_FILE = 64 * 2 ** 20;
const MOST_COLUMNS = 200;
const LONGEST_LINE = 100_000;

async function unzipped(bytes: Uint8Array<ArrayBuffer>): Promise<Uint8Array<ArrayBuffer>> {
  if (bytes[0] !== 0x1f || bytes[1] !== 0x8b) return bytes;
  const reader = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip")).getReader();
  const parts: Uint8Array<ArrayBuffer>[] = [];
  let total = 0;
  for (;;) {
    const { done, value } = await reader.read();
    if (done) break;
    parts.push(value);
    total += value.length;
    if (total > LARGEST_FILE) {
      await reader.cancel();
      throw new Error(tooLarge("Unpacked it", total));
    }
  }
  return new Uint8Array(await new Blob(parts).arrayBuffer());
}

function tooLarge(what: string, size: number): string {
  return `${what} has more than ${Math.floor(size / 2 ** 20)} MB, and a page holds at most ${LARGEST_FILE / 2 ** 20} MB of prices. Take a part of it (orvex run ... --tail N), or compute it with the command line or Python.`;
}

/** The bytes of a file that a person chose. An Error with a plain word for one that a page cannot hold. */
export async function bytesOf(file: Blob): Promise<Uint8Array<ArrayBuffer>> {
  if (file.size > LARGEST_FILE) throw new Error(tooLarge("The file", file.size));
  return unzipped(new Uint8Array(await file.arrayBuffer()));
}

export interface ReadingOptions {
  readonly order?: "check" | "keep";
  readonly missing?: "refuse" | "skip" | "previous";
  readonly decimal?: "." | ",";
}

/** How much there is before the first end of a line. */
function firstLineLength(content: Uint8Array | string): number {
  const ends = typeof content === "string" ? [content.indexOf("\n"), content.indexOf("\r")] : [content.indexOf(10), content.indexOf(13)];
  return Math.min(content.length, ...ends.filter((end) => end >= 0));
}

export function readSeries(engine: Engine, name: string, bytes: Uint8Array | string, options: ReadingOptions = {}): Series {
  const tooMany = `The studio shows at most ${MOST_COLUMNS} columns.`;
  if (firstLineLength(bytes) > LONGEST_LINE) throw new Error(`Its first line has more than ${LONGEST_LINE / 1000} KB. ${tooMany}`);
  const read = engine.readPrices(bytes, options);
  if (read.columns.length > MOST_COLUMNS) throw new Error(`It has ${read.columns.length} columns. ${tooMany}`);
  const numbers: Record<string, Float64Array> = {};
  for (const column of read.columns) {
    if (column.values instanceof Float64Array) numbers[column.name] ??= column.values;
  }
  if (!numbers["Close"]) {
    const names = read.columns.map((column) => column.name).join(", ");
    throw new Error(`It has no column of closing prices. Its columns: ${names}. Call one of them Close.`);
  }
  if (read.times.length > 0) numbers["Session"] ??= daysOf(read.times);
  const dates = read.columns.find((column) => column.name === "Date");
  const labels = dates && !(dates.values instanceof Float64Array) ? dates.values : undefined;
  const rising = read.times.length > 0 && read.times.every((time, i) => i === 0 || time > read.times[i - 1]!);
  return {
    name,
    count: read.count,
    columns: read.columns,
    numbers,
    labels: labels ?? Array.from({ length: read.count }, (_, i) => `${i + 1}`),
    times: rising ? Array.from(read.times) : Array.from({ length: read.count }, (_, i) => i),
    dated: rising,
    remarks: read.remarks,
  };
}
