#!/usr/bin/env python3
"""report.py DETECTORS.json COMPARE.json NOTES FOLDER: writes FOLDER/performance.md and
FOLDER/performance.svg from what the benchmarks measured."""
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
             f"{compare['files']:,} files of /etc and /usr, the same in every run, lie in the system's cache. One "
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
    detectors, compare = (json.loads(pathlib.Path(path).read_text()) for path in sys.argv[1:3])
    notes = pathlib.Path(sys.argv[3]).read_text()
    folder = pathlib.Path(sys.argv[4])
    text = ["# What a scan costs", "",
            "`benchmarks/run` measures everything below in one run and writes this page. It installs what it needs "
            "and takes a few minutes on an otherwise idle machine; here: " + machine() + ".", ""]
    text += files(compare) + [notes.strip(), ""] + rows(detectors)
    (folder / "performance.md").write_text("\n".join(text) + "\n")
    (folder / "performance.svg").write_text(plot(compare))


if __name__ == "__main__":
    main()
