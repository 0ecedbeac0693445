// Usage: node build.mjs package|studio|test|run FILE
//
// Makes what is published into build/web, from build/wasm/web/orvex.wasm, which the CMake preset wasm makes; tests it; runs
// one of the TypeScript programs.
import { build } from "esbuild";
import { spawnSync } from "node:child_process";
import { createHash } from "node:crypto";
import { cpSync, mkdirSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { fileURLToPath, pathToFileURL } from "node:url";
import { gzipSync } from "node:zlib";

const here = fileURLToPath(new URL(".", import.meta.url));
const root = fileURLToPath(new URL("..", import.meta.url));
const out = `${root}build/web`;
const wasm = `${root}build/wasm/web/orvex.wasm`;

/** Bundles a TypeScript file for Node, where it finds the packages that it needs. */
async function bundleFor(file) {
  const bundle = `${here}node_modules/.run/${file.replaceAll("/", "-").replace(/\.ts$/, "")}.mjs`;
  await build({
    entryPoints: [here + file],
    outfile: bundle,
    bundle: true,
    platform: "node",
    format: "esm",
    packages: "external",
    sourcemap: "inline",
    logLevel: "warning",
  });
  return bundle;
}

async function load(file) {
  return import(pathToFileURL(await bundleFor(file)).href);
}

function tsc(...words) {
  const compiler = createRequire(import.meta.url).resolve("typescript/package.json");
  const { bin } = JSON.parse(readFileSync(compiler, "utf8"));
  const program = fileURLToPath(new URL(bin.tsc, pathToFileURL(compiler)));
  const { status } = spawnSync(process.execPath, [program, ...words], { stdio: "inherit", cwd: here });
  if (status !== 0) process.exit(1);
}

/** package/src/generated.ts, from the module's own catalogue. */
async function makeTypes() {
  const { Engine } = await load("package/src/engine.ts");
  const { generate } = await load("scripts/generate.ts");
  const engine = await Engine.start(await WebAssembly.compile(readFileSync(wasm)));
  writeFileSync(`${here}package/src/generated.ts`, generate(engine.calculations));
}

async function makePackage() {
  await makeTypes();
  rmSync(`${out}/package`, { recursive: true, force: true });
  tsc("-p", "package");
  cpSync(wasm, `${out}/package/orvex.wasm`);
  for (const file of ["README.md", "examples"]) cpSync(`${here}package/${file}`, `${out}/package/${file}`, { recursive: true });
  cpSync(`${root}LICENSE`, `${out}/package/LICENSE`);
  const version = /project\(Orvex VERSION ([\d.]+)/.exec(readFileSync(`${root}CMakeLists.txt`, "utf8"))[1];
  const manifest = JSON.parse(readFileSync(`${here}package/package.json`, "utf8"));
  writeFileSync(`${out}/package/package.json`, `${JSON.stringify({ ...manifest, version }, null, 2)}\n`);
}

/** One file with everything inside: script, style, module, sample. Its policy lets that one script run and nothing connect. */
async function makeStudio() {
  tsc("-p", ".");
  const bundle = await build({
    entryPoints: [`${here}studio/main.ts`],
    bundle: true,
    minify: true,
    write: false,
    format: "iife",
    target: "es2022",
    charset: "utf8",
    legalComments: "none",
  });
  const style = await build({ entryPoints: [`${here}studio/style.css`], minify: true, write: false });
  const script = bundle.outputFiles[0].text.trim().replaceAll("</script", "<\\/script").replaceAll("<!--", "<\\!--");
  const parts = {
    SCRIPT_HASH: `sha256-${createHash("sha256").update(script).digest("base64")}`,
    STYLE: style.outputFiles[0].text.trim(),
    SAMPLE: readFileSync(`${root}examples/prices.csv`, "utf8"),
    MODULE: gzipSync(readFileSync(wasm), { level: 9 }).toString("base64"),
    SCRIPT: script,
  };
  const page = readFileSync(`${here}studio/index.html`, "utf8").replace(/@([A-Z_]+)@/g, (_, name) => parts[name]);
  writeFileSync(`${out}/orvex-studio.html`, page);
  console.log(`build/web/orvex-studio.html: ${(page.length / 1e6).toFixed(2)} MB`);
}

/** Runs the tests, or those whose names begin with a word. */
async function runTests(word = "") {
  const files = readdirSync(`${here}tests`).filter((file) => file.endsWith(".test.ts") && file.startsWith(word));
  const bundles = await Promise.all(files.map((file) => bundleFor(`tests/${file}`)));
  const { status } = spawnSync(process.execPath, ["--test", "--test-reporter=spec", "--test-concurrency=1", ...bundles], { stdio: "inherit", cwd: here });
  process.exitCode = status ?? 1;
}

const makers = { package: makePackage, studio: makeStudio, test: runTests, run: load };
if (process.argv[1] === fileURLToPath(import.meta.url)) {
  mkdirSync(out, { recursive: true });
  const make = makers[process.argv[2]];
  if (make === undefined) {
    console.error("Usage: node build.mjs package|studio|test|run FILE");
    process.exit(2);
  }
  await make(...process.argv.slice(3));
}
