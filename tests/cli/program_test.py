#!/usr/bin/env python3
"""Runs the program and looks at all that comes out of it.

Usage: program_test.py TYPESCOUT STUB_MODULE MANUAL [unittest's options]
  TYPESCOUT    the program
  STUB_MODULE  stub_module.cpp, to stand in for the library and for an import module
  MANUAL       docs/typescout.1
"""
import base64
import contextlib
import csv
import io
import json
import os
import pty
import random
import re
import shlex
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM, STUB_MODULE, MANUAL = map(os.path.abspath, sys.argv[1:4])
HERE = os.path.dirname(os.path.abspath(__file__))

GIF = b"GIF89a\1\0\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;"
PNG = b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR"
ICON = b"\0\0\1\0\1\0\x10\x10\0\0\1\0\x20\0"
TIFF = b"II*\0\x08\0\0\0\0\0"
NOISE = b"\x07\x99\x13\x37" * 16
TEXT = b"All is well.\r\n"
HTML = b"<html><title>Hello</title>\r\n"
# With a preview, for which the Illustrator filter wants to be asked for by its identifier.
DOS_EPS = (b"\xc5\xd0\xd3\xc6\x20\0\0\0\x40\0\0\0" + b"\1" * 20 +
           b"\n%%Creator: Adobe Illustrator(R) 8.0\n%%BoundingBox: 0 0 1 1\n%%EndSetup\n")

CONTENTS = {
    "holiday.gif": GIF, "HOLIDAY.GIF": GIF, ".gif": GIF, "wrong.jpg": GIF, "[a,b]": GIF, "-r": GIF,
    "--json": GIF, "logo.png": PNG, "notes.txt": TEXT, "notes.c": TEXT, "notes.jpg": TEXT,
    "page.html": HTML, "noise.bin": NOISE, "empty.gif": b"", "favicon.ico": ICON,
    "favicon.tga": ICON, "favicon.dat": ICON, "scan.tif": TIFF, "scan": TIFF, "ai.eps": DOS_EPS,
    "list": b"holiday.gif\n\nnoise.bin", "folder/a.gif": GIF, "folder/c.gif": GIF,
    "folder/b/deep.gif": GIF,
}
LINKS = {"dangling": "missing", "circle": "circle", "link-to-folder": "folder",
         "folder/b/up": "../../folder"}


def run(*arguments, env=None, **options):
    """Its result; `env` is added to the environment."""
    if "input" not in options:
        options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.run([PROGRAM, *arguments], capture_output=True, timeout=120,
                          env={**os.environ, **(env or {})}, check=False, **options)


def start(*arguments, env=None, **options):
    """The same, still under way, with pipes on all sides."""
    pipes = {name: subprocess.PIPE for name in ("stdin", "stdout", "stderr")}
    return subprocess.Popen([PROGRAM, *arguments], env={**os.environ, **(env or {})},
                            **{**pipes, **options})


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
        for path, target in LINKS.items():
            os.symlink(target, path)
        os.mkfifo("pipe")
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind("socket")

    def test_transcript(self):
        with open(os.path.join(HERE, "transcript.txt"), encoding="utf-8") as file:
            text = re.sub(r"^(#.*)?\n", "", file.read(), flags=re.MULTILINE)
        for block in re.split(r"^\$ ", text, flags=re.MULTILINE)[1:]:
            command, expected = block.split("\n", 1)
            with self.subTest(command):
                words = shlex.split(command)[1:]
                redirected = words and words[-1].startswith("<")
                stdin = os.open(words.pop()[1:] if redirected else os.devnull, os.O_RDONLY)
                result = run(*words, stdin=stdin)
                os.close(stdin)
                said = "".join("! " + line for line in result.stderr.decode().splitlines(True))
                said += f"? {result.returncode}\n" if result.returncode else ""
                self.assertEqual(said + result.stdout.decode().replace("\r\n", "\n"), expected)


HOSTILE = [b"new\nline.gif", b"\x1b[31mred.gif", b"tab\tbed.gif", b'quo"ted.gif', b"com,ma.gif",
           b"back\\slash.gif", b"\xff\xfe.gif", b"\xed.gif", b"lone\xed\xa0\x80.gif", b"cr\rlf.gif",
           b"del\x7f.gif", b"c1\xc2\x9b31m.gif", "häßlich-日本-🎈.gif".encode(), b" .gif", b"'.gif",
           b"{path}.gif", b"%s.gif", b"[x].gif", b"\x01one.gif", b"-.gif"]


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
        output = run("--csv", "--", *self.names).stdout
        text = io.StringIO(output.decode("utf-8", "surrogateescape"), newline="")
        rows = list(csv.DictReader(text, strict=True))
        self.assertEqual([os.fsencode(row["path"]) for row in rows], self.names)
        self.assertEqual({(row["id"], row["reason"]) for row in rows}, {("0x0305", "")})

    def test_list_and_template(self):
        output = run("-0", "--format", "{path}|{extension}", "--null", "-f", "-",
                     input=b"\0".join(self.names)).stdout
        self.assertEqual(output.split(b"\0")[:-1], [name + b"|gif" for name in self.names])

    def test_messages(self):
        result = run("--", *[name + b"x" for name in self.names])
        self.assertEqual(result.stderr, b"".join(
            b"typescout: " + name + b"x: No such file or directory\n" for name in self.names))

    def test_terminal_gets_no_control_bytes(self):
        master, terminal = pty.openpty()
        with start("--color=never", "--", *self.names, b"no\x1b[5mne",
                   stdout=terminal, stderr=terminal):
            os.close(terminal)
            shown = b""
            with contextlib.suppress(OSError):  # what Linux says when the other side is closed
                while piece := os.read(master, 65536):
                    shown += piece
        os.close(master)
        lines = shown.replace(b"\r\n", b"\n").decode("utf-8").splitlines()
        self.assertEqual(len(lines), len(self.names) + 1)
        self.assertFalse([c for c in "".join(lines) if not c.isprintable()])
        for expected in ("new\\nline.gif: ", "\\x1B[31mred.gif: ", "\\xED.gif: ", "c1\\xC2\\x9B31m",
                         "back\\\\slash.gif: ", "häßlich-日本-🎈.gif: ", "no\\x1B[5mne: "):
            self.assertIn(expected, "\n".join(lines))


class Tree(InTemporaryFolder):
    """A few thousand files with all that a tree can hold."""

    FILES = 3000
    DEPTH = 80  # of folders with names of 60 characters: beyond 4,096 bytes

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
        self.expected[path] = (labels + [None])[:2]

    def dig(self):
        self.deepest = "tree"
        os.chdir("tree")
        for level in range(self.DEPTH):
            name = f"{level:02}" + "x" * 58
            os.mkdir(name)
            os.chdir(name)
            self.deepest += "/" + name
            # What is reached by its folder still has its extension.
            for leaf in "deep.ico", "n" * 236 + ".ico":
                write(leaf, ICON)
                self.expected[f"{self.deepest}/{leaf}"] = ["tga", "icon"]
        leaf = "n" * 251 + ".ico"  # too long for that
        write(leaf, ICON)
        self.expected[f"{self.deepest}/{leaf}"] = ["unreadable", None]
        os.chdir(self.folder)

    def test_every_number_of_jobs_prints_the_same(self):
        results = [run("-r", "-j", jobs, "--jsonl", "--summary", "tree") for jobs in "128"]
        self.assertEqual(len({(each.stdout, each.stderr) for each in results}), 1)
        self.assertEqual([each.returncode for each in results], [2, 2, 2])
        self.assertIn(f"{len(self.expected)} inputs: ".encode(), results[0].stderr)
        records = map(json.loads, results[0].stdout.splitlines())
        told = [(record["path"].split("/"), record["label"], record.get("also", {}).get("label"))
                for record in records]
        # In the order of the bytes of the names, folder by folder.
        self.assertEqual(told, sorted((path.split("/"), *labels)
                                      for path, labels in self.expected.items()))

    def test_the_longest_paths_can_be_named(self):
        self.assertGreater(len(self.deepest), 4096)
        less_deep = "/".join(self.deepest.split("/")[:9])
        result = run("-bl", f"{less_deep}/deep.ico", f"{self.deepest}/deep.ico",
                     f"./{self.deepest}/", self.deepest)
        self.assertEqual((result.stdout, result.stderr), (b"tga\ntga\nfolder\nfolder\n", b""))
        result = run("-bl", f"{self.deepest}/none.ico", f"{self.deepest}/{'n' * 256}",
                     "x" * 5000)
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
        def peak(count):
            # The address sanitizer holds freed memory back, for a while or until it is this much.
            sanitizer = "quarantine_size_mb=1:thread_local_quarantine_size_kb=64"
            with start("-f", "-", "-j2", env={"ASAN_OPTIONS": sanitizer},
                       stdout=subprocess.DEVNULL) as process:
                # Comes back when all but a pipeful has been taken.
                process.stdin.write((b"." + b"/" * 200 + b"a.gif\n") * count)
                process.stdin.flush()
                with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
                    return int(re.search(r"VmHWM:\s+(\d+)", status.read())[1])

        self.assertLess(peak(40_000), peak(2_000) + 4_000)

    def test_a_slow_list_is_answered_as_it_comes(self):
        for jobs in "1", "4":
            with start("-f", "-", "-j", jobs) as process:
                for count in 1, 40:
                    process.stdin.write(b"a.gif\n" * count)
                    process.stdin.flush()
                    for _ in range(count):
                        self.assertEqual(process.stdout.readline(), b"a.gif: 0x0305 GIF picture\n")

    def test_no_reader_no_noise(self):
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
        for environment, arguments, colored in (
                ({}, ["--color"], True), ({"NO_COLOR": "1"}, ["--color=always"], True),
                ({}, ["--color=auto"], False), ({}, ["--color", "--color=never"], False)):
            output = run(*arguments, "a.gif", env=environment).stdout
            self.assertEqual(b"\x1b[32mGIF picture\x1b[0m" in output, colored, arguments)

    def test_interrupt_while_waiting_for_a_list(self):
        with start("--jsonl", "-f", "-") as process:
            process.stdin.write(b"a.gif\n")
            process.stdin.flush()
            self.assertIn(b"a.gif", process.stdout.readline())
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(timeout=20), -signal.SIGINT)

    def test_interrupt_while_nobody_reads(self):
        with start(*["x" * 200] * 5000, "-q", "--jsonl") as process:
            time.sleep(0.7)
            self.assertIsNone(process.poll())
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(timeout=10), -signal.SIGINT)


class WithStubModule(InTemporaryFolder):
    """With stub_module.cpp in the place of the library, or as an import module."""

    STUB = {"LD_PRELOAD": STUB_MODULE}

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
        slow = ["slow.gif"] * 2 + ["a.gif"] * 18
        write("slow.gif", GIF)
        write("a.gif", GIF)
        shown = run("--progress", *slow, env=self.STUB).stderr
        self.assertRegex(shown, rb"\r\x1b\[K\d+ of 20 inputs, \d+/s, \d+ s left")
        self.assertTrue(shown.endswith(b"\r\x1b[K"), shown)
        self.assertEqual(run(*slow, env=self.STUB).stderr, b"")

    def test_interrupt(self):
        names = [f"{number:03}.gif" for number in range(200)]
        for name in names + ["slow.gif"]:
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

    def test_import_module_is_loaded_once(self):
        os.mkdir("filters")
        shutil.copy(STUB_MODULE, "filters/TvnPDFImport.so")
        names = [f"{number}.pdf" for number in range(40)]
        for name in names:
            write(name, b"%PDF-1.4\n")
        for jobs in "1", "3":
            result = run("-bl", "-j", jobs, *names, env={"TVN_FILTERS_DIR": "filters",
                                                         "COUNT_FILE": f"count-{jobs}"})
            self.assertEqual(result.stdout, b"illustrator-pdf\n" * 40)
            with open(f"count-{jobs}", "rb") as count:
                self.assertEqual(count.read(), b"loaded\n")


class AboutItself(unittest.TestCase):
    def test_manual_is_current(self):
        with open(MANUAL, "rb") as manual:
            self.assertEqual(run("--man").stdout, manual.read(),
                             "take it anew: typescout --man >docs/typescout.1")

    def test_help_and_completions_know_the_same_options(self):
        text = run("--help").stdout.decode()
        options = {word.split("=")[0].split("[")[0].rstrip(",.;")
                   for line in text.splitlines() if line.startswith("  ")
                   for word in line[:28].split() if word.startswith("--")}
        self.assertGreater(len(options), 30)
        for shell, form in ("bash", "{}"), ("zsh", "--{}"), ("fish", " -l {}"):
            script = run("--completion", shell).stdout.decode()
            for option in options:
                self.assertIn(form.format(option.removeprefix("--")), script)
            if shutil.which(shell):
                check = subprocess.run([shell, "-n"], input=script.encode(), capture_output=True,
                                       check=False)
                self.assertEqual((check.returncode, check.stderr), (0, b""), shell)
        for option in options:
            self.assertIn(option.replace("-", "\\-"), run("--man").stdout.decode())

    def test_bash_completes(self):
        script = run("--completion", "bash").stdout.decode()
        for words, expected in ((["--js"], "--json --jsonl"), (["--check", "webp"], "webp"),
                                (["-c", "rast"], "raster"), (["--completion", "z"], "zsh")):
            command = (script + f"COMP_WORDS=(typescout {' '.join(words)}); "
                       f"COMP_CWORD={len(words)}; _typescout; echo \"${{COMPREPLY[@]}}\"")
            result = subprocess.run(["bash", "-c", command], capture_output=True, check=True)
            self.assertEqual(result.stdout.decode().strip(), expected)

    def test_list_of_filters(self):
        rows = json.loads(run("--list-filters", "--json").stdout)
        self.assertEqual([row["row"] for row in rows], list(range(len(rows))))
        webp = {"id": "0x0339", "label": "webp", "name": "WebP picture", "family": "raster",
                "mime": "image/webp", "extensions": ["webp"], "never_reported": False}
        self.assertEqual(rows[41], {"row": 41, **webp, "hidden_by": []})
        self.assertEqual(rows[47], {"row": 47, **webp, "hidden_by": ["0x0339"]})
        self.assertEqual(rows[32]["hidden_by"], ["0x0303", "0x0311"])
        self.assertTrue(rows[0]["never_reported"])
        lines = run("--list-filters").stdout.decode().splitlines()
        self.assertEqual([line.split()[:3] for line in lines[1:]],
                         [[str(row["row"]), row["id"], row["label"]] for row in rows])

    def test_version(self):
        self.assertRegex(run("--version").stdout, rb"^typescout \d+\.\d+\.\d+\n$")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
