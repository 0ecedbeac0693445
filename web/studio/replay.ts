// A series once more, record after record: what is kept on a live series is drawn as its records come.
import { camelCase, type Calculation } from "../package/src/catalogue.js";
import { type Engine, findColumn, PRICE_NAMES } from "../package/src/engine.js";
import { type Kept, type LivePrices, LiveSeries } from "../package/src/live.js";
import { fill, h, icon } from "./dom.js";
import type { Series } from "./series.js";
import { Computation, namesOf, type Result, type Study, studyOf } from "./studies.js";

/** A series as it was when it had so many records. */
function firstRecords(series: Series, count: number): Series {
  const numbers = Object.fromEntries(Object.entries(series.numbers).map(([name, values]) => [name, values.subarray(0, count)]));
  return {
    ...series,
    count,
    numbers,
    columns: series.columns.map(({ name, values }) => ({ name, values: values instanceof Float64Array ? values.subarray(0, count) : values.slice(0, count) })),
    labels: series.labels.slice(0, count),
    times: series.times.slice(0, count),
  };
}

/** The first records of a series on a live one, and studies kept on it. */
export class Replay {
  private live: LiveSeries | undefined;
  private studies: readonly Study[] = [];
  private readonly kept = new Map<number, Kept | undefined>();
  /** The records that have come. */
  series: Series;

  constructor(
    private readonly engine: Engine,
    readonly whole: Series,
    count: number,
  ) {
    this.series = firstRecords(whole, count);
  }

  /** Has other studies. */
  keep(studies: readonly Study[]): void {
    this.studies = studies;
    this.end();
    this.live = new LiveSeries({ engine: this.engine }, this.prices(0, this.series.count));
    for (const study of studies) this.keepStudy(study);
  }

  /** Lets records come up to a count; where that is smaller, everything begins anew with as many. */
  goTo(count: number): void {
    const before = this.series.count;
    this.series = firstRecords(this.whole, count);
    if (count < before || !this.live) this.keep(this.studies);
    else if (count > before) this.live.append(this.prices(before, count));
  }

  /** What the studies are now. Those that no live series keeps, such as patterns, are computed on what has come. */
  results(): ReadonlyMap<number, Result> {
    const results = new Map<number, Result>();
    for (const [id, kept] of this.kept) {
      if (kept && !kept.error) results.set(id, { outcome: { columns: kept.columns } });
    }
    return new Computation(this.engine, this.series, this.studies, results).all();
  }

  end(): void {
    this.live?.release();
    this.live = undefined;
    this.kept.clear();
  }

  private prices(first: number, last: number): LivePrices {
    const columns = PRICE_NAMES.flatMap((name): [string, Float64Array][] => {
      const column = findColumn(this.whole.numbers, name);
      return column ? [[name, column.subarray(first, last)]] : [];
    });
    return { ...Object.fromEntries(columns), Date: this.whole.labels.slice(first, last) };
  }

  /** Keeps a study after those that it is computed from; nothing where it cannot be kept, which its computation then tells. */
  private keepStudy(study: Study): Kept | undefined {
    if (this.kept.has(study.id)) return this.kept.get(study.id);
    this.kept.set(study.id, undefined);
    const given: Record<string, unknown> = {};
    for (const [name, value] of Object.entries(study.given)) {
      const source = isColumn(study.calculation, name) ? studyOf(value, this.series, this.studies) : undefined;
      given[name] = source ? this.columnOf(source) : value;
      if (given[name] === undefined) return undefined;
    }
    try {
      this.kept.set(study.id, this.live!.keep(study.calculation, given));
    } catch {
      return undefined;
    }
    return this.kept.get(study.id);
  }

  private columnOf({ study, column }: { study: Study; column: string }): Kept | undefined {
    const place = namesOf(study).indexOf(column);
    const kept = this.keepStudy(study);
    if (!kept || place < 0) return undefined;
    return study.calculation.columns.length === 1 ? kept : (kept.column(camelCase(study.calculation.columns[place]!.key)) as Kept);
  }
}

function isColumn(calculation: Calculation, argument: string): boolean {
  return calculation.arguments.some(({ name, type }) => name === argument && type === "Field");
}

/** Records a second. */
const SPEEDS = [1, 2, 5, 10, 25, 100, 500];
const USUAL_SPEED = 5;
/** After a longer wait for a picture the records that were due meanwhile come later. */
const LONGEST_WAIT = 250;

export interface ReplayActions {
  /** Has as many records. */
  goTo(count: number): void;
  /** It plays no more, or one record has come by itself: there is time to show everything. */
  rest(): void;
  end(): void;
}

/** What a replay is controlled with: play and pause, single steps, the speed, the place. */
export class ReplayBar {
  readonly element = h("div", { class: "replay", role: "group", "aria-label": "Replay", hidden: true });
  private readonly place = h("input", { type: "range", class: "place", min: 1, "aria-label": "Records that have come", oninput: () => this.seek(Number(this.place.value)) });
  private readonly speed = h(
    "select",
    { "aria-label": "Speed" },
    SPEEDS.map((speed) => h("option", { value: speed, selected: speed === USUAL_SPEED }, `${speed} a second`)),
  );
  private readonly facts = h("span", { class: "replay-facts" });
  private readonly starter = h("button", { type: "button", class: "primary play", onclick: () => this.toggle() });
  private readonly backward = this.stepper("back", "One record back", -1);
  private readonly forward = this.stepper("step", "One record on", 1);
  private labels: readonly string[] = [];
  private count = 0;
  private frame: number | undefined;
  private due = 0;

  constructor(private readonly actions: ReplayActions) {
    fill(
      this.element,
      this.backward,
      this.starter,
      this.forward,
      this.speed,
      this.place,
      this.facts,
      h("button", { type: "button", class: "quiet icon-only", "aria-label": "End the replay", title: "End the replay", onclick: () => this.actions.end() }, icon("remove")),
    );
    this.dress();
  }

  open(labels: readonly string[], count: number): void {
    this.labels = labels;
    this.place.max = String(labels.length);
    this.element.hidden = false;
    this.show(count);
    this.starter.focus();
  }

  close(): void {
    this.stop();
    this.element.hidden = true;
  }

  /** Tells how many records there are now. */
  show(count: number): void {
    this.count = count;
    const label = this.labels[count - 1] ?? "";
    const words = `${count.toLocaleString("en-US")} of ${this.labels.length.toLocaleString("en-US")}`;
    this.place.value = String(count);
    this.place.setAttribute("aria-valuetext", `Record ${words}${label === String(count) ? "" : `, ${label}`}`);
    this.facts.textContent = label === String(count) ? words : `${words} · ${label}`;
    this.backward.disabled = count <= 1;
    this.forward.disabled = this.starter.disabled = count >= this.labels.length;
  }

  get playing(): boolean {
    return this.frame !== undefined;
  }

  toggle(): void {
    if (this.playing) this.pause();
    else this.play();
  }

  pause(): void {
    if (!this.playing) return;
    this.stop();
    this.actions.rest();
  }

  private play(): void {
    if (this.count >= this.labels.length) return;
    let before = performance.now();
    this.due = 1;
    const tick = (now: number): void => {
      this.due += (Math.min(now - before, LONGEST_WAIT) / 1000) * Number(this.speed.value);
      before = now;
      const come = Math.min(Math.floor(this.due), this.labels.length - this.count);
      if (come > 0) {
        this.due -= come;
        this.actions.goTo(this.count + come);
      }
      this.frame = requestAnimationFrame(tick);
      if (this.count >= this.labels.length) this.pause();
    };
    this.frame = requestAnimationFrame(tick);
    this.dress();
  }

  private stop(): void {
    if (this.frame !== undefined) cancelAnimationFrame(this.frame);
    this.frame = undefined;
    this.dress();
  }

  private seek(count: number): void {
    this.stop();
    this.actions.goTo(Math.max(1, Math.min(this.labels.length, count)));
    this.actions.rest();
  }

  private stepper(name: "back" | "step", label: string, by: number): HTMLButtonElement {
    return h("button", { type: "button", class: "icon-only", "aria-label": label, title: label, onclick: () => this.seek(this.count + by) }, icon(name));
  }

  private dress(): void {
    fill(this.starter, icon(this.playing ? "pause" : "play"), this.playing ? " Pause" : " Play");
  }
}
