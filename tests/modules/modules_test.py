#!/usr/bin/env python3
"""modules_test.py DCRAW PDFIMPORT: what the functions of the two modules answer.

Either may be -, for a module that was not built.
"""
import ctypes
import os
import resource
import sys
import tempfile
import time
import unittest
from concurrent.futures import ThreadPoolExecutor
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

    def ask_all(self, ask, files):
        """Asks about each file, then again from eight threads at once."""
        paths = {name: self.write(name, content) for name, (content, _) in files.items()}
        expected = {name: answer for name, (_, answer) in files.items()}
        for name, path in paths.items():
            started = time.process_time()
            self.assertEqual(ask(path), expected[name], name)
            self.assertLess(time.process_time() - started, 1, name)
        with ThreadPoolExecutor(8) as pool:
            asked = pool.map(lambda _: {name: ask(path) for name, path in paths.items()}, range(8))
            self.assertEqual(list(asked), [expected] * 8)

    def test_camera_raw(self):
        check = self.load(DCRAW, 'CheckForRaw')

        def ask(path):
            return check(ctypes.c_wchar_p(path))
        self.ask_all(ask, raw_files.FILES)
        # Cut short, and none at all.
        for name, (content, _) in raw_files.FILES.items():
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
        self.ask_all(ask, pdf_files.FILES)
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
