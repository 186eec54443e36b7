#!/usr/bin/env python3
"""Names every file below a folder with Dask: with_dask.py FOLDER OUTPUT_FOLDER [SCHEDULER]

Writes part-00000.jsonl and so on, one for each 1,000 files, and prints how many files each label
has. SCHEDULER is the address of a running cluster whose workers see the same folders; without one,
two worker processes on this machine do the work. A part is complete or missing: a worker that dies
leaves none behind half written, and its share is given to another.
"""

import collections
import json
import os
import sys

import typescout
from distributed import Client, LocalCluster, as_completed


def name_files(number, paths, output):
    """Writes one part; returns how many files each label has."""
    counts = collections.Counter()
    part = os.path.join(output, f"part-{number:05}.jsonl")
    with open(f"{part}.{os.getpid()}", "w", encoding="ascii") as file:
        for path, answer in typescout.identify_many(paths, threads=1, on_error="record"):
            failed = isinstance(answer, OSError)
            label = "unreadable" if failed else answer.label if answer else "unknown"
            best = label if failed or not answer else answer.best.label
            file.write(json.dumps({"path": path, "label": label, "best_label": best}) + "\n")
            counts[label] += 1
    os.replace(file.name, part)
    return counts


def parts(folder, size=1000):
    """The files below the folder, in lists."""
    paths = []
    for where, folders, names in os.walk(folder):
        folders.sort()
        for name in sorted(names):
            paths.append(os.path.join(where, name))
            if len(paths) == size:
                yield paths
                paths = []
    if paths:
        yield paths


def main(folder, output, scheduler=None):
    """Deals out the parts and adds up what comes back."""
    os.makedirs(output, exist_ok=True)
    cluster = scheduler or LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None)
    counts = collections.Counter()
    with Client(cluster) as client:
        work = [client.submit(name_files, number, paths, output, pure=False, retries=3)
                for number, paths in enumerate(parts(folder))]
        for part in as_completed(work):
            counts += part.result()
    for label, count in counts.most_common():
        print(count, label)


if __name__ == "__main__":
    main(*sys.argv[1:])
