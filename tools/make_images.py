#!/usr/bin/env python3
"""Draws the images the library ships under resources/Images/.

Regenerate after changing a shape or a colour (the PNGs are committed; nothing runs this at build
time):

    python3 tools/make_images.py               # writes into resources/Images/
    python3 tools/make_images.py IMAGES_DIR    # writes the same tree somewhere else

Only the Python standard library is used (zlib and struct write the PNGs), so the output is the
same on every machine. Shapes are given in a unit square and filled with 4x4 supersampling for
smooth edges. Every image exists at its size and at twice that for screens with a device pixel
ratio of 2 ("PlayNormal.png", "PlayNormal@2x.png").

Buttons/: the transport buttons, 32x32. Every glyph is drawn in the states the buttons show:
Normal, Tracking (pressed) and Disabled for Kiv_ImmediateActionButton, and additionally Cueing
and Playing for the play glyph that Kiv_PlayButton shows. The pictures are plain: a flat rounded
rectangle in the colour of the state with a white glyph on it.

ResearchPane/: the sort arrows Kiv_Header draws at the right end of the sorted column's label,
9x9: sortIconUp.png (ascending) and sortIconDown.png (descending), dark grey triangles on a
transparent background.
"""

import os
import struct
import sys
import zlib

SIZES = {"": 32, "@2x": 64}
SUPERSAMPLE = 4

# State: (background RGBA, glyph RGBA).
STATES = {
    "Normal": ((62, 72, 90, 255), (255, 255, 255, 255)),
    "Tracking": ((30, 36, 48, 255), (225, 230, 240, 255)),
    "Disabled": ((150, 152, 156, 150), (222, 224, 228, 190)),
    "Cueing": ((224, 146, 24, 255), (255, 255, 255, 255)),
    "Playing": ((40, 158, 72, 255), (255, 255, 255, 255)),
}


def mirrored(polygons):
    return [[(1.0 - x, y) for (x, y) in poly] for poly in polygons]


def bar(x0, x1, y0=0.30, y1=0.70):
    return [(x0, y0), (x1, y0), (x1, y1), (x0, y1)]


_STEP_BACK = [bar(0.29, 0.37), [(0.71, 0.30), (0.71, 0.70), (0.40, 0.50)]]
_REWIND = [[(0.51, 0.30), (0.51, 0.70), (0.22, 0.50)], [(0.80, 0.30), (0.80, 0.70), (0.51, 0.50)]]
_MARKER = [(0.32, 0.24), (0.68, 0.24), (0.68, 0.58), (0.50, 0.78), (0.32, 0.58)]

# Glyph: (polygons in the glyph colour, polygons cut out again in the background colour).
GLYPHS = {
    "Play": ([[(0.37, 0.27), (0.37, 0.73), (0.74, 0.50)]], []),
    "Stop": ([bar(0.31, 0.69, 0.31, 0.69)], []),
    "Pause": ([bar(0.31, 0.43), bar(0.57, 0.69)], []),
    "StepBack": (_STEP_BACK, []),
    "StepForward": (mirrored(_STEP_BACK), []),
    "Rewind": (_REWIND, []),
    "FastForward": (mirrored(_REWIND), []),
    "AddMarker": ([_MARKER], [bar(0.465, 0.535, 0.32, 0.58), bar(0.37, 0.63, 0.415, 0.485)]),
}

# Which states each glyph is drawn in.
GLYPH_STATES = {name: ["Normal", "Tracking", "Disabled"] for name in GLYPHS}
GLYPH_STATES["Play"] += ["Cueing", "Playing"]


def inside_polygon(x, y, poly):
    """Even-odd rule."""
    inside = False
    j = len(poly) - 1
    for i in range(len(poly)):
        xi, yi = poly[i]
        xj, yj = poly[j]
        if (yi > y) != (yj > y) and x < (xj - xi) * (y - yi) / (yj - yi) + xi:
            inside = not inside
        j = i
    return inside


def inside_rounded_rect(x, y, lo=0.03, hi=0.97, radius=0.18):
    if x < lo or x > hi or y < lo or y > hi:
        return False
    cx = min(max(x, lo + radius), hi - radius)
    cy = min(max(y, lo + radius), hi - radius)
    return (x - cx) ** 2 + (y - cy) ** 2 <= radius * radius


def over(dst, src, coverage):
    """Composites colour `src` with the given coverage over `dst` (straight alpha)."""
    sa = src[3] / 255.0 * coverage
    da = dst[3] / 255.0
    oa = sa + da * (1.0 - sa)
    if oa <= 0.0:
        return (0, 0, 0, 0)
    rgb = [(src[k] * sa + dst[k] * da * (1.0 - sa)) / oa for k in range(3)]
    return tuple(int(round(c)) for c in rgb) + (int(round(oa * 255.0)),)


def render(size, glyph, state):
    background, foreground = STATES[state]
    shapes, cutouts = GLYPHS[glyph]
    layers = [
        (background, lambda x, y: inside_rounded_rect(x, y)),
        (foreground, lambda x, y: any(inside_polygon(x, y, p) for p in shapes)),
        (background, lambda x, y: any(inside_polygon(x, y, p) for p in cutouts)),
    ]
    step = 1.0 / (size * SUPERSAMPLE)
    rows = []
    for py in range(size):
        row = bytearray()
        for px in range(size):
            samples = [((px * SUPERSAMPLE + sx + 0.5) * step, (py * SUPERSAMPLE + sy + 0.5) * step)
                       for sy in range(SUPERSAMPLE) for sx in range(SUPERSAMPLE)]
            pixel = (0, 0, 0, 0)
            for colour, hit in layers:
                coverage = sum(1 for (x, y) in samples if hit(x, y)) / len(samples)
                if coverage > 0.0:
                    pixel = over(pixel, colour, coverage)
            row += bytes(pixel)
        rows.append(bytes(row))
    return rows


def png_bytes(size, rows):
    def chunk(tag, data):
        body = tag + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)  # 8-bit RGBA
    raw = b"".join(b"\x00" + row for row in rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
            + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def write_png(path, size, rows):
    with open(path, "wb") as f:
        f.write(png_bytes(size, rows))


def write_buttons(out_dir):
    os.makedirs(out_dir, exist_ok=True)
    for glyph, states in GLYPH_STATES.items():
        for state in states:
            for suffix, size in SIZES.items():
                path = os.path.join(out_dir, "%s%s%s.png" % (glyph, state, suffix))
                write_png(path, size, render(size, glyph, state))


# The sort arrows: file stem and triangle in the unit square.
SORT_ICON_SIZES = {"": 9, "@2x": 18}
SORT_ICON_COLOUR = (46, 48, 50, 255)
_UP = [(0.50, 0.24), (0.92, 0.74), (0.08, 0.74)]
SORT_ICONS = {
    "sortIconUp": _UP,
    "sortIconDown": [(x, 1.0 - y) for (x, y) in _UP],
}


def render_shape(size, polygon, colour):
    """One polygon in a colour on a transparent square."""
    step = 1.0 / (size * SUPERSAMPLE)
    rows = []
    for py in range(size):
        row = bytearray()
        for px in range(size):
            hits = sum(1 for sy in range(SUPERSAMPLE) for sx in range(SUPERSAMPLE)
                       if inside_polygon((px * SUPERSAMPLE + sx + 0.5) * step,
                                         (py * SUPERSAMPLE + sy + 0.5) * step, polygon))
            coverage = hits / float(SUPERSAMPLE * SUPERSAMPLE)
            row += bytes(over((0, 0, 0, 0), colour, coverage) if coverage > 0.0 else (0, 0, 0, 0))
        rows.append(bytes(row))
    return rows


def write_sort_icons(out_dir):
    os.makedirs(out_dir, exist_ok=True)
    for stem, polygon in SORT_ICONS.items():
        for suffix, size in SORT_ICON_SIZES.items():
            path = os.path.join(out_dir, "%s%s.png" % (stem, suffix))
            write_png(path, size, render_shape(size, polygon, SORT_ICON_COLOUR))


def main(argv):
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    images_dir = argv[1] if len(argv) > 1 else os.path.join(root, "resources", "Images")
    write_buttons(os.path.join(images_dir, "Buttons"))
    write_sort_icons(os.path.join(images_dir, "ResearchPane"))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
