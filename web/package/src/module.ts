// The WebAssembly module: its functions, and the little that it imports.
import type { Values } from "./engine.js";
import { OUT_OF_MEMORY, refuse } from "./errors.js";

/** What the module exports (engine.cpp, live.cpp): every number is a count, an address or a double. */
export interface Exports {
  readonly memory: WebAssembly.Memory;
  orvex_allocate(size: number): number;
  orvex_release(room: number): void;
  orvex_text_size(): number;
  orvex_catalogue(): number;
  orvex_call_begin(calculation: number, count: number): number;
  orvex_call_column(call: number, argument: number, name: number, size: number, rows: number): number;
  orvex_call_price(call: number, name: number, size: number, rows: number): number;
  orvex_call_number(call: number, argument: number, value: number): number;
  orvex_call_text(call: number, argument: number, value: number, size: number): number;
  orvex_call_run(call: number): number;
  orvex_call_rows(call: number, column: number): number;
  orvex_call_run_each(call: number, argument: number): number;
  orvex_call_end(call: number): void;
  orvex_read(bytes: number, size: number, options: number, optionsSize: number): number;
  orvex_read_reply(read: number): number;
  orvex_read_numbers(read: number, column: number): number;
  orvex_read_times(read: number): number;
  orvex_read_end(read: number): void;
  orvex_table_begin(count: number): number;
  orvex_table_numbers(table: number, name: number, size: number, first: number, last: number): number;
  orvex_table_texts(table: number, name: number, size: number, texts: number, sizes: number): number;
  orvex_table_csv(table: number): number;
  orvex_table_end(table: number): void;
  orvex_live_begin(numbers: number, count: number, columns: number, dates: number, sizes: number): number;
  orvex_live_end(live: number): void;
  orvex_live_append(live: number, open: number, high: number, low: number, close: number, volume: number, date: number, size: number): number;
  orvex_live_append_rows(live: number, numbers: number, count: number, columns: number, dates: number, sizes: number): number;
  orvex_live_revise(live: number, open: number, high: number, low: number, close: number, volume: number, date: number, size: number): number;
  orvex_kept_begin(calculation: number): number;
  orvex_kept_number(kept: number, argument: number, value: number): number;
  orvex_kept_text(kept: number, argument: number, value: number, size: number): number;
  orvex_kept_column(kept: number, argument: number, other: number, column: number): number;
  orvex_kept_keep(kept: number, live: number): number;
  orvex_kept_end(kept: number): void;
  orvex_kept_drop(kept: number, live: number): number;
  orvex_kept_count(kept: number): number;
  orvex_kept_standing(kept: number): number;
  orvex_kept_columns(kept: number): number;
  orvex_kept_name(kept: number, column: number): number;
  orvex_kept_rows(kept: number, column: number): number;
  orvex_kept_last(kept: number, column: number): number;
  orvex_kept_first_row(kept: number, column: number): number;
  orvex_kept_last_row(kept: number, column: number): number;
  orvex_kept_error(kept: number): number;
}

/** Stands for the system: there are no files, and what is printed goes to `print`. Needs nothing of its surroundings. */
export function systemImports(memory: () => WebAssembly.Memory, print: (bytes: Uint8Array) => void): WebAssembly.Imports {
  const notSupported = 52; // errno ENOSYS of WASI
  const answers: Record<string, (...values: number[]) => number | bigint | void> = {
    fd_write: (file, vectors, count, written) => {
      const view = new DataView(memory().buffer);
      let total = 0;
      for (let i = 0; i < count!; ++i) {
        const start = view.getUint32(vectors! + 8 * i, true);
        const length = view.getUint32(vectors! + 8 * i + 4, true);
        if (file === 1) print(new Uint8Array(memory().buffer.slice(start, start + length)));
        total += length;
      }
      view.setUint32(written!, total, true);
      return 0;
    },
    emscripten_notify_memory_growth: () => undefined,
    proc_exit: (status) => {
      throw new Error(`the WebAssembly module stopped with status ${status}`);
    },
  };
  const lookup = new Proxy({}, { get: (_, name) => answers[String(name)] ?? (() => notSupported) });
  return { env: lookup, wasi_snapshot_preview1: lookup } as WebAssembly.Imports;
}

/** What the module has made: an address, which is negative beyond 2 GB as JavaScript has it, or a word that it was done. */
export function made(returned: number): number {
  // Of all that is asked of it here, only memory can be lacking.
  if (returned === 0) refuse("Out of memory", OUT_OF_MEMORY);
  return returned >>> 0;
}

/** Copies a column as it is meant: JavaScript would take null for 0 and texts for numbers. */
function copyColumn(name: string, values: Values, room: Float64Array): void {
  if (values instanceof Float64Array) return room.set(values);
  for (let i = 0; i < values.length; ++i) {
    const value: unknown = values[i] ?? NaN;
    if (typeof value !== "number") {
      const help = typeof value === "string" || typeof value === "bigint" ? "; Number(value) makes one of it" : "";
      refuse(`${name} must be numbers, and has a ${typeof value} in record ${i + 1}${help}`);
    }
    room[i] = value;
  }
}

const encoder = new TextEncoder();
const decoder = new TextDecoder();

/** The module at work: its functions, and texts and numbers handed to it and taken from it. */
export class Library {
  private constructor(readonly exports: Exports) {}

  static async start(module: WebAssembly.Module): Promise<Library> {
    return new Library(await instantiate(module));
  }

  /** The text that the module gave last. */
  text(address: number): string {
    return decoder.decode(new Uint8Array(this.exports.memory.buffer, made(address), this.exports.orvex_text_size()));
  }

  /** Numbers where they stand, which is until the module is called again. */
  doubles(address: number, count: number): Float64Array<ArrayBuffer> {
    return new Float64Array(this.exports.memory.buffer as ArrayBuffer, address >>> 0, count);
  }

  /** Writes a column to where the module has made room for it. None is made for no records. */
  fill(room: number, name: string, values: Values): void {
    if (values.length > 0) copyColumn(name, values, this.doubles(made(room), values.length));
  }

  /** Hands a text to the module for as long as `use` takes. */
  withText<T>(text: string, use: (address: number, size: number) => T): T {
    return this.withBytes(encoder.encode(text), use);
  }

  withBytes<T>(bytes: Uint8Array, use: (address: number, size: number) => T): T {
    return this.withRoom(bytes.length, (room) => {
      new Uint8Array(this.exports.memory.buffer, room, bytes.length).set(bytes);
      return use(room, bytes.length);
    });
  }

  /** Hands it texts, one after the other, and the size of each. */
  withTexts<T>(texts: readonly string[], use: (texts: number, sizes: number) => T): T {
    const encoded = texts.map((text) => encoder.encode(text));
    const all = new Uint8Array(encoded.reduce((total, each) => total + each.length, 0));
    let end = 0;
    for (const each of encoded) {
      all.set(each, end);
      end += each.length;
    }
    const sizes = new Uint8Array(Uint32Array.from(encoded, (each) => each.length).buffer);
    return this.withBytes(all, (bytes) => this.withBytes(sizes, (lengths) => use(bytes, lengths)));
  }

  /** Hands it columns of one length, one after the other. */
  withColumns<T>(columns: readonly { readonly name: string; readonly values: Values }[], use: (address: number) => T): T {
    const count = columns[0]?.values.length ?? 0;
    return this.withRoom(8 * count * columns.length, (room) => {
      columns.forEach(({ name, values }, i) => copyColumn(name, values, this.doubles(room + 8 * count * i, count)));
      return use(room);
    });
  }

  private withRoom<T>(size: number, use: (room: number) => T): T {
    const room = made(this.exports.orvex_allocate(size + 1));
    try {
      return use(room);
    } finally {
      this.exports.orvex_release(room);
    }
  }
}

async function instantiate(module: WebAssembly.Module): Promise<Exports> {
  let memory: WebAssembly.Memory | undefined;
  const instance = await WebAssembly.instantiate(
    module,
    systemImports(
      () => memory!,
      () => undefined,
    ),
  );
  memory = instance.exports["memory"] as WebAssembly.Memory;
  (instance.exports["_initialize"] as () => void)();
  return instance.exports as unknown as Exports;
}
