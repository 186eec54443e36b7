#!/usr/bin/env python3
"""pdf_files.py FOLDER writes PDF documents with and without Illustrator's data, and hostile ones."""
import struct
import sys
import zlib
from pathlib import Path

PAGES = (2, b'<</Type/Pages/Kids[3 0 R]/Count 1>>')
CATALOG = b'<</Type/Catalog/Pages 2 0 R>>'
EMPTY_PAGE = (3, b'<</Type/Page/Parent 2 0 R>>')


def stream(entries, data):
    return b'<<' + entries + b'/Length %d>>stream\n' % len(data) + data + b'\nendstream'


def document(*objects, unpacked=(), packed=()):
    """A document of (number, text) objects whose catalogue is object 1.

    The numbers in `packed` are in the object streams whose numbers go with them; then the table of
    cross-references is a stream, else it is plain text.
    """
    out = bytearray(b'%PDF-1.7\n')
    at = {}
    for number, text in objects:
        at[number] = len(out)
        out += b'%d 0 obj\n' % number + text + b'\nendobj\n'
    table = len(out)
    packed = dict(packed)
    size = max(list(at) + list(packed)) + 1
    if packed:
        at[size] = table
        rows = b''.join(
            struct.pack('>BIH', 2, packed[n], 0) if n in packed
            else struct.pack('>BIH', n in at, at.get(n, 0), 0) for n in range(size + 1))
        out += b'%d 0 obj\n' % size + stream(
            b'/Type/XRef/W[1 4 2]/Size %d/Root 1 0 R/Filter/FlateDecode' % (size + 1),
            zlib.compress(rows)) + b'\nendobj\n'
    else:
        out += b'xref\n0 %d\n' % size + b''.join(
            b'%010d 00000 %c \n' % (at.get(n, 0), b'n' if n in at else b'f') for n in range(size))
        out += b'trailer<</Size %d/Root 1 0 R>>\n' % size
    return bytes(out + b'startxref\n%d\n%%%%EOF\n' % table)


def with_private(name, page=EMPTY_PAGE[1], keys=(b'PieceInfo', b'Illustrator', b'Private')):
    value = b'<</%s(x)>>' % name
    for key in reversed(keys):
        value = b'<</%s %s>>' % (key, value)
    return document((1, CATALOG), PAGES, (3, page[:-2] + value[2:]))


def with_object_stream(catalog, entries=b'/Filter/FlateDecode', pack=zlib.compress):
    """The catalogue lies in object stream 5."""
    return document(PAGES, EMPTY_PAGE, packed={1: 5}, *[
        (5, stream(b'/Type/ObjStm/N 1/First 4' + entries, pack(b'1 0 ' + catalog)))])


def with_many_zeros(count):
    return CATALOG[:-2] + b'/X[' + b'0 ' * count + b']>>'


def deep(levels):
    """The length of each stream is the length of the next."""
    return document((1, CATALOG), PAGES, (3, b'<</PieceInfo 10 0 R>>'), *[
        (n, b'<</Filter/FlateDecode/Length %d 0 R>>stream\n%s\nendstream' % (n + 1, zlib.compress(b'')))
        for n in range(10, 10 + levels)])


def of_pages(count, last):
    kids = b' '.join(b'%d 0 R' % (10 + i) for i in range(count))
    pages = [(10 + i, EMPTY_PAGE[1]) for i in range(count - 1)]
    return document((1, CATALOG), (2, b'<</Kids[%s]>>' % kids), *pages, (9 + count, last))


PLAIN = document((1, CATALOG), PAGES, EMPTY_PAGE)
PACKED_ILLUSTRATOR = CATALOG[:-2] + b'/PieceInfo<</Illustrator<</Private<</AIMetaData 0>>>>>>>>'
ILLUSTRATOR_PAGE = PACKED_ILLUSTRATOR.replace(b'Catalog/Pages', b'Page/Parent')

# What GetAINativeData makes of each: the answer flags, or None for no answer.
FILES = {
    'plain.pdf': (PLAIN, 0),
    'metadata.pdf': (with_private(b'AIMetaData'), 2),
    'private-data.pdf': (with_private(b'AIPrivateData12'), 2),
    'other-private.pdf': (with_private(b'AISomething'), 0),
    'other-application.pdf': (with_private(b'AIMetaData', keys=(b'PieceInfo', b'Other', b'Private')), 0),
    'last-page-looked-at.pdf': (of_pages(4, ILLUSTRATOR_PAGE), 2),
    'next-page.pdf': (of_pages(5, ILLUSTRATOR_PAGE), 0),
    'packed-plain.pdf': (with_object_stream(CATALOG), 0),
    'packed.pdf': (with_object_stream(PACKED_ILLUSTRATOR), 2),
    'packed-in-a-list.pdf': (with_object_stream(PACKED_ILLUSTRATOR, b'/Filter[/FlateDecode]'), 2),
    # Damage.
    'no-table.pdf': (PLAIN.replace(b'startxref', b'startxxxx'), None),
    'no-catalogue.pdf': (PLAIN.replace(b'/Root', b'/Soot'), None),
    'no-pages.pdf': (document((1, CATALOG)), None),
    'damaged-page.pdf': (PLAIN.replace(b'3 0 obj', b'3 0 xxx'), None),
    'damaged-data.pdf': (document((1, CATALOG), PAGES, (3, b'<</PieceInfo 7 0 R>>'), (7, b'<<>>'))
                         .replace(b'7 0 obj', b'7 0 xxx'), None),
    'header-only.pdf': (b'%PDF-1.7\n', None),
    'no-pdf.pdf': (bytes(100), None),
    # What would cost too much.
    'packed-twice.pdf': (with_object_stream(CATALOG, b'/Filter[/FlateDecode/FlateDecode]',
                                            lambda data: zlib.compress(zlib.compress(data))), None),
    'packed-twice-escaped.pdf': (with_object_stream(
        CATALOG, b'/F#69lter[/FlateDecode/FlateDecode]',
        lambda data: zlib.compress(zlib.compress(data))), None),
    'filter-elsewhere.pdf': (with_object_stream(CATALOG, b'/Filter 6 0 R'), None),
    'unpacks-to-much.pdf': (with_object_stream(with_many_zeros(300_000)), None),
    'not-packed-much.pdf': (with_object_stream(with_many_zeros(300_000), b'', bytes), None),
    'wide-rows.pdf': (with_object_stream(CATALOG, b'/Filter/FlateDecode/DecodeParms<<'
                                         b'/Predictor 12/Columns 2000000000>>'), None),
    'deep.pdf': (deep(20_000), None),
    'nested.pdf': (document((1, CATALOG[:-2] + b'/X' + b'[' * 99_999 + b']' * 99_999 + b'>>'), PAGES,
                            EMPTY_PAGE), None),
    'page-of-itself.pdf': (document((1, CATALOG), (2, b'<</Kids[2 0 R]>>')), 0),
}

if __name__ == '__main__':
    Path(sys.argv[1]).mkdir(parents=True, exist_ok=True)
    for name, (content, _) in FILES.items():
        Path(sys.argv[1], name).write_bytes(content)
