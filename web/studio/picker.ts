// The list of indicators: by purpose, found by abbreviation, name or what is said of them.
import { type Calculation, fullName } from "../package/src/catalogue.js";
import { fill, h, icon } from "./dom.js";
import { matches, purposeTitle, PURPOSES, rank, tags } from "./reference.js";
import { spaced } from "./studies.js";

/** Opens the list, and hands over what was chosen. */
export class Picker {
  private readonly input = h("input", {
    type: "search",
    role: "combobox",
    "aria-label": "Find an indicator",
    "aria-controls": "indicators",
    "aria-expanded": "true",
    "aria-autocomplete": "list",
    placeholder: "RSI, bands, volume ...",
    autocomplete: "off",
    spellcheck: "false",
    oninput: () => this.show(),
    onkeydown: (event: KeyboardEvent) => this.key(event),
  });
  private readonly list = h("div", { id: "indicators", role: "listbox", "aria-label": "Indicators", class: "choices" });
  private readonly dialog = h(
    "dialog",
    { class: "picker", "aria-label": "Add an indicator", onclick: (event: MouseEvent) => event.target === this.dialog && this.dialog.close() },
    h(
      "div",
      { class: "dialog-body" },
      h("div", { class: "search" }, icon("search"), this.input, h("button", { type: "button", class: "quiet icon-only", "aria-label": "Close", onclick: () => this.dialog.close() }, icon("remove"))),
      this.list,
    ),
  );
  private shown: { calculation: Calculation; option: HTMLElement }[] = [];
  private active = 0;

  constructor(
    private readonly calculations: readonly Calculation[],
    private readonly chosen: (calculation: Calculation) => void,
  ) {
    document.body.appendChild(this.dialog);
  }

  open(): void {
    this.input.value = "";
    this.show();
    this.dialog.showModal();
    this.input.focus();
  }

  private show(): void {
    const text = this.input.value.trim();
    const found = this.calculations.filter((calculation) => matches(calculation, text));
    this.shown = [];
    const groups =
      text === ""
        ? PURPOSES.map((purpose) => ({ title: purposeTitle(purpose), members: found.filter((each) => each.purpose === purpose) }))
        : [{ title: "", members: [...found].sort((a, b) => rank(a, text) - rank(b, text)) }];
    fill(
      this.list,
      groups
        .filter(({ members }) => members.length > 0)
        .map(({ title, members }) =>
          h(
            "div",
            { role: "group", "aria-label": title || "Found" },
            title && h("div", { class: "group", "aria-hidden": "true" }, title),
            members.map((calculation) => this.option(calculation)),
          ),
        ),
      found.length === 0 && h("p", { class: "empty", role: "status" }, `No indicator answers to "${text}".`),
    );
    this.mark(0);
  }

  private option(calculation: Calculation): HTMLElement {
    const option = h(
      "div",
      { role: "option", id: `indicator-${this.shown.length}`, class: "choice", "aria-selected": "false", onclick: () => this.choose(calculation) },
      h(
        "span",
        { class: "choice-name" },
        spaced(calculation.name),
        tags(calculation),
      ),
      h("span", { class: "choice-help" }, calculation.help),
    );
    option.title = fullName(calculation);
    this.shown.push({ calculation, option });
    return option;
  }

  private mark(place: number): void {
    this.active = Math.max(0, Math.min(place, this.shown.length - 1));
    this.shown.forEach(({ option }, i) => option.setAttribute("aria-selected", String(i === this.active)));
    const option = this.shown[this.active]?.option;
    this.input.setAttribute("aria-activedescendant", option?.id ?? "");
    option?.scrollIntoView({ block: "nearest" });
  }

  private key(event: KeyboardEvent): void {
    const step = { ArrowDown: 1, ArrowUp: -1, PageDown: 8, PageUp: -8 }[event.key];
    if (step !== undefined) this.mark(this.active + step);
    else if (event.key === "Enter" && this.shown[this.active]) this.choose(this.shown[this.active]!.calculation);
    else return;
    event.preventDefault();
  }

  private choose(calculation: Calculation): void {
    this.dialog.close();
    this.chosen(calculation);
  }
}
