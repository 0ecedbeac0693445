// The types of the npm package's functions, made from the catalogue.
import { type Argument, type Calculation, camelCase, functionName, usualColumn } from "../package/src/catalogue.js";
import { PRICE_NAMES } from "../package/src/engine.js";

/** A documentation comment; what it holds must not end it. */
function comment(lines: string[], indent: string): string {
  const safe = lines.flatMap((line) => line.split("\n")).map((line) => line.replaceAll("*/", "*\u200b/"));
  if (safe.length === 1) return `${indent}/** ${safe[0]} */\n`;
  return `${indent}/**\n${safe.map((line) => `${indent} * ${line}`.trimEnd() + "\n").join("")}${indent} */\n`;
}

function capital(text: string): string {
  return text.charAt(0).toUpperCase() + text.slice(1);
}

/** What one finds of a calculation before its arguments: help, guide, computed rows. */
function about(calculation: Calculation): string[] {
  const { guide } = calculation;
  const lines = [calculation.help];
  if (calculation.abbreviations.length > 0) lines.push("", `Also known as ${calculation.abbreviations.join(", ")}.`);
  if (guide.formula) lines.push("", `Formula: ${guide.formula}`);
  if (guide.reading) lines.push("", `Reading: ${guide.reading}`);
  if (guide.origin) lines.push("", `Origin: ${guide.origin}`);
  if (guide.difference) lines.push("", `Difference: ${guide.difference}`);
  if (guide.fails) lines.push("", `Fails ${guide.fails}.`);
  return lines;
}

function typeOf(argument: Argument): string {
  if (argument.choices) {
    return argument.choices.map((choice) => `${choice.code} | ${JSON.stringify(choice.name)}`).join(" | ");
  }
  switch (argument.type) {
    case "String":
      return "string";
    case "Boolean":
      return "boolean";
    case "Field":
      return "Values";
    default:
      return "number";
  }
}

function optionLines(calculation: Calculation): string {
  return calculation.arguments
    .filter((argument) => argument.type !== "Database" && argument.type !== "RecordSet" && argument.type !== "Field")
    .map((argument) => {
      const usual = argument.usual ?? argument.default;
      const lines = [argument.help];
      if (usual !== undefined && usual !== "") lines.push(`@default ${usual}`);
      const optional = usual !== undefined || argument.optional ? "?" : "";
      return `${comment(lines, "  ")}  readonly ${camelCase(argument.key)}${optional}: ${typeOf(argument)};\n`;
    })
    .join("");
}

function resultType(calculation: Calculation, name: string): string {
  if (calculation.result === "Note") return "Note";
  if (calculation.result !== "RecordSet") {
    return calculation.result === "Boolean" ? "boolean" : calculation.result === "String" ? "string" : "number";
  }
  return calculation.columns.length === 1 ? "Float64Array" : `${name}Result`;
}

/** What is kept of it on a live series: its columns and options by name. */
function liveMember(calculation: Calculation, options: string, result: string): string {
  const columns = calculation.arguments
    .filter((argument) => argument.type === "Field")
    .map((argument) => {
      const optional = argument.usual !== undefined || PRICE_NAMES.includes(argument.name) ? "?" : "";
      return `readonly ${camelCase(argument.key)}${optional}: LiveSource`;
    });
  const words = [...(columns.length > 0 ? [`{ ${columns.join("; ")} }`] : []), ...(options === "" ? [] : [options])].join(" & ");
  return `${comment([calculation.help], "  ")}  readonly ${JSON.stringify(functionName(calculation))}: LiveCall<${words || "Record<never, never>"}, ${result}>;\n`;
}

/** One calculation: the interfaces of its options and result, its signature, and how it is kept. */
function describe(calculation: Calculation, prefix: string): { types: string; member: string; kept: string } {
  const key = camelCase(calculation.key);
  const name = prefix + capital(key);
  const options = optionLines(calculation);
  let types = "";
  if (options !== "") types += `/** Options of \`${key}\`. */\nexport interface ${name}Options {\n${options}}\n\n`;
  const result = resultType(calculation, name);
  if (result === `${name}Result`) {
    const columns = calculation.columns.map((column) => {
      const lines = [column.help || column.title, `Computed rows: ${column.firstRow} to ${column.lastRow}.`];
      return `${comment(lines, "  ")}  readonly ${camelCase(column.key)}: Float64Array;\n`;
    });
    types += `/** Columns of \`${key}\`; NaN in rows that are not computed. */\nexport interface ${name}Result {\n${columns.join("")}}\n\n`;
  }
  const required = options.includes(`: `) && /readonly \w+:/.test(options);
  const option = options === "" ? "" : `, options${required ? "" : "?"}: ${name}Options`;
  const columns = calculation.arguments.filter((argument) => argument.type === "Field" || argument.type === "RecordSet");
  const lines = [...about(calculation), ""];
  for (const column of columns) {
    lines.push(`@param ${camelCase(column.key)} ${column.help}${column.usual === undefined ? "" : ` Of prices, ${usualColumn(column)}${column.session ? ", which daysOf(times) makes" : ""}.`}`);
  }
  if (calculation.columns.length === 1) {
    const only = calculation.columns[0]!;
    lines.push(`@returns ${only.title}, NaN outside its computed rows ${only.firstRow} to ${only.lastRow}.`);
  }
  for (const fault of calculation.errors) lines.push(`@throws OrvexError ${fault.number} ${fault.source}`);
  const positional = columns.map((column) => `${camelCase(column.key)}: ${column.type === "Field" ? "Values" : "Columns"}`);
  let member = `${comment(lines, "  ")}  ${key}(${(positional.join(", ") + option).replace(/^, /, "")}): ${result};\n`;
  if (columns.length > 0 && columns.some((column) => column.type === "Field")) {
    member += `  ${key}(prices: Columns${option}): ${result};\n`;
  }
  const kept = calculation.result === "RecordSet" ? liveMember(calculation, options === "" ? "" : `${name}Options`, result) : "";
  return { types, member, kept };
}

/** The whole of package/src/generated.ts. */
export function generate(calculations: readonly Calculation[]): string {
  const homes = new Map<string, Map<string, string>>([["", new Map()]]);
  let types = "";
  let kept = "";
  for (const calculation of calculations) {
    const home = calculation.module;
    const members = homes.get(home) ?? new Map<string, string>();
    homes.set(home, members);
    if (members.has(calculation.key)) continue;
    const described = describe(calculation, capital(home));
    types += described.types;
    kept += described.kept;
    members.set(calculation.key, described.member);
  }
  const modules = [...homes.keys()].filter((home) => home !== "");
  const bodies = [...homes].map(
    ([home, members]) =>
      `/** ${home === "" ? "The calculations of the house" : `The calculations of the class ${capital(home)}`}, as functions. */\n` +
      `export interface ${home === "" ? "Functions" : capital(home)} {\n${[...members.values()].join("\n")}}\n\n`,
  );
  return (
    "// Made from the catalogue by scripts/generate.ts.\n" +
    'import type { Columns, Note, Values } from "./engine.js";\nimport type { LiveCall, LiveSource } from "./live.js";\n\n' +
    types +
    bodies.join("") +
    `/** What a live series keeps, by the names of the functions. */\nexport interface LiveCalls {\n${kept}}\n\n` +
    `/** Sets of definitions beside the house's own. */\nexport interface Modules {\n${modules
      .map((home) => `  readonly ${home}: ${capital(home)};\n`)
      .join("")}}\n`
  );
}
