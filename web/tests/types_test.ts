// A client in TypeScript; it only has to compile, with one mistake that must not.
import { load, type Answer, type Scout } from "./typescout/index.mjs";

const scout: Scout = await load();
const answer: Answer | null = scout.identify(new Uint8Array(8), { name: "a.tif", among: ["tiff", 0x0306] });
const label: string | undefined = answer?.best.label;
const later: Promise<Answer | null> = scout.identifyFile(new Blob([]));
export const names: string[] = scout.filters().map((filter) => filter.name + label + String(later));
// @ts-expect-error: text is no content
scout.identify("text");
