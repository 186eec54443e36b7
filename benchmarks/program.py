#!/usr/bin/env python3
"""program.py PROGRAM MODULES TREE LIST: what a file costs in whole runs of the program, as JSON.

PROGRAM is the program in a folder without modules, MODULES the same in a folder with both. TREE is a
folder, LIST names its files, one a line. The runs take turns; each one's fastest counts. Microseconds
a file.
"""
import json
import pathlib
import subprocess
import sys
import time

ROUNDS = 9


def run(command):
    started = time.perf_counter()
    subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    return time.perf_counter() - started


def main():
    program, with_modules, tree, names = sys.argv[1:]
    count = len(pathlib.Path(names).read_bytes().splitlines())
    commands = {
        "start": [program, "--version"],
        "tree_1": [program, "-r", "-j", "1", tree],
        "tree_2": [program, "-r", "-j", "2", tree],
        "list": [program, "-j", "1", "-f", names],
        "list_with_modules": [with_modules, "-j", "1", "-f", names],
    }
    fastest = {name: float("inf") for name in commands}
    for _ in range(ROUNDS):
        for name, command in commands.items():
            fastest[name] = min(fastest[name], run(command))
    start = fastest.pop("start")
    print(json.dumps({name: took / count * 1e6 for name, took in fastest.items()} |
                     {"files": count, "start": start * 1000}))


if __name__ == "__main__":
    main()
