#!/usr/bin/env python3
"""What readers make of damaged documents: the table in docs/windows.md, made anew.

    damage_table.py DAMAGED FOLDER DOCUMENT READER [ARGUMENT...]

DAMAGED (tests/support/damaged.cpp) writes the documents into FOLDER; READER is the command (wine.sh,
the same program) that runs the system's reader. The table lies in DOCUMENT between two
comments. The exit status is 1 when it differs; with DAMAGE_TABLE=write it is written instead.
"""
import os
import pathlib
import resource
import selectors
import subprocess
import sys

SECONDS = 3  # until a reader counts as one that does not come back
SECONDS_TO_START = 60
MEMORY = 8 << 30  # for a reader that takes more and more of it until it is stopped
WHOLE = (5000, 200)
BEGIN = "<!-- Written by tests/windows/damage_table.py. -->\n"
END = "<!-- The end of what is written. -->\n"


def ask(reader, files):
    """What the reader says of each file; of the first, which is sound, at each start."""
    said = []
    while len(said) < len(files):
        command = [*reader, files[0], *files[len(said):]]
        with subprocess.Popen(
                command, stdout=subprocess.PIPE, bufsize=0,
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_DATA, (MEMORY, MEMORY))) as run:
            answers = selectors.DefaultSelector()
            answers.register(run.stdout, selectors.EVENT_READ)
            if not answers.select(SECONDS_TO_START) or not run.stdout.readline():
                sys.exit(f"damage_table: no answer from {command}")
            while len(said) < len(files):
                line = run.stdout.readline() if answers.select(SECONDS) else b""
                said.append(line.decode().strip() or "does not come back")
                if not line:
                    break
            run.kill()
    return said


def in_words(said):
    """A reader's answer as the table has it."""
    if said.startswith("does"):
        return said
    sizes = tuple(map(int, said.split()))
    if sizes == WHOLE:
        return "reads all"
    words = []
    for stream, size, whole in zip(("long", "short"), sizes, WHOLE):
        if size < 0:
            words.append(f"{stream}: none")
        elif size != whole:
            words.append(f"{stream}: {size:,} bytes")
    return ", ".join(words)


def main():
    write_damaged, folder, document, *reader = sys.argv[1:]
    told = subprocess.run([write_damaged, folder], check=True, capture_output=True, text=True).stdout
    rows = [line.split("\t") for line in told.splitlines()]
    systems = ask(reader, [pathlib.Path(folder) / row[0] for row in rows])
    table = "| What is damaged | On Linux | Wine's reader | On Windows |\n| --- | --- | --- | --- |\n"
    for (_, what, sound, ours), system in zip(rows, systems):
        if sound == "sound" and system == "does not come back":
            sys.exit(f"damage_table: {what}: does not come back, though it is sound")
        here = system if sound == "sound" else "does not open"
        table += f"| {what} | {in_words(ours)} | {in_words(system)} | {in_words(here)} |\n"

    path = pathlib.Path(document)
    text = path.read_text()
    before, rest = text.split(BEGIN)
    now, after = rest.split(END)
    if os.environ.get("DAMAGE_TABLE") == "write":
        path.write_text(before + BEGIN + table + END + after)
    elif now != table:
        differences = set(table.splitlines()) ^ set(now.splitlines())
        sys.exit("damage_table: docs/windows.md differs:\n" + "\n".join(sorted(differences)))
    print(f"{len(rows)} damaged documents meet the table")


if __name__ == "__main__":
    main()
