"""Names a file's format: which of a graphics suite's import filters can read it.

>>> import typescout
>>> answer = typescout.identify_bytes(b"GIF89a\\1\\0\\1\\0\\0\\0\\0,\\0\\0\\0\\0\\1\\0\\1\\0\\0\\0\\0;")
>>> print(answer)
0x0305 GIF picture
>>> answer.label, answer.mime, answer.family
('gif', 'image/gif', 'raster')

The answer is the suite's: the first of its filters, in their fixed order, that accepts the file.
Where several accept it, ``Answer.best`` is the one that describes the file best: a TIFF file is
answered with the filter for JPEG or TIFF, and its best is TIFF.
"""

from __future__ import annotations

import dataclasses
import functools
import operator
import os
from collections.abc import Iterable, Iterator
from typing import Literal, NoReturn, Union

from . import _native

__all__ = [
    "Answer",
    "Filter",
    "FilterId",
    "HEAD_SIZE",
    "accepts",
    "filters",
    "identify",
    "identify_bytes",
    "identify_many",
    "reads_beyond_head",
]

__version__: str = _native.VERSION

#: The bytes at the start of a file that every filter may look at.
HEAD_SIZE: int = _native.HEAD_SIZE

_MOST_THREADS = 256

PathLike = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]


class FilterId(int):
    """A filter identifier: an int that prints as four hexadecimal digits.

    >>> FilterId(773)
    0x0305
    >>> FilterId(773) == 773
    True
    """

    __slots__ = ()

    def __repr__(self) -> str:
        return f"0x{int(self):04X}"

    __str__ = __repr__


@dataclasses.dataclass(frozen=True)
class Filter:
    """One import filter.

    ``label`` is for programs and never changes; ``name`` is for people. ``mime`` is empty for a
    format without a common MIME type. ``extensions`` are in lower case, the usual one first.
    ``never_reported``: no file is ever answered with this filter.
    """

    id: FilterId
    label: str
    name: str
    mime: str
    extensions: tuple[str, ...]
    family: str
    never_reported: bool = False

    def __str__(self) -> str:
        return f"{self.id} {self.name}"


# A label, an identifier or what ``filters()`` gives. Where several can be meant, families, too.
FilterLike = Union[int, str, Filter]
Among = Union[Iterable[FilterLike], FilterLike, None]


@dataclasses.dataclass(frozen=True)
class Answer:
    """What a file is. ``best`` is the answer itself where no filter describes the file better.

    >>> tiff = identify_bytes(b"II*\\0\\x08\\0\\0\\0", name="scan.tif")
    >>> print(tiff, "/", tiff.best)
    0x0306 JPEG or TIFF picture / 0x0304 TIFF picture
    """

    id: FilterId
    label: str
    name: str
    mime: str
    extensions: tuple[str, ...]
    family: str
    # Not part of a comparison with itself: an answer that is its own best refers to itself.
    _best: Answer | None = dataclasses.field(default=None, repr=False)

    @property
    def best(self) -> Answer:
        """The most specific filter that accepts the file."""
        return self if self._best is None else self._best

    def __str__(self) -> str:
        return f"{self.id} {self.name}"


def _read_filters() -> tuple[Filter, ...]:
    return tuple(
        Filter(FilterId(number), label, name, mime, tuple(extensions.split()), family, never)
        for number, label, name, mime, extensions, family, never in _native.filters()
    )


# The registry in its order, then the drawing object, which a full scan reports but has no row.
_FILTERS = _read_filters()
_ROW_COUNT = len(_FILTERS) - 1


@functools.lru_cache(maxsize=None)
def _answer(places: tuple[int, int]) -> Answer:
    place, best = places
    described = _FILTERS[place]
    return Answer(
        described.id,
        described.label,
        described.name,
        described.mime,
        described.extensions,
        described.family,
        None if best == place else _answer((best, best)),
    )


def _reject(argument: str, accepted: str, given: object) -> NoReturn:
    raise TypeError(f"{argument}: {accepted} is needed, not {type(given).__name__}")


def _index(argument: str, accepted: str, given: object) -> int:
    try:
        return operator.index(given)  # type: ignore[arg-type]
    except TypeError:
        _reject(argument, accepted, given)


def _key(argument: str, wanted: object) -> int | str:
    """The label, identifier or family that is meant."""
    if isinstance(wanted, Filter):
        return wanted.id
    if isinstance(wanted, str):
        return wanted
    return _index(argument, "a label, an identifier or a Filter", wanted)


@functools.lru_cache(maxsize=None)
def _find(key: int | str) -> Filter:
    """The first filter with this label or identifier."""
    for candidate in _FILTERS:
        if key in (candidate.label, candidate.id):
            return candidate
    raise ValueError(f"no such filter: {key if isinstance(key, str) else FilterId(key)!r}")


def _rows_of(key: int | str) -> list[int]:
    rows = [row for row in range(_ROW_COUNT) if _FILTERS[row].family == key]
    if rows:
        return rows
    row = _FILTERS.index(_find(key))
    if row == _ROW_COUNT:
        raise ValueError(f"{_FILTERS[row]} is reported by a full scan only")
    return [row]


@functools.lru_cache(maxsize=256)
def _question(among: tuple[int | str, ...] | None, requested: int | str | None) -> _native.Question:
    rows = [] if among is None else [row for key in among for row in _rows_of(key)]
    if among is not None and not rows:
        raise ValueError("among: no filter is named")
    return _native.Question(rows, 0 if requested is None else int(_find(requested).id))


_FULL_SCAN = _question(None, None)


def _ask_for(among: Among, requested: FilterLike | None) -> _native.Question:
    if among is None and requested is None:
        return _FULL_SCAN
    keys = None
    if isinstance(among, Iterable) and not isinstance(among, (str, bytes, bytearray, memoryview)):
        keys = tuple(_key("among", wanted) for wanted in among)
    elif among is not None:
        keys = (_key("among", among),)
    return _question(keys, None if requested is None else _key("requested", requested))


def identify(
    path: PathLike,
    *,
    among: Among = None,
    requested: FilterLike | None = None,
) -> Answer | None:
    """Tells what the file at ``path`` is; None when no filter accepts it.

    ``among`` asks only these filters, in this order: labels, identifiers, Filters or families
    ("raster", "vector", "media", "native", "document", "text"). ``requested`` is the filter that
    the caller means to use; the Illustrator and PDF filters look at it.

    Raises FileNotFoundError, PermissionError, IsADirectoryError or another OSError, with
    ``filename`` set, for what cannot be read or is no regular file, and ValueError for a filter
    that does not exist or a path with a NUL character.

    >>> identify("missing.gif")
    Traceback (most recent call last):
    FileNotFoundError: [Errno 2] No such file or directory: 'missing.gif'
    """
    places = _native.identify(path, _ask_for(among, requested))
    return None if places is None else _answer(places)


def identify_bytes(
    data: bytes | bytearray | memoryview,
    *,
    name: PathLike | None = None,
    among: Among = None,
    requested: FilterLike | None = None,
) -> Answer | None:
    """Tells what a file with this content and this name would be.

    ``data`` is anything with a contiguous buffer. No more than its first 50,000 bytes is copied,
    except where a filter may look further: compound documents, GIF, TIFF, PDF, camera raw. The
    copy is a temporary file that is gone when the call returns. Raises as ``identify`` does.

    >>> identify_bytes(b"{\\\\rtf1 hello}").label
    'rtf'
    >>> identify_bytes(b"\\0\\x93\\0\\0\\0") is None
    True
    """
    places = _native.identify_bytes(data, name, _ask_for(among, requested))
    return None if places is None else _answer(places)


def identify_many(
    paths: Iterable[PathLike],
    *,
    threads: int | None = None,
    among: Among = None,
    on_error: Literal["raise", "record"] = "raise",
) -> Iterator[tuple[PathLike, Answer | None | OSError]]:
    """Yields each path with its answer, in the order of ``paths``, while threads read ahead.

    ``paths`` may be any iterable, an endless one too: at most 512 paths are taken ahead. An answer
    that is there is yielded before another path is taken. Where a path is slow to come, its answer
    is waited for, as long as the path took, before the next is taken. What ``paths`` raises comes
    after the answers for the paths before it.

    ``threads`` is from 1 to 256, and the number of processors when not given. ``on_error="record"``
    yields the OSError of a file in place of its answer; "raise" raises the first, after the answers
    before it. What is no path is recorded as an OSError with EINVAL, whose ``__cause__`` is the
    TypeError or ValueError that "raise" raises.

    >>> [(path, error.errno) for path, error in identify_many(["nowhere"], on_error="record")]
    [('nowhere', 2)]
    """
    if on_error not in ("raise", "record"):
        raise ValueError(f"on_error: {on_error!r} is neither 'raise' nor 'record'")
    if isinstance(paths, (str, bytes)) or not isinstance(paths, Iterable):
        _reject("paths", "an iterable of paths", paths)
    if threads is None:
        threads = min(len(os.sched_getaffinity(0)), _MOST_THREADS)
    threads = _index("threads", "an int", threads)
    if not 1 <= threads <= _MOST_THREADS:
        raise ValueError(f"threads: a number from 1 to {_MOST_THREADS} is needed, not {threads}")
    return _identify_many(iter(paths), threads, _ask_for(among, None), on_error == "raise")


def _identify_many(
    paths: Iterator[PathLike], threads: int, question: _native.Question, raises: bool
) -> Iterator[tuple[PathLike, Answer | None | OSError]]:
    many = _native.Many(paths, threads, question)
    while results := many.take():
        for path, result in results:
            if isinstance(result, tuple):
                yield path, _answer(result)
            elif isinstance(result, OSError) and raises:
                raise result.__cause__ or result
            else:
                yield path, result


def accepts(path: PathLike, filter: FilterLike) -> bool:  # pylint: disable=redefined-builtin
    """Whether this one filter accepts the file. Raises as ``identify`` does.

    >>> accepts("missing.gif", "gif")
    Traceback (most recent call last):
    FileNotFoundError: [Errno 2] No such file or directory: 'missing.gif'
    """
    wanted = _find(_key("filter", filter))
    if wanted == _FILTERS[_ROW_COUNT]:
        answer = identify(path)
        return answer is not None and answer.id == wanted.id
    return identify(path, among=(wanted.id,)) is not None


def reads_beyond_head(head: bytes | bytearray | memoryview) -> bool:
    """Whether a filter may look beyond the first ``HEAD_SIZE`` bytes of content that begins so.

    Where it is False, the head alone has the answer of the whole.

    >>> reads_beyond_head(b"\\xd0\\xcf\\x11\\xe0\\xa1\\xb1\\x1a\\xe1")
    True
    >>> reads_beyond_head(b"\\x89PNG")
    False
    """
    return _native.reads_beyond_head(head)


def filters() -> tuple[Filter, ...]:
    """All filters in the order in which a full scan asks them.

    >>> filters()[4]
    Filter(id=0x0305, label='gif', name='GIF picture', mime='image/gif', extensions=('gif',), \
family='raster', never_reported=False)
    """
    return _FILTERS[:_ROW_COUNT]
