#!/usr/bin/env python3
"""Checks that what documents quote from other files is there: tools/quotes.py

In a Markdown file, a fenced block behind a line `<!-- from FILE -->` quotes FILE. In the public
header, the indented lines of a comment quote examples/functions.cpp. The quoted lines must stand in
the file, one after the other; they may be indented otherwise. Blank lines do not count.
"""
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parent.parent
HEADER = TOP / "include" / "typescout" / "typescout.h"


def significant(text):
    return [line.strip() for line in text.splitlines() if line.strip()]


def quotes():
    """Yields (where, quoted text, quoted file)."""
    for document in [TOP / "README.md", *sorted((TOP / "docs").glob("*.md"))]:
        for match in re.finditer(r"^<!-- from (\S+) -->\n+```\w*\n(.*?)^```$", document.read_text(),
                                 re.MULTILINE | re.DOTALL):
            yield document, match[2], TOP / match[1]
    for match in re.finditer(r"(?:^//   .*\n)+", HEADER.read_text(), re.MULTILINE):
        text = re.sub(r"^//", "", match[0], flags=re.MULTILINE)
        # The descriptions of parameters are indented, too.
        if re.search(r";$", text, re.MULTILINE):
            yield HEADER, text, TOP / "examples" / "functions.cpp"


def stands_in(quoted, lines):
    return any(lines[at:at + len(quoted)] == quoted for at in range(len(lines)))


def main():
    count = 0
    failed = False
    for where, text, file in quotes():
        count += 1
        if not stands_in(significant(text), significant(file.read_text())):
            print(f"{where}: not in {file}:\n{text}")
            failed = True
    if failed or count == 0:
        sys.exit(1)
    print(f"{count} quotations are as in their files")


if __name__ == "__main__":
    main()
