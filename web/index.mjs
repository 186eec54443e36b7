// TypeScout for JavaScript: names a file's format from its bytes. Works in browsers, web workers,
// Node and Deno.
import createModule from "./typescout-module.mjs";
import { Scout } from "./scout.mjs";

async function readWasm() {
  const url = new URL("./typescout.wasm", import.meta.url);
  if (typeof process === "object" && process.versions?.node) {
    const { readFile } = await import("node:fs/promises");
    return readFile(url);
  }
  const response = await fetch(url);
  if (!response.ok) throw new Error(`typescout: cannot load ${url}: ${response.status}`);
  return response.arrayBuffer();
}

/** Compiles the library; see index.d.mts. */
export async function load({ wasm } = {}) {
  return new Scout(await createModule({ wasmBinary: wasm ?? (await readWasm()) }));
}
