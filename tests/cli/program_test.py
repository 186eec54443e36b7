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
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM, STUB_MODULE, WRITE_SAMPLES, MANUAL = map(os.path.abspath, sys.argv[1:5])
EMULATOR = [word for word in os.environ.get("EMULATOR", "").split("|") if word]
HERE = os.path.dirname(os.path.abspath(__file__))

with open(os.path.join(HERE, "transcript.txt"), encoding="utf-8") as transcript:
    TRANSCRIPT = re.sub(r"^(#.*)?\n", "", transcript.read(), flags=re.MULTILINE)
FILES = collections.defaultdict(bytes)
for names, content in re.findall("^= (.*?) :(?: (.*))?$", TRANSCRIPT, re.MULTILINE):
    # {N} repeats the byte before it.
    content = re.sub(r"(\\x..|\\?.){(\d+)}", lambda match: match[1] * int(match[2]), content)
    for path in names.split():
        FILES[path] += content.encode().decode("unicode_escape").encode("latin-1")
GIF, PNG, ICON, TIFF, NOISE, TEXT = map(FILES.__getitem__, (
    "holiday.gif", "logo.png", "favicon.ico", "scan.tif", "noise.bin", "notes.txt"))
CHANGED = 1_709_210_096_789_000_000
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


def send(process, content):
    process.stdin.write(content)
    process.stdin.flush()


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
        for path, content in FILES.items():
            write(path, content)
            os.utime(path, ns=(CHANGED, CHANGED))
        if EMULATOR:
            return
        for path, target in LINKS.items():
            os.symlink(target, path)
        os.mkfifo("pipe")
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind("socket")
        shutil.copy(STUB_MODULE, "stub.so")

    def result_of(self, command):
        if EMULATOR:
            command, _, source = command.partition(" <")
            with open(source or os.devnull, "rb") as stdin:
                return run(*shlex.split(command)[1:], stdin=stdin)
        search = os.path.dirname(PROGRAM) + ":" + os.environ["PATH"]
        return subprocess.run(["bash", "-o", "pipefail", "-c", command], stdin=subprocess.DEVNULL,
                              capture_output=True, timeout=120, check=False,
                              env={**os.environ, "PATH": search, "DOCUMENTS": os.path.dirname(MANUAL),
                                   "TESTS": HERE, "TVN_FILTERS_DIR": self.folder + "/filters"})

    def check(self, command, expected):
        result = self.result_of(command)
        # Wine may complain of a program that ends while its threads run.
        said = "".join("! " + line for line in result.stderr.decode().splitlines(True)
                       if not line.startswith("wine client error:"))
        said += f"? {result.returncode}\n" if result.returncode else ""
        said += result.stdout.decode().replace("\r\n", "\n")
        for found, shown in ((r"\b\d+\.\d+\.\d+\b", "VERSION"), ('("filters":|knows )[0-9]+', r"\1ROWS"),
                             (self.folder, "HERE"), ("\x1b", r"\\x1B"), ("n{259}", "n{259}")):
            said = re.sub(found, shown, said)
        if EMULATOR:
            expected = re.sub(r"^[^~].*\n~", "", expected, flags=re.MULTILINE)
            expected = expected.replace("No such file or directory", "File not found")
        else:
            expected = re.sub(r"^~.*\n", "", expected, flags=re.MULTILINE)
        self.assertEqual(said, expected)

    def test_transcript(self):
        text = re.sub(r"^64 (.*) ! (.*)\n", "$ typescout \\1\n! typescout: \\2\n? 64\n", TRANSCRIPT,
                      flags=re.MULTILINE)
        blocks = re.findall(r"^([$%&]) (.*)\n((?:[^$%&].*\n)*)", text, re.MULTILINE)
        self.assertGreater(len(blocks), 150)
        for mark, command, expected in blocks:
            if mark != ("%" if EMULATOR else "&"):
                with self.subTest(command):
                    self.check(command, expected)


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
        changed = "tree/d0/pipe"
        for options in ["-c", "raster"], ["--header"]:
            full = run("-r", "--jsonl", *options, "tree").stdout
            for old in full, full[:len(full) // 2]:
                write("old.jsonl", old)
                again = run("-r", "--jsonl", *options, "--since", "old.jsonl", "tree").stdout
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
                send(process, entry * count)
                return what_system_tells(process, "VmHWM")  # in KiB

        small = peak(b"." + b"/" * 200 + b"a.gif\n", 4_000)
        self.assertLess(peak(b"." + b"/" * 200 + b"a.gif\n", 40_000), small + 4_000)
        self.assertLess(peak(b"x" * 30_000_000, 1), small + 4_000)
        # An earlier output is not held in memory: of its 30 MB only where each record stands.
        old = FILES["same.jsonl"]
        write("old.jsonl", b"".join(old.replace(b"logo", b"%d" % each) for each in range(200_000)))
        self.assertLess(peak(b"a.gif\n", 4_000, "--since", "old.jsonl"), small + 20_000)

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
            send(process, NOISE * 1000)
            self.assertEqual(process.stdout.readline(), b"0x0000 unknown\n")

    def test_few_open_files_mean_few_threads(self):
        for limit in 8, 80:  # the sanitizers need more than four
            with start("-bl", "-j200", "-f", "-", **allow_open_files(limit)) as process:
                send(process, b"a.gif\n")
                self.assertEqual(process.stdout.readline(), b"gif\n")
                self.assertLess(what_system_tells(process, "Threads"), 20)

    def test_a_slow_list_is_answered_as_it_comes(self):
        for jobs in "1", "4":
            with start("-f", "-", "-j", jobs) as process:
                for count in 1, 40:
                    send(process, b"a.gif\n" * count)
                    for _ in range(count):
                        self.assertEqual(process.stdout.readline(), b"a.gif: 0x0305 GIF picture\n")


class Held(InTemporaryFolder):
    """What is slow, by stub_module.cpp in the place of the library, and what is interrupted."""

    STUB = {"LD_PRELOAD": "./stub.so"}  # which must not hold spaces

    def setUp(self):
        super().setUp()
        shutil.copy(STUB_MODULE, "stub.so")
        for name in "a.gif", "slow.gif", "slowest.gif":
            write(name, GIF)

    def interrupt(self, process, after=0.5, by=signal.SIGINT):
        time.sleep(after)
        self.assertIsNone(process.poll())
        process.send_signal(by)
        time.sleep(0.1)
        process.send_signal(by)  # timeout, too, tells the process and then its group
        self.assertEqual(process.wait(timeout=10), -by)
        self.assertEqual(process.stderr.read(), b"")

    def test_waiting_for_a_list(self):
        with start("--jsonl", "-f", "-") as process:
            send(process, b"a.gif\n")
            self.assertIn(b"a.gif", process.stdout.readline())
            self.interrupt(process, after=0)

    def test_output_that_is_not_read(self):
        with start(*["x" * 200] * 5000, "-q", "--jsonl") as process:
            self.interrupt(process)

    def test_what_is_done_is_written(self):
        names = [f"{number:03}.gif" for number in range(200)]
        for name in names:
            write(name, GIF)
        for jobs, by in ("1", signal.SIGINT), ("3", signal.SIGTERM):
            with open("output", "w+b") as output:
                with start("--json", "-j", jobs, *names, *["slow.gif"] * 500, env=self.STUB,
                           stdout=output) as process:
                    self.interrupt(process, after=1, by=by)
                output.seek(0)
                paths = [record["path"] for record in json.load(output)]
            self.assertEqual(paths[:200], names)
            self.assertLess(len(paths), 700)

    def test_a_slow_file_delays_no_other(self):
        for arguments, expected in (["-bl", "a.gif", "slowest.gif"], b"gif\n"), (["slowest.gif"], b""):
            with start("-j1", *arguments, env=self.STUB) as process:
                self.assertEqual(process.stdout.read(len(expected)), expected)
                self.interrupt(process)
        with start("--summary", "--json", "a.gif", "slowest.gif", env=self.STUB) as process:
            self.interrupt(process)
            self.assertEqual(json.load(process.stdout)["count"], 1)

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


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:], failfast="GTEST_FAIL_FAST" in os.environ)
