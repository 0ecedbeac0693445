// The same call in every language that the library speaks.
import { type Argument, type Calculation, camelCase, fullName } from "../package/src/catalogue.js";
import type { Given } from "./studies.js";

export interface Call {
  readonly language: string;
  readonly text: string;
}

const isColumn = (argument: Argument): boolean => argument.type === "Field";
const isNumber = (argument: Argument): boolean => ["Integer", "Long", "Double", "Boolean"].includes(argument.type);
const isSeries = (argument: Argument): boolean => argument.type === "Database" || argument.type === "RecordSet";

interface Words {
  readonly calculation: Calculation;
  readonly file: string;
  /** The value of each argument: as given, or usual. */
  readonly values: ReadonlyMap<Argument, string | number>;
  readonly given: Given;
}

/** A source that is another study's column goes by that column's name. */
function columnName(value: string | number): string {
  return String(value).replace(/^\d+:/, "");
}

function columns({ calculation, values }: Words): string[] {
  return calculation.arguments.filter(isColumn).map((argument) => columnName(values.get(argument)!));
}

/** The numbers and texts that differ from what would be taken anyway; those without a usual value always. */
function told({ calculation, values, given }: Words): [Argument, string | number][] {
  return calculation.arguments
    .filter((argument) => isNumber(argument) || argument.type === "String")
    .filter((argument) => given[argument.name] !== undefined || (argument.usual ?? argument.default) === undefined)
    .map((argument) => [argument, values.get(argument)!]);
}

function literal(argument: Argument, value: string | number, yes = "true", no = "false"): string {
  if (argument.type === "String") return JSON.stringify(value);
  if (argument.type === "Boolean") return value ? yes : no;
  return String(value);
}

const shell = (text: string): string => (/^[\w./:=+-]+$/.test(text) ? text : `'${text.replaceAll("'", "'\\''")}'`);

function python(words: Words): string {
  const { calculation } = words;
  const home = calculation.module;
  const inputs = calculation.arguments.some((argument) => argument.type === "RecordSet")
    ? ["prices"]
    : columns(words).map((name) => `prices[${JSON.stringify(name)}]`);
  const options = told(words).map(([argument, value]) => `${argument.key}=${literal(argument, value, "True", "False")}`);
  return [
    "import orvex as ox",
    "",
    `prices = ox.read(${JSON.stringify(words.file)})`,
    `result = ox.${home ? `${home}.` : ""}${calculation.key}(${[...inputs, ...options].join(", ")})`,
  ].join("\n");
}

function javascript(words: Words): string {
  const { calculation } = words;
  const home = calculation.module;
  const name = camelCase(calculation.key);
  const sessions = calculation.arguments.some((argument) => argument.session);
  const inputs = calculation.arguments.some((argument) => argument.type === "RecordSet")
    ? ["prices"]
    : columns(words).map((column) => `prices[${JSON.stringify(column)}]`);
  const options = told(words).map(([argument, value]) => `${camelCase(argument.key)}: ${literal(argument, value)}`);
  const all = [...inputs, ...(options.length > 0 ? [`{ ${options.join(", ")} }`] : [])];
  return [
    `import { ${sessions ? "daysOf, " : ""}load } from "orvex";`,
    "",
    `const { ${home || name}, engine } = await load();`,
    `const { columns${sessions ? ", times" : ""} } = engine.readPrices(bytes); // of ${words.file}`,
    "const prices = Object.fromEntries(columns.map(({ name, values }) => [name, values]));",
    ...(sessions ? ["prices.Session = daysOf(times);"] : []),
    `const result = ${home ? `${home}.` : ""}${name}(${all.join(", ")});`,
  ].join("\n");
}

function cpp(words: Words): string {
  const { calculation, values } = words;
  const all = calculation.arguments
    .filter((argument) => argument.type !== "String" || words.given[argument.name] !== undefined)
    .map((argument) => {
      if (argument.type === "Database") return "data";
      if (argument.type === "RecordSet") return "data->getRecordset()";
      if (isColumn(argument)) return `data->getRecordset()->getField(${JSON.stringify(columnName(values.get(argument)!))})`;
      return literal(argument, values.get(argument)!);
    });
  const sessions = calculation.arguments.some((argument) => argument.session);
  const table = `orvex::prices::readFile(${JSON.stringify(words.file)})`;
  return [
    `#include "${calculation.header}"`,
    '#include "orvex/prices/price_reader.h"',
    ...(sessions ? ['#include "orvex/prices/sessions.h"'] : []),
    "",
    "const auto data = std::make_shared<orvex::Database>();",
    ...(sessions
      ? [
          `auto table = ${table};`,
          "const auto days = orvex::prices::sessionsOf(table.times, orvex::prices::SessionLength::Day);",
          "data->OpenDatabaseByRows(orvex::prices::rowsOf(std::move(table)));",
          "const auto session = std::make_shared<orvex::Field>();",
          'session->view({days, nullptr}, "Session");',
          "data->getRecordset()->addField(session);",
        ]
      : [`data->OpenDatabaseByRows(orvex::prices::rowsOf(${table}));`]),
    `const auto result = orvex::${calculation.class}().${calculation.name}(`,
    `    ${all.join(", ")});`,
  ].join("\n");
}

function commandLine(words: Words): string {
  const { calculation, values, given } = words;
  const named = calculation.arguments
    .filter((argument) => isColumn(argument) && given[argument.name] !== undefined)
    .map((argument) => `${argument.name}=${columnName(values.get(argument)!)}`);
  const options = told(words).map(([argument, value]) => `${argument.name}=${value}`);
  const needsFile = calculation.arguments.some((argument) => isSeries(argument) || isColumn(argument));
  return ["orvex run", fullName(calculation), ...(needsFile ? [words.file] : []), ...named, ...options]
    .map((word, i) => (i === 0 ? word : shell(word)))
    .join(" ");
}

/** In automation everything that is not optional is given, in its order. */
function automation(words: Words): string {
  const { calculation, values, given } = words;
  const all = calculation.arguments.filter((argument) => !argument.optional || given[argument.name] !== undefined);
  return all
    .map((argument) => {
      if (argument.type === "Database") return "data";
      if (argument.type === "RecordSet") return "data.getRecordset()";
      const value = values.get(argument)!;
      if (isColumn(argument)) return `data.getRecordset().getField("${columnName(value)}")`;
      return argument.type === "String" ? `"${String(value).replaceAll('"', '""')}"` : literal(argument, value, "True", "False");
    })
    .join(", ");
}

/** The server's own loader takes one kind of file alone. */
const loaded = (words: Words): string[] => [
  "' Lines of date,open,high,low,close,volume without a header",
  `data.OpenDataBase "${words.file}", ","`,
];

function vbscript(words: Words): string {
  const { calculation } = words;
  return [
    'Set data = CreateObject("Orvex.Database")',
    ...loaded(words),
    `Set calculator = CreateObject("Orvex.${calculation.class}")`,
    `${isObject(calculation) ? "Set result" : "result"} = calculator.${calculation.name}(${automation(words)})`,
  ].join("\n");
}

function vba(words: Words): string {
  const { calculation } = words;
  const type = isObject(calculation) ? `Orvex.${calculation.result === "RecordSet" ? "RecordSet" : "Note"}` : calculation.result;
  return [
    "Dim data As New Orvex.Database",
    `Dim calculator As New Orvex.${calculation.class}`,
    `Dim result As ${type}`,
    ...loaded(words),
    `${isObject(calculation) ? "Set result" : "result"} = calculator.${calculation.name}(${automation(words)})`,
  ].join("\n");
}

const isObject = (calculation: Calculation): boolean => calculation.result === "RecordSet" || calculation.result === "Note";

/** A call as it is written in each language. */
export function callsOf(calculation: Calculation, file: string, values: ReadonlyMap<Argument, string | number>, given: Given): Call[] {
  const words: Words = { calculation, file, values, given };
  const writers = { Python: python, "C++": cpp, JavaScript: javascript, "Command line": commandLine, VBScript: vbscript, VBA: vba };
  return Object.entries(writers).map(([language, write]) => ({ language, text: write(words) }));
}
