// The npm package in Node against the program: package_test.mjs PACKAGE PROGRAM SAMPLES
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { basename, join } from "node:path";
import { after, test } from "node:test";
import { pathToFileURL } from "node:url";
import { gzipSync } from "node:zlib";

const [packageFolder, program, samples] = process.argv.slice(2);
const { load } = await import(pathToFileURL(join(packageFolder, "index.mjs")));
const scout = await load();

const folder = mkdtempSync(join(tmpdir(), "typescout-web-"));
after(() => rmSync(folder, { recursive: true }));

// What the program says of every file below a folder.
function ask(path) {
  const lines = execFileSync(program, ["-r", "--jsonl", path], { maxBuffer: 1 << 28 });
  return lines.toString().trimEnd().split("\n").map((line) => JSON.parse(line));
}

const shown = (answer) => [answer?.id ?? 0, answer?.best.id ?? 0];
const expected = (record) => [Number(record.id ?? 0), Number(record.best_id ?? record.id ?? 0)];

test("every sample has the program's answer, from bytes and from a Blob", async () => {
  const records = ask(samples);
  assert.ok(records.length > 900);
  for (const record of records) {
    const bytes = readFileSync(record.path);
    const options = { name: basename(record.path) };
    assert.deepEqual(shown(scout.identify(bytes, options)), expected(record), record.path);
    const answer = await scout.identifyFile(new Blob([bytes]), options);
    assert.deepEqual(shown(answer), expected(record), record.path);
  }
});

test("5,000 generated files have the program's answer", () => {
  const parts = readdirSync(samples, { recursive: true, withFileTypes: true })
    .filter((entry) => entry.isFile())
    .map((entry) => readFileSync(join(entry.parentPath ?? entry.path, entry.name)));
  let state = 1;
  // Park and Miller's generator.
  const random = (below) => (state = (state * 48271) % 2147483647) % below;
  for (let i = 0; i < 5000; ++i) {
    const bytes = Buffer.concat([parts[random(parts.length)], parts[random(parts.length)]].slice(random(2)));
    for (let changes = random(4); changes > 0 && bytes.length > 0; --changes) {
      bytes[random(Math.min(bytes.length, 600))] = random(256);
    }
    writeFileSync(join(folder, String(i)), bytes.subarray(0, random(3) === 0 ? random(bytes.length + 1) : undefined));
  }
  const different = ask(folder).filter((record) => {
    const answer = scout.identify(readFileSync(record.path), { name: basename(record.path) });
    return shown(answer).join() !== expected(record).join();
  });
  assert.deepEqual(different, []);
});

// A file that counts what is read of it.
function counted(bytes, size = bytes.length) {
  const file = { name: "counted", size, read: 0, slices: 0 };
  file.slice = (from, to) => {
    const part = bytes.subarray(from, Math.min(to, size));
    const rest = Buffer.alloc(Math.min(to, size) - from - part.length);
    file.read += part.length + rest.length;
    file.slices += 1;
    return new Blob([part, rest]);
  };
  return file;
}

test("no more is read than the filters look at", async () => {
  const png = counted(Buffer.from("\x89PNG\r\n\x1a\n", "latin1"), 1e9);
  assert.equal((await scout.identifyFile(png)).label, "png");
  assert.deepEqual([png.slices, png.read], [1, 50_000]);

  // One picture whose data runs past the head, then a second one.
  const picture = Buffer.from("2c000000000100010000 08".replace(" ", ""), "hex");
  const block = Buffer.concat([Buffer.from([255]), Buffer.alloc(255, 1)]);
  const gif = Buffer.concat([
    Buffer.from("GIF89a\x01\x00\x01\x00\x00\x00\x00", "latin1"),
    picture,
    ...Array(2000).fill(block),
    Buffer.from([0]),
    picture,
  ]);
  const animated = counted(gif);
  assert.equal((await scout.identifyFile(animated)).label, "animated-gif");
  assert.ok(animated.slices < 8, `${animated.slices} slices`);
  assert.equal((await scout.identifyFile(counted(gif.subarray(0, 400_000)))).label, "gif");

  const shorter = { ...counted(gif), slice: () => new Blob([]) };
  await assert.rejects(scout.identifyFile(shorter), /became shorter/);
});

test("questions and mistakes", () => {
  const tiff = Buffer.from("II*\0\x08\0\0\0", "latin1");
  const answer = scout.identify(tiff);
  assert.deepEqual([answer.label, answer.best.label], ["jpeg", "tiff"]);
  assert.ok(Object.isFrozen(answer) && Object.isFrozen(answer.extensions));
  assert.equal(JSON.parse(JSON.stringify(answer)).best.id, 0x0304);
  assert.equal(scout.identify(tiff, { among: [0x0304, "jpeg"] }).label, "tiff");
  assert.equal(scout.identify(tiff, { among: "vector" }), null);
  assert.equal(scout.identify(new ArrayBuffer(0)), null);
  assert.equal(scout.identify(Buffer.from("%PDF-1.4\n"), { requested: "illustrator-pdf" }).label, "illustrator-pdf");
  assert.equal(scout.expectedExtension(answer.best, "scan.jpg"), "tif");
  assert.ok(scout.filters().length > 100);
  for (const name of ["a/\0b", "x".repeat(5000), "\u{1F600}.vxr", "..", "/", ".".repeat(300)]) {
    assert.equal(scout.identify(tiff, { name }).id, 0x0306, name);
  }
  assert.throws(() => scout.identify("text"), TypeError);
  assert.throws(() => scout.identify(tiff, { among: "nobody" }), RangeError);
  assert.throws(() => scout.identify(tiff, { among: [] }), RangeError);
  assert.throws(() => scout.identify(tiff, { requested: 0x1234 }), RangeError);
});

test("the package stays small", () => {
  const size = ["typescout.wasm", "typescout-module.mjs", "scout.mjs", "index.mjs"]
    .map((name) => gzipSync(readFileSync(join(packageFolder, name))).length)
    .reduce((sum, length) => sum + length);
  assert.ok(size < 250_000, `${size} bytes`);
});
