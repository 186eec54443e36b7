// What the library says of content: the part that is the same in the package and on the page.

const HEAD_SIZE = 50_000;
const NOTHING = -1;
const CUT_SHORT = -2;
const EIO = 29; // Emscripten's number

/** A file in the module's file system that is read from pieces of content as far as they are there. */
class Content {
  #pieces = [];
  missing = null;

  constructor(size) {
    this.size = size;
  }

  add(position, bytes) {
    this.#pieces.push({ position, bytes });
  }

  /** Copies up to `length` bytes at `position`; returns how many, or null when they are not there. */
  read(target, offset, length, position) {
    const wanted = Math.max(0, Math.min(length, this.size - position));
    let done = 0;
    while (done < wanted) {
      const at = position + done;
      const piece = this.#pieces.find(
        (p) => p.position <= at && at < p.position + p.bytes.length,
      );
      if (piece === undefined) {
        this.missing = at;
        return null;
      }
      const part = piece.bytes.subarray(at - piece.position, at - piece.position + wanted - done);
      target.set(part, offset + done);
      done += part.length;
    }
    return done;
  }
}

function toBytes(data) {
  if (data instanceof ArrayBuffer) return new Uint8Array(data);
  if (typeof SharedArrayBuffer !== "undefined" && data instanceof SharedArrayBuffer) {
    return new Uint8Array(data);
  }
  if (ArrayBuffer.isView(data)) {
    return new Uint8Array(data.buffer, data.byteOffset, data.byteLength);
  }
  throw new TypeError("typescout: the content is no ArrayBuffer and no view of one");
}

/** Only the extension of a name counts, and no row looks for one that is long or not ASCII. */
function extensionOf(name) {
  return /\.[\x21-\x2E\x30-\x5B\x5D-\x7E]{0,31}$/.exec(name.replace(/^.*[/\\]/s, ""))?.[0].replace(/^.*\./, ".") ?? "";
}

export class Scout {
  #module;
  #filters; // the rows, then the drawing object, which has none
  #answers = new Map();

  constructor(module) {
    this.#module = module;
    this.#filters = module
      .UTF8ToString(module._ListFilters())
      .trimEnd()
      .split("\n")
      .map((line) => {
        const [id, label, name, mime, extensions, family, never] = line.split("\t");
        return Object.freeze({
          id: Number(id),
          label,
          name,
          mime,
          extensions: Object.freeze(extensions.split(" ").filter(Boolean)),
          family,
          neverReported: never === "1",
        });
      });
  }

  filters() {
    return this.#filters.slice(0, -1);
  }

  identify(data, { name = "", among, requested } = {}) {
    const bytes = toBytes(data);
    const content = new Content(bytes.length);
    content.add(0, bytes);
    return this.#ask(content, String(name), this.#rows(among), this.#requested(requested));
  }

  async identifyFile(file, { name = file.name ?? "", among, requested } = {}) {
    const rows = this.#rows(among);
    const filter = this.#requested(requested);
    const content = new Content(file.size);
    const add = async (position, size) => {
      const slice = await file.slice(position, position + size).arrayBuffer();
      if (slice.byteLength === 0) throw new Error("typescout: the file became shorter");
      content.add(position, new Uint8Array(slice));
    };
    if (file.size > 0) await add(0, HEAD_SIZE);
    // What is missing is only known once it is asked for. Each slice is twice as long as the one
    // before it, so that few are needed.
    for (let size = 2 * HEAD_SIZE; ; size *= 2) {
      content.missing = null;
      const answer = this.#ask(content, String(name), rows, filter);
      if (content.missing === null) return answer;
      await add(content.missing, size);
    }
  }

  expectedExtension(best, name) {
    const place = this.#filters.findIndex((f) => f.id === best.id);
    return this.#module.ccall("ExpectedExtension", "string", ["number", "string"], [place, String(name)]);
  }

  #find(wanted) {
    const filter = this.#filters.find((f) => f.label === wanted || f.id === wanted);
    if (filter === undefined) throw new RangeError(`typescout: no such filter: ${wanted}`);
    return filter;
  }

  #requested(wanted) {
    return wanted === undefined ? 0 : this.#find(wanted).id;
  }

  #rows(among) {
    if (among === undefined) return [];
    const rows = [among].flat().flatMap((wanted) => {
      const ofFamily = this.filters().flatMap((f, row) => (f.family === wanted ? [row] : []));
      return ofFamily.length > 0 ? ofFamily : [this.#filters.indexOf(this.#find(wanted))];
    });
    if (rows.length === 0) throw new RangeError("typescout: among names no filter");
    if (rows.includes(this.#filters.length - 1)) {
      throw new RangeError("typescout: only a full scan reports this filter");
    }
    return rows;
  }

  #ask(content, name, rows, requested) {
    const { FS, ccall } = this.#module;
    const path = "/content" + extensionOf(name);
    const node = FS.createFile("/", path.slice(1), {}, true, false);
    node.usedBytes = content.size;
    node.stream_ops = {
      ...node.stream_ops,
      read: (stream, target, offset, length, position) => {
        const count = content.read(target, offset, length, position);
        if (count === null) throw new FS.ErrnoError(EIO);
        return count;
      },
    };
    const places = new Uint8Array(Int32Array.from(rows).buffer);
    let found;
    try {
      found = ccall(
        "Identify",
        "number",
        ["string", "string", "array", "number", "number"],
        [path, name, places, rows.length, requested],
      );
    } finally {
      FS.unlink(path);
    }
    if (content.missing !== null || found === NOTHING) return null;
    if (found === CUT_SHORT) throw new Error("typescout: the content became shorter");
    return this.#answer(Math.floor(found / 1000), found % 1000);
  }

  #answer(place, best) {
    const key = place * 1000 + best;
    if (!this.#answers.has(key)) {
      const { neverReported, ...answer } = this.#filters[place];
      const described = best === place ? answer : this.#answer(best, best);
      // Not listed where it is the answer itself, so that an answer can be written as JSON.
      Object.defineProperty(answer, "best", { value: described, enumerable: described !== answer });
      this.#answers.set(key, Object.freeze(answer));
    }
    return this.#answers.get(key);
  }
}
