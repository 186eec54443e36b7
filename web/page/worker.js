// Names files, a batch at a time. `createModule`, `Scout` and `WASM_BASE64` stand in front of this
// in the worker's source.
"use strict";

const loaded = createModule({
  wasmBinary: Uint8Array.from(atob(WASM_BASE64), (c) => c.charCodeAt(0)),
}).then((module) => new Scout(module));
loaded.catch((error) => postMessage({ error: String(error) }));

onmessage = async ({ data: { session, batch } }) => {
  const scout = await loaded;
  const results = [];
  for (const [index, file] of batch) {
    try {
      const answer = await scout.identifyFile(file);
      const best = answer?.best ?? null;
      const expected = best === null ? "" : scout.expectedExtension(best, file.name);
      results.push([index, { answer, best, expected }]);
    } catch (error) {
      results.push([index, { error: error.message }]);
    }
  }
  postMessage({ session, results });
};
