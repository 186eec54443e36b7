#!/usr/bin/env python3
"""raw_files.py FOLDER writes raw pictures of 64 x 64 pixels, as small as the makers' formats allow.

Written after the public descriptions of the formats, without pixels. Beside them, files that are no
raw pictures but begin like one or have the length of one.
"""
import struct
import sys
from pathlib import Path

SIZE = 64
PIXELS = bytes(2 * SIZE * SIZE)


def tiff(tags, magic=b'II*\0', pixels=PIXELS):
    """A little-endian TIFF: the pixels, at 8, one directory and its longer values."""
    directory, values = b'', b''
    directory_at = 8 + len(pixels)
    values_at = directory_at + 2 + 12 * len(tags) + 4
    for tag, kind, value in sorted(tags):
        count = 1
        if isinstance(value, bytes):
            count = len(value) // {1: 1, 2: 1, 3: 2, 4: 4}[kind]
            values += value
            short = int.from_bytes(value[:4], 'little')
            value = short if len(value) <= 4 else values_at + len(values) - len(value)
        directory += struct.pack('<HHII', tag, kind, count, value)
    return (magic + struct.pack('<I', directory_at) + pixels + struct.pack('<H', len(tags)) + directory +
            bytes(4) + values)


def picture(make, *more):
    """The tags of an uncompressed picture of one sample of 16 bits a pixel."""
    return [(256, 4, SIZE), (257, 4, SIZE), (258, 3, 16), (259, 3, 1), (262, 3, 1),
            (271, 2, make + b'\0'), (272, 2, b'One\0'), (273, 4, 8), (277, 3, 1),
            (278, 4, SIZE), (279, 4, len(PIXELS))] + list(more)


CFA = [(33421, 3, struct.pack('<HH', 2, 2)), (33422, 1, bytes([0, 1, 1, 2]))]  # TIFF/EP

PATTERN_OF_36 = (33422, 1, bytes([0, 1, 1, 2, 1, 2] * 6))


def ciff():
    """Canon CRW: a heap of records with its directory at the end, in it another heap."""
    def heap(records):
        data, directory = b'', b''
        for kind, value in records:
            directory += struct.pack('<HII', kind, len(value), len(data))
            data += value
        return data + struct.pack('<H', len(records)) + directory + struct.pack('<I', len(data))
    make = b'Canon\0Canon EOS D30\0'.ljust(64, b'\0')
    sensor = struct.pack('<17H', 34, SIZE, SIZE, 1, 1, 0, 0, SIZE - 1, SIZE - 1, *[0] * 8)
    inner = heap([(0x080a, make), (0x1031, sensor)])
    return b'II\x1a\0\0\0HEAPCCDR'.ljust(26, b'\0') + heap([(0x2005, PIXELS), (0x300a, inner)])


def raf():
    """Fujifilm RAF: its header points to a JPEG preview, a table and the pixels."""
    exif = b'Exif\0\0' + tiff([(271, 2, b'FUJIFILM\0'), (272, 2, b'FinePix One\0')], pixels=b'')
    jpeg = b'\xff\xd8\xff\xe1' + struct.pack('>H', 2 + len(exif)) + exif + b'\xff\xd9'
    table = struct.pack('>I2H2H2H2H', 2, 0x100, 4, SIZE, SIZE, 0x121, 4, SIZE, SIZE)
    at = 160
    where = [at, len(jpeg), at + len(jpeg), len(table), at + len(jpeg) + len(table), len(PIXELS)]
    head = b'FUJIFILMCCD-RAW 0201FF000000' + b'FinePix One'.ljust(32, b'\0') + b'0100' + bytes(20)
    return (head + struct.pack('>6I', *where)).ljust(at, b'\0') + jpeg + table + PIXELS


def mrw():
    """Minolta MRW: blocks of the picture's measures and of a TIFF directory, then the pixels."""
    measures = b'21860002' + struct.pack('>4HBBBBHH', SIZE, SIZE, SIZE, SIZE, 16, 16, 0x59, 0, 0, 1)
    names = tiff([(271, 2, b'Minolta Co., Ltd.\0'), (272, 2, b'DiMAGE One\0')], pixels=b'')
    blocks = b''.join(name + struct.pack('>I', len(block)) + block
                      for name, block in [(b'\0PRD', measures), (b'\0TTW', names)])
    return b'\0MRM' + struct.pack('>I', len(blocks)) + blocks + PIXELS


def cr3():
    """Canon CR3: an ISO base media file with one track of Canon's raw coding."""
    def box(name, *parts):
        content = b''.join(parts)
        return struct.pack('>I', 8 + len(content)) + name + content
    coding = struct.pack('>IHHIIIIBBBBI', 0xffffffff, 0x100, 0, SIZE, SIZE, SIZE, SIZE,
                         14, 0x40, 0, 0, 8).ljust(52, b'\0')
    entry = box(b'CRAW', bytes(24), struct.pack('>HH', SIZE, SIZE), bytes(54), box(b'CMP1', coding))
    handler = box(b'hdlr', bytes(8), b'vide', bytes(12))

    def file(pixels_at):
        table = box(b'stbl', box(b'stsd', bytes(4), struct.pack('>I', 1), entry),
                    box(b'stsz', struct.pack('>III', 0, len(PIXELS), 1)),
                    box(b'co64', struct.pack('>IIQ', 0, 1, pixels_at)))
        moov = box(b'moov', box(b'trak', box(b'mdia', handler, box(b'minf', table))))
        return box(b'ftyp', b'crx ', struct.pack('>I', 1), b'crx isom') + moov
    return file(len(file(0)) + 8) + box(b'mdat', PIXELS)


# What CheckForRaw makes of each.
FILES = {
    'canon.crw': (ciff(), 1),
    'canon.cr3': (cr3(), 1),
    'fujifilm.raf': (raf(), 1),
    'minolta.mrw': (mrw(), 1),
    'nikon.nef': (tiff(picture(b'NIKON CORPORATION', *CFA)), 1),
    'x-trans.dng': (tiff(picture(b'FUJIFILM', (33421, 3, struct.pack('<HH', 6, 6)), PATTERN_OF_36)), 1),
    'olympus.orf': (tiff(picture(b'OLYMPUS CORPORATION'), magic=b'IIRO'), 1),
    'panasonic.rw2': (tiff([(1, 1, b'0300'), (2, 3, SIZE), (3, 3, SIZE), (5, 3, 0), (6, 3, SIZE), (7, 3, SIZE),
                            (9, 3, 1), (271, 2, b'Panasonic\0'), (272, 2, b'DMC-L1\0'), (280, 4, 8)],
                           magic=b'IIU\0'), 1),
    # A scanner's picture, signed as a camera's: no colour filter array.
    'grey-by-canon.tif': (tiff(picture(b'Canon')), 0),
    # LibRaw 0.20.2 crashes.
    'pattern-without-size.tif': (tiff(picture(b'FUJIFILM', PATTERN_OF_36)), 0),
    # As long as the headerless picture of a camera (AVT F-080C).
    'length-of-a-raw.tif': (tiff([tag for tag in picture(b'') if tag[0] != 271]).ljust(786432, b'\0'), 0),
    'length-of-a-raw.bin': (bytes(786432), 0),
}

if __name__ == '__main__':
    Path(sys.argv[1]).mkdir(parents=True, exist_ok=True)
    for name, (content, _) in FILES.items():
        Path(sys.argv[1], name).write_bytes(content)
