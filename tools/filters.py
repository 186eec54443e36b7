#!/usr/bin/env python3
"""Writes docs/filters.md from the registry and the catalogue.

    tools/filters.py PROGRAM           writes it
    tools/filters.py --check PROGRAM   fails when it is not what would be written

PROGRAM is the built program typescout, which knows the catalogue.
"""
import json
import pathlib
import re
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parent.parent
DOCUMENT = TOP / "docs" / "filters.md"

INTRODUCTION = """\
# The filters

Written by `tools/filters.py`; edit `core/registry.cpp` and `catalogue/filters.cpp`, not this file.

One line for each row of the registry, in the order in which a full scan asks them; the first row
that accepts the file decides.

- **Row**: the registry index, which `CheckFiltersFromList` takes.
- **Identifier**: what the functions return. Several rows may have one detector, and two have one
  identifier; look-ups by identifier find the first.
- **Label**, **name**, **MIME type**, **extensions**: what the program prints.
- **Looks at**: what the row accepts. Texts and bytes without a place stand at the start of
  the file; a semicolon separates alternatives.
- **Hidden by**: earlier rows, one of which accepts whatever this row accepts, so that a full
  scan never returns this one. A list check that names the row still does.

`TypeScoutFile` also returns 0x0706, for a compound document with the class identifier of the
suite's drawing object. No row has this identifier.

| Row | Identifier | Label | Name | MIME type | Extensions | Looks at | Hidden by |
| ---: | --- | --- | --- | --- | --- | --- | --- |
"""


def document(program):
    registry = re.findall(r"^    \{(0x[0-9A-F]{4}), \w+\}, +// (.*)$",
                          (TOP / "core" / "registry.cpp").read_text(), re.MULTILINE)
    filters = json.loads(subprocess.run([program, "--list-filters", "--json"], check=True,
                                        capture_output=True, text=True).stdout)
    if [identifier for identifier, _ in registry] != [entry["id"] for entry in filters]:
        sys.exit("filters.py: the rows of registry and catalogue differ, or a row has no comment")
    lines = []
    for (_, looks_at), entry in zip(registry, filters):
        cells = [entry["row"], entry["id"], f"`{entry['label']}`", entry["name"],
                 entry.get("mime", ""), " ".join(entry["extensions"]), looks_at,
                 " ".join(entry["hidden_by"])]
        text = " | ".join(str(cell).replace("\\", "\\\\").replace("*", "\\*").replace("<", "\\<")
                          for cell in cells)
        lines.append(f"| {text} |\n")
    return INTRODUCTION + "".join(lines)


def main(arguments):
    check = arguments[:1] == ["--check"]
    if len(arguments) != 1 + check:
        sys.exit(__doc__)
    text = document(arguments[-1])
    if not check:
        DOCUMENT.write_text(text)
    elif DOCUMENT.read_text() != text:
        sys.exit(f"{DOCUMENT} is out of date: run tools/filters.py {arguments[-1]}")


if __name__ == "__main__":
    main(sys.argv[1:])
