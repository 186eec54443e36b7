// Puts the parts together: bundle.mjs MODULE.js MODULE.wasm OUTPUT_FOLDER
//   package/  the npm package
//   page/     the page, one file that needs no server
import { createHash } from "node:crypto";
import { copyFile, mkdir, readFile, writeFile } from "node:fs/promises";

const [moduleFile, wasmFile, output] = process.argv.slice(2);
const source = (name) => readFile(new URL(name, import.meta.url), "utf8");

await mkdir(`${output}/package`, { recursive: true });
for (const name of ["index.mjs", "index.d.mts", "scout.mjs", "package.json", "README.md"]) {
  await copyFile(new URL(name, import.meta.url), `${output}/package/${name}`);
}
const glue = await readFile(moduleFile, "utf8");
await copyFile(wasmFile, `${output}/package/typescout.wasm`);
await writeFile(`${output}/package/typescout-module.mjs`, `${glue}\nexport default createModule;\n`);

const wasm = (await readFile(wasmFile)).toString("base64");
const scout = (await source("scout.mjs")).replace(/^export /gm, "");
const worker = [glue, scout, `const WASM_BASE64 = "${wasm}";`, await source("page/worker.js")].join("\n");
// `<` would let the text end the element that it stands in.
const workerLiteral = JSON.stringify(worker).replaceAll("<", "\\u003C");
const parts = {
  style: await source("page/page.css"),
  script: `const WORKER_SOURCE = ${workerLiteral};\n${await source("page/page.js")}`,
};
const hash = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
const page = (await source("page/index.html")).replace(/\{\{([a-z]+)(-hash)?\}\}/g, (_, name, isHash) =>
  isHash ? hash(parts[name]) : parts[name],
);
await mkdir(`${output}/page`, { recursive: true });
await writeFile(`${output}/page/index.html`, page);
