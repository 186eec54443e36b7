#!/usr/bin/env python3
"""report.py MEASURED FOLDER: writes FOLDER/performance.md and FOLDER/performance.svg from what the
benchmarks wrote into the folder MEASURED."""
import datetime
import json
import math
import pathlib
import platform
import subprocess
import sys

COLOURS = {"floor": "#888888", "typescout": "#1f6fb2", "libmagic": "#c0504d"}
WHAT = {"floor": "open, fstat, read of up to 50,000 bytes, close",
        "typescout": "`TypeScoutFile`",
        "libmagic": "`magic_file`, its database loaded once"}
SHOWN_FROM = 100  # nanoseconds: what a row takes at least to be listed


def nanoseconds(benchmark):
    return benchmark["cpu_time"] * {"ns": 1, "us": 1e3, "ms": 1e6}[benchmark["time_unit"]]


def machine():
    """Processor, system, compiler and date."""
    cpu = pathlib.Path("/proc/cpuinfo").read_text()
    model = next(line.split(":")[1].strip() for line in cpu.splitlines() if line.startswith("model name"))
    compiler = subprocess.run(["g++", "-dumpfullversion"], capture_output=True, text=True, check=True)
    return (f"{model} ({cpu.count('processor')} cores), {platform.freedesktop_os_release()['PRETTY_NAME']}, "
            f"Linux {platform.release()}, g++ {compiler.stdout.strip()}, {datetime.date.today():%-d %B %Y}")


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


def files(compare):
    means = {name: compare[name]["mean"] for name in COLOURS}
    lines = ["## A file", "",
             f"{compare['files']:,} files, whole folders of /etc and /usr, lie in the system's cache. One "
             "thread asks about each file in three ways, which take turns over the whole list, five rounds; each "
             "file's fastest round counts, in microseconds. The floor is what any program pays that looks at the "
             "start of a file. Half of the files cost at most the median, 99 of 100 at most the next figure.", "",
             "| | mean | median | 99 % | largest | mean, floor = 1 |", "| --- | ---: | ---: | ---: | ---: | ---: |"]
    for name, row in ((name, compare[name]) for name in COLOURS):
        lines.append(f"| {name}: {WHAT[name]} | {row['mean']:.1f} | {row['median']:.1f} | {row['p99']:.1f} | "
                     f"{row['max']:.1f} | {row['mean'] / means['floor']:.2f} |")
    lines += ["", f"libmagic takes {means['libmagic'] / means['typescout']:.0f} times as long as TypeScout.", "",
              "By what the files are, the mean, floor = 1:", "",
              "| | files | typescout | libmagic |", "| --- | ---: | ---: | ---: |"]
    for group, row in compare["groups"].items():
        lines.append(f"| {group} | {row['files']:,} | {row['typescout'] / row['floor']:.2f} | "
                     f"{row['libmagic'] / row['floor']:.1f} |")
    return lines + ["", "Which share of the files cost at most so much:", "",
                    "![share of the files over cost](performance.svg)", ""]


def program(compare, runs):
    library = compare["typescout"]["round"]
    return [
        "## The program", "",
        f"Whole runs of the program over the same {runs['files']:,} files, the fastest of nine that take turns, "
        "in microseconds a file. Without an input the program takes "
        f"{runs['start']:.1f} ms, which is part of each run. The library alone, called in a loop over these files, "
        f"takes {library:.1f} in its fastest round.", "",
        "| | a file | |", "| --- | ---: | --- |",
        f"| `typescout -r -j 1` over their folder | {runs['tree_1']:.1f} | "
        f"{runs['tree_1'] / library:.2f} times the library alone |",
        f"| `typescout -r -j 2` over their folder | {runs['tree_2']:.1f} | "
        f"{runs['tree_1'] / runs['tree_2']:.2f} times as fast as `-j 1` |",
        f"| `typescout -j 1 -f LIST` without modules | {runs['list']:.1f} | |",
        f"| `typescout -j 1 -f LIST` with both modules | {runs['list_with_modules']:.1f} | "
        f"{runs['list_with_modules'] / runs['list']:.2f} times the run without |", ""]


def from_python(compare, runs):
    library = compare["typescout"]["mean"]
    return [
        "## From Python", "",
        "The same files, warm, in microseconds a file; the last column compares with the library called from "
        "C++, or with the line above.", "",
        "| | a file | |", "| --- | ---: | --- |",
        f"| `typescout.identify`, each file's fastest of five | {runs['identify']:.1f} | "
        f"{runs['identify'] - library:.1f} µs more than the library |",
        f"| `typescout.identify_many(threads=1)`, fastest run of five | {runs['many_1']:.1f} | |",
        f"| `typescout.identify_many(threads=2)`, fastest run of five | {runs['many_2']:.1f} | "
        f"{runs['many_1'] / runs['many_2']:.2f} times as fast as with one thread |",
        f"| `magic.Magic().from_file` of python3-magic, one run | {runs['magic']:.1f} | "
        f"{runs['magic'] / runs['identify']:.0f} times as long as `identify` |", ""]


def rows(detectors):
    times = {}
    for benchmark in detectors["benchmarks"]:
        kind, name, head = benchmark["name"].split("|")
        times.setdefault((kind, name), {})[head] = nanoseconds(benchmark)
    memory, file = times[("scan", "memory")], times[("scan", "file")]
    lines = ["## Heads that are slow to look at", "",
             "All rows are asked about 50,000 bytes that are made to keep a search or a walk busy; microseconds.", "",
             "| bytes | in memory | in a file |", "| --- | ---: | ---: |"]
    lines += [f"| {head} | {memory[head] / 1000:.1f} | {file[head] / 1000:.1f} |" for head in memory]
    slowest = {}
    for (kind, name), of in times.items():
        head = max(memory, key=lambda head: of.get(head, 0))
        if kind == "row" and of[head] >= SHOWN_FROM:
            slowest[name] = (of[head], head, of.get("typical"))
    lines += ["", "## Rows that take time", "",
              f"The rows that take {SHOWN_FROM / 1000:.1f} µs or more for one of these heads, in microseconds, and "
              "what they take for the first file that they accept in the tests. All others take less for each.", "",
              "| row | slowest | for | accepted file |", "| --- | ---: | --- | ---: |"]
    for name, (time, head, typical) in sorted(slowest.items(), key=lambda item: -item[1][0]):
        shown = "" if typical is None else f"{typical / 1000:.3f}"
        lines.append(f"| {name} | {time / 1000:.1f} | {head} | {shown} |")
    return lines


def main():
    measured, folder = map(pathlib.Path, sys.argv[1:])
    detectors, compare, runs, python = (
        json.loads((measured / f"{name}.json").read_text())
        for name in ("detectors", "compare", "program", "python"))
    text = ["# What a scan costs", "",
            "`benchmarks/run` measures everything below in one run and writes this page. It installs what it needs "
            "and takes a few minutes on an otherwise idle machine; here: " + machine() + ".", ""]
    text += files(compare) + program(compare, runs) + from_python(compare, python)
    text += [(measured / "notes.md").read_text().strip(), ""] + rows(detectors)
    (folder / "performance.md").write_text("\n".join(text) + "\n")
    (folder / "performance.svg").write_text(plot(compare))


if __name__ == "__main__":
    main()
