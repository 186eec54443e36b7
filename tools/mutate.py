#!/usr/bin/env python3
"""Do the tests notice? Changes one constant, comparison or offset at a time, in a copy of the tree,
rebuilds and runs the fast tests, and lists the changes that nobody noticed.

    tools/mutate.py [--count N] [--seed S] [--files GLOB...] [--all]

Works below build/mutation; the working tree is left alone. A change that does not compile is not
counted. Needs a first `./test dev`.
"""
import argparse
import glob
import pathlib
import random
import re
import shutil
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[1]
COPY = TOP / "build" / "mutation" / "tree"
DEFAULT_FILES = ["core/*.cpp", "core/*.h", "detectors/*/*.cpp", "detectors/*/*.h"]
COPIED = ["CMakeLists.txt", "CMakePresets.json", "cli", "cmake", "core", "detectors", "fuzz", "host",
          "include", "module", "tests"]

# What a change is made of: a pattern, and what it becomes.
SWAPS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&"}
TOKEN = re.compile(
    r"""(?P<skip>//.*|/\*.*?\*/|\#.*|static_assert\(.*)
      | (?P<text>"(?:[^"\\]|\\.)*")
      | (?P<char>'(?:[^'\\]|\\.)')
      | (?P<number>\b(?:0x[0-9A-Fa-f']+|[0-9][0-9']*)\b)
      | (?P<operator>&&|\|\||[=!<>]=|(?<=\s)[<>](?=\s))
      | (?P<sign>(?<=\s)[+-](?=\s))""",
    re.VERBOSE)


def changed_text(literal):
    """Variants of a string literal: one plain character replaced, first and last."""
    plain = [i for i in range(1, len(literal) - 1)
             if literal[i].isalnum() and "\\" not in literal[max(0, i - 4):i]]
    for i in {plain[0], plain[-1]} if plain else ():
        other = "b" if literal[i] in "aA" else chr(ord(literal[i]) + (-1 if literal[i] in "zZ9" else 1))
        yield literal[:i] + other + literal[i + 1:]


def variants(match):
    kind, token = match.lastgroup, match.group()
    if kind == "text":
        yield from changed_text(token)
    elif kind == "char" and len(token) == 3:
        yield "'" + chr(ord(token[1]) + 1) + "'"
    elif kind == "number":
        base = 16 if token.startswith("0x") else 10
        value = int(token.replace("'", ""), base)
        for other in {value + 1, max(value - 1, 0)} - {value}:
            yield hex(other) if base == 16 else str(other)
    elif kind == "operator":
        yield SWAPS[token]
    elif kind == "sign":
        yield "-" if token == "+" else "+"


def all_changes(patterns):
    for pattern in patterns:
        for name in sorted(glob.glob(str(TOP / pattern))):
            path = pathlib.Path(name).relative_to(TOP)
            for number, line in enumerate((TOP / path).read_text().split("\n")):
                if line.lstrip().startswith(("namespace", "template", "using", "static_assert")):
                    continue
                for match in TOKEN.finditer(line):
                    if match.lastgroup == "skip":
                        continue
                    for other in variants(match):
                        yield path, number, line[:match.start()] + other + line[match.end():]


def run(*command, seconds=120):
    try:
        done = subprocess.run(command, cwd=COPY, capture_output=True, timeout=seconds, check=False)
        return done.returncode == 0
    except subprocess.TimeoutExpired:
        return False


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=100, help="how many changes (default 100)")
    parser.add_argument("--seed", type=int, default=1, help="chooses them (default 1)")
    parser.add_argument("--files", nargs="*", default=DEFAULT_FILES, help="patterns of files to change")
    parser.add_argument("--all", action="store_true", help="every change, not a sample")
    options = parser.parse_args()

    shutil.rmtree(COPY, ignore_errors=True)
    for name in COPIED:
        source = TOP / name
        if source.is_dir():
            shutil.copytree(source, COPY / name)
        elif source.exists():
            COPY.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, COPY / name)
    build = ["cmake", "--build", "build/dev", "--target", "typescout_unit_tests"]
    tests = ["build/dev/tests/typescout_unit_tests", "--gtest_brief=1", "--gtest_fail_fast",
             "--gtest_filter=-*CutAnywhere:CompoundReader.*"]
    if not (run("cmake", "--preset", "dev") and run(*build, seconds=900) and run(*tests)):
        sys.exit("mutate: the tree does not build and pass as it is")

    changes = list(all_changes(options.files))
    random.Random(options.seed).shuffle(changes)
    tried = killed = 0
    survivors = []
    for path, number, line in changes:
        if tried == options.count and not options.all:
            break
        original = (COPY / path).read_text()
        lines = original.split("\n")
        before, lines[number] = lines[number], line
        (COPY / path).write_text("\n".join(lines))
        if run(*build, seconds=300):
            tried += 1
            if run(*tests, seconds=30):
                survivors.append((path, number + 1, before.strip(), line.strip()))
            else:
                killed += 1
        (COPY / path).write_text(original)
    for path, number, before, after in sorted(survivors):
        print(f"{path}:{number}\n  - {before}\n  + {after}")
    print(f"{tried} changes of {len(changes)} (seed {options.seed}): {killed} noticed, "
          f"{len(survivors)} not: {100 * killed / max(tried, 1):.1f} %")


if __name__ == "__main__":
    main()
