"""The installed Python package against the program, and what a caller may rely on."""

import copy
import doctest
import errno
import itertools
import mmap
import multiprocessing
import os
import pathlib
import resource
import signal
import socket
import subprocess
import sys
import threading
import time

import pytest
import typescout

GIF = b"GIF89a\1\0\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\0\0;"
TIFF = b"II*\0\x08\0\0\0"
FILTERS = {each.label: each for each in typescout.filters()}


def shown(answer):
    return None if answer is None else (str(answer.id), str(answer.best.id))


def expected(record):
    recognised = record["status"] == "recognised"
    return (record["id"], record.get("best_id", record["id"])) if recognised else None


def test_samples_have_the_programs_answers(samples):
    many = dict(typescout.identify_many(samples, threads=2))
    for path, record in samples.items():
        assert shown(typescout.identify(path)) == expected(record), path
        assert shown(typescout.identify_bytes(path.read_bytes(), name=path)) == expected(record), path
        assert shown(many[path]) == expected(record), path


def test_example(tmp_path):
    (tmp_path / "holiday.gif").write_bytes(GIF)
    example = pathlib.Path(__file__).parents[2] / "examples" / "recognise.py"
    output = subprocess.run([sys.executable, example], cwd=tmp_path, capture_output=True, text=True)
    assert output.stdout == "0x0305 GIF picture image/gif\n"


def test_examples_in_the_documentation():
    assert doctest.testmod(typescout).failed == 0


def test_answers_are_values():
    answer = typescout.identify_bytes(TIFF)
    assert (answer.id, repr(answer.id), answer.label) == (0x0306, "0x0306", "jpeg")
    assert (answer.best.id, answer.best.best) == (0x0304, answer.best)
    assert {answer: 1}[copy.deepcopy(answer)] == 1
    with pytest.raises(AttributeError):
        answer.label = "other"


@pytest.mark.parametrize("among, label", [
    (None, "jpeg"), (["tiff"], "tiff"), ([0x0304, "jpeg"], "tiff"), ("raster", "jpeg"),
    ("vector", None), (0x0304, "tiff"), (iter(["tiff"]), "tiff"), (FILTERS["tiff"], "tiff"),
    ([FILTERS["gif"], FILTERS["jpeg"]], "jpeg"),
])
def test_among(among, label):
    answer = typescout.identify_bytes(TIFF, among=among)
    assert (answer and answer.label) == label


def test_requested():
    pdf = b"%PDF-1.4\n"
    for requested in ("illustrator-pdf", FILTERS["illustrator-pdf"]):
        assert typescout.identify_bytes(pdf, requested=requested).label == "illustrator-pdf"


@pytest.mark.parametrize("wrong", [
    {"among": "nobody"}, {"among": []}, {"among": [0x1234]}, {"among": "drawing-object"},
    {"requested": "nobody"},
])
def test_wrong_questions(wrong):
    with pytest.raises(ValueError):
        typescout.identify_bytes(GIF, **wrong)


def test_errors(tmp_path):
    fifo, link, closed = tmp_path / "fifo", tmp_path / "link", tmp_path / "closed"
    os.mkfifo(fifo)
    link.symlink_to(link)
    with socket.socket(socket.AF_UNIX) as listener:
        listener.bind(str(tmp_path / "socket"))
    for path, kind, number in [
        (tmp_path / "missing", FileNotFoundError, errno.ENOENT),
        (tmp_path, IsADirectoryError, errno.EISDIR),
        (fifo, OSError, errno.EINVAL),
        (tmp_path / "socket", OSError, errno.EINVAL),
        (link, OSError, errno.ELOOP),
        (os.fsencode(tmp_path / "missing"), FileNotFoundError, errno.ENOENT),
        (tmp_path / ("x" * 256), OSError, errno.ENAMETOOLONG),
        ("/proc/self/mem", OSError, errno.EIO),
    ]:
        with pytest.raises(kind) as caught:
            typescout.identify(path)
        assert (caught.value.errno, caught.value.filename) == (number, path)
        [(_, recorded)] = typescout.identify_many([path], on_error="record")
        assert isinstance(recorded, type(caught.value)) and recorded.errno == number
    closed.touch(mode=0)
    if os.geteuid() != 0:
        with pytest.raises(PermissionError):
            typescout.identify(closed)
    with pytest.raises(FileNotFoundError):
        list(typescout.identify_many([tmp_path / "missing"]))
    for threads in (0, 257):
        with pytest.raises(ValueError):
            typescout.identify_many([], threads=threads)
    assert typescout.identify_bytes(b"") is None


@pytest.mark.parametrize("call, message", [
    (lambda: typescout.identify(3), "path: a str, bytes or os.PathLike is needed, not int"),
    (lambda: typescout.identify_bytes("a"),
     "data: bytes or another object with a buffer is needed, not str"),
    (lambda: typescout.reads_beyond_head(None),
     "head: bytes or another object with a buffer is needed, not NoneType"),
    (lambda: typescout.identify_bytes(b"", name=3), "name: a str, bytes or os.PathLike is needed, not int"),
    (lambda: typescout.identify_bytes(b"", among=b"gif"),
     "among: a label, an identifier or a Filter is needed, not bytes"),
    (lambda: typescout.identify_bytes(b"", among=["gif", []]),
     "among: a label, an identifier or a Filter is needed, not list"),
    (lambda: typescout.identify_bytes(b"", requested=b"gif"),
     "requested: a label, an identifier or a Filter is needed, not bytes"),
    (lambda: typescout.accepts("a", 1.5), "filter: a label, an identifier or a Filter is needed, not float"),
    (lambda: typescout.identify_many("a.gif"), "paths: an iterable of paths is needed, not str"),
    (lambda: typescout.identify_many([], threads=2.5), "threads: an int is needed, not float"),
])
def test_wrong_types(call, message):
    with pytest.raises(TypeError) as caught:
        call()
    assert str(caught.value) == message


def test_wrong_paths_fail_at_their_place(tmp_path):
    file = tmp_path / "a.gif"
    file.write_bytes(GIF)
    for wrong, kind in [(None, TypeError), ("a\0b", ValueError), ("\ud800", UnicodeEncodeError)]:
        with pytest.raises(kind):
            typescout.identify(wrong)
        records = list(typescout.identify_many([file, wrong, file], on_error="record"))
        assert [path for path, _ in records] == [file, wrong, file]
        (_, first), (_, error), (_, last) = records
        assert first.label == last.label == "gif"
        assert (error.errno, error.filename, type(error.__cause__)) == (errno.EINVAL, wrong, kind)
        many = typescout.identify_many([file, wrong, file])
        assert next(many)[1].label == "gif"
        with pytest.raises(kind):
            next(many)


HOSTILE_NAMES = [
    b"-", b"-r", b"--help", b" ", b"\n", b"\t", b"'", b'"', b"\\", b"$(x)", b"`x`", b"*", b"?", b"~",
    b"#", b"%s", b"a b", b"a\nb", b"\x1b[31m", b"\xff", b"\xc3", b"\xc3\xa9", b"\xed\xa0\x80",
    b"\xf0\x9f\x98\x80", b"\xe2\x80\xae", b"\xef\xbb\xbf", b"x" * 255, b"..gif", b"\x01", b"\x7f",
    b"con", b"\xc0\xaf"[:1],
]


def test_hostile_names(tmp_path):
    for name in HOSTILE_NAMES:
        path = os.path.join(os.fsencode(tmp_path), name)
        with open(path, "wb") as file:
            file.write(GIF)
        for form in (path, os.fsdecode(path), pathlib.Path(os.fsdecode(path))):
            assert typescout.identify(form).label == "gif"
        assert typescout.identify_bytes(GIF, name=name).label == "gif"


def test_long_paths(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    for _ in range(8):
        folder = "f" * 100
        os.mkdir(folder)
        os.chdir(folder)
    pathlib.Path("drawing.vxr").write_bytes(b"PK\3\4" + bytes(60))
    path = pathlib.Path.cwd() / "drawing.vxr"
    assert len(str(path)) > 800
    assert typescout.identify(path).label == "drawing"
    os.chdir(tmp_path)
    assert typescout.identify(path.relative_to(tmp_path)).label == "drawing"
    with pytest.raises(FileNotFoundError) as caught:
        typescout.identify(path.with_name("missing"))
    assert caught.value.filename == path.with_name("missing")


def test_bytes_are_not_copied_beyond_the_head(tmp_path):
    huge = tmp_path / "huge"
    with open(huge, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n")
        file.truncate(1 << 32)
    with open(huge, "rb") as file, mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as content:
        assert typescout.identify_bytes(content).label == "png"
    assert typescout.identify_bytes(memoryview(bytearray(GIF))).label == "gif"
    with pytest.raises(BufferError):
        typescout.identify_bytes(memoryview(GIF * 2)[::2])


def test_many_is_lazy_and_in_order(tmp_path):
    files = [tmp_path / f"{i}.gif" for i in range(200)]
    for file in files:
        file.write_bytes(GIF)
    taken = 0

    def endless():
        nonlocal taken
        for file in itertools.cycle(files):
            taken += 1
            yield file

    for threads in (2, 256):
        taken = 0
        first = list(itertools.islice(typescout.identify_many(endless(), threads=threads), 1000))
        assert [path for path, _ in first] == list(itertools.islice(itertools.cycle(files), 1000))
        assert taken <= 1000 + 512

    def failing():
        yield from files
        raise KeyError("listing")

    answers = []
    with pytest.raises(KeyError):
        answers.extend(typescout.identify_many(failing()))
    assert [path for path, _ in answers] == files


def test_many_does_not_hold_answers_back(tmp_path):
    file = tmp_path / "a.gif"
    file.write_bytes(GIF)
    taken = 0

    def slow():
        nonlocal taken
        for taken in range(1, 6):
            time.sleep(0.2)
            yield file

    # The next path is asked for only after the answer was given.
    assert [taken for _ in typescout.identify_many(slow(), threads=2)] == [1, 2, 3, 4, 5]


def test_threads_ask_at_the_same_time(samples):
    def ask():
        for path, record in samples.items():
            assert shown(typescout.identify(path)) == expected(record)

    failures = []

    def run():
        try:
            ask()
        except AssertionError as failure:
            failures.append(failure)

    threads = [threading.Thread(target=run) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not failures


def test_interrupt_ends_many(tmp_path):
    (tmp_path / "a.gif").write_bytes(GIF)
    # The tests may be started with interrupts ignored.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    timer = threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT))
    timer.start()
    started = time.monotonic()
    with pytest.raises(KeyboardInterrupt):
        for _ in typescout.identify_many(itertools.repeat(tmp_path / "a.gif")):
            pass
    assert time.monotonic() - started < 10


def test_memory_stays_flat(tmp_path):
    file = tmp_path / "a.gif"
    file.write_bytes(GIF)

    def run(count):
        for _ in typescout.identify_many(itertools.repeat(file, count)):
            pass
        for _ in range(count // 10):
            typescout.identify(file)
            typescout.identify_bytes(GIF)

    run(20_000)
    before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    run(200_000)
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before < 2_000


def identify_in_child(path, results):
    results.put(shown(typescout.identify(path)))


def test_fork(tmp_path):
    file = tmp_path / "a.gif"
    file.write_bytes(GIF)
    many = typescout.identify_many(itertools.repeat(file))
    next(many)
    context = multiprocessing.get_context("fork")
    results = context.Queue()
    child = context.Process(target=identify_in_child, args=(file, results))
    child.start()
    assert results.get(timeout=30) == ("0x0305", "0x0305")
    child.join()
    # Each child finds the workers at another place, and one that hangs is ended by the alarm.
    for _ in range(60):
        next(many)
        pid = os.fork()
        if pid == 0:
            signal.alarm(20)
            status = 1
            try:
                list(itertools.islice(many, 1000))
            except RuntimeError:
                status = 0
            del many
            os._exit(status)
        assert os.waitpid(pid, 0)[1] == 0


def test_filters_and_accepts(tmp_path):
    filters = typescout.filters()
    assert len(filters) > 100 and filters[0].never_reported and not filters[2].never_reported
    file = tmp_path / "a"
    file.write_bytes(TIFF)
    assert typescout.accepts(file, "tiff") and typescout.accepts(file, 0x0306)
    assert typescout.accepts(file, filters[30]) and not typescout.accepts(file, "gif")
    assert not typescout.accepts(file, "drawing-object")
    with pytest.raises(FileNotFoundError):
        typescout.accepts(tmp_path / "missing", "gif")
    with pytest.raises(ValueError):
        typescout.accepts(file, "nobody")
