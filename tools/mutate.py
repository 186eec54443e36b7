#!/usr/bin/env python3
"""Changes one thing at a time in a copy of the tree, builds it, runs the folder's tests, and lists
the changes that no test noticed.

    tools/mutate.py [--count N] [--seed S] [--files GLOB...] [--minutes M] [--all] [--preset dev|asan]

What is changed: numbers, characters, texts, comparisons, signs, the parts of a condition, a whole
condition, a statement, what a destructor does. A change that does not compile is not counted. The
copy lies in build/mutation; ccache makes it faster. Files for Windows alone are left out.
"""
import argparse
import fnmatch
import json
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import time

TOP = pathlib.Path(__file__).resolve().parents[1]
COPY = TOP / "build" / "mutation" / "tree"

# Which tests see a change of a folder: the tests' names for ctest, and what has to be built.
HOST = ["unit_tests", "contract_native", "module_tests", "posix_tests", "fault_tests"]
PROGRAM = ["typescout_cli", "typescout_stub_module", "typescout_write_samples"]
SUITES = {
    "core/*": (["unit_tests"], []),
    "detectors/*": (["unit_tests"], []),
    "host/portable/*": (HOST, []),
    "host/compound/*": (HOST, []),
    "host/posix/*": (HOST, []),
    "catalogue/*": (["catalogue_tests", "filters_document", "cli_.*"], PROGRAM),
    "cli/*": (["cli_.*"], PROGRAM),
}
DEFAULT_FILES = ["core/*.cpp", "core/*.h", "detectors/*/*.cpp", "detectors/*/*.h"]

SWAPS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&"}
TOKEN = re.compile(
    r"""(?P<skip>//.*|/\*.*?\*/|^\s*\#.*|static_assert\(.*|\[\[.*?\]\])
      | (?P<text>"(?:[^"\\]|\\.)*")
      | (?P<char>'(?:[^'\\]|\\.)')
      | (?P<number>\b(?:0x[0-9A-Fa-f']+|[0-9][0-9']*)\b)
      | (?P<operator>&&|\|\||[=!<>]=|(?<=\s)[<>](?=\s))
      | (?P<sign>(?<=\s)[+-](?=\s))""",
    re.VERBOSE)
CONDITION = re.compile(r"\b(?:if|while) (?P<rest>\(.*)")
STATEMENT = re.compile(r"^(?P<indent> +)(?P<code>(?:[\w:.>\-\[\]*]+(?:\(.*\)|(?: [-+|&^*/%]?=| <<) .*)"
                       r"|(?:\+\+|--)[\w.>\-]+|[\w.>\-]+(?:\+\+|--)));( *//.*)?$")
DECLARATION = re.compile(r"^\s*(?:return|using|const|static|throw|delete|auto|else)\b")
DESTRUCTOR = re.compile(r"(?P<head>~\w+\(\)(?: \w+)* )\{ (?P<body>.+) \}")


def changed_text(literal):
    """Variants of a string literal: one plain character replaced, first and last."""
    plain = [i for i in range(1, len(literal) - 1)
             if literal[i].isalnum() and "\\" not in literal[max(0, i - 4):i]]
    for i in {plain[0], plain[-1]} if plain else ():
        other = "b" if literal[i] in "aA" else chr(ord(literal[i]) + (-1 if literal[i] in "zZ9" else 1))
        yield literal[:i] + other + literal[i + 1:]


def changed_token(match):
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


def closing(text):
    """Where the parenthesis is closed with which the text begins; None without it."""
    depth = 0
    for i, c in enumerate(text):
        depth += (c == "(") - (c == ")")
        if depth == 0:
            return i + 1
    return None


def operand_end(text):
    """Where the right operand of && or || ends that the text begins with."""
    depth = 0
    for i, c in enumerate(text):
        depth += (c in "([{") - (c in ")]}")
        if depth < 0 or (depth == 0 and (c in ";,?" or text.startswith((" &&", " ||"), i))):
            return i
    return None


def changed_lines(line):
    """Every variant of a line of code."""
    # The same line for looking at its brackets, without those in texts.
    plain = TOKEN.sub(lambda match: "x" * len(match.group())
                      if match.lastgroup in ("text", "char", "skip") else match.group(), line)
    for match in TOKEN.finditer(line):
        if match.lastgroup == "skip":
            continue
        before, after = line[:match.start()], line[match.end():]
        for other in changed_token(match):
            yield before + other + after
        end = operand_end(plain[match.end():])
        if match.group() in ("&&", "||") and end:
            yield before.rstrip() + after[end:]
    condition = CONDITION.search(plain)
    if condition and closing(condition["rest"]) and "constexpr" not in line:
        start = condition.start("rest")
        end = start + closing(condition["rest"])
        yield line[:start] + "(false)" + line[end:]
        if plain.startswith("if", condition.start()):
            yield line[:start] + "(true)" + line[end:]
    statement = STATEMENT.match(line)
    if statement and not DECLARATION.match(line):
        yield statement["indent"] + ";"
    destructor = DESTRUCTOR.search(line)
    if destructor:
        yield line[:destructor.end("head")] + "{}" + line[destructor.end():]


def all_changes(patterns):
    for pattern in patterns:
        for path in sorted(path.relative_to(TOP) for path in TOP.glob(pattern)):
            if "windows" in str(path):
                continue
            for number, line in enumerate((TOP / path).read_text().split("\n")):
                if not line.lstrip().startswith(("namespace", "template", "using", "//", "#")):
                    for other in changed_lines(line):
                        yield path, number, other


def run(*command, seconds=300):
    """Whether it succeeds in time; when it does not end in time, all that it has started is ended."""
    environment = dict(os.environ, GTEST_FILTER="-*CutAnywhere", GTEST_FAIL_FAST="1")
    with subprocess.Popen(command, cwd=COPY, env=environment, start_new_session=True,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as started:
        try:
            return started.wait(seconds) == 0
        except subprocess.TimeoutExpired:
            os.killpg(started.pid, signal.SIGKILL)
            return False


def copy_tree():
    shutil.rmtree(COPY, ignore_errors=True)
    names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                           cwd=TOP, capture_output=True, check=True, text=True).stdout
    for name in filter(None, names.split("\0")):
        if (TOP / name).exists():
            (COPY / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(TOP / name, COPY / name)


class Suite:
    """The tests of one folder, in the copy."""

    def __init__(self, path, preset):
        tests, others = next(suite for pattern, suite in SUITES.items()
                             if fnmatch.fnmatch(path, pattern))
        targets = ["typescout_" + test for test in tests if not test.startswith(("cli", "filters"))] + others
        folder = f"build/{preset}"
        self.build_command = ["cmake", "--build", folder, "--target", *targets]
        self.test_command = ["ctest", "--test-dir", folder, "--stop-on-failure", "--timeout", "100", "-j2",
                             "-R", f"^({'|'.join(tests)})$"]

    def build(self, seconds=300):
        return run(*self.build_command, seconds=seconds)

    def passes(self):
        return run(*self.test_command)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--count", type=int, default=100, help="how many changes (default 100)")
    parser.add_argument("--seed", type=int, default=1, help="chooses them (default 1)")
    parser.add_argument("--files", nargs="*", default=DEFAULT_FILES, help="patterns of files to change")
    parser.add_argument("--minutes", type=float, default=float("inf"), help="ends after this time")
    parser.add_argument("--all", action="store_true", help="every change, not a sample")
    parser.add_argument("--preset", default="dev", help="dev, or asan for the sanitizers' build")
    options = parser.parse_args()

    changes = list(all_changes(options.files))
    random.Random(options.seed).shuffle(changes)
    copy_tree()
    if not run("cmake", "--preset", options.preset, "-DTYPESCOUT_WERROR=OFF"):
        sys.exit("mutate: the tree cannot be configured")
    sound = set()
    end = time.monotonic() + 60 * options.minutes
    tried = noticed = 0
    for path, number, line in changes:
        if (tried == options.count and not options.all) or time.monotonic() > end:
            break
        suite = Suite(str(path), options.preset)
        if str(suite.test_command) not in sound:
            if not (suite.build(3_000) and suite.passes()):
                sys.exit(f"mutate: without a change the tests of {path} fail")
            sound.add(str(suite.test_command))
        original = (COPY / path).read_text()
        lines = original.split("\n")
        before, lines[number] = lines[number], line
        (COPY / path).write_text("\n".join(lines))
        if suite.build():
            tried += 1
            if suite.passes():
                print(f"{path}:{number + 1}\n  - {before.strip()}\n  + {line.strip()}", flush=True)
            else:
                noticed += 1
        (COPY / path).write_text(original)
    print(f"{tried} changes of {len(changes)} (seed {options.seed}): {noticed} noticed, "
          f"{tried - noticed} not: {100 * noticed / max(tried, 1):.1f} %")
    with open(COPY.parent / "runs.jsonl", "a") as runs:  # for tools/guarantees.py
        json.dump({"files": options.files, "tried": tried, "noticed": noticed}, runs)
        runs.write("\n")


if __name__ == "__main__":
    main()
