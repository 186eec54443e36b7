/** One import filter. */
export interface Filter {
  /** The filter identifier: 0x0305 is a GIF picture. */
  readonly id: number;
  /** For programs; never changes. */
  readonly label: string;
  /** For people. */
  readonly name: string;
  /** Empty for a format without a common MIME type. */
  readonly mime: string;
  /** In lower case, the usual one first. */
  readonly extensions: readonly string[];
  /** "raster", "vector", "media", "native", "document" or "text". */
  readonly family: string;
  /** No file is ever answered with this filter. */
  readonly neverReported: boolean;
}

/** What a file is: the first filter that accepts it. Frozen. */
export interface Answer extends Omit<Filter, "neverReported"> {
  /** The most specific filter that accepts the file; the answer itself where none is more so. */
  readonly best: Answer;
}

export interface Options {
  /** What the file is called; some filters look at the extension. */
  name?: string;
  /** Asks only these filters, in this order: labels, identifiers or families. */
  among?: string | number | readonly (string | number)[];
  /** The filter that the caller means to use; the Illustrator and PDF filters look at it. */
  requested?: string | number;
}

export interface Scout {
  /**
   * Tells what a file with this content would be; null when no filter accepts it. The content is
   * read in place. Throws TypeError for what is no buffer, RangeError for a filter that does not
   * exist.
   */
  identify(data: ArrayBufferLike | ArrayBufferView, options?: Options): Answer | null;
  /**
   * The same for a File or Blob, of which only the parts that filters look at are read: the first
   * 50,000 bytes, and slices of compound documents, of GIF and of TIFF. `name` defaults to the
   * file's. Rejects with the browser's error when the file cannot be read.
   */
  identifyFile(file: Blob, options?: Options): Promise<Answer | null>;
  /** All filters, in the order in which they are asked. */
  filters(): readonly Filter[];
  /** The extension that a file described best by `best` should have; empty when that of `name` fits. */
  expectedExtension(best: Answer, name: string): string;
}

/** Compiles the library. `wasm` is the content of typescout.wasm, read beside this file when absent. */
export function load(options?: { wasm?: ArrayBufferLike | ArrayBufferView }): Promise<Scout>;
