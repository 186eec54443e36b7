#!/usr/bin/env python3
"""Runs the program and checks all that comes out of it.

Usage: program_test.py TYPESCOUT STUB_MODULE WRITE_SAMPLES MANUAL [unittest's options]
  TYPESCOUT      the program
  STUB_MODULE    stub_module.cpp, to stand in for the library and for an import module
  WRITE_SAMPLES  tests/support/write_samples.cpp
  MANUAL         docs/typescout.1
When EMULATOR is set in the environment, TYPESCOUT is a program for Windows and EMULATOR the command
that runs it, its words separated by |.
"""
import base64
import collections
import concurrent.futures
import contextlib
import csv
import functools
import io
import json
import os
import pty
import random
import re
import resource
import shlex
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import uuid

PROGRAM, STUB_MODULE, WRITE_SAMPLES, MANUAL = map(os.path.abspath, sys.argv[1:5])
EMULATOR = [word for word in os.environ.get("EMULATOR", "").split("|") if word]
HERE = os.path.dirname(os.path.abspath(__file__))

GIF = b"GIF89a\1\0\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;"
PNG = b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR"
ICON = b"\0\0\1\0\1\0\x10\x10\0\0\1\0\x20\0"
TIFF = b"II*\0\x08\0\0\0\0\0"
NOISE = b"\x07\x99\x13\x37" * 16
TEXT = b"All is well.\r\n"
HTML = b"<html><title>Hello</title>\r\n"
# With a preview, which is an Illustrator file only when that filter is requested.
DOS_EPS = (b"\xc5\xd0\xd3\xc6\x20\0\0\0\x40\0\0\0" + b"\1" * 20 +
           b"\n%%Creator: Adobe Illustrator(R) 8.0\n%%BoundingBox: 0 0 1 1\n%%EndSetup\n")

EXECUTABLE = b"MZ" + b"\0" * 58 + b"\x40\0\0\0PE\0\0"
LONG = b"n" * 70_000
# A compound document of one directory entry, whose class is the drawing object's.
DRAWING_OBJECT = (
    struct.pack("<8s16x5H6x10I", b"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", 62, 3, 0xfffe, 9, 6,
                0, 1, 1, 0, 4096, 0xfffffffe, 0, 0xfffffffe, 0, 0) + b"\xff" * 432 +
    struct.pack("<2I", 0xfffffffd, 0xfffffffe) + b"\xff" * 504 +
    struct.pack("<64sHBB3I16s20xIQ", "Root Entry".encode("utf-16-le"), 22, 5, 1, *[0xffffffff] * 3,
                uuid.UUID("DE14F420-AC1C-11CE-BE26-DB67235E2689").bytes_le, 0xfffffffe, 0) +
    b"\0" * 384)

CHANGED = 1_709_210_096_789_000_000


def record(path, answer, size, best=None, changed="2024-02-29T12:34:56"):
    """A line of an earlier output."""
    fields = {"path": path, "status": "recognised", "kind": "file", "size": size,
              "mtime": changed + ".789000000Z", "id": answer, "best_id": best or answer}
    return json.dumps(fields, separators=(",", ":")).encode() + b"\n"


CONTENTS = {
    "holiday.gif": GIF, "HOLIDAY.GIF": GIF, ".gif": GIF, "wrong.jpg": GIF, "[a,b]": GIF, "-r": GIF,
    "--json": GIF, "logo.png": PNG, "notes.txt": TEXT, "notes.c": TEXT, "notes.jpg": TEXT,
    "page.html": HTML, "page": HTML, "noise.bin": NOISE, "=1+1": NOISE, "empty.gif": b"",
    "favicon.ico": ICON, "favicon.tga": ICON, "favicon.dat": ICON, "scan.tif": TIFF, "scan": TIFF,
    "ai.eps": DOS_EPS, "tool": EXECUTABLE, "driver.sys": EXECUTABLE, "ad.rtf": b"{\\rtf1\\ansi x}",
    "pointer.cur": b"\0\0\2\0" + ICON[4:], "true.tga": b"\0\0\2" + b"\0" * 15,
    "pointer.ani": b"RIFF\x24\0\0\0ACONanih" + b"\0" * 40, "paper.pdf": b"%PDF-1.4\n",
    "object": DRAWING_OBJECT, "object.doc": DRAWING_OBJECT,
    "folder/a.gif": GIF, "folder/c.gif": GIF, "folder/b/deep.gif": GIF, "folder/it's.GIF": GIF,
    "upper/b.gif": GIF, "upper/\u00c4.gif": GIF, "linked/a.gif": GIF, "linked/b/deep.gif": GIF,
    "list": b"holiday.gif\n\nnoise.bin", "list.empty": b"", "list.nul": b"holiday.gif\0logo.png\0",
    "list.crlf": b"holiday.gif\r\nnoise.bin\r\n", "list.utf8": b"\xef\xbb\xbfholiday.gif\n",
    "list.utf16": "logo.png\r\n\U0001f388.gif\r\n".encode("utf-16"), "\U0001f388.gif": GIF,
    "list.long": b"holiday.gif\n" + LONG + b"\nlogo.png\n",
    "same.jsonl": record("logo.png", "0x0322", len(PNG)),
    # One file has another size now, another was changed later; both were answered wrongly.
    "old.jsonl": record("holiday.gif", "0x0322", len(GIF)) + record("logo.png", "0x0322", len(PNG)) +
                 record("notes.txt", "0x0903", 99) + record("lost.gif", "0x0305", 1) +
                 record("noise.bin", "0x0306", len(NOISE), "0x0304", "2024-02-29T12:34:57") +
                 b'{"path":"scan.tif","status":"rec',
    "other.jsonl": b'{"typescout":{"version":"0.9"}}\n' +
                   record("holiday.gif", "0x0322", len(GIF)),
}
LINKS = {"dangling": "missing", "circle": "circle", "link-to-folder": "folder",
         "linked/b/up": "../../linked"}


def run(*arguments, env=None, **options):
    """Its result; `env` is added to the environment."""
    if "input" not in options:
        options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.run([*EMULATOR, PROGRAM, *arguments], capture_output=True, timeout=120,
                          env={**os.environ, **(env or {})}, check=False, **options)


def start(*arguments, env=None, **options):
    """The same, still under way, with pipes on all sides."""
    usual = {name: subprocess.PIPE for name in ("stdin", "stdout", "stderr")}
    # The tests may be started with interrupts ignored; the program would inherit that.
    usual["preexec_fn"] = lambda: signal.signal(signal.SIGINT, signal.SIG_DFL)
    return subprocess.Popen([*EMULATOR, PROGRAM, *arguments], env={**os.environ, **(env or {})},
                            **{**usual, **options})


def allow_open_files(count):
    """For a program that is to be started."""
    return {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (count, count))}


def what_system_tells(process, name):
    """A number from the status of a program that is under way."""
    with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
        return int(re.search(name + r":\s+(\d+)", status.read())[1])


def read_terminal(master):
    shown = b""
    with contextlib.suppress(OSError):  # what Linux says when the other side is closed
        while piece := os.read(master, 65536):
            shown += piece
    os.close(master)
    return shown


def write(path, content):
    os.makedirs(os.path.dirname(path) or ".", exist_ok=True)
    with open(path, "wb") as file:
        file.write(content)


class InTemporaryFolder(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="typescout-")
        self.addCleanup(shutil.rmtree, self.folder)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)


class Transcript(InTemporaryFolder):
    def setUp(self):
        super().setUp()
        for path, content in CONTENTS.items():
            write(path, content)
            os.utime(path, ns=(CHANGED, CHANGED))
        if EMULATOR:
            return
        for path, target in LINKS.items():
            os.symlink(target, path)
        os.mkfifo("pipe")
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind("socket")

    def check(self, command, stdin, expected):
        with self.subTest(command):
            result = run(*shlex.split(command)[1:], stdin=stdin)
            # Wine may complain of a program that ends while its threads run.
            said = "".join("! " + line for line in result.stderr.decode().splitlines(True)
                           if not line.startswith("wine client error:"))
            said += f"? {result.returncode}\n" if result.returncode else ""
            said += result.stdout.decode().replace("\r\n", "\n")
            said = re.sub('"version":"[0-9.]+","filters":[0-9]+', '"version":"VERSION","filters":ROWS', said)
            if EMULATOR:
                expected = re.sub(r"^[^~].*\n~", "", expected, flags=re.MULTILINE)
                expected = expected.replace("No such file or directory", "File not found")
            else:
                expected = re.sub(r"^~.*\n", "", expected, flags=re.MULTILINE)
            self.assertEqual(said.replace(LONG.decode()[:259], "LONG"), expected)

    def test_transcript(self):
        with open(os.path.join(HERE, "transcript.txt"), encoding="utf-8") as file:
            text = re.sub(r"^(#.*)?\n", "", file.read(), flags=re.MULTILINE)
        text = re.sub(r"^64 (.*) ! (.*)\n", "$ typescout \\1\n! typescout: \\2\n? 64\n", text,
                      flags=re.MULTILINE)
        blocks = re.split(r"^([$%&]) ", text, flags=re.MULTILINE)[1:]
        self.assertGreater(len(blocks), 150)
        for mark, block in zip(blocks[::2], blocks[1::2]):
            if mark == ("%" if EMULATOR else "&"):
                continue
            command, expected = block.split("\n", 1)
            command, _, source = command.partition(" <")
            stdin = os.open(source or os.devnull, os.O_RDONLY)
            self.check(command, stdin, expected)
            os.close(stdin)


HOSTILE = [b"new\nline.gif", b"\x1b[31mred.gif", b"tab\tbed.gif", b'quo"ted.gif', b"com,ma.gif",
           b"back\\slash.gif", b"\xff\xfe.gif", b"\xed.gif", b"lone\xed\xa0\x80.gif", b"cr\rlf.gif",
           b"del\x7f.gif", b"c1\xc2\x9b31m.gif", "häßlich-日本-🎈.gif".encode(), b" .gif", b"'.gif",
           b"{path}.gif", b"%s.gif", b"[x].gif", b"\x01one.gif", b"-.gif",
           "\u2028line\u202egif.\u2066".encode() + b".gif", b"esc\\x1b.gif"]


class HostileNames(InTemporaryFolder):
    def setUp(self):
        super().setUp()
        for name in HOSTILE:
            write(name, GIF)
        self.names = sorted(HOSTILE)

    def outputs(self, *options):
        return run(*options, "--", *self.names).stdout, run(*options, "-r", ".").stdout

    def test_text(self):
        for output, prefix in zip(self.outputs("-0"), (b"", b"./")):
            lines = output.split(b"\0")
            self.assertEqual(lines, [prefix + name + b": 0x0305 GIF picture"
                                     for name in self.names] + [b""])

    def test_json(self):
        named, walked = (json.loads(output.decode("utf-8")) for output in self.outputs("--json"))
        by_line = run("--jsonl", "-0", "--", *self.names).stdout.split(b"\0")
        self.assertEqual(named, [json.loads(line) for line in by_line[:-1]])
        for records, prefix in (named, b""), (walked, b"./"):
            self.assertEqual([self.path(record) for record in records],
                             [prefix + name for name in self.names])
        self.assertEqual({record["id"] for record in named + walked}, {"0x0305"})

    def path(self, record):
        if "path_bytes" not in record:
            return record["path"].encode("utf-8")
        true_bytes = base64.b64decode(record["path_bytes"], validate=True)
        with self.assertRaises(UnicodeDecodeError):
            true_bytes.decode("utf-8")
        self.assertIn("\ufffd", record["path"])
        return true_bytes

    def test_csv(self):
        rows = list(csv.DictReader(io.StringIO(run("--csv", "--", *self.names).stdout.decode(),
                                               newline=""), strict=True))
        self.assertFalse([c for row in rows for c in row["path"] if not c.isprintable()])
        self.assertEqual([base64.b64decode(row["path_bytes"]) or row["path"].encode()
                          for row in rows], self.names)
        self.assertEqual({(row["id"], row["reason"]) for row in rows}, {("0x0305", "")})

    def test_list_and_template(self):
        output = run("--format", "{path}|{extension}\\0", "--null", "-f", "-",
                     input=b"\0".join(self.names)).stdout
        self.assertEqual(output.split(b"\0\n")[:-1], [name + b"|gif" for name in self.names])
        names = run("-0", "--only", "gif", "--", *self.names).stdout
        self.assertEqual(names.split(b"\0")[:-1], self.names)
        for name in self.names:
            quoted = run("--format", "printf %s {path!q}", "--", name).stdout
            self.assertEqual(subprocess.run(quoted, shell=True, capture_output=True,
                                            check=True).stdout, name)

    def test_nothing_acts_on_the_reader(self):
        """Control characters reach neither JSON nor messages nor a terminal."""
        json_text = run("--jsonl", "--", *self.names).stdout.decode()
        messages = run("-b", "--", *[name + b"x" for name in self.names]).stderr.decode()
        self.assertIn("quo\"ted.gifx: No such", messages)
        self.assertIn("new\\nline.gifx: No such", messages)
        master, terminal = pty.openpty()
        with start("--color=never", "--", *self.names, b"no\x1b[5mne",
                   stdout=terminal, stderr=terminal):
            os.close(terminal)
            shown = read_terminal(master).replace(b"\r\n", b"\n").decode()
        self.assertEqual(shown.count("\n"), len(self.names) + 2)
        for text in json_text, messages, shown:
            self.assertFalse([c for c in text if not c.isprintable() and c not in "\n\ufffd"])
        for expected in ("new\\nline.gif: ", "\\x1B[31mred.gif: ", "\\xED.gif: ", "c1\\xC2\\x9B31m",
                         "\nback\\slash.gif: ", "\nhäßlich-日本-🎈.gif: ", "no\\x1B[5mne: "):
            self.assertIn(expected, "\n" + shown)


class Tree(InTemporaryFolder):
    """A few thousand files with all that a tree can hold."""

    FILES = 3000
    DEPTH = 120  # of folders with names of 60 characters: beyond 4,096 bytes

    def setUp(self):
        super().setUp()
        chance = random.Random(6)
        kinds = [("gif", GIF, "gif"), ("ico", ICON, "tga", "icon"), ("gif", b"", "empty"),
                 ("tif", TIFF, "jpeg", "tiff"), ("bin", NOISE, "unknown"),
                 ("txt", TEXT, "short-line-text"), ("png", PNG + b"\0" * 60_000, "png")]
        self.expected = {}  # the label of what each is, and of what else
        for number in range(self.FILES):
            extension, content, *labels = chance.choice(kinds)
            folders = "".join(f"d{chance.randrange(6)}/" for _ in range(chance.randrange(4)))
            self.add(f"tree/{folders}{number}.{extension}", labels, write, content)
        self.add("tree/d0/pipe", ["fifo"], os.mkfifo)
        self.add("tree/d0/self", ["link"], lambda path: os.symlink("self", path))
        self.add("tree/d0/up", ["link"], lambda path: os.symlink("../..", path))
        os.makedirs("tree/empty")
        if os.geteuid() != 0:
            self.add("tree/closed.gif", ["unreadable"], write, GIF)
            os.chmod("tree/closed.gif", 0)
            self.add("tree/closed", ["unreadable"], os.mkdir, 0)
            self.addCleanup(os.chmod, "tree/closed", 0o700)
        self.dig()

    def add(self, path, labels, make, *details):
        make(path, *details)
        self.expected[path] = (labels * 2)[:2] if len(labels) == 1 else labels

    def dig(self):
        self.deepest = "tree"
        os.chdir("tree")
        for level in range(self.DEPTH):
            name = f"{level:03}" + "x" * 57
            os.mkdir(name)
            os.chdir(name)
            self.deepest += "/" + name
            # What is reached by its folder still has its extension, whatever the name's length.
            for leaf in "deep.ico", "n" * 251 + ".ico":
                write(leaf, ICON)
                self.expected[f"{self.deepest}/{leaf}"] = ["tga", "icon"]
        os.chdir(self.folder)

    def test_every_number_of_jobs_prints_the_same(self):
        results = [run("-r", "-j", jobs, "--jsonl", "tree", **allow_open_files(100))
                   for jobs in "128"]
        self.assertEqual(len({(each.stdout, each.stderr, each.returncode) for each in results}), 1)
        self.assertEqual(results[0].returncode, 2 if os.geteuid() else 0)
        records = [json.loads(line) for line in results[0].stdout.splitlines()]
        told = [(each["path"].split("/"), each["label"], each["best_label"]) for each in records]
        # In the order of the bytes of the names, folder by folder.
        self.assertEqual(told, sorted((path.split("/"), *labels)
                                      for path, labels in self.expected.items()))
        by_state = collections.Counter(each["best_label"] for each in records)
        types = json.loads(run("-rq", "--summary", "--json", "tree").stdout)["types"]
        self.assertEqual({label: row["count"] for label, row in types.items()}, by_state)

    def test_a_run_goes_on_from_an_earlier_one(self):
        full = run("-r", "--jsonl", "--header", "tree").stdout
        changed = "tree/d0/pipe"
        for old in full, full[:len(full) // 2]:
            write("old.jsonl", old)
            again = run("-r", "--jsonl", "--header", "--since", "old.jsonl", "tree").stdout
            self.assertEqual(again, full)
        write("old.jsonl", full)
        self.assertEqual(run("-rq", "--compare", "old.jsonl", "tree").stdout, b"")
        os.unlink(changed)
        result = run("-rq", "--compare", "old.jsonl", "tree")
        self.assertEqual((result.stdout, result.returncode), (b"tree/d0/pipe: went; was 0x0000\n", 1))

    def test_the_longest_paths_can_be_named(self):
        self.assertGreater(len(self.deepest), 4096)
        less_deep = "/".join(self.deepest.split("/")[:9])
        result = run("-bl", f"{less_deep}/deep.ico", f"{self.deepest}/deep.ico",
                     f"./{self.deepest}/", self.deepest, f"{self.deepest}/none.ico",
                     f"{self.deepest}/{'n' * 256}", "x" * 5000)
        self.assertEqual(result.stdout, b"tga\ntga\nfolder\nfolder\n" + b"unreadable\n" * 3)
        self.assertEqual([line.rsplit(b": ")[-1] for line in result.stderr.splitlines()],
                         [b"No such file or directory"] + [b"File name too long"] * 2)

    def test_links_are_followed_once(self):
        result = run("-rL", "--format", "{path}", "-q", "tree")
        walked = result.stdout.decode().splitlines()
        self.assertEqual(len(walked), len(set(walked)))
        # The folder around the tree, in which only the tree itself has been entered before.
        self.assertEqual([path for path in walked if "/up" in path], ["tree/d0/up/tree"])


class Run(InTemporaryFolder):
    def setUp(self):
        super().setUp()
        write("a.gif", GIF)

    def test_memory_does_not_grow_with_the_list(self):
        def peak(entry, count, *options):
            # The address sanitizer holds freed memory back, for a while or until it is this much.
            sanitizer = "quarantine_size_mb=1:thread_local_quarantine_size_kb=64"
            with start("-q", "-f", "-", "-j2", *options, env={"ASAN_OPTIONS": sanitizer},
                       stdout=subprocess.DEVNULL) as process:
                # Comes back when all but a pipeful has been taken.
                process.stdin.write(entry * count)
                process.stdin.flush()
                return what_system_tells(process, "VmHWM")  # in KiB

        small = peak(b"." + b"/" * 200 + b"a.gif\n", 4_000)
        self.assertLess(peak(b"." + b"/" * 200 + b"a.gif\n", 40_000), small + 4_000)
        self.assertLess(peak(b"x" * 30_000_000, 1), small + 4_000)
        # An earlier output is not held in memory: of its 30 MB only where each record stands.
        write("old.jsonl", b"".join(record(f"{number}.gif", "0x0305", 29) for number in range(200_000)))
        self.assertLess(peak(b"a.gif\n", 4_000, "--since", "old.jsonl"), small + 20_000)
        self.assertEqual(run("-f", "/dev/zero").returncode, 64)

    def test_path_and_standard_input_agree(self):
        os.mkdir("samples")
        subprocess.run([WRITE_SAMPLES, "samples"], check=True)
        write("samples/long/long.gif", GIF[:-1] + b"!\xfe" + b"\xff" * 256 * 300 + b"\0" + GIF[13:])
        records = [json.loads(line) for line in run("-r", "--jsonl", "samples").stdout.splitlines()]
        self.assertGreater(len(records), 900)

        def answers(record):
            return record["status"], record["id"], record["best_id"]

        def by_stdin(record):
            with open(record["path"], "rb") as content:
                result = run("--jsonl", "--name", record["path"], "-", stdin=content)
            return answers(json.loads(result.stdout))

        with concurrent.futures.ThreadPoolExecutor(4) as executor:
            self.assertEqual(list(executor.map(by_stdin, records)), list(map(answers, records)))
        self.assertIn(("recognised", "0x0814", "0x0814"), map(answers, records))
        self.assertEqual(records[-1]["id"], "0x0616")
        # No more is taken than can make a difference.
        with start("-b", "-") as process:
            process.stdin.write(NOISE * 1000)
            process.stdin.flush()
            self.assertEqual(process.stdout.readline(), b"0x0000 unknown\n")

    def test_looking_leaves_no_trace(self):
        write("noise.bin", NOISE)
        for name in "a.gif", "noise.bin":
            os.utime(name, ns=(CHANGED - 1, CHANGED))
            run(name)
            self.assertEqual(os.stat(name).st_atime_ns, CHANGED - 1, name)

    def test_few_open_files_mean_few_threads(self):
        for limit in 8, 80:  # the sanitizers need more than four
            with start("-bl", "-j200", "-f", "-", **allow_open_files(limit)) as process:
                process.stdin.write(b"a.gif\n")
                process.stdin.flush()
                self.assertEqual(process.stdout.readline(), b"gif\n")
                self.assertLess(what_system_tells(process, "Threads"), 20)

    def test_closed_standard_streams(self):
        for streams in (0,), (1,), (2,), (0, 1), (0, 2), (1, 2), (0, 1, 2):
            close_all = functools.partial(list, map(os.close, streams))
            status = run("a.gif", preexec_fn=close_all).returncode
            self.assertEqual(status, 74 if 1 in streams else 0, streams)
            close_all = functools.partial(list, map(os.close, streams))
            status = run("--check", "gif", "-", input=GIF, preexec_fn=close_all).returncode
            self.assertEqual(status, 2 if 0 in streams else 0, streams)

    def test_another_file_system_is_not_entered(self):
        mounts = [f"/dev/{name}" for name in os.listdir("/dev") if os.path.ismount(f"/dev/{name}")]
        lines = run("-rx", "/dev").stdout.decode().splitlines()
        for mount in mounts:
            kind = "folder" if os.path.isdir(mount) else ""
            self.assertTrue([line for line in lines if line.startswith(f"{mount}: 0x0000 {kind}")])
            self.assertFalse([line for line in lines if line.startswith(f"{mount}/")])

    def test_a_slow_list_is_answered_as_it_comes(self):
        for jobs in "1", "4":
            with start("-f", "-", "-j", jobs) as process:
                for count in 1, 40:
                    process.stdin.write(b"a.gif\n" * count)
                    process.stdin.flush()
                    for _ in range(count):
                        self.assertEqual(process.stdout.readline(), b"a.gif: 0x0305 GIF picture\n")

    def test_a_closed_pipe_ends_it_silently(self):
        for ignored in False, True:
            with start("-f", "-", restore_signals=not ignored) as process:
                process.stdout.close()
                _, messages = process.communicate(b"a.gif\n")
            self.assertEqual((messages, process.returncode), (b"", -signal.SIGPIPE))

    def test_full_disk(self):
        for arguments in ["a.gif"], ["--version"], ["--json"] + ["a.gif"] * 50:
            with open("/dev/full", "wb") as full:
                process = start(*arguments, stdout=full)
                self.assertIn(b"No space left on device", process.communicate()[1])
            self.assertEqual(process.returncode, 74, arguments)

    def test_color(self):
        for arguments, colored in ((["--color"], True), (["--color=always"], True),
                                   (["--color=auto"], False), (["--color", "--color=never"], False)):
            output = run(*arguments, "a.gif", env={"NO_COLOR": "1"} if colored else None).stdout
            self.assertEqual(b"\x1b[32mGIF picture\x1b[0m" in output, colored, arguments)

    def test_interrupt_while_waiting_for_a_list(self):
        with start("--jsonl", "-f", "-") as process:
            process.stdin.write(b"a.gif\n")
            process.stdin.flush()
            self.assertIn(b"a.gif", process.stdout.readline())
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(timeout=20), -signal.SIGINT)

    def test_interrupt_while_the_output_is_not_read(self):
        with start(*["x" * 200] * 5000, "-q", "--jsonl") as process:
            time.sleep(0.7)
            self.assertIsNone(process.poll())
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(timeout=10), -signal.SIGINT)


class WithStubModule(InTemporaryFolder):
    """With stub_module.cpp in the place of the library, or as an import module."""

    STUB = {"LD_PRELOAD": "./stub.so"}  # which must not hold spaces

    def setUp(self):
        super().setUp()
        shutil.copy(STUB_MODULE, "stub.so")
        for name in "a.gif", "slow.gif", "slowest.gif":
            write(name, GIF)

    def test_library_of_another_version(self):
        result = run("a.gif", env={**self.STUB, "ROWS": "107"})
        self.assertEqual((result.returncode, result.stdout), (70, b""))
        self.assertRegex(result.stderr, rb"^typescout: the library has 107 filters and this program "
                                        rb"knows \d+: they are of different versions\n$")

    def test_exceptions(self):
        names = "cut.gif", "failing.pdf", "odd.pdf", "fine.gif"
        for name in names:
            write(name, GIF)
        result = run("--jsonl", *names, env=self.STUB)
        records = [json.loads(line) for line in result.stdout.splitlines()]
        self.assertEqual([(record["status"], record.get("reason")) for record in records],
                         [("cut-short", "Became shorter while it was read"),
                          ("unreadable", "An import module failed: out of ink"),
                          ("unreadable", "An import module failed"), ("recognised", None)])
        self.assertEqual((len(result.stderr.splitlines()), result.returncode), (3, 2))

    def test_progress(self):
        slow = ["slow.gif"] * 3 + ["a.gif"] * 18
        shown = run("-j1", "--progress", *slow, env=self.STUB).stderr
        self.assertRegex(shown, rb"\r\x1b\[K[12] of 21 inputs, \d+/s, \d+ s left")
        self.assertTrue(shown.endswith(b"\r\x1b[K"), shown)
        # By itself where nothing else is written to the terminal: not beside a pipe, whose reader
        # may have the same one.
        for stdout, is_shown in (subprocess.DEVNULL, True), (subprocess.PIPE, False):
            master, terminal = pty.openpty()
            with start("-j1", *slow, env=self.STUB, stdout=stdout, stderr=terminal):
                os.close(terminal)
                self.assertEqual(b"inputs, " in read_terminal(master), is_shown)

    def test_interrupt(self):
        names = [f"{number:03}.gif" for number in range(200)]
        for name in names:
            write(name, GIF)
        for jobs, wanted in ("1", signal.SIGINT), ("3", signal.SIGTERM):
            with start("--json", "-j", jobs, *names, *["slow.gif"] * 500, env=self.STUB) as process:
                time.sleep(1)
                process.send_signal(wanted)
                output, messages = process.communicate(timeout=5)
            self.assertEqual((messages, process.returncode), (b"", -wanted))
            paths = [record["path"] for record in json.loads(output)]
            self.assertEqual(paths[:200], names)
            self.assertLess(len(paths), 700)

    def test_a_slow_file_delays_no_other(self):
        for arguments, expected in (["-bl", "a.gif", "slowest.gif"], b"gif\n"), (["slowest.gif"], b""):
            with start("-j1", *arguments, env=self.STUB) as process:
                self.assertEqual(process.stdout.read(len(expected)), expected)
                time.sleep(0.3)
                process.send_signal(signal.SIGINT)
                process.communicate(timeout=10)
                self.assertEqual(process.returncode, -signal.SIGINT)
        with start("--summary", "--json", "a.gif", "slowest.gif", env=self.STUB) as process:
            time.sleep(0.5)
            process.send_signal(signal.SIGINT)
            self.assertEqual(json.loads(process.communicate(timeout=10)[0])["count"], 1)

    def test_goes_on_without_threads(self):
        result = run("-bl", "-j4", *["a.gif"] * 30, env={**self.STUB, "NO_THREADS": "1"})
        self.assertEqual((result.stdout, result.returncode), (b"gif\n" * 30, 0))

    def test_import_module_is_loaded_once(self):
        os.mkdir("filters")
        shutil.copy(STUB_MODULE, "filters/TvnPDFImport.so")
        os.chmod("filters/TvnPDFImport.so", 0o755)
        names = [f"{number}.pdf" for number in range(40)]
        for name in names:
            write(name, b"%PDF-1.4\n")
        for jobs in "1", "3":
            result = run("-bl", "-j", jobs, *names, env={"TVN_FILTERS_DIR": os.path.abspath("filters"),
                                                         "COUNT_FILE": f"count-{jobs}"})
            self.assertEqual(result.stdout, b"illustrator-pdf\n" * 40)
            with open(f"count-{jobs}", "rb") as count:
                self.assertEqual(count.read(), b"loaded\n")

    def test_tells_what_modules_there_are(self):
        os.mkdir("filters")
        path = os.path.abspath("filters/TvnPDFImport.so")

        def line(filters=os.path.abspath("filters")):
            return run("--modules", env={"TVN_FILTERS_DIR": filters}).stdout.decode().splitlines()[1]
        self.assertEqual(line(), path + ": not used: No such file or directory")
        self.assertEqual(line("filters"), "TvnPDFImport: not used: its folder is not an absolute path")
        with open(STUB_MODULE, "rb") as file:
            stub = file.read()
        write("paper.pdf", b"%PDF-1.4\n")
        for content, complaint in (
                (b"\x7fELF", path + ": file too short"),
                (stub[:18] + b"\xf3" + stub[19:],  # RISC-V
                 path + ": cannot open shared object file: No such file or directory"
                 " (built for another processor)"),
                (stub.replace(b"\0libc.so.6\0", b"\0libx.so.6\0"),
                 "libx.so.6: cannot open shared object file: No such file or directory"),
                (stub, "has no function GetAINativeData")):
            write(path, content)
            os.chmod(path, 0o755)
            self.assertEqual(line(), f"{path}: not used: {complaint}")
            answer = run("-bl", "paper.pdf", env={"TVN_FILTERS_DIR": os.path.abspath("filters")})
            self.assertEqual(answer.stdout, b"illustrator-pdf\n")
        os.chmod(path, 0o777)
        self.assertIn(": not used: refused, since other users may write", line())


class AboutItself(unittest.TestCase):
    def test_manual_is_current(self):
        with open(MANUAL, "rb") as manual:
            self.assertEqual(run("--man").stdout, manual.read(),
                             "take it anew: typescout --man >docs/typescout.1")

    def test_help(self):
        text = run("--help").stdout.decode().replace("\r\n", "\n")
        with open(os.path.join(HERE, "help.txt"), encoding="utf-8") as file:
            self.assertEqual(text, file.read(), "take it anew: typescout --help >tests/cli/help.txt")
        self.assertLessEqual(max(map(len, text.splitlines())), 80)
        options = {word.split("=")[0].split("[")[0].rstrip(",.;")
                   for line in text.splitlines() if line.startswith("  ")
                   for word in line[:27].split() if word.startswith("--")}
        self.assertGreater(len(options), 35)
        for option in options:
            self.assertIn(option.replace("-", "\\-"), run("--man").stdout.decode())

    def test_list_of_filters(self):
        rows = json.loads(run("--list-filters", "--json").stdout)
        self.assertEqual([row["row"] for row in rows], list(range(len(rows))))
        self.assertEqual(rows[47], {
            "row": 47, "id": "0x0339", "label": "webp", "name": "WebP picture", "family": "raster",
            "mime": "image/webp", "extensions": ["webp"], "never_reported": False,
            "hidden_by": ["0x0339"]})
        self.assertTrue(rows[0]["never_reported"])
        lines = run("--list-filters").stdout.decode().splitlines()
        self.assertEqual([line.split()[:3] for line in lines[1:]],
                         [[str(row["row"]), row["id"], row["label"]] for row in rows])
        by_line = run("--list-filters", "--jsonl").stdout.splitlines()
        self.assertEqual([json.loads(line) for line in by_line], rows)
        table = csv.DictReader(io.StringIO(run("--list-filters", "--csv").stdout.decode()))
        self.assertEqual([each["hidden_by"].split() for each in table],
                         [row["hidden_by"] for row in rows])

    def test_version(self):
        self.assertRegex(run("--version").stdout, rb"^typescout \d+\.\d+\.\d+\n$")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:])
