// The studio: one page in which prices are looked at and computed with. Nothing leaves it.
import { type Calculation, fullName } from "../package/src/catalogue.js";
import { Engine, findColumn, PRICE_NAMES } from "../package/src/engine.js";
import { PriceChart } from "./chart.js";
import { fill, h, icon, swatch, writerOf } from "./dom.js";
import { chartColumns, chartData, chartPage, hand, picture, rememberTemplate, studyCsv } from "./files.js";
import { answerOf, Panel } from "./panel.js";
import { Picker } from "./picker.js";
import { calls, copyText, purposeTitle, PURPOSES, reference, tags } from "./reference.js";
import { Replay, ReplayBar } from "./replay.js";
import { bytesOf, readSeries, type ReadingOptions, type Series } from "./series.js";
import { type ChartData, decode, decodeState, encodeState, KINDS, PLAIN_VIEW, studiesOf, type View, wordsOf } from "./state.js";
import { Computation, dependencies, renamed, type Result, spaced, type Study, titleOf, usualOf } from "./studies.js";
import { ValueTable } from "./table.js";
import { DARK, LIGHT } from "./themes.js";

rememberTemplate();

const FIRST_STEPS = ["SimpleMovingAverage", "BollingerBands", "MACD", "RelativeStrengthIndex", "StochasticOscillator", "AverageTrueRange"];

function content(id: string): string {
  return document.getElementById(id)!.textContent ?? "";
}

async function compiled(base64: string): Promise<WebAssembly.Module> {
  const packed = Uint8Array.from(atob(base64), (letter) => letter.charCodeAt(0));
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream("gzip"));
  return WebAssembly.compile(await new Response(stream).arrayBuffer());
}

class Studio {
  private series!: Series;
  private studies: Study[] = [];
  private results: ReadonlyMap<number, Result> = new Map();
  private view: View = PLAIN_VIEW;
  private chosen: number | undefined;
  private pointer: number | undefined;
  private nextId = 1;
  private dark = matchMedia("(prefers-color-scheme: dark)").matches;
  private writingAddress = false;
  private byKeys = false;

  private readonly chart: PriceChart;
  private readonly stage = h("div", { class: "stage", tabindex: "0", role: "application", "aria-label": "Chart", "aria-describedby": "keys", onkeydown: (event: KeyboardEvent) => this.moveBy(event) });
  private readonly canvas = h("div", { class: "canvas" });
  private readonly legends = h("div", { class: "legends" });
  private readonly spoken = h("p", { class: "visually-hidden", "aria-live": "polite" });
  private readonly notices = h("div", { class: "notices", role: "status" });
  private readonly table = new ValueTable();
  private readonly spans = h("div", { class: "spans", role: "group", "aria-label": "Records in view" });
  private readonly drawer = h("section", { class: "drawer", "aria-label": "Table of values", hidden: true });
  private readonly page = h("div", { class: "page", hidden: true });
  private readonly workspace = h("div", { class: "workspace" });
  private readonly fileName = h("span", { class: "file-name" });
  private readonly fileFacts = h("span", { class: "file-facts" });
  private readonly file = h("input", { type: "file", class: "visually-hidden", tabindex: "-1", "aria-hidden": "true", onchange: () => void this.take(this.file.files?.[0]) });
  private readonly panel: Panel;
  private readonly picker: Picker;
  private readonly paste = this.pasteDialog();
  private replay: Replay | undefined;
  private readonly replayBar = new ReplayBar({
    goTo: (count) => this.goTo(count),
    rest: () => this.rest(),
    end: () => this.endReplay(),
  });
  private preview: { study: Study; results: ReadonlyMap<number, Result>; chart: PriceChart; caption: HTMLElement } | undefined;
  private controls: Record<string, HTMLButtonElement> = {};

  constructor(private readonly engine: Engine) {
    this.panel = new Panel({
      add: () => this.picker.open(),
      addThat: (calculation) => this.add(calculation),
      choose: (id) => this.choose(id),
      change: (id, changes) => this.change(id, changes),
      remove: (id) => this.remove(id),
      exportStudy: (id) => this.exportStudy(id),
      openPage: (method) => (location.hash = `#/${method}`),
    }, FIRST_STEPS.flatMap((name) => engine.find(name) ?? []));
    this.picker = new Picker(engine.calculations, (calculation) => this.add(calculation));
    this.layOut();
    this.applyTheme();
    this.chart = new PriceChart(this.canvas, this.theme());
    // The crosshair follows keys as well, and then tells of nothing but itself.
    this.chart.onPointer((record) => this.byKeys || this.point(record));
    this.canvas.addEventListener("pointermove", () => (this.byKeys = false));
    this.chart.onRange(() => this.rememberSoon());
    new ResizeObserver(() => this.placeLegends()).observe(this.canvas);
    addEventListener("hashchange", () => this.route());
    addEventListener("click", (event) => this.follow(event));
    addEventListener("keydown", (event) => this.shortcut(event));
    this.acceptDrops();
  }

  /** Shows what the page carries, or the sample. */
  start(): void {
    const data = JSON.parse(content("orvex-chart")) as ChartData | null;
    const opened = data !== null && this.load(data.name, data.prices, { order: "keep" });
    if (!opened) {
      const notices = [...this.notices.children];
      this.load("sample.csv", content("orvex-sample"));
      this.notices.prepend(...notices);
    }
    const query = /^#\/\?(.+)$/.exec(location.hash)?.[1];
    if (opened && query === undefined) {
      this.adopt(data.studies, { ...PLAIN_VIEW, ...data.view });
    }
    this.route();
  }

  private layOut(): void {
    const kinds = KINDS.map((kind) => this.toggle(kind, kind[0]!.toUpperCase() + kind.slice(1), () => this.look({ kind })));
    fill(
      this.stage,
      this.canvas,
      this.legends,
      h("p", { id: "keys", class: "visually-hidden" }, "Left and right move from record to record, with shift by ten; up and down zoom; home and end go to the first and the last record. The table has all values."),
      this.spoken,
    );
    fill(this.drawer, this.table.element);
    const header = h(
      "header",
      { class: "bar" },
      h("a", { class: "brand", href: "#/", "aria-label": "Orvex Studio, the chart" }, h("span", { class: "mark", "aria-hidden": "true" }), h("span", { class: "brand-name" }, "Orvex")),
      h("div", { class: "file chart-only" }, this.fileName, this.fileFacts),
      h("div", { class: "group chart-only" }, this.button("open", "Open", "Open a price file", () => this.file.click()), this.button("paste", "Paste", "Paste prices as text", () => this.paste.showModal())),
      h("div", { class: "group segmented chart-only", role: "group", "aria-label": "Drawn as" }, kinds),
      h("div", { class: "group chart-only" }, this.toggle("volume", "Volume", () => this.look({ volume: !this.view.volume })), this.toggle("log", "Log", () => this.look({ log: !this.view.log }))),
      h("div", { class: "grow" }),
      h(
        "div",
        { class: "group" },
        h("div", { class: "group chart-only" }, this.toggle("table", "Table", () => this.toggleTable(), "table"), this.saveMenu()),
        h("a", { class: "button", href: "#/indicators" }, icon("book"), h("span", { class: "wide" }, " Reference")),
        this.button("sun", "", "Light or dark", () => {
          this.dark = !this.dark;
          this.applyTheme();
          this.chart.setTheme(this.theme());
          this.drawPreview();
          this.show();
        }),
      ),
      this.file,
    );
    fill(this.workspace, h("main", { class: "main" }, this.notices, this.stage, this.replayBar.element, this.spans, this.drawer), this.panel.element);
    document.body.append(header, this.workspace, this.page);
  }

  private button(name: Parameters<typeof icon>[0], text: string, label: string, act: () => void): HTMLButtonElement {
    return h("button", { type: "button", class: text ? "" : "icon-only", "aria-label": label, title: label, onclick: act }, icon(name), text && h("span", { class: "wide" }, ` ${text}`));
  }

  private toggle(key: string, text: string, act: () => void, drawing?: Parameters<typeof icon>[0], look = ""): HTMLButtonElement {
    const button = h("button", { type: "button", class: look, "aria-pressed": "false", onclick: act }, drawing && icon(drawing), drawing ? h("span", { class: "wide" }, ` ${text}`) : text);
    if (drawing) button.setAttribute("aria-label", text);
    this.controls[key] = button;
    return button;
  }

  private saveMenu(): HTMLElement {
    const menu = h("div", { class: "menu", role: "menu", hidden: true });
    const opener = h(
      "button",
      { type: "button", "aria-haspopup": "menu", "aria-expanded": "false", "aria-label": "Save", onclick: () => show(Boolean(menu.hidden)) },
      icon("save"),
      h("span", { class: "wide" }, " Save"),
    );
    const show = (open: boolean): void => {
      menu.hidden = !open;
      opener.setAttribute("aria-expanded", String(open));
      if (open) menu.querySelector<HTMLElement>("[role=menuitem]")!.focus();
    };
    const item = (text: string, help: string, act: () => void): HTMLElement =>
      h(
        "button",
        {
          type: "button",
          role: "menuitem",
          onclick: () => {
            show(false);
            opener.focus();
            act();
          },
        },
        h("strong", {}, text),
        h("span", {}, help),
      );
    menu.append(
      item("Page", "One HTML file with these prices and indicators, to keep or to send", () => this.savePage()),
      item("CSV", "Prices and every computed value", () => this.saveCsv()),
      item("PNG", "The picture", () => this.savePicture()),
      item("Link", "The indicators and the view, without the prices, on the clipboard", () => void this.copyLink()),
    );
    const holder = h(
      "div",
      {
        class: "menu-holder",
        onkeydown: (event: KeyboardEvent) => {
          const items = [...menu.querySelectorAll<HTMLElement>("[role=menuitem]")];
          const at = items.indexOf(document.activeElement as HTMLElement);
          if (event.key === "Escape" && !menu.hidden) {
            show(false);
            opener.focus();
          } else if (at >= 0 && (event.key === "ArrowDown" || event.key === "ArrowUp")) {
            items[(at + (event.key === "ArrowDown" ? 1 : items.length - 1)) % items.length]!.focus();
            event.preventDefault();
          }
        },
        onfocusout: (event: FocusEvent) => {
          if (!holder.contains(event.relatedTarget as Node | null)) show(false);
        },
      },
      opener,
      menu,
    );
    return holder;
  }

  private pasteDialog(): HTMLDialogElement {
    const text = h("textarea", { id: "pasted", rows: 12, spellcheck: "false", placeholder: "Date,Open,High,Low,Close,Volume\n2024-01-02,101.20,102.75,100.90,102.10,120400\n..." });
    const dialog = h(
      "dialog",
      { class: "paste", "aria-labelledby": "paste-title" },
      h(
        "form",
        {
          method: "dialog",
          class: "dialog-body",
          onsubmit: () => {
            if (text.value.trim() !== "") this.load("pasted.csv", text.value);
          },
        },
        h("h2", { id: "paste-title" }, "Paste prices"),
        h("label", { for: "pasted" }, "One record a line, as copied from a file, a sheet or a site. It stays in this page."),
        text,
        h("div", { class: "row end" }, h("button", { type: "button", onclick: () => dialog.close() }, "Cancel"), h("button", { type: "submit", class: "primary" }, "Show")),
      ),
    );
    document.body.appendChild(dialog);
    return dialog;
  }

  private acceptDrops(): void {
    const over = (event: DragEvent): void => {
      event.preventDefault();
      document.body.classList.toggle("dropping", event.type === "dragover");
    };
    for (const type of ["dragover", "dragleave", "drop"]) addEventListener(type, over as EventListener);
    addEventListener("drop", (event) => void this.take(event.dataTransfer?.files[0]));
  }

  // Prices

  private async take(file: File | undefined): Promise<void> {
    if (!file) return;
    document.body.classList.add("busy");
    try {
      this.load(file.name.replace(/\.gz$/i, ""), await bytesOf(file));
    } catch (error) {
      this.tell(file.name, error);
    } finally {
      this.file.value = "";
      document.body.classList.remove("busy");
    }
  }

  /** Shows prices. Where that is not possible, says why and what may be tried, and leaves what was shown. */
  private load(name: string, prices: Uint8Array | string, options: ReadingOptions = {}): boolean {
    let series: Series;
    try {
      series = readSeries(this.engine, name, prices, options);
    } catch (error) {
      this.tell(name, error, (other) => this.load(name, prices, { ...options, ...other }));
      return false;
    }
    fill(this.notices, ...series.remarks.map((remark) => this.notice(remark, "remark")));
    this.closeReplay();
    this.series = series;
    this.fileName.textContent = name;
    const records = `${series.count.toLocaleString("en-US")} record${series.count === 1 ? "" : "s"}`;
    this.fileFacts.textContent = [records, series.labels[0] === "1" ? "" : `${series.labels[0]} – ${series.labels.at(-1)}`].filter(Boolean).join(" · ");
    this.table.show([], 0);
    this.pointer = undefined;
    this.chart.setPrices(series, this.view);
    this.offerSpans();
    this.recompute();
    return true;
  }

  private offerSpans(): void {
    const button = (name: string, label: string, records?: number): HTMLElement =>
      h("button", { type: "button", class: "quiet", "aria-label": label, onclick: () => this.chart.showLast(records) }, name);
    fill(
      this.spans,
      this.chart.spans().map(({ name, records }) => button(name, `The last ${name}`, records)),
      button("All", "All records"),
      h("div", { class: "grow" }),
      this.series.count > 1 && this.toggle("replay", "Replay", () => this.toggleReplay(), "replay", "quiet"),
    );
  }

  // The prices once more, record after record

  private toggleReplay(): void {
    if (this.replay) this.endReplay();
    else if (this.series.count > 1) this.beginReplay();
  }

  /** Begins where the crosshair was put, or half way. */
  private beginReplay(): void {
    const { count, labels } = this.series;
    const first = this.pointer !== undefined ? this.pointer + 1 : Math.ceil(count / 2);
    this.replay = new Replay(this.engine, this.series, first);
    this.showSeries(this.replay.series);
    this.replayBar.open(labels, first);
  }

  private showSeries(series: Series): void {
    this.series = series;
    this.pointer = undefined;
    this.chart.setPrices(series, this.view);
    this.recompute();
  }

  /** Shows as many records of what is replayed. */
  private goTo(count: number): void {
    const replay = this.replay!;
    const range = this.chart.range();
    const less = this.series.count - count;
    replay.goTo(count);
    this.series = replay.series;
    if (this.pointer !== undefined && this.pointer >= count) this.pointer = undefined;
    if (less > 0) {
      this.chart.setPrices(this.series, this.view);
      if (range) this.chart.show({ from: range.from - less, to: range.to - less });
    } else {
      this.chart.extend(this.series);
    }
    this.results = replay.results();
    this.drawStudies();
    this.replayBar.show(count);
  }

  private rest(): void {
    this.show();
    this.spoken.textContent = [`Record ${this.series.count} of ${this.replay!.whole.count}`, ...this.legendValues.map(({ values }) => values())].filter(Boolean).join(", ");
  }

  private endReplay(): void {
    const { replay } = this;
    if (!replay) return;
    this.closeReplay();
    this.showSeries(replay.whole);
    this.controls["replay"]?.focus();
  }

  private closeReplay(): void {
    this.replay?.end();
    this.replay = undefined;
    this.replayBar.close();
  }

  /** What is wrong with a file, and what may be tried. */
  private tell(name: string, error: unknown, retry?: (options: ReadingOptions) => void): void {
    const text = error instanceof Error ? error.message : String(error);
    const offers: [string, ReadingOptions][] = [
      ["--order", { order: "keep" }],
      ["--missing", { missing: "skip" }],
      ["--missing", { missing: "previous" }],
      ["--decimal", { decimal: "," }],
      ["--decimal", { decimal: "." }],
    ];
    const words: Record<string, string> = { keep: "Keep the order of the file", skip: "Leave such records out", previous: "Take the price before", ",": "Decimal comma", ".": "Decimal point" };
    fill(
      this.notices,
      this.notice(
        `${name}: ${text}`,
        "error",
        retry &&
          offers
            .filter(([option]) => text.includes(option))
            .map(([, options]) => h("button", { type: "button", onclick: () => retry(options) }, words[Object.values(options)[0]!])),
      ),
    );
  }

  private notice(text: string, kind: "remark" | "error", actions?: readonly HTMLElement[]): HTMLElement {
    const notice = h(
      "div",
      { class: `notice ${kind}`, ...(kind === "error" && { role: "alert" }) },
      h("p", {}, text),
      actions,
      h("button", { type: "button", class: "quiet icon-only", "aria-label": "Dismiss", onclick: () => notice.remove() }, icon("remove")),
    );
    return notice;
  }

  // Studies

  private add(calculation: Calculation): void {
    const start = performance.now();
    const study: Study = { id: this.nextId++, calculation, given: {}, hidden: false, colours: {} };
    this.studies = [...this.studies, study];
    this.chosen = study.id;
    if (location.hash !== "" && !location.hash.startsWith("#/?") && location.hash !== "#/") location.hash = "#/";
    this.recompute(study.id);
    performance.measure("orvex-add", { start });
    this.panel.focusForm();
  }

  private change(id: number, changes: Partial<Study>): void {
    const before = this.studies.find((study) => study.id === id);
    if (!before) return;
    const after = { ...before, ...changes };
    this.studies = renamed(this.studies, before, after).map((study) => (study.id === id ? after : study));
    if (changes.given) this.recompute(id);
    else this.show();
  }

  private remove(id: number): void {
    this.studies = this.studies.filter((study) => study.id !== id);
    if (this.chosen === id) this.chosen = undefined;
    this.recompute(id);
  }

  private choose(id: number | undefined): void {
    this.chosen = id;
    this.show();
  }

  /** Computes what a change of one study touches, or everything. */
  private recompute(changed?: number): void {
    if (this.replay) {
      this.replay.keep(this.studies);
      this.results = this.replay.results();
      this.show();
      return;
    }
    const kept = new Map<number, Result>();
    if (changed !== undefined) {
      for (const study of this.studies) {
        const result = this.results.get(study.id);
        if (result && study.id !== changed && !dependencies(study, this.series, this.studies).has(changed)) kept.set(study.id, result);
      }
    }
    this.results = new Computation(this.engine, this.series, this.studies, kept).all();
    this.show();
  }

  private show(): void {
    this.drawStudies();
    this.panel.show({
      series: this.series,
      studies: this.studies,
      results: this.results,
      chosen: this.chosen,
      colourOf: (study, column) => this.chart.colourOf(study, column),
    });
    for (const kind of KINDS) this.press(kind, this.view.kind === kind);
    this.press("volume", this.view.volume);
    this.press("log", this.view.log);
    this.press("table", !this.drawer.hidden);
    this.press("replay", this.replay !== undefined);
    this.rememberSoon();
  }

  /** Shows what the studies came to, in the chart, beside it and in the table. */
  private drawStudies(): void {
    this.chart.setStudies(this.studies, this.results);
    if (!this.drawer.hidden) this.fillTable();
    this.buildLegends();
  }

  private press(key: string, pressed: boolean): void {
    this.controls[key]?.setAttribute("aria-pressed", String(pressed));
  }

  private look(changes: Partial<View>): void {
    const range = this.chart.range();
    this.view = { ...this.view, ...changes };
    this.chart.setPrices(this.series, this.view);
    if (range) this.chart.show(range);
    this.show();
  }

  private toggleTable(): void {
    this.drawer.hidden = !this.drawer.hidden;
    this.show();
  }

  private fillTable(): void {
    this.table.show(
      chartColumns(this.series, this.studies, this.results).filter((column) => column.values.length === this.series.count),
      this.series.count,
    );
    this.table.point(this.pointer);
  }

  // Legends: what stands under the pointer, over each pane

  private legendValues: { element: HTMLElement; values: () => string }[] = [];
  private legendBoxes: { element: HTMLElement; top: () => number }[] = [];

  private buildLegends(): void {
    this.legendValues = [];
    this.legendBoxes = [];
    const boxes = this.chart.layout().map(({ pane, studies }, i) => {
      const rows = this.studies.filter((study) => studies.includes(study.id)).map((study) => this.legend(study));
      if (i === 0) {
        const unplaced = this.studies.filter((study) => !this.chart.layout().some((each) => each.studies.includes(study.id)));
        rows.unshift(this.priceLegend());
        rows.push(...unplaced.map((study) => this.legend(study)));
      }
      const box = h("div", { class: "legend" }, rows);
      this.legendBoxes.push({ element: box, top: () => (pane.getHTMLElement()?.getBoundingClientRect().top ?? 0) - this.canvas.getBoundingClientRect().top });
      return box;
    });
    fill(this.legends, boxes);
    requestAnimationFrame(() => this.placeLegends());
    this.fillLegends();
  }

  private placeLegends(): void {
    for (const { element, top } of this.legendBoxes) element.style.top = `${Math.round(top()) + 4}px`;
  }

  private priceLegend(): HTMLElement {
    const values = h("span", { class: "values-now" });
    const prices = PRICE_NAMES.flatMap((name) => {
      const column = findColumn(this.series.numbers, name);
      return column ? [{ letter: name[0]!, column, write: writerOf(column) }] : [];
    });
    this.legendValues.push({
      element: values,
      values: () => {
        const record = this.pointer ?? this.series.count - 1;
        const shown = prices.map(({ letter, column, write }) => `${letter} ${write(column[record]!)}`);
        return [this.series.labels[record] ?? "", ...shown].join("  ");
      },
    });
    return h("div", { class: "legend-row" }, h("strong", {}, this.series.name.replace(/\.\w+$/, "")), values);
  }

  private legend(study: Study): HTMLElement {
    const title = titleOf(study, this.series);
    const result = this.results.get(study.id);
    const values = study.calculation.columns.map((_, i) => {
      const value = h("span", { class: "value" });
      value.style.color = this.chart.colourOf(study, i);
      const column = result?.outcome?.columns[i];
      const write = column && writerOf(column.values);
      this.legendValues.push({
        element: value,
        values: () => (column && write ? write(column.values[this.pointer ?? column.last - 1] ?? NaN) : ""),
      });
      return value;
    });
    if (values.length === 0) {
      const found = h("span", { class: "value" });
      const notes = result?.notes;
      values.push(found);
      this.legendValues.push({
        element: found,
        values: () => (notes && this.pointer !== undefined ? (notes.find((note) => note.record - 1 === this.pointer)?.text ?? "") : answerOf(result)),
      });
    }
    return h(
      "div",
      { class: `legend-row${study.hidden ? " off" : ""}` },
      h("button", { type: "button", class: "legend-name", "aria-label": `Settings of ${title}`, onclick: () => this.choose(study.id) }, title),
      result?.error ? h("span", { class: "failed", title: result.error }, "failed") : values,
      h(
        "span",
        { class: "legend-actions" },
        h("button", { type: "button", class: "quiet icon-only", "aria-label": `${study.hidden ? "Show" : "Hide"} ${title} in the chart`, onclick: () => this.change(study.id, { hidden: !study.hidden }) }, icon(study.hidden ? "hidden" : "eye")),
        h("button", { type: "button", class: "quiet icon-only", "aria-label": `Remove ${title} from the chart`, onclick: () => this.remove(study.id) }, icon("remove")),
      ),
    );
  }

  private fillLegends(): void {
    for (const { element, values } of this.legendValues) element.textContent = values();
  }

  private point(record: number | undefined): void {
    if (record === this.pointer) return;
    this.pointer = record;
    this.fillLegends();
    if (!this.drawer.hidden) this.table.point(record);
  }

  // Keys

  private moveBy(event: KeyboardEvent): void {
    if (event.target !== this.stage) return;
    const last = this.series.count - 1;
    const at = this.pointer ?? last;
    const stride = event.shiftKey ? 10 : 1;
    const target = { ArrowLeft: at - stride, ArrowRight: at + stride, Home: 0, End: last }[event.key];
    if (target !== undefined) {
      const record = Math.max(0, Math.min(last, target));
      this.byKeys = true;
      this.chart.point(record);
      this.point(record);
      this.spoken.textContent = [`Record ${record + 1}`, ...this.legendValues.map(({ values }) => values())].filter(Boolean).join(", ");
    } else if (event.key === "ArrowUp" || event.key === "ArrowDown" || event.key === "+" || event.key === "-") {
      const range = this.chart.range();
      if (!range) return;
      const width = (range.to - range.from) * (event.key === "ArrowUp" || event.key === "+" ? 0.8 : 1.25);
      this.chart.show({ from: Math.max(range.to - width, -5), to: range.to });
    } else {
      return;
    }
    event.preventDefault();
  }

  private shortcut(event: KeyboardEvent): void {
    const { target } = event;
    const typing = target instanceof HTMLElement && target.closest("input, textarea, select, dialog");
    if (typing || event.ctrlKey || event.metaKey || event.altKey) return;
    const act = { "/": () => this.picker.open(), o: () => this.file.click(), t: () => this.toggleTable(), r: () => this.toggleReplay() }[event.key];
    if (!act) return;
    event.preventDefault();
    act();
  }

  // The address

  private waiting: ReturnType<typeof setTimeout> | undefined;

  private rememberSoon(): void {
    clearTimeout(this.waiting);
    this.waiting = setTimeout(() => this.remember(), 150);
    requestAnimationFrame(() => this.placeLegends());
  }

  /** The studies and the view as an address; the latest records in view need no words. */
  private address(): string {
    return encodeState(wordsOf(this.studies), this.viewNow());
  }

  private viewNow(): View {
    const range = this.chart.range();
    return range && !this.chart.showsLatest() ? { ...this.view, range } : this.view;
  }

  private remember(): void {
    if (!this.page.hidden || !this.writingAddress) return;
    // In a frame without an address of its own there is nothing to write to.
    try {
      history.replaceState(null, "", this.address());
    } catch {
      this.writingAddress = false;
    }
  }

  /** Links within the page, which in a frame without an address of its own would lead to the page around it. */
  private follow(event: MouseEvent): void {
    const link = event.target instanceof Element ? event.target.closest("a[href^='#']") : null;
    if (!link || event.button !== 0 || event.ctrlKey || event.metaKey || event.shiftKey || event.altKey) return;
    event.preventDefault();
    location.hash = link.getAttribute("href")!;
  }

  private route(): void {
    const path = decode(/^#\/([^?]*)/.exec(location.hash)?.[1] ?? "");
    const query = /^#\/\?(.*)$/.exec(location.hash)?.[1];
    this.preview?.chart.destroy();
    this.preview = undefined;
    const calculation = path && path !== "indicators" ? this.engine.find(path) : undefined;
    const isPage = path !== "";
    if (isPage) this.replayBar.pause();
    this.page.hidden = !isPage;
    this.workspace.hidden = isPage;
    document.body.classList.toggle("reading", isPage);
    document.title = calculation ? `${fullName(calculation)} · Orvex` : "Orvex Studio";
    if (calculation) this.showPage(calculation);
    else if (isPage) this.showIndex(path === "indicators" ? "" : path);
    else if (query !== undefined && location.hash !== this.address()) {
      const { studies, view } = decodeState(query);
      this.adopt(studies, view);
    }
    this.writingAddress = true;
    if (!isPage) this.show();
  }

  private adopt(words: ChartData["studies"], { range, ...view }: View): void {
    const { studies, problems } = studiesOf(words, this.engine, this.series.numbers);
    this.studies = studies;
    this.nextId = words.length + 1;
    this.chosen = studies[0]?.id;
    this.view = view;
    this.chart.setPrices(this.series, view);
    if (range) this.chart.show(range);
    else this.chart.showLatest();
    this.recompute();
    for (const problem of problems) this.notices.append(this.notice(problem, "error"));
  }

  // Pages of the reference

  private showPage(calculation: Calculation): void {
    const picture = h("div", { class: "preview" });
    const caption = h("figcaption", { class: "caption" });
    const values = new Map(calculation.arguments.map((argument) => [argument, usualOf(argument, this.series)]));
    const drawn = calculation.columns.length > 0 || calculation.result === "Note";
    fill(
      this.page,
      h(
        "main",
        { class: "article" },
        h("nav", { "aria-label": "Where this page stands" }, h("a", { href: "#/indicators" }, "Indicators"), " / ", purposeTitle(calculation.purpose)),
        h("h1", {}, spaced(calculation.name), tags(calculation)),
        h("p", { class: "lead" }, calculation.help),
        h("p", { class: "signature" }, h("code", {}, `${calculation.class}.${calculation.signature}`)),
        h(
          "div",
          { class: "row" },
          h(
            "button",
            {
              type: "button",
              class: "primary",
              onclick: () => {
                location.hash = "#/";
                this.add(calculation);
              },
            },
            icon("plus"),
            " Add to the chart",
          ),
        ),
        drawn && h("figure", {}, picture, caption),
        calls(calculation, this.series.name, values, {}),
        reference(calculation),
      ),
    );
    this.page.scrollTop = 0;
    if (drawn) {
      const study: Study = { id: 1, calculation, given: {}, hidden: false, colours: {} };
      const results = new Computation(this.engine, this.series, [study]).all();
      const error = results.get(1)?.error;
      if (error) {
        picture.replaceWith(h("p", { class: "problem" }, `On ${this.series.name}: ${error}`));
        return;
      }
      const chart = new PriceChart(picture, this.theme(), 0.8);
      chart.setPrices(this.series, { kind: "candles", volume: false, log: false });
      this.preview = { study, results, chart, caption };
      this.drawPreview();
    }
  }

  /** The picture of a page and what stands below it, in the colours of the theme. */
  private drawPreview(): void {
    if (!this.preview) return;
    const { study, results, chart, caption } = this.preview;
    chart.setTheme(this.theme());
    chart.setStudies([study], results);
    const columns = study.calculation.columns.map((column, i) => h("span", { class: "caption-column" }, swatch(chart.colourOf(study, i)), column.title));
    fill(caption, h("span", {}, `${titleOf(study, this.series)} on ${this.series.name}`), columns);
  }

  private showIndex(unknown: string): void {
    fill(
      this.page,
      h(
        "main",
        { class: "article index" },
        h("h1", {}, "Indicators"),
        unknown && h("p", { class: "problem", role: "alert" }, `There is no indicator "${unknown}".`),
        h("p", { class: "lead" }, `${this.engine.calculations.length} calculations, by what they are used for. Each has a page with its formula, how it is read and where it comes from.`),
        PURPOSES.map((purpose) => {
          const members = this.engine.calculations.filter((each) => each.purpose === purpose);
          return (
            members.length > 0 &&
            h(
              "section",
              {},
              h("h2", {}, purposeTitle(purpose)),
              h(
                "ul",
                { class: "index-list" },
                members.map((each) =>
                  h("li", {}, h("span", {}, h("a", { href: `#/${fullName(each)}` }, spaced(each.name)), tags(each)), h("span", { class: "help" }, each.help)),
                ),
              ),
            )
          );
        }),
      ),
    );
    this.page.scrollTop = 0;
  }

  // What leaves the page

  private baseName(): string {
    return this.series.name.replace(/\.\w+$/, "");
  }

  private savePage(): void {
    const data = chartData(this.engine, this.series, wordsOf(this.studies), this.viewNow());
    hand(`${this.baseName()}.html`, chartPage(data), "text/html");
  }

  private saveCsv(): void {
    hand(`${this.baseName()}-studies.csv`, this.engine.csv(chartColumns(this.series, this.studies, this.results)), "text/csv");
  }

  private exportStudy(id: number): void {
    const study = this.studies.find((each) => each.id === id);
    if (study) hand(`${this.baseName()}-${study.calculation.key}.csv`, studyCsv(this.engine, this.series, this.results.get(id)), "text/csv");
  }

  private savePicture(): void {
    const words = this.legendBoxes.map(({ element, top }) => ({
      top: top(),
      texts: [...element.querySelectorAll<HTMLElement>(".legend-row:not(.off)")].map((row) =>
        [...row.querySelectorAll<HTMLElement>("strong, .legend-name, .values-now, .value")].map((each) => each.textContent).join("  "),
      ),
    }));
    picture(this.chart.image(), words, this.theme().text).toBlob((blob) => blob && hand(`${this.baseName()}.png`, blob, "image/png"));
  }

  private async copyLink(): Promise<void> {
    const address = location.href.replace(/#.*$/, "") + this.address();
    const done = await copyText(address);
    this.notices.append(this.notice(done ? "The link is on the clipboard. It carries the indicators, not the prices." : address, "remark"));
  }

  private theme() {
    return this.dark ? DARK : LIGHT;
  }

  private applyTheme(): void {
    document.documentElement.dataset["theme"] = this.dark ? "dark" : "light";
  }
}

async function begin(): Promise<void> {
  try {
    new Studio(await Engine.start(await compiled(content("orvex-module")))).start();
    document.documentElement.dataset["ready"] = "true";
    requestAnimationFrame(() => performance.mark("orvex-shown"));
  } catch (error) {
    document.body.append(h("p", { class: "problem", role: "alert" }, `The studio could not start in this browser: ${String(error)}`));
    throw error;
  }
}

void begin();

