// What there is to read about a calculation: beside the chart, and as a page of its own.
import { type Argument, type Calculation, fullName } from "../package/src/catalogue.js";
import { type Call, callsOf } from "./calls.js";
import { h, icon } from "./dom.js";
import { type Given, spaced } from "./studies.js";

/** A text with each line that is one kept as such. */
function paragraph(text: string): HTMLElement {
  return h("p", { class: "prose" }, text);
}

function section(title: string, ...content: (Node | string | false | undefined)[]): HTMLElement {
  return h("section", {}, h("h3", {}, title), ...content);
}

/** Terms, each with a word behind it and with what there is to say of it. */
function terms(list: readonly { term: string; aside: string; text: string }[]): HTMLElement {
  return h(
    "dl",
    { class: "terms" },
    list.flatMap(({ term, aside, text }) => [h("dt", {}, h("code", {}, term), " ", h("span", { class: "aside" }, aside)), h("dd", {}, text)]),
  );
}

/** A whole number's values in words: its usual one, its choices. */
function valuesOf(argument: Argument): string {
  const usual = argument.usual ?? argument.default;
  const choices = argument.choices?.map((choice) => `${choice.code} ${choice.name}`).join(", ");
  return [usual === undefined || usual === "" ? "" : `Usually ${usual}.`, choices ? `One of ${choices}.` : ""].filter(Boolean).join(" ");
}

function boundsOf(low: number | null, high: number | null): string {
  if (low === null && high === null) return "";
  if (low === null) return `up to ${high}`;
  return high === null ? `from ${low}` : `${low} to ${high}`;
}

/** Formula, reading, arguments, columns, origin, difference and errors. */
export function reference(calculation: Calculation): HTMLElement {
  const { guide } = calculation;
  const named = calculation.arguments.filter((argument) => argument.type !== "Database");
  return h(
    "div",
    { class: "reference" },
    guide.formula && section("Formula", h("pre", { class: "formula", tabindex: "0" }, guide.formula)),
    guide.reading && section("Reading", paragraph(guide.reading)),
    named.length > 0 &&
      section(
        "Arguments",
        terms(named.map((argument) => ({ term: argument.name, aside: argument.type, text: `${argument.help} ${valuesOf(argument)}` }))),
      ),
    calculation.columns.length > 0 &&
      section(
        "Result",
        terms(
          calculation.columns.map((column) => ({
            term: column.title,
            aside: `records ${column.firstRow} to ${column.lastRow}`,
            text: [column.help, column.unit && `Unit: ${column.unit}.`, boundsOf(column.low, column.high) && `Range: ${boundsOf(column.low, column.high)}.`]
              .filter(Boolean)
              .join(" "),
          })),
        ),
        h("p", { class: "small" }, "N is the record count. Other records are not computed, and not drawn."),
      ),
    guide.origin && section("Origin", paragraph(guide.origin)),
    guide.difference && section("Difference from the book", paragraph(guide.difference)),
    section(
      "Errors",
      guide.fails && paragraph(`Fails ${guide.fails}.`),
      terms(
        calculation.errors.map((fault) => ({ term: fault.source, aside: String(fault.number), text: fault.description || "That of the fault that was met." })),
      ),
    ),
  );
}

let language = "Python";

/** The call in each language, one at a time, to copy. */
export function calls(calculation: Calculation, file: string, values: ReadonlyMap<Argument, string | number>, given: Given): HTMLElement {
  const all = callsOf(calculation, file, values, given);
  const code = h("code", {});
  const copied = h("span", { class: "visually-hidden", role: "status" });
  const chosen = (): Call => all.find((call) => call.language === language) ?? all[0]!;
  const picker = h(
    "select",
    {
      "aria-label": "Language",
      onchange: (event: Event) => {
        language = (event.target as HTMLSelectElement).value;
        code.textContent = chosen().text;
      },
    },
    ...all.map((call) => h("option", { value: call.language, selected: call === chosen() }, call.language)),
  );
  code.textContent = chosen().text;
  const copy = h(
    "button",
    {
      type: "button",
      class: "quiet",
      onclick: () => {
        void copyText(chosen().text).then((done) => {
          copied.textContent = done ? "Copied" : "The text is selected";
          copy.classList.add("done");
          setTimeout(() => copy.classList.remove("done"), 900);
        });
      },
    },
    icon("copy"),
    " Copy",
  );
  return h("div", { class: "calls" }, h("div", { class: "row" }, h("h3", {}, "The same call as"), picker, copy, copied), h("pre", { tabindex: "0" }, code));
}

/** Puts a text on the clipboard, by the old way where a page from a disk has no other. */
export async function copyText(text: string): Promise<boolean> {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch {
    const area = h("textarea", { class: "visually-hidden" });
    area.value = text;
    (document.querySelector("dialog[open]") ?? document.body).appendChild(area);
    area.select();
    const done = document.execCommand("copy");
    area.remove();
    return done;
  }
}

/** Other names of a calculation, and the set that it belongs to where that is not the house's. */
export function tags(calculation: Calculation): HTMLElement[] {
  const others = calculation.abbreviations.filter((each) => each !== calculation.name);
  return [...others, calculation.module].filter(Boolean).map((text) => h("span", { class: "tag" }, text));
}

export const PURPOSES = ["Trend", "Momentum", "Volatility", "Volume", "Pattern", "Price", "Statistics", "None"];

export function purposeTitle(purpose: string): string {
  return purpose === "None" ? "More" : purpose;
}

/** What people type when they look for a calculation. */
export function matches(calculation: Calculation, text: string): boolean {
  const searched = [fullName(calculation), spaced(calculation.name), calculation.key, calculation.help, calculation.purpose, ...calculation.abbreviations]
    .join(" ")
    .toLowerCase();
  return text
    .toLowerCase()
    .split(/\s+/)
    .every((word) => searched.includes(word));
}

/** Abbreviations before names, names before what is said of them. */
export function rank(calculation: Calculation, text: string): number {
  const wanted = text.toLowerCase();
  if (calculation.abbreviations.some((each) => each.toLowerCase() === wanted)) return 0;
  const name = spaced(calculation.name).toLowerCase();
  if (name === wanted || calculation.name.toLowerCase() === wanted) return 1;
  if (name.startsWith(wanted) || calculation.name.toLowerCase().startsWith(wanted)) return 2;
  return name.includes(wanted) ? 3 : 4;
}
