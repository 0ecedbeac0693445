// The picture: prices and studies in the panes of one chart.
import {
  BarSeries,
  CandlestickSeries,
  ColorType,
  createChart,
  createSeriesMarkers,
  CrosshairMode,
  HistogramSeries,
  type IChartApi,
  type IPaneApi,
  type ISeriesApi,
  type ISeriesMarkersPluginApi,
  type ISeriesPrimitive,
  LineSeries,
  LineStyle,
  type Logical,
  type PriceFormat,
  PriceScaleMode,
  type SeriesMarker,
  type SeriesType,
  type Time,
  type UTCTimestamp,
} from "lightweight-charts";
import type { CanvasRenderingTarget2D } from "fancy-canvas";
import type { Column } from "../package/src/catalogue.js";
import { findColumn } from "../package/src/engine.js";
import { sampled, sizeOf } from "./dom.js";
import type { Series } from "./series.js";
import type { View } from "./state.js";
import { type Result, type Study, studyOf } from "./studies.js";

export interface Theme {
  readonly background: string;
  readonly text: string;
  readonly grid: string;
  readonly border: string;
  readonly up: string;
  readonly down: string;
  readonly line: string;
  readonly guide: string;
  readonly palette: readonly string[];
}

const DAY = 86_400;
/** Spans of time that people look at, in seconds. */
const SPANS: readonly (readonly [string, number])[] = [
  ["1D", DAY],
  ["1W", 7 * DAY],
  ["1M", 30.44 * DAY],
  ["3M", 91.31 * DAY],
  ["6M", 182.62 * DAY],
  ["1Y", 365.25 * DAY],
  ["5Y", 5 * 365.25 * DAY],
];
/** Fewer records than that are no picture. */
const FEWEST_SHOWN = 15;

type AnySeries = ISeriesApi<SeriesType>;
type Pane = IPaneApi<Time>;

/** The area between two edges of a band. */
class Band implements ISeriesPrimitive<Time> {
  private redraw: (() => void) | undefined;

  constructor(
    private readonly chart: IChartApi,
    private readonly series: AnySeries,
    public upper: Float64Array,
    public lower: Float64Array,
    public colour: string,
  ) {}

  attached({ requestUpdate }: { requestUpdate: () => void }): void {
    this.redraw = requestUpdate;
  }

  change(upper: Float64Array, lower: Float64Array, colour: string): void {
    Object.assign(this, { upper, lower, colour });
    this.redraw?.();
  }

  paneViews() {
    return [{ zOrder: () => "bottom" as const, renderer: () => ({ draw: (target: CanvasRenderingTarget2D) => this.draw(target) }) }];
  }

  private draw(target: CanvasRenderingTarget2D): void {
    const range = this.chart.timeScale().getVisibleLogicalRange();
    if (!range) return;
    const first = Math.max(0, Math.floor(range.from) - 1);
    const last = Math.min(this.upper.length - 1, Math.ceil(range.to) + 1);
    const edge = (values: Float64Array, i: number): [number, number] | undefined => {
      const x = this.chart.timeScale().logicalToCoordinate(i as Logical);
      const y = Number.isNaN(values[i]) ? null : this.series.priceToCoordinate(values[i]!);
      return x === null || y === null ? undefined : [x, y];
    };
    target.useMediaCoordinateSpace(({ context }) => {
      context.beginPath();
      for (let i = first; i <= last; ++i) {
        const point = edge(this.upper, i);
        if (point) context.lineTo(...point);
      }
      for (let i = last; i >= first; --i) {
        const point = edge(this.lower, i);
        if (point) context.lineTo(...point);
      }
      context.closePath();
      context.fillStyle = `${this.colour}1c`;
      context.fill();
    });
  }
}

/** A line's values as drawn. */
interface Shown {
  readonly values: Float64Array;
  readonly first: number;
  readonly last: number;
  readonly bars: string | undefined;
}

/** More records than these are drawn at once and not one by one. */
const MOST_SINGLE = 200;

/** A study in the picture. */
interface Drawn {
  /** What must be the same for its lines to be kept when its values change. */
  readonly shape: string;
  readonly shown: (Shown | undefined)[];
  /** One a column; none of those that only mark records. */
  readonly lines: readonly (AnySeries | undefined)[];
  readonly band?: Band;
  readonly pane: Pane | undefined;
}

/** Where the pointer stands, and in which pane what is. */
export interface Layout {
  readonly pane: Pane;
  readonly studies: readonly number[];
}

export class PriceChart {
  private readonly chart: IChartApi;
  private prices: AnySeries | undefined;
  private volume: AnySeries | undefined;
  private markers: ISeriesMarkersPluginApi<Time> | undefined;
  private drawn = new Map<number, Drawn>();
  private marks = new Map<number, SeriesMarker<Time>[]>();
  private series: Series | undefined;
  private view: View | undefined;

  constructor(
    private readonly container: HTMLElement,
    private theme: Theme,
    /** How high a pane of a study is, that of the prices being 1. */
    private readonly paneHeight = 0.4,
  ) {
    this.chart = createChart(container, {
      autoSize: true,
      crosshair: { mode: CrosshairMode.Normal },
      timeScale: { rightOffset: 4, minBarSpacing: 0.005 },
      localization: { timeFormatter: (time: Time) => this.label(Number(time)) },
    });
    this.dress();
  }

  destroy(): void {
    this.chart.remove();
  }

  /** The record under the pointer, from 0; nothing where it is nowhere. */
  onPointer(listener: (record: number | undefined) => void): void {
    this.chart.subscribeCrosshairMove((event) => {
      const record = event.logical === undefined ? undefined : Math.round(event.logical);
      listener(record !== undefined && record >= 0 && record < (this.series?.count ?? 0) ? record : undefined);
    });
  }

  onRange(listener: () => void): void {
    this.chart.timeScale().subscribeVisibleLogicalRangeChange(listener);
  }

  range(): { from: number; to: number } | undefined {
    return this.chart.timeScale().getVisibleLogicalRange() ?? undefined;
  }

  show(range: { from: number; to: number }): void {
    this.chart.timeScale().setVisibleLogicalRange({ from: range.from as Logical, to: range.to as Logical });
  }

  /** The latest records, as many as can be told apart. */
  showLatest(): void {
    this.show(this.latest());
  }

  /** Tells whether that is what is in view, more or less. */
  showsLatest(): boolean {
    const range = this.range();
    const { from, to } = this.latest();
    return range !== undefined && Math.abs(range.from - from) + Math.abs(range.to - to) < 0.05 * (to - from);
  }

  private latest(): { from: number; to: number } {
    const count = this.series?.count ?? 0;
    const fitting = Math.max(60, Math.round(this.container.clientWidth / 6));
    return { from: Math.max(0, count - fitting), to: count + 3 };
  }

  /** The spans of time up to the last record that are shorter than the whole and no mere handful of records. */
  spans(): { name: string; records: number }[] {
    const { series } = this;
    if (!series?.dated) return [];
    const last = series.times.at(-1)!;
    return SPANS.map(([name, seconds]) => ({ name, records: series.count - this.recordAt(last - seconds) })).filter(
      ({ records }) => records >= FEWEST_SHOWN && records < series.count,
    );
  }

  /** The last records, or all. */
  showLast(records = this.series?.count ?? 0): void {
    const count = this.series?.count ?? 0;
    this.show({ from: count - records - 0.5, to: count - 0.5 + Math.max(1, records / 50) });
  }

  /** Puts the crosshair on a record, for those who use the keyboard. */
  point(record: number): void {
    const close = this.series && findColumn(this.series.numbers, "Close");
    if (!this.series || !this.prices || !close) return;
    const range = this.range();
    if (range && (record < range.from || record > range.to)) {
      const width = range.to - range.from;
      this.show({ from: record - width / 2, to: record + width / 2 });
    }
    this.chart.setCrosshairPosition(Number(close[record]), this.time(record), this.prices);
  }

  setTheme(theme: Theme): void {
    this.theme = theme;
    this.dress();
    if (this.series && this.view) this.setPrices(this.series, this.view);
  }

  /** Shows a series. The studies of another one are taken away. */
  setPrices(series: Series, view: View): void {
    const kept = this.series === series ? this.range() : undefined;
    if (this.series !== series) this.clearStudies();
    for (const old of [this.prices, this.volume]) if (old) this.chart.removeSeries(old);
    this.volume = undefined;
    this.series = series;
    this.view = view;
    const { theme } = this;
    const format = { priceFormat: scaleFormat(Math.min(...[...sampled(findColumn(series.numbers, "Close")!)].map(Math.abs))) };
    const down = { downColor: theme.down, upColor: theme.up };
    this.prices =
      view.kind === "line"
        ? this.chart.addSeries(LineSeries, { ...format, color: theme.line, lineWidth: 2 }, 0)
        : view.kind === "bars"
          ? this.chart.addSeries(BarSeries, { ...format, ...down, thinBars: true }, 0)
          : this.chart.addSeries(
              CandlestickSeries,
              { ...format, ...down, borderVisible: false, wickUpColor: theme.up, wickDownColor: theme.down },
              0,
            );
    this.prices.setData(this.bars(series, view));
    this.prices.setSeriesOrder(0);
    this.prices.priceScale().applyOptions({
      mode: view.log ? PriceScaleMode.Logarithmic : PriceScaleMode.Normal,
      scaleMargins: { top: 0.08, bottom: view.volume ? 0.22 : 0.06 },
    });
    this.markers = createSeriesMarkers(this.prices, []);
    this.showMarks();
    if (view.volume) this.drawVolume(series);
    this.chart.applyOptions({ timeScale: { timeVisible: this.isIntraday(series), tickMarkFormatter: (time: Time) => (series.dated ? null : this.label(Number(time))) } });
    if (kept) this.show(kept);
    else this.showLatest();
  }

  /** Shows the same series with more records behind those that it had. */
  extend(series: Series): void {
    const before = this.series?.count ?? 0;
    const { prices, view } = this;
    if (!prices || !view) return;
    this.series = series;
    if (series.count - before > MOST_SINGLE) {
      prices.setData(this.bars(series, view));
      this.volume?.setData(this.volumes(series));
    } else {
      for (const bar of this.bars(series, view, before)) prices.update(bar);
      if (this.volume) for (const bar of this.volumes(series, before)) this.volume.update(bar);
    }
  }

  /** Draws the studies as they came out; those that are drawn as they are now wanted keep their lines. */
  setStudies(studies: readonly Study[], results: ReadonlyMap<number, Result>): void {
    for (const id of [...this.drawn.keys()]) {
      if (!studies.some((study) => study.id === id)) this.erase(id);
    }
    let next = 0;
    for (const study of studies) {
      const { columns } = study.calculation;
      // Both edges of a band are of one colour.
      const edges = bandEdges(columns);
      const places = columns.map((_, i) => (i === edges?.[1] ? next + edges[0] : next + i));
      const colours = places.map((place, i) => study.colours[i] ?? this.theme.palette[place % this.theme.palette.length]!);
      next += columns.length;
      const result = results.get(study.id);
      this.mark(study, result);
      if (!result?.outcome || study.hidden || study.calculation.columns.length === 0) this.erase(study.id);
      else this.draw(study, result, colours, studies);
    }
    this.showMarks();
  }

  /** The colour of a column as drawn. */
  colourOf(study: Study, column: number): string {
    const lines = this.drawn.get(study.id)?.lines;
    const options = lines?.[column]?.options();
    return study.colours[column] ?? (options && "color" in options ? options.color : this.theme.guide);
  }

  /** The panes from top to bottom, with the studies in each. */
  layout(): Layout[] {
    return this.chart.panes().map((pane) => ({
      pane,
      studies: [...this.drawn].filter(([, { pane: home }]) => home?.paneIndex() === pane.paneIndex()).map(([id]) => id),
    }));
  }

  image(): HTMLCanvasElement {
    return this.chart.takeScreenshot(true);
  }

  private label(time: number): string {
    const { series } = this;
    if (!series) return "";
    return series.labels[series.dated ? this.recordAt(time) : time] ?? "";
  }

  /** The first record that is not before a time, from 0; the last where all are. */
  private recordAt(time: number): number {
    const { times, count } = this.series!;
    let low = 0;
    let high = count - 1;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (times[middle]! < time) low = middle + 1;
      else high = middle;
    }
    return low;
  }

  private time(record: number): UTCTimestamp {
    return this.series!.times[record] as UTCTimestamp;
  }

  private isIntraday(series: Series): boolean {
    return series.dated && series.times.slice(0, 50).some((time) => time % 86_400 !== 0);
  }

  private dress(): void {
    const { theme } = this;
    this.chart.applyOptions({
      layout: {
        background: { type: ColorType.Solid, color: theme.background },
        textColor: theme.text,
        fontFamily: "system-ui, sans-serif",
        fontSize: 11,
        panes: { separatorColor: theme.border, separatorHoverColor: theme.border },
      },
      grid: { vertLines: { color: theme.grid }, horzLines: { color: theme.grid } },
      rightPriceScale: { borderColor: theme.border },
      timeScale: { borderColor: theme.border },
    });
  }

  private bars(series: Series, view: View, from = 0): never[] {
    const [open, high, low, close] = ["Open", "High", "Low", "Close"].map((name) => findColumn(series.numbers, name));
    const bars: object[] = [];
    for (let i = from; i < series.count; ++i) {
      const time = series.times[i]!;
      const value = close![i]!;
      if (Number.isNaN(value)) bars.push({ time });
      else if (view.kind === "line") bars.push({ time, value });
      else bars.push({ time, open: open?.[i] ?? value, high: high?.[i] ?? value, low: low?.[i] ?? value, close: value });
    }
    return bars as never[];
  }

  private drawVolume(series: Series): void {
    const volume = findColumn(series.numbers, "Volume");
    if (!volume || !volume.some((value) => value > 0)) return;
    this.volume = this.chart.addSeries(
      HistogramSeries,
      { priceScaleId: "volume", priceFormat: { type: "volume" }, lastValueVisible: false, priceLineVisible: false },
      0,
    );
    this.volume.priceScale().applyOptions({ scaleMargins: { top: 0.84, bottom: 0 } });
    this.volume.setData(this.volumes(series));
    this.volume.setSeriesOrder(0);
  }

  private volumes(series: Series, from = 0): never[] {
    const volume = findColumn(series.numbers, "Volume")!;
    const close = findColumn(series.numbers, "Close")!;
    const { theme } = this;
    return Array.from({ length: series.count - from }, (_, at) => {
      const i = from + at;
      return { time: this.time(i), value: volume[i]!, color: `${i > 0 && close[i]! < close[i - 1]! ? theme.down : theme.up}55` };
    }) as never[];
  }

  private erase(id: number): void {
    const drawn = this.drawn.get(id);
    if (!drawn) return;
    this.drawn.delete(id);
    for (const line of drawn.lines) if (line) this.chart.removeSeries(line);
  }

  private clearStudies(): void {
    for (const id of [...this.drawn.keys()]) this.erase(id);
    this.marks.clear();
  }

  /** Over what it is computed from, or in a pane below. */
  private paneOf(study: Study, column: Column, own: Pane | undefined, studies: readonly Study[]): Pane {
    if (column.place === "Over") {
      const sources = study.calculation.arguments.filter((argument) => argument.type === "Field");
      const values = sources.map((argument) => study.given[argument.name] ?? argument.usual ?? argument.name);
      const other = values.map((value) => studyOf(value, this.series!, studies)).find((each) => each !== undefined);
      const home = other && this.drawn.get(other.study.id);
      if (home?.pane) return home.pane;
      const ofPrices = values.length === 0 || values.some((value) => ["Open", "High", "Low", "Close"].includes(String(value)));
      if (ofPrices) return this.chart.panes()[0]!;
    }
    if (own && column.place !== "Apart") return own;
    const pane = this.chart.addPane();
    pane.setStretchFactor(this.paneHeight);
    return pane;
  }

  private draw(study: Study, result: Result, colours: readonly string[], studies: readonly Study[]): void {
    const described = study.calculation.columns;
    const sources = study.calculation.arguments
      .filter((argument) => argument.type === "Field")
      .map((argument) => String(study.given[argument.name] ?? ""));
    const shape = JSON.stringify([fullShape(described), sources, this.theme.background]);
    let drawn = this.drawn.get(study.id);
    if (drawn && drawn.shape !== shape) {
      this.erase(study.id);
      drawn = undefined;
    }
    if (!drawn) {
      drawn = this.create(study, shape, studies);
      this.drawn.set(study.id, drawn);
    }
    result.outcome!.columns.forEach((column, i) => {
      const line = drawn.lines[i];
      if (!line) return;
      line.applyOptions({ color: colours[i]!, priceFormat: scaleFormat(sizeOf(column.values)) });
      const { values, first, last } = column;
      const wanted: Shown = { values, first, last, bars: described[i]!.style === "Bars" ? colours[i] : undefined };
      const before = drawn.shown[i];
      drawn.shown[i] = wanted;
      if (before && goesOn(before, wanted)) {
        for (const point of this.points(wanted, Math.max(before.last, first))) line.update(point);
        return;
      }
      const points = this.points(wanted);
      const start = performance.now();
      line.setData(points);
      performance.measure("orvex-library", { start });
    });
    const edges = bandEdges(described);
    if (drawn.band && edges) {
      const [upper, lower] = edges.map((i) => result.outcome!.columns[i]!.values);
      drawn.band.change(upper!, lower!, colours[edges[0]]!);
    }
  }

  private create(study: Study, shape: string, studies: readonly Study[]): Drawn {
    const columns = study.calculation.columns;
    let own: Pane | undefined;
    const lines = columns.map((column) => {
      if (column.style === "Marks") return undefined;
      const pane = this.paneOf(study, column, own, studies);
      if (pane.paneIndex() !== 0 && column.place === "Pane") own = pane;
      const shared = { priceLineVisible: false, lastValueVisible: column.style !== "BandEdge", title: "" };
      const { low, high } = column;
      // A column that keeps within bounds is shown in them, so that its height can be read at a glance.
      const bounded = column.place !== "Over" && low !== null && high !== null && high - low <= 1000;
      const scale = bounded
        ? { autoscaleInfoProvider: () => ({ priceRange: { minValue: low, maxValue: high } }) }
        : {};
      switch (column.style) {
        case "Bars":
          return pane.addSeries(HistogramSeries, { ...shared, ...scale, base: 0 }) as AnySeries;
        case "Dots":
          return pane.addSeries(LineSeries, { ...shared, ...scale, lineVisible: false, pointMarkersVisible: true, pointMarkersRadius: 1.6 }) as AnySeries;
        default:
          return pane.addSeries(LineSeries, { ...shared, ...scale, lineWidth: column.style === "BandEdge" ? 1 : 2 }) as AnySeries;
      }
    });
    const first = lines.find((line, i) => line && columns[i]!.place !== "Over") ?? lines.find((line) => line);
    for (const line of lines) {
      // Room for the names above the lines.
      const below = line && line.getPane().paneIndex() !== 0;
      if (below) line.priceScale().applyOptions({ mode: PriceScaleMode.Normal, scaleMargins: { top: 0.24, bottom: 0.08 } });
    }
    for (const level of study.calculation.levels) {
      first?.createPriceLine({
        price: level,
        color: this.theme.guide,
        lineWidth: 1,
        lineStyle: LineStyle.Dashed,
        axisLabelVisible: false,
        title: "",
      });
    }
    const edges = bandEdges(columns);
    const nothing = new Float64Array();
    const edge = edges && lines[edges[0]];
    const band = edge && new Band(this.chart, edge, nothing, nothing, this.theme.guide);
    if (band) edge.attachPrimitive(band);
    return { shape, shown: [], lines, pane: first?.getPane(), ...(band && { band }) };
  }

  /** The computed rows; what lies outside them is not drawn. Of bars those below zero are paler. */
  private points({ values, first, last, bars }: Shown, from = first): never[] {
    const points: object[] = [];
    const { times } = this.series!;
    const paler = `${bars}88`;
    for (let i = from - 1; i < last; ++i) {
      const value = values[i]!;
      points.push(bars === undefined ? { time: times[i]!, value } : { time: times[i]!, value, color: value < 0 ? paler : bars });
    }
    return points as never[];
  }

  /** What is shown at single records: patterns, and columns that mark them. */
  private mark(study: Study, result: Result | undefined): void {
    this.marks.delete(study.id);
    if (study.hidden || !result) return;
    const marks: SeriesMarker<Time>[] = [];
    const add = (record: number, value: number, text: string): void => {
      const { up, down, guide } = this.theme;
      const place = value > 0 ? "belowBar" : "aboveBar";
      const shape = value > 0 ? "arrowUp" : value < 0 ? "arrowDown" : "circle";
      marks.push({
        time: this.time(record),
        position: place,
        shape,
        color: value > 0 ? up : value < 0 ? down : guide,
        size: value === 0 ? 0.4 : 0.8,
        ...(text && { text }),
      });
    };
    for (const note of result.notes ?? []) add(note.record - 1, note.value, "");
    study.calculation.columns.forEach((column, i) => {
      const found = column.style === "Marks" ? result.outcome?.columns[i] : undefined;
      if (found) for (let row = found.first - 1; row < found.last; ++row) if (found.values[row] !== 0) add(row, found.values[row]!, "");
    });
    if (marks.length > 0) this.marks.set(study.id, marks);
  }

  private showMarks(): void {
    const marks = [...this.marks.values()].flat();
    marks.sort((a, b) => Number(a.time) - Number(b.time));
    this.markers?.setMarkers(marks);
  }
}

/** Whether what is wanted is what was drawn, with the last of its rows another or some more behind it. */
function goesOn(before: Shown, wanted: Shown): boolean {
  const more = wanted.last - before.last;
  if (before.first !== wanted.first || before.bars !== wanted.bars || more < 0 || more > MOST_SINGLE) return false;
  for (let i = before.first - 1; i < before.last - 1; ++i) if (before.values[i] !== wanted.values[i]) return false;
  return true;
}

/** How an axis writes numbers of that size. */
function scaleFormat(size: number): PriceFormat {
  const precision = size >= 10 || size === 0 ? 2 : size >= 0.1 ? 4 : 8;
  return { type: size >= 1e7 ? "volume" : "price", precision, minMove: 10 ** -precision };
}

function bandEdges(columns: readonly Column[]): readonly [number, number] | undefined {
  const edges = columns.flatMap((column, i) => (column.style === "BandEdge" ? [i] : []));
  return edges.length === 2 ? [edges[0]!, edges[1]!] : undefined;
}

function fullShape(columns: readonly Column[]): unknown {
  return columns.map((column) => [column.title, column.style, column.place]);
}
