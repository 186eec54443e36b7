#!/usr/bin/env python3
"""Runs the program for Windows under Wine: the transcript, and what only Windows has.

Usage: windows_program_test.py TYPESCOUT - - MANUAL [unittest's options]
with EMULATOR in the environment, as tests/cli/program_test.py has it.
"""
import json
import os
import pty
import signal
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "cli"))
import program_test  # noqa: E402
from program_test import EMULATOR, GIF, ICON, PROGRAM, read_terminal, run, start, write  # noqa: E402

WINDOWS_PROGRAM = "Z:" + PROGRAM.replace("/", "\\")


def setUpModule():
    """Starts a program that runs as long as the tests.

    Otherwise Wine's services start and end with each program, which takes a second, and keep its
    pipes open meanwhile.
    """
    running = start("-f", "-")
    unittest.addModuleCleanup(running.communicate)
    running.stdin.write(b"nothing\n")
    running.stdin.flush()
    running.stdout.readline()


def on_console(*command):
    """What a command shows on a console, and its status."""
    master, terminal = pty.openpty()
    with subprocess.Popen([*EMULATOR, *command], stdin=terminal, stdout=terminal,
                          stderr=terminal) as process:
        os.close(terminal)
        shown = read_terminal(master).decode()
    return shown, process.returncode


class TranscriptOnWindows(program_test.Transcript):
    """In this module, so that what setUpModule() starts is running."""


class OnWindows(program_test.InTemporaryFolder):
    def setUp(self):
        super().setUp()
        write("a.gif", GIF)

    def test_a_console_shows_paths_as_they_are(self):
        here = "Z:" + self.folder.replace("/", "\\")
        shown, status = on_console(PROGRAM, "-l", here + "\\a.gif", "no\\ne")
        self.assertIn(f"{here}\\a.gif: gif\r", shown)
        self.assertIn("typescout: no\\ne: ", shown)
        self.assertEqual(status, 2)

    def test_lists_of_the_command_interpreter(self):
        write("häß.gif", GIF)
        list_files = f"dir /b *.gif | {WINDOWS_PROGRAM} -l -f -"
        for encoding in 850, 1252, 65001:
            shown, _ = on_console("cmd", "/c", f"chcp {encoding} & {list_files}")
            self.assertIn("häß.gif: gif\r", shown, encoding)

    def test_no_reader_no_noise(self):
        with start("-f", "-") as process:
            process.stdout.close()
            _, messages = process.communicate(b"a.gif\n")
        self.assertEqual((messages, process.returncode), (b"", 141))

    def test_both_files_tell_their_version_and_how_they_run(self):
        version = run("--version").stdout.decode().split()[1]
        for path in PROGRAM, os.path.join(os.path.dirname(PROGRAM), "typescout.dll"):
            with open(path, "rb") as file:
                content = file.read()
            for part in (f"FileVersion\0\0{version}\0".encode("utf-16-le"),
                         b">UTF-8</activeCodePage>", b">true</longPathAware>"):
                self.assertTrue(part in content, part)

    def test_interrupt(self):
        for options, check in (
                (["--json"], lambda said: self.assertEqual(json.loads(said)[0]["label"], "gif")),
                (["--summary"], lambda said: self.assertIn(b" all; 0 unreadable", said))):
            with start(*options, "-f", "-") as process:
                process.stdin.write(b"a.gif\n")
                process.stdin.flush()
                # A summary is printed at the end only.
                if "--json" in options:
                    process.stdout.peek(1)
                else:
                    time.sleep(1)
                process.send_signal(signal.SIGINT)  # which Wine turns into Ctrl-C
                self.assertEqual(process.wait(timeout=20), 130)
                check(process.stdout.read())

    def test_long_paths(self):
        names = [f"{level:03}" + "x" * 57 for level in range(9)]
        write("/".join([*names, "deep.ico"]), ICON)
        deepest = "\\".join(names)
        full = "\\\\?\\Z:" + self.folder.replace("/", "\\") + "\\"
        for named in deepest + "\\deep.ico", full + deepest + "\\deep.ico", full + "a.gif":
            label = "gif" if named.endswith("gif") else "tga"
            self.assertEqual(run("-bl", named).stdout.decode(), label + "\n", named)
        result = run("-r", "-l", names[0])
        self.assertEqual(result.stdout.decode(), deepest + "\\deep.ico: tga\n")
        self.assertEqual(result.stderr, b"")
        # A short path in a folder with a long one.
        result = run("-r", "-l", names[3], cwd="/".join(names[:3]))
        self.assertEqual(result.stdout.decode(), "\\".join(names[3:]) + "\\deep.ico: tga\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:])
