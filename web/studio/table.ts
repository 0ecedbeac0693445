// The values in rows: only those in view are elements, however many records there are.
import { fill, h, writerOf } from "./dom.js";

export interface TableColumn {
  readonly name: string;
  readonly values: Float64Array | readonly string[];
}

const ROW = 22;

function sized(cell: HTMLElement, width: number): HTMLElement {
  cell.style.width = `${width}px`;
  return cell;
}

/** The texts of a column; none where it has no value. */
function cellsOf(values: TableColumn["values"]): (row: number) => string {
  if (!(values instanceof Float64Array)) return (row) => String(values[row] ?? "");
  const write = writerOf(values);
  return (row) => (Number.isNaN(values[row]) ? "" : write(values[row]!));
}

export class ValueTable {
  private readonly body = h("div", { class: "rows", role: "rowgroup" });
  private readonly head = h("div", { class: "head", role: "rowgroup" });
  private readonly space = h("div", { class: "space", "aria-hidden": "true" });
  readonly element = h(
    "div",
    { class: "values", role: "table", "aria-label": "Values of every record", tabindex: "0", onscroll: () => this.draw() },
    this.head,
    this.body,
    this.space,
  );
  private columns: readonly TableColumn[] = [];
  private widths: readonly number[] = [];
  private cells: readonly ((row: number) => string)[] = [];
  private count = 0;
  private record: number | undefined;

  show(columns: readonly TableColumn[], count: number): void {
    const atEnd = this.columns.length === 0 || this.count !== count;
    this.columns = columns;
    this.cells = columns.map(({ values }) => cellsOf(values));
    this.widths = columns.map(({ name }) => Math.max(92, Math.min(220, 18 + 7.4 * name.length)));
    this.count = count;
    this.element.setAttribute("aria-rowcount", String(count + 1));
    this.element.setAttribute("aria-colcount", String(columns.length + 1));
    fill(
      this.head,
      h("div", { role: "row", "aria-rowindex": 1, class: "cells" }, ["Record", ...columns.map((each) => each.name)].map((name, i) => sized(h("span", { role: "columnheader", title: name }, name), i === 0 ? 64 : this.widths[i - 1]!))),
    );
    this.space.style.height = `${(count + 1) * ROW}px`;
    if (atEnd) this.element.scrollTop = count * ROW;
    this.draw();
  }

  /** Marks a record and, where it is out of sight, brings it into view. */
  point(record: number | undefined): void {
    this.record = record;
    if (record !== undefined && this.element.clientHeight > 0) {
      const top = record * ROW;
      const { scrollTop, clientHeight } = this.element;
      if (top < scrollTop || top > scrollTop + clientHeight - 2 * ROW) this.element.scrollTop = top - clientHeight / 2;
    }
    this.draw();
  }

  draw(): void {
    if (this.element.clientHeight === 0) return;
    const first = Math.max(0, Math.floor(this.element.scrollTop / ROW) - 4);
    const last = Math.min(this.count, first + Math.ceil(this.element.clientHeight / ROW) + 8);
    const rows: HTMLElement[] = [];
    for (let i = first; i < last; ++i) {
      const cells = this.cells.map((cell, column) => sized(h("span", { role: "cell" }, cell(i)), this.widths[column]!));
      const row = h("div", { role: "row", "aria-rowindex": i + 2, class: i === this.record ? "cells current" : "cells" }, sized(h("span", { role: "cell" }, i + 1), 64), cells);
      row.style.top = `${(i + 1) * ROW}px`;
      rows.push(row);
    }
    fill(this.body, rows);
  }
}
