#!/usr/bin/env python3
"""Draws the transport button images under resources/Images/Buttons/.

Regenerate after changing a glyph or a colour (the PNGs are committed; nothing runs this at
build time):

    python3 tools/make_button_images.py            # writes into resources/Images/Buttons/
    python3 tools/make_button_images.py OUT_DIR    # writes somewhere else

Only the Python standard library is used (zlib and struct write the PNGs), so the output is the
same on every machine.

Every glyph is drawn in the states the buttons show: Normal, Tracking (pressed) and Disabled for
Kiv_ImmediateActionButton, and additionally Cueing and Playing for the play glyph that
Kiv_PlayButton shows. Each image exists at 32x32 ("PlayNormal.png") and at 64x64 for screens
with a device pixel ratio of 2 ("PlayNormal@2x.png").

The pictures are plain: a flat rounded rectangle in the colour of the state with a white glyph
on it. Shapes are given in a unit square and filled with 4x4 supersampling for smooth edges.
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


def main(argv):
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    out_dir = argv[1] if len(argv) > 1 else os.path.join(root, "resources", "Images", "Buttons")
    os.makedirs(out_dir, exist_ok=True)
    for glyph, states in GLYPH_STATES.items():
        for state in states:
            for suffix, size in SIZES.items():
                path = os.path.join(out_dir, "%s%s%s.png" % (glyph, state, suffix))
                with open(path, "wb") as f:
                    f.write(png_bytes(size, render(size, glyph, state)))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
