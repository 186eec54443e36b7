#!/usr/bin/env python3
"""modules_test.py DCRAW PDFIMPORT: what the functions of the two modules answer.

Either may be -, for a module that was not built.
"""
import ctypes
import os
import resource
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

import pdf_files
import raw_files

DCRAW, PDF_IMPORT = sys.argv[1:3]


class Query(ctypes.Structure):
    """The record of the question, with an empty set of strings."""
    _fields_ = [('path', ctypes.c_wchar_p), ('rest', ctypes.c_uint64 * 8)]


class ModulesTest(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())

    def write(self, name, content):
        path = os.path.join(self.folder, name)
        Path(path).write_bytes(content)
        return path

    def load(self, module, function):
        if module == '-':
            self.skipTest('not built')
        return getattr(ctypes.CDLL(module), function)

    def from_threads(self, ask):
        """`ask` from eight threads at once; gives what each said."""
        answers = []
        threads = [threading.Thread(target=lambda: answers.append(ask())) for _ in range(8)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        return answers

    def test_camera_raw(self):
        check = self.load(DCRAW, 'CheckForRaw')

        def ask(path):
            return check(ctypes.c_wchar_p(path))
        paths = {name: self.write(name, content) for name, content in raw_files.FILES.items()}
        expected = {name: int(not name.endswith(('.tif', '.bin'))) for name in paths}
        self.assertEqual({name: ask(path) for name, path in paths.items()}, expected)
        self.assertEqual(self.from_threads(lambda: {n: ask(p) for n, p in paths.items()}),
                         [expected] * 8)
        # Cut short, and none at all.
        for name, content in raw_files.FILES.items():
            for size in (0, 63, 64, 100, 200):
                ask(self.write('cut', content[:size]))
            self.assertEqual(ask(self.write('cut', content[:63])), 0, name)
        fifo = os.path.join(self.folder, 'fifo')
        os.mkfifo(fifo)
        for path in (None, '', fifo, self.folder, os.path.join(self.folder, 'missing')):
            self.assertEqual(ask(path), 0, path)

    def test_pdf_import(self):
        get = self.load(PDF_IMPORT, 'GetAINativeData')

        def ask(path):
            flags = ctypes.c_uint32(0)
            result = get(ctypes.byref(Query(path)), None, ctypes.byref(flags))
            self.assertIn(result, (0, 1))
            return flags.value if result else None
        paths = {name: self.write(name, content) for name, (content, _) in pdf_files.FILES.items()}
        expected = {name: flags for name, (_, flags) in pdf_files.FILES.items()}
        for name, path in paths.items():
            started = time.process_time()
            self.assertEqual(ask(path), expected[name], name)
            self.assertLess(time.process_time() - started, 1, name)
        self.assertEqual(self.from_threads(lambda: {n: ask(p) for n, p in paths.items()}),
                         [expected] * 8)
        for path in (None, self.folder, os.path.join(self.folder, 'missing')):
            self.assertIsNone(ask(path), path)
        # An answer is kept while the file stays as it is.
        private = pdf_files.FILES['metadata.pdf'][0]
        path = self.write('changes', private.replace(b'AIMetaData', b'AINothing.'))
        time.sleep(3.1)
        self.assertEqual([ask(path), ask(path)], [0, 0])
        self.write('changes', private)
        self.assertEqual(ask(path), 2)
        self.assertEqual(get(None, None, None), 0)


if __name__ == '__main__':
    with tempfile.TemporaryFile() as said:
        shown = os.dup(2)
        os.dup2(said.fileno(), 2)  # the modules and their libraries print nothing
        stream = os.fdopen(shown, 'w')
        runner = unittest.TextTestRunner(stream)
        result = runner.run(unittest.defaultTestLoader.loadTestsFromTestCase(ModulesTest))
        said.seek(0)
        printed = said.read()
        megabytes = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss // 1024
        print(printed, f'at most {megabytes} MB', file=stream)
        sys.exit(not result.wasSuccessful() or printed != b'' or megabytes > 256)
