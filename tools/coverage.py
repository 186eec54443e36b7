#!/usr/bin/env python3
"""coverage.py FOLDER < COVERAGE.json: what the tests reached, from `llvm-cov export`, for the files
below FOLDER: a line a folder, then every line and every outcome of a condition that nothing
reached."""
import collections
import json
import pathlib
import sys

REPORTED = ["core", "detectors", "host/compound", "host/portable", "host/posix", "catalogue", "cli"]


def lines_of(file):
    """The lines that hold code, each with whether it was reached."""
    reached = {}
    segments = file["segments"]
    for (line, _, count, has_count, *_), (next_line, *_) in zip(segments, segments[1:]):
        if has_count:
            for number in range(line, next_line + 1):
                reached[number] = reached.get(number, False) or count > 0
    return reached


def outcomes_of(file):
    """The conditions by their place, each with how often it was true and false, over all instances
    of a template."""
    counts = collections.defaultdict(lambda: [0, 0])
    for branch in file["branches"]:
        place = counts[tuple(branch[:4])]
        place[0] += branch[4]
        place[1] += branch[5]
    return counts


def main():
    top = pathlib.Path(sys.argv[1]).resolve()
    files = {}
    for file in json.load(sys.stdin)["data"][0]["files"]:
        path = pathlib.Path(file["filename"])
        if path.is_relative_to(top):
            files[str(path.relative_to(top))] = file
    missed = []
    for folder in REPORTED:
        lines = outcomes = missed_lines = missed_outcomes = 0
        for name in sorted(files):
            if not name.startswith(folder + "/"):
                continue
            for place, counts in sorted(outcomes_of(files[name]).items()):
                outcomes += 2
                for outcome, count in zip(("true", "false"), counts):
                    if count == 0:
                        missed_outcomes += 1
                        missed.append(f"{name}:{place[0]}:{place[1]}: never {outcome}")
            source = (top / name).read_text().split("\n")
            for number, is_reached in sorted(lines_of(files[name]).items()):
                lines += 1
                if not is_reached:
                    missed_lines += 1
                    missed.append(f"{name}:{number}: not reached: {source[number - 1].strip()}")
        print(f"{folder:14} lines {lines - missed_lines} of {lines} "
              f"({100 * (1 - missed_lines / lines):.1f} %), branches "
              f"{outcomes - missed_outcomes} of {outcomes} ({100 * (1 - missed_outcomes / outcomes):.1f} %)")
    print("\n".join(missed))


if __name__ == "__main__":
    main()
