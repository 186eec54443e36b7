#!/usr/bin/env python3
"""from_python.py LIST: what a file costs from Python, over the files named in LIST, as JSON.

Microseconds a file. Each file's fastest of several rounds counts for `identify`, the fastest of
several passes over the whole list for the others.
"""
import json
import pathlib
import sys
import time

import magic
import typescout

ROUNDS = 5


def each(ask, paths):
    """The mean over the files of each file's fastest round."""
    fastest = [float("inf")] * len(paths)
    for _ in range(ROUNDS):
        for i, path in enumerate(paths):
            started = time.perf_counter_ns()
            ask(path)
            fastest[i] = min(fastest[i], time.perf_counter_ns() - started)
    return sum(fastest) / len(paths) / 1000


def together(ask, count, rounds=ROUNDS):
    """The fastest pass, for one file."""
    times = []
    for _ in range(rounds):
        started = time.perf_counter_ns()
        ask()
        times.append(time.perf_counter_ns() - started)
    return min(times) / count / 1000


def main():
    paths = pathlib.Path(sys.argv[1]).read_text(encoding="utf-8", errors="surrogateescape").splitlines()
    database = magic.Magic()

    def many(threads):
        for _ in typescout.identify_many(paths, threads=threads, on_error="record"):
            pass

    def peer():
        for path in paths:
            database.from_file(path)

    print(json.dumps({
        "identify": each(typescout.identify, paths),
        "many_1": together(lambda: many(1), len(paths)),
        "many_2": together(lambda: many(2), len(paths)),
        "magic": together(peer, len(paths), rounds=1),
    }))


if __name__ == "__main__":
    main()
