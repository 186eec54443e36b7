"""A client with types, for mypy alone."""

import pathlib
from typing import Optional

import typescout

answer: Optional[typescout.Answer] = typescout.identify(pathlib.Path("a"), among=["tiff", 0x0306])
number: int = answer.best.id if answer else 0
for path, found in typescout.identify_many(["a", b"b"], on_error="record"):
    if isinstance(found, OSError):
        print(path, found.errno)
names: list[str] = [f.name for f in typescout.filters()]
typescout.identify_bytes(bytearray(b""), name="a", requested="gif")
