#!/usr/bin/env python3
"""report.py DETECTORS.json COMPARE.json NOTES FOLDER: writes FOLDER/performance.md and
FOLDER/performance.svg from what the benchmarks measured."""
import json
import math
import pathlib
import sys

COLOURS = {"floor": "#888888", "asked": "#6a9a3a", "typescout": "#1f6fb2", "libmagic": "#c0504d"}
WHAT = {"floor": "open, fstat, read of up to 50,000 bytes, close",
        "asked": "the bare looks at the file that its rows ask for",
        "typescout": "`TypeScoutFile`",
        "libmagic": "`magic_file`, its database loaded once"}


def nanoseconds(benchmark):
    return benchmark["cpu_time"] * {"ns": 1, "us": 1e3, "ms": 1e6}[benchmark["time_unit"]]


def plot(compare):
    """How many of the files cost at most so much, on a logarithmic scale of microseconds."""
    width, height, left, bottom = 720, 360, 60, 40
    top = max(max(compare[name]["percentiles"]) for name in COLOURS)
    first, last = 0, math.ceil(math.log10(top))

    def x(value):
        return left + (width - left - 20) * (math.log10(max(value, 1)) - first) / (last - first)

    def y(part):
        return height - bottom - (height - bottom - 20) * part

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
             'font-family="sans-serif" font-size="12">',
             f'<rect width="{width}" height="{height}" fill="white"/>']
    for power in range(first, last + 1):
        at = x(10 ** power)
        parts.append(f'<line x1="{at:.1f}" y1="20" x2="{at:.1f}" y2="{height - bottom}" stroke="#ddd"/>'
                     f'<text x="{at:.1f}" y="{height - bottom + 16}" text-anchor="middle">'
                     f'{10 ** power:,} µs</text>')
    for percent in range(0, 101, 25):
        at = y(percent / 100)
        parts.append(f'<line x1="{left}" y1="{at:.1f}" x2="{width - 20}" y2="{at:.1f}" stroke="#ddd"/>'
                     f'<text x="{left - 6}" y="{at + 4:.1f}" text-anchor="end">{percent} %</text>')
    for line, (name, colour) in enumerate(COLOURS.items()):
        points = " ".join(f"{x(value):.1f},{y(i / 100):.1f}"
                          for i, value in enumerate(compare[name]["percentiles"]))
        parts.append(f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="2"/>'
                     f'<text x="{width - 120}" y="{height - bottom - 60 + 18 * line}" '
                     f'fill="{colour}">{name}</text>')
    parts.append(f'<text x="{width / 2}" y="{height - 6}" text-anchor="middle">'
                 'share of the files that cost at most so much</text></svg>')
    return "\n".join(parts) + "\n"


def main():
    detectors, compare = (json.loads(pathlib.Path(path).read_text()) for path in sys.argv[1:3])
    notes = pathlib.Path(sys.argv[3]).read_text()
    folder = pathlib.Path(sys.argv[4])
    means = {name: compare[name]["mean"] for name in COLOURS}
    text = ["# What it costs", "",
            "Written by `benchmarks/run`, which measures everything below in one run; figures in microseconds.",
            "", "## A file", "",
            f"Over the same {compare['files']:,} files of one machine, each file's fastest of five rounds:",
            "", "| | mean | median | 99 % below | largest | mean, floor = 1 |",
            "| --- | ---: | ---: | ---: | ---: | ---: |"]
    for name in COLOURS:
        row = compare[name]
        text.append(f"| {name}: {WHAT[name]} | {row['mean']:.1f} | {row['median']:.1f} | "
                    f"{row['p99']:.1f} | {row['max']:.1f} | {row['mean'] / means['floor']:.2f} |")
    text += ["", "By what the files are, the mean cost as a multiple of the floor's:", "",
             "| | files | asked | typescout | libmagic |", "| --- | ---: | ---: | ---: | ---: |"]
    for group, of in compare["groups"].items():
        multiples = " | ".join(f"{of[way] / of['floor']:.1f}" for way in ("asked", "typescout", "libmagic"))
        text.append(f"| {group} | {of['files']:,} | {multiples} |")
    text += ["", f"libmagic takes {means['libmagic'] / means['typescout']:.0f} times as long as "
             "TypeScout. Of TypeScout's time, "
             f"{100 * means['asked'] / means['typescout']:.0f} % are the looks at the file: the head, "
             "twice whether it is a compound document, whether there is a camera-raw module, and the "
             "start again for each text row that is asked (one for most texts, five for a file that "
             "nobody recognises).", "", "![share of the files over cost](performance.svg)", "", notes.strip(), "",
             "## A scan of 50,000 bytes, all rows", "",
             "| head | from memory | from a file |", "| --- | ---: | ---: |"]
    times = {b["name"]: nanoseconds(b) for b in detectors["benchmarks"]}
    heads = [name.split("/")[1] for name in times if name.startswith("scan of memory/")]
    for head in heads:
        text.append(f"| {head} | {times['scan of memory/' + head] / 1000:.1f} | "
                    f"{times['scan of a file/' + head] / 1000:.1f} |")
    text += ["", "## A row", "",
             "What a detector takes for its first sample, and for the slowest of the heads above.", "",
             "| row | typical | slowest | on |", "| --- | ---: | ---: | --- |"]
    rows = sorted({name.split("/")[1] for name in times if name.startswith("row/")})
    for row in rows:
        typical = times.get(f"row/{row}/typical")
        slowest = max(heads, key=lambda head: times[f"row/{row}/{head}"])
        shown = "" if typical is None else f"{typical / 1000:.3f}"
        text.append(f"| {row} | {shown} | {times[f'row/{row}/{slowest}'] / 1000:.3f} | {slowest} |")
    (folder / "performance.md").write_text("\n".join(text) + "\n")
    (folder / "performance.svg").write_text(plot(compare))


if __name__ == "__main__":
    main()
