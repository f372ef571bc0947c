#!/usr/bin/env python3
"""Writes the program's icons: the logo, drawn anew in each size by resources/draw_pictures.py.

    draw_icons.py                    writes icons/dravik-SIZE.png beside this script
    draw_icons.py --check [LARGEST]  says which of them, up to that SIZE, are not what it would write

They are kept with the source, so that a build needs no Python and no minute to draw them.
"""

import pathlib
import sys

FOLDER = pathlib.Path(__file__).resolve().parent
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)

sys.path.insert(0, str(FOLDER.parent / "resources"))
sys.dont_write_bytecode = True
import draw_pictures  # noqa: E402  (found only now)


def main(arguments):
    if arguments[:1] not in ([], ["--check"]) or not all(word.isdecimal() for word in arguments[1:]):
        print(__doc__, file=sys.stderr)
        return 2
    largest = int(arguments[1]) if arguments[1:] else SIZES[-1]
    return draw_pictures.write_or_check(
        ((FOLDER / "icons" / f"dravik-{size}.png", draw_pictures.png(draw_pictures.logo_rows(size)))
         for size in SIZES if size <= largest), bool(arguments)
    )


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
