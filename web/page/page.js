// The page: takes files, lets a worker name them, shows what comes back.
"use strict";

const BATCH = 64; // files that the worker has at a time
const ROW_HEIGHT = 32; // in pixels, as in the style sheet
const SPARE_ROWS = 8; // drawn above and below what is seen
const BARS = 12;

const element = (id) => document.getElementById(id);
const make = (tag, properties, ...children) => {
  const made = Object.assign(document.createElement(tag), properties);
  made.append(...children);
  return made;
};

let records = []; // in the order in which the files came
let shown = []; // the records that the filter lets through
let counts = new Map(); // by the name of the best
let waiting = []; // files that the worker has not seen
let done = 0;
let underway = 0;
let session = 0; // answers for files of an earlier one are dropped

const worker = new Worker(
  URL.createObjectURL(new Blob([WORKER_SOURCE], { type: "text/javascript" })),
);
worker.onmessage = ({ data }) => {
  if (data.error !== undefined) return showFailure(data.error);
  if (data.session !== session) return;
  for (const [index, result] of data.results) settle(records[index], result);
  underway -= data.results.length;
  feed();
  scheduleDraw();
};
worker.onerror = (event) => showFailure(event.message);

function showFailure(reason) {
  element("status").textContent = `This browser cannot run the library: ${reason}`;
}

function settle(record, result) {
  Object.assign(record, result);
  done += 1;
  const name = record.error ?? record.best?.name ?? "unknown";
  counts.set(name, (counts.get(name) ?? 0) + 1);
}

function feed() {
  if (underway > 0 || waiting.length === 0) return;
  const batch = waiting.splice(0, BATCH);
  underway = batch.length;
  worker.postMessage({ session, batch });
}

function add(files) {
  for (const { file, path } of files) {
    waiting.push([records.length, file]);
    records.push({ path, size: file.size });
  }
  feed();
  scheduleDraw();
}

// --- What is dropped or chosen ---

const fromInput = (input) =>
  Array.from(input.files, (file) => ({ file, path: file.webkitRelativePath || file.name }));

async function addEntry(entry) {
  if (entry.isFile) {
    const file = await new Promise((resolve, reject) => entry.file(resolve, reject));
    add([{ file, path: entry.fullPath.replace(/^\//, "") }]);
    return;
  }
  const reader = entry.createReader();
  for (;;) {
    const entries = await new Promise((resolve, reject) => reader.readEntries(resolve, reject));
    if (entries.length === 0) return;
    for (const inner of entries) await addEntry(inner);
  }
}

for (const id of ["files", "folder"]) {
  element(id).addEventListener("change", (event) => {
    add(fromInput(event.target));
    event.target.value = "";
  });
}
const drop = element("drop");
addEventListener("dragover", (event) => {
  event.preventDefault();
  drop.classList.add("over");
});
addEventListener("dragleave", () => drop.classList.remove("over"));
addEventListener("drop", async (event) => {
  event.preventDefault();
  drop.classList.remove("over");
  // Both must be asked for before the event ends. What has no entry is a file.
  const items = Array.from(event.dataTransfer.items, (item) => ({
    entry: item.webkitGetAsEntry?.(),
    file: item.getAsFile(),
  }));
  add(items.flatMap(({ entry, file }) => (file && !entry?.isDirectory ? [{ file, path: file.name }] : [])));
  for (const { entry } of items) {
    if (entry?.isDirectory) await addEntry(entry).catch((error) => showFailure(error.message));
  }
});

// --- What is shown ---

let isDrawScheduled = false;
function scheduleDraw() {
  if (isDrawScheduled) return;
  isDrawScheduled = true;
  setTimeout(() => {
    isDrawScheduled = false;
    select();
    draw();
  }, 100);
}

function select() {
  const text = element("filter").value.toLowerCase();
  const onlyWrong = element("mismatches").checked;
  if (text === "" && !onlyWrong) {
    shown = records;
    return;
  }
  shown = records.filter(
    (r) =>
      (!onlyWrong || r.expected) &&
      (text === "" ||
        [r.path, r.answer?.name, r.answer?.label, r.best?.name, r.best?.label, r.error].some(
          (field) => field?.toLowerCase().includes(text),
        )),
  );
}

function draw() {
  const total = records.length;
  element("overview").hidden = element("results").hidden = total === 0;
  element("status").textContent =
    total === 0
      ? "No files yet."
      : `${done} of ${total} files named${shown.length === total ? "" : `, ${shown.length} shown`}.`;
  drawChart();
  drawRows();
}

function drawChart() {
  const sorted = [...counts].sort((a, b) => b[1] - a[1]);
  const others = sorted.slice(BARS).reduce((sum, [, count]) => sum + count, 0);
  const bars = sorted.slice(0, BARS);
  if (others > 0) bars.push(["others", others]);
  const most = Math.max(...bars.map(([, count]) => count), 1);
  element("chart").replaceChildren(
    ...bars.map(([name, count]) => {
      const bar = make("span", { className: "bar" });
      bar.style.width = `${(100 * count) / most}%`;
      return make(
        "li",
        {},
        make("span", { textContent: name }),
        bar,
        make("span", { className: "count", textContent: String(count) }),
      );
    }),
  );
}

const sizeText = (size) => {
  const units = ["B", "KB", "MB", "GB", "TB"];
  let unit = 0;
  while (size >= 1000 && unit < units.length - 1) {
    size /= 1000;
    unit += 1;
  }
  return `${unit === 0 ? size : size.toFixed(1)} ${units[unit]}`;
};

const idText = (id) => `0x${id.toString(16).toUpperCase().padStart(4, "0")}`;

function makeRow(record, index) {
  const cell = (text, className = "") => {
    const span = make("span", { textContent: text, title: text, className });
    span.setAttribute("role", "cell");
    return span;
  };
  const isPending = record.answer === undefined && record.error === undefined;
  const none = record.error ?? (isPending ? "…" : "unknown");
  const row = make(
    "div",
    { className: "row" },
    cell(record.path),
    cell(record.answer ? `${idText(record.answer.id)} ${record.answer.name}` : none),
    cell(record.best ? record.best.name : none),
    cell(sizeText(record.size), "size"),
    record.expected ? cell(`expected .${record.expected}`, "wrong") : cell(""),
  );
  row.setAttribute("role", "row");
  row.setAttribute("aria-rowindex", String(index + 2));
  row.style.top = `${index * ROW_HEIGHT}px`;
  return row;
}

function drawRows() {
  const rows = element("rows");
  const space = element("space");
  space.style.height = `${shown.length * ROW_HEIGHT}px`;
  element("table").setAttribute("aria-rowcount", String(shown.length + 1));
  const first = Math.max(0, Math.floor(rows.scrollTop / ROW_HEIGHT) - SPARE_ROWS);
  const last = Math.ceil((rows.scrollTop + rows.clientHeight) / ROW_HEIGHT) + SPARE_ROWS;
  rows.replaceChildren(
    space,
    ...shown.slice(first, last).map((record, i) => makeRow(record, first + i)),
  );
}

element("rows").addEventListener("scroll", drawRows, { passive: true });
addEventListener("resize", drawRows);
element("filter").addEventListener("input", scheduleDraw);
element("mismatches").addEventListener("change", scheduleDraw);
element("clear").addEventListener("click", () => {
  session += 1;
  records = [];
  counts = new Map();
  waiting = [];
  done = underway = 0;
  scheduleDraw();
});

// --- What is saved ---

const fields = (r) => ({
  path: r.path,
  size: r.size,
  status: r.error !== undefined ? "unreadable" : r.answer ? "recognised" : "unknown",
  id: idText(r.answer?.id ?? 0),
  label: r.answer?.label ?? "",
  name: r.answer?.name ?? "",
  mime: r.answer?.mime ?? "",
  best_id: idText(r.best?.id ?? 0),
  best_label: r.best?.label ?? "",
  best_name: r.best?.name ?? "",
  best_mime: r.best?.mime ?? "",
  expected: r.expected ?? "",
});

function save(name, type, text) {
  const url = URL.createObjectURL(new Blob([text], { type }));
  make("a", { href: url, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(url), 10_000);
}

element("jsonl").addEventListener("click", () => {
  save("typescout.jsonl", "application/jsonl", shown.map((r) => JSON.stringify(fields(r)) + "\n").join(""));
});
element("csv").addEventListener("click", () => {
  const quote = (value) => `"${String(value).replaceAll('"', '""')}"`;
  const lines = shown.map((r) => Object.values(fields(r)).map(quote).join(","));
  save("typescout.csv", "text/csv", [Object.keys(fields({})).join(","), ...lines].join("\r\n") + "\r\n");
});
