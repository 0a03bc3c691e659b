#!/usr/bin/env python3
"""Draws the program's icons: a gauge on dark slate, its needle near the top of a lit blue scale
(tonvista.ico), and a compact disc with a lit blue track for the notification area (cd.ico).

    tools/draw_icon.py [FOLDER]      app/resources unless told

Every size is drawn for itself from the same shapes, with thicker strokes and fewer of them where
pixels are few. Standard library only; the same input always gives the same bytes.
"""
import math
import os
import struct
import sys
import zlib

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SIZES = (16, 24, 32, 48, 64, 256)
SAMPLES = 5  # per pixel and axis

SLATE_TOP, SLATE_BOTTOM = (58, 68, 80), (24, 29, 36)
RIM = (92, 106, 122)
SCALE_OFF = (70, 82, 95)
SCALE_LIT, SCALE_LIT_END = (0, 128, 255), (96, 190, 255)
NEEDLE = (236, 242, 248)
HUB = (18, 22, 28)

START, SWEEP, LEVEL = 225.0, 270.0, 6 / 9  # degrees from the right, counter-clockwise; 0 to 1


def mix(a, b, t):
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def rounded_box(x, y, half, radius):
    """Distance to a rounded square around (0.5, 0.5); negative inside."""
    dx = abs(x - 0.5) - half + radius
    dy = abs(y - 0.5) - half + radius
    return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius


def segment(x, y, x0, y0, x1, y1):
    """(distance to the line, how far along it)"""
    dx, dy = x1 - x0, y1 - y0
    t = max(0.0, min(1.0, ((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy)))
    return math.hypot(x - x0 - t * dx, y - y0 - t * dy), t


def shade_gauge(x, y, size):
    """Colour and opacity of the point (x, y), both 0 to 1, y downwards."""
    small = size <= 24
    edge = rounded_box(x, y, 0.5 if small else 0.48, 0.16 if small else 0.20)
    if edge > 0:
        return (0, 0, 0), 0.0
    colour = mix(SLATE_TOP, SLATE_BOTTOM, y)
    if not small and edge > -0.022:
        colour = mix(RIM, colour, 0.25 + 0.75 * y)

    cx, cy = 0.5, 0.55
    radius, width = (0.33, 0.085) if small else (0.32, 0.052)
    away = math.hypot(x - cx, y - cy)
    angle = math.degrees(math.atan2(cy - y, x - cx))
    along = ((START - angle) % 360.0) / SWEEP
    if abs(away - radius) < width and along <= 1.0:
        # Segments, as on a lit scale, where there is room for the gaps.
        gap = size >= 48 and abs((along * 9.0) % 1.0 - 0.5) > 0.43
        if not gap:
            lit = along <= LEVEL
            colour = mix(SCALE_LIT, SCALE_LIT_END, along / LEVEL) if lit else SCALE_OFF
    elif size >= 48 and abs(away - radius) < 0.13 and along <= LEVEL:
        glow = 1.0 - (abs(away - radius) - width) / (0.13 - width)
        colour = mix(colour, SCALE_LIT, 0.28 * glow * glow)

    tip = math.radians(START - SWEEP * LEVEL)
    length = 0.24 if small else 0.29
    distance, t = segment(x, y, cx, cy, cx + length * math.cos(tip), cy - length * math.sin(tip))
    if distance < (0.055 if small else 0.030 - 0.016 * t):
        colour = NEEDLE
    if away < (0.085 if small else 0.075):
        colour = NEEDLE
    if not small and away < 0.038:
        colour = HUB
    return colour, 1.0


DISC_DARK, DISC_LIGHT, DISC_EDGE = (150, 162, 176), (242, 247, 252), (40, 48, 58)


def shade_disc(x, y, size):
    small = size <= 24
    dx, dy = x - 0.5, y - 0.5
    away = math.hypot(dx, dy)
    if away > (0.5 if small else 0.48) or away < (0.075 if small else 0.055):
        return (0, 0, 0), 0.0
    edge = 0.07 if small else 0.03
    if away > 0.5 - edge or away < 0.055 + 1.4 * edge:
        return DISC_EDGE, 1.0
    if away < 0.19:  # the clear part round the hole
        return (SLATE_TOP if small or away > 0.165 else RIM), 1.0
    # Two wedges of light that lie opposite each other.
    light = max(0.0, math.cos(2 * (math.atan2(dy, dx) - math.radians(225)))) ** 3
    colour = mix(DISC_DARK, DISC_LIGHT, light)
    if abs(away - 0.33) < (0.04 if small else 0.045):
        colour = mix(SCALE_LIT, SCALE_LIT_END, light)
    return colour, 1.0


def draw(size, shade):
    """Rows of RGBA bytes, top first."""
    steps = [(i + 0.5) / SAMPLES for i in range(SAMPLES)]
    rows = []
    for py in range(size):
        row = bytearray()
        for px in range(size):
            total, cover = [0.0, 0.0, 0.0], 0.0
            for sy in steps:
                for sx in steps:
                    colour, alpha = shade((px + sx) / size, (py + sy) / size, size)
                    cover += alpha
                    for i in range(3):
                        total[i] += colour[i] * alpha
            row += bytes(round(c / cover) if cover else 0 for c in total)
            row.append(round(255 * cover / SAMPLES ** 2))
        rows.append(bytes(row))
    return rows


def as_png(size, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I",
                                                                        zlib.crc32(kind + data))
    pixels = b"".join(b"\0" + row for row in rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(pixels, 9)) + chunk(b"IEND", b""))


def as_bitmap(size, rows):
    """32-bit bitmap, bottom row first, with the 1-bit mask that older shells go by."""
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    pixels = b"".join(bytes(c for i in range(0, len(row), 4)
                            for c in (row[i + 2], row[i + 1], row[i], row[i + 3]))
                      for row in reversed(rows))
    mask = bytearray()
    for row in reversed(rows):
        bits = "".join("0" if alpha >= 128 else "1" for alpha in row[3::4])
        bits = bits.ljust((size + 31) // 32 * 32, "0")
        mask += int(bits, 2).to_bytes(len(bits) // 8, "big")
    return header + pixels + bytes(mask)


def write_icon(path, shade_of, sizes):
    images = []
    for size in sizes:
        rows = draw(size, shade_of)
        images.append(as_png(size, rows) if size > 64 else as_bitmap(size, rows))
    offset = 6 + 16 * len(sizes)
    entries = b""
    for size, image in zip(sizes, images):
        entries += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    with open(path, "wb") as handle:
        handle.write(struct.pack("<HHH", 0, 1, len(sizes)) + entries + b"".join(images))


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "app/resources")
    write_icon(os.path.join(folder, "tonvista.ico"), shade_gauge, SIZES)
    write_icon(os.path.join(folder, "cd.ico"), shade_disc, (16, 20, 24, 32, 48))


if __name__ == "__main__":
    main()
