// What leaves the studio: tables, pictures and whole pages. All of it is made here and handed to the person.
import type { Engine, PriceColumn } from "../package/src/engine.js";
import type { Series } from "./series.js";
import type { ChartData, StudyWords, View } from "./state.js";
import type { Result, Study } from "./studies.js";

export function hand(name: string, content: BlobPart, type: string): void {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(new Blob([content], { type }));
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10_000);
}

/** The columns that a study made. One that looks at each record for a pattern makes none. */
function resultColumns(result: Result | undefined): PriceColumn[] {
  return (result?.outcome?.columns ?? []).map(({ name, values }) => ({ name, values }));
}

/** What `orvex run` prints of a study: the dates, where the file has them, and its columns. */
export function studyCsv(engine: Engine, series: Series, result: Result | undefined): string {
  const dates = series.columns.find((column) => column.name === "Date");
  return engine.csv([...(dates ? [dates] : []), ...resultColumns(result)]);
}

/** The prices with every study's columns, as `orvex run --append` prints them. Doubled names get a number. */
export function chartColumns(series: Series, studies: readonly Study[], results: ReadonlyMap<number, Result>): PriceColumn[] {
  const columns: PriceColumn[] = [...series.columns];
  for (const study of studies) {
    for (const { name, values } of resultColumns(results.get(study.id))) {
      let free = name;
      for (let i = 2; columns.some((column) => column.name === free); ++i) free = `${name} ${i}`;
      columns.push({ name: free, values });
    }
  }
  return columns;
}

/** The picture with a line of words for each pane. */
export function picture(chart: HTMLCanvasElement, words: readonly { top: number; texts: readonly string[] }[], colour: string): HTMLCanvasElement {
  const scale = window.devicePixelRatio || 1;
  const context = chart.getContext("2d")!;
  context.setTransform(scale, 0, 0, scale, 0, 0);
  context.font = "11px system-ui, sans-serif";
  context.fillStyle = colour;
  for (const { top, texts } of words) texts.forEach((text, i) => context.fillText(text, 10, top + 18 + 15 * i));
  return chart;
}

/** The page as it came, before anything was drawn. */
let template = "";
export function rememberTemplate(): void {
  template = `<!doctype html>\n${document.documentElement.outerHTML}`;
}

/** JSON that a script element can hold: no "<", so that nothing in it ends the element. */
export function embedded(data: ChartData): string {
  return JSON.stringify(data).replaceAll("<", "\\u003c");
}

/** This page with these prices and studies in it. */
export function chartPage(data: ChartData): string {
  const place = /(<script type="application\/json" id="orvex-chart">)[^<]*(<\/script>)/;
  return template.replace(place, (_, before: string, after: string) => before + embedded(data) + after);
}

export function chartData(engine: Engine, series: Series, studies: readonly StudyWords[], view: View): ChartData {
  return { name: series.name, prices: engine.csv(series.columns), studies, view };
}

