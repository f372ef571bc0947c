#!/usr/bin/env python3
"""Puts PNG pictures of one icon into the file that the Mac takes an application's icon from.

    pack_icns.py ICNS PNG...

Sizes the format has no place for are left out.
"""

import pathlib
import struct
import sys

# For a PNG's width the kinds of picture it serves: at that size, and at half of it on a screen of double density.
KINDS = {
    16: (b"icp4",),
    32: (b"icp5", b"ic11"),
    64: (b"ic12",),
    128: (b"ic07",),
    256: (b"ic08", b"ic13"),
    512: (b"ic09", b"ic14"),
    1024: (b"ic10",),
}


def width(png):
    if png[:8] != b"\x89PNG\r\n\x1a\n" or png[12:16] != b"IHDR":
        raise ValueError("not a PNG file")
    return struct.unpack(">L", png[16:20])[0]


def block(kind, data):
    """A kind of four letters, the length of the whole block, and what is in it; the file itself is one."""
    return kind + struct.pack(">L", 8 + len(data)) + data


def icns(pngs):
    pictures = [(kind, png) for png in pngs for kind in KINDS.get(width(png), ())]
    return block(b"icns", b"".join(block(kind, png) for kind, png in pictures))


def main(arguments):
    if len(arguments) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    out, *pngs = map(pathlib.Path, arguments)
    out.write_bytes(icns([png.read_bytes() for png in pngs]))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
