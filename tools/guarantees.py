#!/usr/bin/env python3
"""Checks and updates docs/guarantees.md.

    tools/guarantees.py            whether the tests that it names exist
    tools/guarantees.py --write    writes its figures from the reports of the last runs of
                                   ./test coverage, ./test fuzz and tools/mutate.py (in build/);
                                   what was not run keeps its figures

The table of what a file costs is written by its test.
"""
import json
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parents[1]
DOCUMENT = TOP / "docs" / "guarantees.md"


def test_names():
    for path in (TOP / "tests").rglob("*.cpp"):
        for suite, test in re.findall(r"^TEST(?:_[FP])?\((\w+),\s*(\w+)\)", path.read_text(), re.M):
            yield f"{suite}.{test}"
            yield f"{suite}.*"


def missing_tests(text):
    known = set(test_names())
    return sorted(name for name in set(re.findall(r"`([A-Z]\w+\.(?:[A-Z]\w+|\*))`", text))
                  if name not in known)


def table(columns, rows):
    lines = ["| " + " | ".join(columns) + " |",
             "| --- |" + " ---: |" * (len(columns) - 1)]
    lines += ["| " + " | ".join(str(cell) for cell in row) + " |" for row in rows]
    return "\n".join(lines) + "\n"


def coverage():
    report = (TOP / "build" / "coverage" / "report.txt").read_text()
    rows = re.findall(r"^(\S+) +lines (\d+ of \d+) .*branches (\d+ of \d+)", report, re.M)
    return table(["", "lines", "branches"], rows)


def mutation():
    runs = {}
    for line in (TOP / "build" / "mutation" / "runs.jsonl").read_text().splitlines():
        run = json.loads(line)
        runs[" ".join(run["files"])] = run
    return table(["changed", "changes tried", "noticed", ""],
                 [("`" + files + "`", run["tried"], run["noticed"],
                   f"{100 * run['noticed'] / max(run['tried'], 1):.1f} %")
                  for files, run in sorted(runs.items())])


def fuzzing():
    rows = []
    for log in sorted((TOP / "build" / "fuzz").glob("*.log")):
        text = log.read_text(errors="replace")
        done = re.search(r"^Done (\d+) runs in (\d+) second", text, re.M)
        edges = re.findall(r" cov: (\d+) ", text)
        if not edges:
            continue
        runs, seconds = (int(done[1]), int(done[2])) if done else ("", "")
        rows.append((f"`{log.stem}`", seconds, f"{runs:,}" if done else "", f"{int(edges[-1]):,}",
                     "none" if done else "see the log"))
    return table(["target", "seconds", "inputs", "edges reached", "findings"], rows)


def main():
    text = DOCUMENT.read_text()
    if "--write" in sys.argv:
        for part in (coverage, mutation, fuzzing):
            begin, end = f"<!-- {part.__name__} -->\n", f"<!-- end of {part.__name__} -->\n"
            before, _, rest = text.partition(begin)
            try:
                text = before + begin + part() + end + rest.partition(end)[2]
            except FileNotFoundError as error:
                print(f"{part.__name__}: not run ({error.filename})")
        DOCUMENT.write_text(text)
    missing = missing_tests(text)
    if missing:
        sys.exit("docs/guarantees.md names tests that do not exist: " + ", ".join(missing))


if __name__ == "__main__":
    main()
