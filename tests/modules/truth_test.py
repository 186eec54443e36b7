#!/usr/bin/env python3
"""truth_test.py WITHOUT WITH FOLDER: what the library answers about real files.

WITHOUT and WITH are the library where it has no modules and where it has both.
"""
import ctypes
import sys
from pathlib import Path

RAW = 0x0337
PDF = 0x0535
ILLUSTRATOR = 0x0503
HINTS = (0, ILLUSTRATOR, 0x0519, PDF)

# The raw pictures that a scan without the modules does not know. A TIFF file is 0x0306's either way.
NOT_TIFF = ('canon.cr3', 'canon.crw', 'fujifilm.raf', 'minolta.mrw', 'olympus.orf', 'panasonic.rw2')
# For each raw picture: the scan without and with the modules.
OF_CAMERAS = {**dict.fromkeys(('by-libtiff.dng', 'nikon.nef', 'x-trans.dng'), (0x0306, 0x0306)),
              **dict.fromkeys(NOT_TIFF, (0, RAW))}
# What is no raw picture, though it begins like one or has the length of one.
OTHERS = {'grey.tif': 0x0306, 'grey-by-canon.tif': 0x0306, 'length-of-a-raw.tif': 0x0306,
          'length-of-a-raw.bin': 0, 'pattern-without-size.tif': 0x0306}

# PDF documents: without the modules each is 0x0535, whatever the caller requests, and never 0x0503.
# With them: what the scan answers, and for each hint whether 0x0535 and 0x0503 accept it.
PLAIN = (0, (0, 0, 0, 1), (0, 0, 0, 0))
WITH_DATA = (PDF, (1, 0, 0, 1), (0, 0, 0, 0))
# The data can be read, so it is an Illustrator document when 0x0503 is requested.
READABLE = (PDF, (1, 0, 0, 1), (0, 1, 1, 0))
NO_ANSWER = (PDF, (1, 1, 1, 1), (0, 0, 0, 0))
DOCUMENTS = {
    **dict.fromkeys(('by-ghostscript.pdf', 'by-ghostscript-packed.pdf', 'by-ghostscript-linear.pdf',
                     'by-ghostscript-encrypted.pdf', 'by-ps2pdf.pdf', 'old.pdf'), PLAIN),
    **dict.fromkeys(('illustrator.pdf', 'illustrator-packed.pdf', 'illustrator-linear.pdf',
                     'illustrator-encrypted.pdf'), WITH_DATA),
    'illustrator-readable.pdf': READABLE,
    **dict.fromkeys(('illustrator-with-password.pdf', 'illustrator-cut.pdf'), NO_ANSWER),
}


class Library:
    def __init__(self, path):
        library = ctypes.CDLL(path)
        self._scan = library._Z13TypeScoutFilePKw
        self._check = library._Z14CheckOneFilterPKwii

    def scan(self, path):
        return self._scan(ctypes.c_wchar_p(str(path)))

    def check(self, path, filter_id, hint=0):
        return self._check(ctypes.c_wchar_p(str(path)), filter_id, hint)

    def by_hint(self, path, filter_id):
        return tuple(self.check(path, filter_id, hint) for hint in HINTS)


def answers(without, having, folder):
    """Pairs of what the table says and what the library says."""
    for name, scans in OF_CAMERAS.items():
        path = folder / name
        yield name, (scans, 0, 1), ((without.scan(path), having.scan(path)),
                                    without.check(path, RAW), having.check(path, RAW))
    for name, scan in OTHERS.items():
        path = folder / name
        yield name, (scan, scan, 0), (without.scan(path), having.scan(path),
                                      having.check(path, RAW))
    for name, (scan, pdf, illustrator) in DOCUMENTS.items():
        path = folder / name
        yield name, (PDF, (1,) * 4, (0,) * 4), (without.scan(path), without.by_hint(path, PDF),
                                                without.by_hint(path, ILLUSTRATOR))
        yield name, (scan, pdf, illustrator), (having.scan(path), having.by_hint(path, PDF),
                                               having.by_hint(path, ILLUSTRATOR))


def main():
    without, having, folder = Library(sys.argv[1]), Library(sys.argv[2]), Path(sys.argv[3])
    known = {*OF_CAMERAS, *OTHERS, *DOCUMENTS}
    wrong = [f'{path.name}: not in the table' for path in folder.iterdir() if path.name not in known]
    for name, table, said in answers(without, having, folder):
        if said != table:
            wrong.append(f'{name}: the table says {table}, the library {said}')
    print('\n'.join(wrong) or f'{len(known)} raw pictures and PDF documents meet the table')
    return 1 if wrong else 0


if __name__ == '__main__':
    sys.exit(main())
