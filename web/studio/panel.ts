// The column beside the chart: the studies, the form of the chosen one, and what there is to read about it.
import { type Argument, type Calculation, fullName } from "../package/src/catalogue.js";
import { fill, h, icon, swatch } from "./dom.js";
import { calls, reference, tags } from "./reference.js";
import type { Series } from "./series.js";
import { dependencies, namesOf, recordArgument, type Result, spaced, type Study, titleOf, usualOf } from "./studies.js";

export interface PanelState {
  readonly series: Series;
  readonly studies: readonly Study[];
  readonly results: ReadonlyMap<number, Result>;
  readonly chosen: number | undefined;
  colourOf(study: Study, column: number): string;
}

export interface PanelActions {
  /** Opens the list. */
  add(): void;
  addThat(calculation: Calculation): void;
  choose(id: number | undefined): void;
  change(id: number, changes: Partial<Study>): void;
  remove(id: number): void;
  exportStudy(id: number): void;
  openPage(method: string): void;
}

/** What a study that draws nothing came to. */
export function answerOf(result: Result | undefined): string {
  if (!result) return "";
  if (result.notes) return `${result.notes.length} found`;
  const { note, value } = result.outcome ?? {};
  if (note) return [note.text, String(note.value), `record ${note.record}`].filter(Boolean).join(" · ");
  return value === undefined ? "" : String(value);
}

export class Panel {
  readonly element = h("aside", { class: "panel", "aria-label": "Studies" });
  private state: PanelState | undefined;
  private readonly list = h("ul", { class: "studies" });
  private readonly details = h("div", { class: "details" });
  private readonly problem = h("p", { class: "problem", role: "alert", id: "problem" });
  private readonly answer = h("p", { class: "answer", role: "status" });
  private readonly code = h("div", {});
  private shown: { id: number; names: string } | undefined;

  constructor(
    private readonly actions: PanelActions,
    private readonly suggestions: readonly Calculation[],
  ) {
    fill(
      this.element,
      h(
        "div",
        { class: "row panel-head" },
        h("h2", {}, "Indicators"),
        h("button", { type: "button", class: "primary", onclick: () => this.actions.add() }, icon("plus"), " Add", h("kbd", {}, "/")),
      ),
      this.list,
      this.details,
    );
  }

  show(state: PanelState): void {
    this.state = state;
    fill(
      this.list,
      state.studies.length === 0 && h("li", { class: "empty" }, "None yet. People often begin with"),
      state.studies.length === 0 && h("li", { class: "chips" }, this.suggestions.map((each) => this.suggestion(each))),
      state.studies.length === 0 && h("li", { class: "empty" }, "or with a price file of their own: drop it on the chart. It stays in this page."),
      state.studies.map((study) => this.item(study)),
    );
    const study = state.studies.find((each) => each.id === state.chosen);
    // The form stays as it is while somebody types in it, unless what it offers has changed.
    const names = JSON.stringify([state.series.name, state.series.count, this.sources(study).map(({ value }) => value)]);
    if (this.shown?.id !== study?.id || this.shown?.names !== names) {
      this.shown = study && { id: study.id, names };
      this.build(study);
    }
    if (study) this.refresh(study);
  }

  focusForm(): void {
    this.details.querySelector<HTMLElement>("input, select")?.focus();
  }

  private suggestion(calculation: Calculation): HTMLElement {
    return h("button", { type: "button", title: calculation.help, onclick: () => this.actions.addThat(calculation) }, spaced(calculation.name));
  }

  private item(study: Study): HTMLElement {
    const { chosen, results, series } = this.state!;
    const title = titleOf(study, series);
    const swatches = study.calculation.columns.map((_, i) => swatch(this.state!.colourOf(study, i)));
    return h(
      "li",
      { class: [study.id === chosen ? "chosen" : "", study.hidden ? "off" : ""].join(" ") },
      h(
        "button",
        { type: "button", class: "name", "aria-pressed": String(study.id === chosen), onclick: () => this.actions.choose(study.id === chosen ? undefined : study.id) },
        h("span", { class: "swatches", "aria-hidden": "true" }, swatches),
        title,
        results.get(study.id)?.error && h("span", { class: "failed" }, "failed"),
      ),
      h(
        "button",
        {
          type: "button",
          class: "quiet icon-only",
          "aria-label": `${study.hidden ? "Show" : "Hide"} ${title}`,
          onclick: () => this.actions.change(study.id, { hidden: !study.hidden }),
        },
        icon(study.hidden ? "hidden" : "eye"),
      ),
      h("button", { type: "button", class: "quiet icon-only", "aria-label": `Remove ${title}`, onclick: () => this.actions.remove(study.id) }, icon("remove")),
    );
  }

  private build(study: Study | undefined): void {
    if (!study) {
      fill(this.details);
      return;
    }
    const { calculation } = study;
    const fields = calculation.arguments
      .filter((argument) => argument.type !== "Database" && argument.type !== "RecordSet" && argument !== recordArgument(calculation))
      .map((argument) => this.field(study, argument));
    const colours = calculation.columns.map((column, i) =>
      h(
        "label",
        { class: "colour" },
        h("input", {
          type: "color",
          value: this.state!.colourOf(study, i),
          oninput: (event: Event) => {
            const now = this.state!.studies.find((each) => each.id === study.id)!;
            this.actions.change(study.id, { colours: { ...now.colours, [i]: (event.target as HTMLInputElement).value } });
          },
        }),
        column.title,
      ),
    );
    fill(
      this.details,
      h("div", { class: "row" }, h("h2", {}, spaced(calculation.name)), tags(calculation)),
      h("p", { class: "prose" }, calculation.help),
      h("form", { class: "fields", "aria-label": `Arguments of ${spaced(calculation.name)}`, onsubmit: (event: Event) => event.preventDefault() }, fields),
      this.answer,
      this.problem,
      colours.length > 0 && h("fieldset", { class: "colours" }, h("legend", {}, "Colours"), colours),
      h(
        "div",
        { class: "row links" },
        calculation.columns.length > 0 &&
          h("button", { type: "button", class: "quiet", onclick: () => this.actions.exportStudy(study.id) }, icon("save"), " CSV of this study"),
        h("button", { type: "button", class: "quiet", onclick: () => this.actions.openPage(fullName(calculation)) }, icon("book"), " Its page"),
      ),
      this.code,
      reference(calculation),
    );
  }

  private refresh(study: Study): void {
    const result = this.state!.results.get(study.id);
    this.problem.textContent = result?.error ?? "";
    this.problem.hidden = !result?.error;
    this.answer.textContent = answerOf(result);
    this.answer.hidden = answerOf(result) === "";
    const values = new Map(study.calculation.arguments.map((argument) => [argument, study.given[argument.name] ?? usualOf(argument, this.state!.series)]));
    fill(this.code, calls(study.calculation, this.state!.series.name, values, study.given));
  }

  /** Columns that a study can be computed from: those of the file, and those of studies that do not build on it. */
  private sources(study: Study | undefined): { value: string; label: string; group: string }[] {
    if (!study) return [];
    const { series, studies } = this.state!;
    const found = Object.keys(series.numbers).map((name) => ({ value: name, label: name, group: "Prices" }));
    for (const other of studies) {
      if (other.id === study.id || dependencies(other, series, studies).has(study.id)) continue;
      for (const name of namesOf(other)) {
        found.push({ value: `${other.id}:${name}`, label: `${name} of ${titleOf(other, series)}`, group: "Studies" });
      }
    }
    return found;
  }

  private field(study: Study, argument: Argument): HTMLElement {
    const id = `argument-${argument.key}`;
    const usual = usualOf(argument, this.state!.series);
    const value = study.given[argument.name] ?? usual;
    const help = `${id}-help`;
    const shared = { id, name: argument.name, "aria-describedby": `${help} problem` };
    const set = (given: string | number | undefined): void => {
      const now = this.state!.studies.find((each) => each.id === study.id)!;
      const { [argument.name]: _, ...others } = now.given;
      this.actions.change(study.id, { given: given === undefined || given === usual ? others : { ...others, [argument.name]: given } });
    };
    const onSelect = (event: Event): void => {
      const text = (event.target as HTMLSelectElement).value;
      set(argument.type === "Field" ? text : Number(text));
    };
    let control: HTMLElement;
    if (argument.type === "Field") {
      const sources = this.sources(study).filter(({ value }) => argument.session || value !== "Session");
      const options = (group: string): HTMLElement[] =>
        sources.filter((source) => source.group === group).map((source) => h("option", { value: source.value, selected: source.value.toLowerCase() === String(value).toLowerCase() }, source.label));
      const others = options("Studies");
      const known = sources.some((source) => source.value.toLowerCase() === String(value).toLowerCase());
      control = h(
        "select",
        { ...shared, onchange: onSelect },
        !known && h("option", { value: String(value), selected: true }, `${value} (not there)`),
        h("optgroup", { label: "Prices" }, options("Prices")),
        others.length > 0 && h("optgroup", { label: "Studies" }, others),
      );
    } else if (argument.choices) {
      control = h(
        "select",
        { ...shared, onchange: onSelect },
        argument.choices.map((choice) => h("option", { value: choice.code, selected: choice.code === Number(value) }, spaced(choice.name))),
      );
    } else if (argument.type === "String") {
      control = h("input", { ...shared, type: "text", value: String(value), oninput: (event: Event) => set((event.target as HTMLInputElement).value || undefined) });
    } else {
      const whole = argument.type !== "Double";
      control = h("input", {
        ...shared,
        type: "number",
        step: whole ? 1 : "any",
        value: String(value),
        inputmode: whole ? "numeric" : "decimal",
        oninput: (event: Event) => {
          const { value: text } = event.target as HTMLInputElement;
          set(text === "" ? undefined : Number(text));
        },
      });
    }
    return h("div", { class: "field" }, h("label", { for: id }, spaced(argument.name)), control, h("p", { class: "small", id: help }, argument.help));
  }
}

