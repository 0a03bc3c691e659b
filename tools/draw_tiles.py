#!/usr/bin/env python3
"""Draws the built-in bitmaps: brushed dark metal for backgrounds, a fine weave for button faces.

    tools/draw_tiles.py [FOLDER]     app/resources unless told

Both go on without a seam on all sides, and stay close to the plain colours that they stand for, so
that labels read on them as well. Sixteen shades of four bits a pixel. Standard library only; the
same input always gives the same bytes.
"""
import os
import random
import struct
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SHADES = 16

METAL_SIZE, METAL_STROKE, METAL_SEED = 128, 48, 7  # pixels, pixels, any number
METAL_DARK, METAL_LIGHT = (46, 48, 52), (84, 87, 92)

WEAVE_SIZE, THREAD = 32, 4  # pixels; a thread's width with its gap
WEAVE_DARK, WEAVE_LIGHT = (104, 105, 108), (164, 165, 168)


def around(values, reach):
    """Each value as the mean of `reach` of its neighbours, the ends joined."""
    size = len(values)
    total = sum(values[i % size] for i in range(reach))
    means = []
    for i in range(size):
        means.append(total / reach)
        total += values[(i + reach) % size] - values[i]
    return means


def stretched(rows):
    """Brought to 0..1, with the mean in the middle; what is far out is cut."""
    values = [value for row in rows for value in row]
    mean = sum(values) / len(values)
    spread = (sum((value - mean) ** 2 for value in values) / len(values)) ** 0.5
    return [[min(max(0.5 + (value - mean) / (6 * spread), 0), 1) for value in row] for row in rows]


def metal():
    """Noise drawn out along the rows, over strokes that differ from row to row."""
    noise = random.Random(METAL_SEED)
    rows = []
    for _ in range(METAL_SIZE):
        grain = around([noise.random() for _ in range(METAL_SIZE)], METAL_STROKE)
        fine = around([noise.random() for _ in range(METAL_SIZE)], METAL_STROKE // 8)
        level = noise.random()
        rows.append([2.2 * g + 0.5 * f + 0.25 * level for g, f in zip(grain, fine)])
    return stretched(rows)


def weave():
    """Threads over and under each other by turns, each round in itself."""
    rows = []
    for y in range(WEAVE_SIZE):
        row = []
        for x in range(WEAVE_SIZE):
            across = (x // THREAD + y // THREAD) % 2
            place, along = (y, x) if across else (x, y)
            high = 1 - abs(2 * (place % THREAD) + 1 - THREAD) / THREAD
            dip = abs(2 * (along % THREAD) + 1 - THREAD) / THREAD
            row.append(0.32 + 0.42 * high - 0.16 * dip + (0.1 if across else 0))
        rows.append(row)
    return rows


def as_bmp(rows, dark, light):
    """Four bits a pixel, bottom row first; rows 0..1 between the two colours."""
    palette = b"".join(
        bytes(round(d + (l - d) * i / (SHADES - 1)) for d, l in zip(reversed(dark), reversed(light)))
        + b"\0" for i in range(SHADES))
    noise = random.Random(1)  # rounding up and down by chance: steps between shades don't show
    pixels = b""
    for row in reversed(rows):
        shades = [min(int(v * (SHADES - 1) + noise.random()), SHADES - 1) for v in row]
        pixels += bytes(shades[i] << 4 | shades[i + 1] for i in range(0, len(shades), 2))
    offset = 14 + 40 + len(palette)
    header = struct.pack("<IiiHHIIiiII", 40, len(rows[0]), len(rows), 1, 4, 0, len(pixels), 2835,
                         2835, SHADES, 0)
    return b"BM" + struct.pack("<IHHI", offset + len(pixels), 0, 0, offset) + header + palette + pixels


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "app/resources")
    for name, rows, dark, light in (("background.bmp", metal(), METAL_DARK, METAL_LIGHT),
                                    ("button_face.bmp", weave(), WEAVE_DARK, WEAVE_LIGHT)):
        with open(os.path.join(folder, name), "wb") as handle:
            handle.write(as_bmp(rows, dark, light))


if __name__ == "__main__":
    main()
