#!/usr/bin/env python3
"""Completes command lines in bash, zsh and fish, as their users do.

Usage: completion_test.py TYPESCOUT ... [unittest's options]; see program_test.py
"""
import os
import pty
import select
import shutil
import subprocess
import sys
import time
import unittest

from program_test import PROGRAM, InTemporaryFolder, write

# What is typed before the tabulator, and the arguments that come of it. The folder holds
# "two words.gif" and "list".
CASES = [
    ("--recur", ["--recursive"]),
    ("--check web", ["--check", "webp"]),
    ("--check=web", ["--check=webp"]),
    ("-c rast", ["-c", "raster"]),
    ("-c gif,webp,jpeg2", ["-c", "gif,webp,jpeg2000"]),
    ("--candidates=gif,rast", ["--candidates=gif,raster"]),
    ("--only=unreada", ["--only=unreadable"]),
    ("--fail-on=unknown,mis", ["--fail-on=unknown,mismatch"]),
    ("--color=alw", ["--color=always"]),
    ("--color=tw", ["--color=tw"]),
    ("--completion z", ["--completion", "zsh"]),
    ("-j li", ["-j", "li"]),
    ("-r tw", ["-r", "two words.gif"]),
    ("-f li", ["-f", "list"]),
    ("--files-from=li", ["--files-from=list"]),
]

INTERACTIVE = {
    "bash": ["bash", "--norc", "--noprofile", "-i"],
    "zsh": ["zsh", "-f", "-i"],
}


class Completion(InTemporaryFolder):
    def setUp(self):
        super().setUp()
        for name in "two words.gif", "list", "shown":
            write(name, b"")

    def in_terminal(self, shell):
        """Types each case into the shell, in which `typescout` writes down what it is given."""
        process, terminal = pty.fork()
        if process == 0:
            os.execvpe(shell, INTERACTIVE[shell], {"PATH": os.environ["PATH"], "TERM": "dumb",
                                                   "HOME": self.folder, "LC_ALL": "C.UTF-8"})
        self.addCleanup(os.waitpid, process, 0)
        self.addCleanup(os.close, terminal)
        self.type(terminal, f'eval "$({PROGRAM} --completion {shell})"\n')
        self.type(terminal, r"""typescout() { printf '%s\n' "$@" END >> shown; }""" + "\n")
        for typed, expected in CASES:
            with self.subTest(typed):
                before = len(self.shown())
                self.type(terminal, f"typescout {typed}\t")
                self.type(terminal, "\n")
                deadline = time.monotonic() + 30
                while self.shown()[before:][-1:] != ["END"] and time.monotonic() < deadline:
                    time.sleep(0.02)
                self.assertEqual(self.shown()[before:], [*expected, "END"])

    @staticmethod
    def type(terminal, text):
        """Waits until the shell prints nothing more."""
        os.write(terminal, text.encode())
        while select.select([terminal], [], [], 0.2)[0]:
            os.read(terminal, 65536)

    @staticmethod
    def shown():
        with open("shown", encoding="utf-8") as file:
            return file.read().splitlines()

    @unittest.skipUnless(shutil.which("bash"), "needs bash")
    def test_bash(self):
        self.in_terminal("bash")

    @unittest.skipUnless(shutil.which("zsh"), "needs zsh")
    def test_zsh(self):
        self.in_terminal("zsh")

    @unittest.skipUnless(shutil.which("fish"), "needs fish")
    def test_fish(self):
        """It says by itself what it would complete."""
        script = subprocess.run([PROGRAM, "--completion", "fish"], capture_output=True, check=True)
        for typed, expected in CASES:
            with self.subTest(typed):
                command = script.stdout.decode() + f"complete -C 'typescout {typed}'"
                result = subprocess.run(["fish", "--no-config", "-c", command],
                                        capture_output=True, check=True)
                offered = [line.split("\t")[0] for line in result.stdout.decode().splitlines()]
                last = typed.split(" ")[-1]
                self.assertEqual(offered, [expected[-1]] if expected[-1] != last else [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:])
