#!/usr/bin/env python3
"""Draws Dravik's pictures and writes them as files: the logo, a hard disk seen from above, and the donation button.
Both have more pixels than they are shown with at first, for screens that have more.

    draw_pictures.py                  writes logo64x64.pct and paypal.gif beside this script
    draw_pictures.py --check          says whether the two files are what it would write
    draw_pictures.py --png SIZE FILE  writes the logo as a PNG of SIZE by SIZE pixels

Drawings are functions from a point to a colour; `render` asks for many points in each pixel. A colour is
(red, green, blue, alpha), each from 0 to 1 and not premultiplied.
"""

import functools
import math
import pathlib
import struct
import sys
import zlib

FOLDER = pathlib.Path(__file__).resolve().parent


# --- colours and shapes ------------------------------------------------------------------------------------------

@functools.lru_cache(None)
def rgb(text):
    return tuple(int(text[i:i + 2], 16) / 255 for i in (0, 2, 4))


def clamp(value, low=0.0, high=1.0):
    return low if value < low else high if value > high else value


def ramp(low, high, value):
    """0 at `low` and before, 1 at `high` and behind, smooth between them; `low` may be the larger one."""
    t = clamp((value - low) / (high - low))
    return t * t * (3 - 2 * t)


def mix(a, b, t):
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def box_distance(x, y, half_width, half_height, radius):
    """Distance to a rounded box about the origin, negative inside."""
    dx = abs(x) - half_width + radius
    dy = abs(y) - half_height + radius
    return math.hypot(max(dx, 0.0), max(dy, 0.0)) + min(max(dx, dy), 0.0) - radius


def line_distance(x, y, x0, y0, x1, y1):
    """Distance to a line segment, and how far along it the nearest point lies, 0 to 1."""
    dx, dy = x1 - x0, y1 - y0
    along = clamp(((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy))
    return math.hypot(x - x0 - dx * along, y - y0 - dy * along), along


def arc_distance(x, y, cx, cy, radius, start, sweep):
    """Distance to an arc; angles in degrees from the right, downwards positive as on the screen."""
    angle = (math.degrees(math.atan2(y - cy, x - cx)) - start) % 360
    if angle <= sweep:
        return abs(math.hypot(x - cx, y - cy) - radius)
    ends = (math.radians(start), math.radians(start + sweep))
    return min(math.hypot(x - cx - radius * math.cos(a), y - cy - radius * math.sin(a)) for a in ends)


def render(width, height, drawing, samples):
    """Rows of (red, green, blue, alpha) bytes; `drawing` takes a point in pixels."""
    steps = [(i + 0.5) / samples for i in range(samples)]
    rows = []
    for y in range(height):
        row = []
        for x in range(width):
            red = green = blue = alpha = 0.0
            for dy in steps:
                for dx in steps:
                    r, g, b, a = drawing(x + dx, y + dy)
                    red, green, blue, alpha = red + r * a, green + g * a, blue + b * a, alpha + a
            if alpha < 1e-9:
                row.append((0, 0, 0, 0))
            else:
                parts = (red / alpha, green / alpha, blue / alpha, alpha / samples ** 2)
                row.append(tuple(int(clamp(part) * 255 + 0.5) for part in parts))
        rows.append(row)
    return rows


# --- the logo ----------------------------------------------------------------------------------------------------
# A small scene: the disk lies on the ground, its upper face is the plane z = 0, x goes to the right, y to the back.
# A ray through the point of the picture meets the upper face, the wall or the ground.

HALF_WIDTH, HALF_DEPTH, THICKNESS, CORNER = 1.0, 1.06, 0.36, 0.2
ELEVATION = math.radians(51)
DISTANCE = 6.5
ZOOM = 0.2035
CAMERA = (0.0, -DISTANCE * math.cos(ELEVATION) - 0.06, DISTANCE * math.sin(ELEVATION) - 0.21)

PLATTER = (-0.06, 0.12, 0.83)
PIVOT, HEAD = (0.73, -0.79), (0.16, -0.14)


def body_distance(x, y):
    return box_distance(x, y, HALF_WIDTH, HALF_DEPTH, CORNER)


def platter(x, y, radius, angle):
    """Polished metal: two broad bands of light, and a thin pair across them."""
    broad = abs(math.cos(angle - 2.2)) ** 5
    thin = abs(math.cos(angle - 0.75)) ** 14
    colour = mix(rgb("4f6079"), rgb("8fa3bb"), clamp(0.5 + 0.35 * y))
    colour = mix(colour, rgb("f7fbff"), 0.95 * broad)
    colour = mix(colour, rgb("b9dcff"), 0.55 * thin)
    colour = mix(colour, rgb("2b3850"), 0.5 * ramp(0.74, 0.83, radius))
    return mix(colour, rgb("ffffff"), 0.4 * ramp(0.012, 0.0, abs(radius - 0.79)))


def upper_face(x, y):
    colour = mix(rgb("c3cad4"), rgb("eef1f5"), clamp((y + HALF_DEPTH) / (2 * HALF_DEPTH)))
    colour = mix(colour, rgb("ffffff"), 0.5 * ramp(0.5, 0.0, abs(x - y * 0.5 + 0.75)))

    cx, cy, size = PLATTER
    px, py = x - cx, y - cy
    radius, angle = math.hypot(px, py), math.atan2(py, px)
    # The well's rim catches light in front and is dark at the back, so that it looks sunk.
    rim = mix(rgb("ffffff"), rgb("77828f"), ramp(-0.7, 0.7, math.sin(angle) - 0.4 * math.cos(angle)))
    colour = mix(colour, rim, ramp(size + 0.075, size + 0.03, radius))
    colour = mix(colour, rgb("2a3342"), ramp(size + 0.03, size + 0.012, radius))
    if radius < size:
        colour = platter(px, py, radius, angle)
        colour = mix(colour, rgb("1c2536"), 0.5 * ramp(0.34, 0.25, math.hypot(px - 0.03, py + 0.05)))
        hub = mix(rgb("8d99a8"), rgb("fbfcfe"), clamp(0.5 + (py - px) * 1.6))
        colour = mix(colour, hub, ramp(0.265, 0.25, radius))
        colour = mix(colour, rgb("5a6778"), ramp(0.15, 0.135, radius))
        colour = mix(colour, rgb("dfe5ec"), ramp(0.1, 0.085, radius))

    # The arm over the platter, its shadow first.
    shade, along = line_distance(x - 0.045, y + 0.075, *PIVOT, *HEAD)
    colour = mix(colour, rgb("101826"), 0.45 * ramp(0.2, 0.04, shade + 0.06 * along))
    reach, along = line_distance(x, y, *PIVOT, *HEAD)
    width = 0.135 - 0.08 * along
    side = (x - PIVOT[0]) * (HEAD[1] - PIVOT[1]) - (y - PIVOT[1]) * (HEAD[0] - PIVOT[0])
    arm = mix(rgb("8692a2"), rgb("fdfeff"), clamp(0.5 - side * 5))
    colour = mix(colour, rgb("3b485c"), 0.7 * ramp(width + 0.04, width + 0.01, reach))
    colour = mix(colour, arm, ramp(width + 0.012, width - 0.012, reach))
    bearing = math.hypot(x - PIVOT[0], y - PIVOT[1])
    colour = mix(colour, mix(rgb("76828f"), rgb("f4f7fa"), clamp(0.5 + (y - PIVOT[1]) * 2.5)),
                 ramp(0.2, 0.18, bearing))
    colour = mix(colour, rgb("48566a"), ramp(0.095, 0.075, bearing))

    for sx, sy in ((-0.86, 0.91), (0.86, 0.91), (-0.86, -0.91)):
        screw = math.hypot(x - sx, y - sy)
        colour = mix(colour, mix(rgb("5d6875"), rgb("a9b3bf"), clamp(0.5 + (sy - y) * 8)), ramp(0.075, 0.06, screw))

    # A bright bevel, and a thin contour that keeps the far edge apart from a white background.
    edge = -body_distance(x, y)
    colour = mix(colour, rgb("ffffff"), 0.9 * ramp(0.075, 0.04, edge))
    return mix(colour, rgb("7f8b9b"), 0.75 * ramp(0.045, 0.02, edge) * ramp(-1.1, -0.8, y))


def wall(x, y, z):
    height = 1 + z / THICKNESS
    colour = mix(rgb("1d222b"), rgb("565f6e"), ramp(0.0, 1.0, height))
    # The round corners turn away from the light.
    turn = ramp(0.8, 1.0, abs(x))
    colour = mix(colour, rgb("12161d"), 0.5 * turn)
    colour = mix(colour, rgb("9aa5b4"), 0.9 * ramp(0.86, 0.97, height) * (1 - 0.5 * turn))
    if y < 0:
        groove = box_distance(x + 0.34, z + 0.2, 0.4, 0.028, 0.028)
        colour = mix(colour, rgb("0a0d12"), ramp(0.014, -0.008, groove))
        light = math.hypot(x - 0.66, z + 0.195)
        colour = mix(colour, rgb("37d36b"), 0.75 * ramp(0.24, 0.03, light) ** 2)
        colour = mix(colour, rgb("7dfaa0"), ramp(0.075, 0.055, light))
        colour = mix(colour, rgb("f2fff5"), ramp(0.055, 0.0, math.hypot(x - 0.645, z + 0.178)))
    return colour


def logo(u, v):
    """The colour at a point of the picture, both coordinates from 0 to 1 from the top left corner."""
    right, up = (2 * u - 1) * ZOOM, (1 - 2 * v) * ZOOM
    sine, cosine = math.sin(ELEVATION), math.cos(ELEVATION)
    ray = (right, cosine + up * sine, -sine + up * cosine)

    def hit(z):
        t = (z - CAMERA[2]) / ray[2]
        return CAMERA[0] + ray[0] * t, CAMERA[1] + ray[1] * t

    x, y = hit(0.0)
    distance = body_distance(x, y)
    if distance <= 1e-5:
        return (*upper_face(x, y), 1.0)
    # The ray sinks from the upper plane to the ground; walk until it touches the wall.
    ground_x, ground_y = hit(-THICKNESS)
    length = math.hypot(ground_x - x, ground_y - y)
    part = 0.0
    while distance > 1e-5 and part < 1:
        part += distance / length
        distance = body_distance(x + (ground_x - x) * part, y + (ground_y - y) * part)
    if part < 1:
        return (*wall(x + (ground_x - x) * part, y + (ground_y - y) * part, -THICKNESS * part), 1.0)
    close = ramp(0.12, -0.02, body_distance(ground_x, ground_y))
    wide = ramp(0.22, -0.15, body_distance(ground_x, ground_y + 0.1))
    return (0.03, 0.05, 0.1, 0.4 * close + 0.3 * wide)


def logo_rows(size):
    return render(size, size, lambda x, y: logo(x / size, y / size), max(3, min(6, 640 // size)))


# --- the donation button -----------------------------------------------------------------------------------------

BUTTON_WIDTH, BUTTON_HEIGHT = 128, 34
STROKE = 1.22

# A letter's width and its strokes, the baseline at 0 and y downwards: a line is (x0, y0, x1, y1), an arc (cx, cy,
# radius, start, sweep).
LETTERS = [
    (10.2, [(0, -12, 0, 0), (0, -12, 3.6, -12), (0, 0, 3.6, 0), (3.6, -6, 6, -90, 180)]),        # D
    (8.2, [(4.1, -4.1, 4.1, 0, 360)]),                                                           # o
    (7.2, [(0, -8.2, 0, 0), (3.6, -4.6, 3.6, 180, 180), (7.2, -4.6, 7.2, 0)]),                   # n
    (8.2, [(4.1, -4.1, 4.1, 0, 360), (8.2, -8.2, 8.2, 0)]),                                      # a
    (5.0, [(1.8, -11.2, 1.8, -2.4), (4.2, -2.4, 2.4, 90, 90), (4.2, 0, 4.9, 0), (0, -8.2, 4.9, -8.2)]),  # t
    (8.2, [(0.1, -4.3, 8.1, -4.3), (4.1, -4.1, 4.1, 42, 318)]),                                  # e
]
LETTER_GAP = 3.9


def text_distance(x, y):
    best = 99.0
    for width, strokes in LETTERS:
        if -3 < x < width + 3:
            for stroke in strokes:
                is_line = len(stroke) == 4
                best = min(best, line_distance(x, y, *stroke)[0] if is_line else arc_distance(x, y, *stroke))
        x -= width + LETTER_GAP
    return best


def in_heart(x, y):
    """Whether the point is in a heart about two units wide, y downwards."""
    bow = x * x + y * y - 1
    return bow ** 3 + x * x * y ** 3 < 0


def button(x, y):
    middle = BUTTON_HEIGHT / 2
    pill = box_distance(x - BUTTON_WIDTH / 2, y - middle, BUTTON_WIDTH / 2, middle, middle)
    if pill > 0:
        return (*rgb("8f1f3d"), 0.0)
    colour = mix(rgb("ee5f78"), rgb("c22f52"), ramp(-2, BUTTON_HEIGHT + 2, y))
    colour = mix(colour, rgb("ffffff"), 0.3 * ramp(-1.0, -2.0, pill) * ramp(4.5, 1.5, y))
    colour = mix(colour, rgb("9c2142"), ramp(-1.6, -0.8, pill))

    def inked(px, py):
        return text_distance(px - 44, py - 22.9) < STROKE or in_heart((px - 25.6) / 7.4, (py - 16.2) / 7.4)

    if inked(x, y):
        return (1.0, 1.0, 1.0, 1.0)
    return (*(mix(colour, rgb("7c1531"), 0.55) if inked(x, y - 1.0) else colour), 1.0)


def button_rows(scale):
    return render(BUTTON_WIDTH * scale, BUTTON_HEIGHT * scale, lambda x, y: button(x / scale, y / scale), 2)


# --- files -------------------------------------------------------------------------------------------------------

def png(rows):
    def chunk(kind, data):
        return struct.pack(">L", len(data)) + kind + data + struct.pack(">L", zlib.crc32(kind + data))

    lines = b"".join(b"\0" + bytes(part for pixel in row for part in pixel) for row in rows)
    header = struct.pack(">LLBBBBB", len(rows[0]), len(rows), 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines, 9))
            + chunk(b"IEND", b""))


def pack_bits(row):
    packed, literal, i = bytearray(), bytearray(), 0

    def flush():
        if literal:
            packed.append(len(literal) - 1)
            packed.extend(literal)
            literal.clear()

    while i < len(row):
        run = 1
        while run < 128 and i + run < len(row) and row[i + run] == row[i]:
            run += 1
        if run >= 3:
            flush()
            packed.extend((257 - run, row[i]))
        else:
            run = 1
            literal.append(row[i])
            if len(literal) == 128:
                flush()
        i += run
    flush()
    return bytes(packed)


def pict(rows, scale):
    """A PICT file of version 2 with one direct pixel image of 32 bits, packed by component, alpha first, that has so
    many pixels on a point."""
    height, width = len(rows), len(rows[0])
    frame = struct.pack(">4h", 0, 0, height, width)
    resolution = struct.pack(">LL", 72 * scale << 16, 72 * scale << 16)
    out = bytearray(struct.pack(">4h", 0, 0, height // scale, width // scale))
    out += struct.pack(">3H", 0x0011, 0x02FF, 0x0C00)
    out += struct.pack(">hh", -2, 0) + resolution + frame + bytes(4)
    out += struct.pack(">HH", 0x0001, 10) + frame
    out += struct.pack(">HLH", 0x009A, 0xFF, 0x8000 | width * 4) + frame
    out += struct.pack(">HHL", 0, 4, 0) + resolution
    out += struct.pack(">4H3L", 16, 32, 4, 8, 0, 0, 0) + frame + frame + struct.pack(">H", 0)
    for row in rows:
        packed = pack_bits(bytes(row[x][part] for part in (3, 0, 1, 2) for x in range(width)))
        out += struct.pack(">B" if width * 4 <= 250 else ">H", len(packed)) + packed
    out += bytes(len(out) % 2) + struct.pack(">H", 0x00FF)
    return bytes(512) + struct.pack(">H", (len(out) + 2) & 0xFFFF) + bytes(out)


def lzw(indices, bits):
    """GIF's variable-length codes, least significant bit first."""
    clear, end = 1 << bits, (1 << bits) + 1
    out, pending, filled = bytearray(), 0, 0
    table, width, prefix = {}, 0, ()

    def put(code):
        nonlocal pending, filled
        pending |= code << filled
        filled += width
        while filled >= 8:
            out.append(pending & 0xFF)
            pending >>= 8
            filled -= 8

    def restart():
        nonlocal table, width
        table, width = {(i,): i for i in range(clear)}, bits + 1

    restart()
    put(clear)
    following = end + 1
    for index in indices:
        longer = prefix + (index,)
        if longer in table:
            prefix = longer
            continue
        put(table[prefix])
        if following < 4096:
            if following == 1 << width:
                width += 1
            table[longer] = following
            following += 1
        else:
            put(clear)
            restart()
            following = end + 1
        prefix = (index,)
    put(table[prefix])
    put(end)
    if filled:
        out.append(pending)
    return bytes(out)


def gif(rows):
    """A GIF89a; pixels that are less than half covered are transparent, which is colour 0."""
    rows = [[(*(part // 4 * 4 for part in pixel[:3]), pixel[3]) for pixel in row] for row in rows]
    counts = {}
    for row in rows:
        for pixel in row:
            if pixel[3] >= 128:
                counts[pixel[:3]] = counts.get(pixel[:3], 0) + 1
    palette = sorted(counts, key=lambda colour: (-counts[colour], colour))[:255]

    def nearest(colour):
        return min(range(len(palette)), key=lambda i: sum((a - b) ** 2 for a, b in zip(palette[i], colour)))

    places = {colour: nearest(colour) + 1 for colour in counts}
    indices = [places[pixel[:3]] if pixel[3] >= 128 else 0 for row in rows for pixel in row]
    data = lzw(indices, 8)
    size = struct.pack("<HH", len(rows[0]), len(rows))
    out = b"GIF89a" + size + bytes((0xF7, 0, 0))
    out += b"".join(bytes(colour) for colour in [(255, 255, 255), *palette]).ljust(768, b"\0")
    out += b"\x21\xf9\x04\x01\0\0\0\0" + b"\x2c" + bytes(4) + size + b"\0" + b"\x08"
    for i in range(0, len(data), 255):
        block = data[i:i + 255]
        out += bytes((len(block),)) + block
    return out + b"\0;"


def unpacked(data):
    """What counts in a file. The same PNG is packed differently by one zlib and another."""
    return zlib.decompress(data[41:-16]) if data.startswith(b"\x89PNG") else data


def write_or_check(pictures, check):
    """Writes each file of (path, contents), or says which are not as they would be written."""
    status = 0
    for path, data in pictures:
        if not check:
            path.write_bytes(data)
        elif not path.exists() or unpacked(path.read_bytes()) != unpacked(data):
            print(f"{path.name} is not what {pathlib.Path(sys.argv[0]).name} draws", file=sys.stderr)
            status = 1
    return status


def main(arguments):
    if len(arguments) == 3 and arguments[0] == "--png":
        pathlib.Path(arguments[2]).write_bytes(png(logo_rows(int(arguments[1]))))
        return 0
    if arguments not in ([], ["--check"]):
        print(__doc__, file=sys.stderr)
        return 2
    pictures = {"logo64x64.pct": pict(logo_rows(128), 2), "paypal.gif": gif(button_rows(4))}
    return write_or_check([(FOLDER / name, data) for name, data in pictures.items()], bool(arguments))


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
