// The WebAssembly module: its functions, and the little that it imports.

/** What engine.cpp exports: every number is a count, an address or a double. */
export interface Exports {
  readonly memory: WebAssembly.Memory;
  orvex_allocate(size: number): number;
  orvex_release(room: number): void;
  orvex_text_size(): number;
  orvex_catalogue(): number;
  orvex_call_begin(calculation: number, count: number): number;
  orvex_call_column(call: number, argument: number, name: number, size: number, rows: number): number;
  orvex_call_price(call: number, name: number, size: number, rows: number): number;
  orvex_call_number(call: number, argument: number, value: number): void;
  orvex_call_text(call: number, argument: number, value: number, size: number): void;
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
  orvex_table_texts(table: number, name: number, size: number, texts: number, sizes: number): void;
  orvex_table_csv(table: number): number;
  orvex_table_end(table: number): void;
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

export async function instantiate(module: WebAssembly.Module): Promise<Exports> {
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
