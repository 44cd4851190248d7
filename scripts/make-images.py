#!/usr/bin/env python3
"""Draws the images of the report site into data/: the logo, two backgrounds and three icons.

Standard library only: PNG through zlib, GIF through the small LZW encoder below.
Run it again after changing a drawing and commit the files it writes.
"""

import math
import os
import struct
import zlib

DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data")

# ---------------------------------------------------------------- PNG


def png_chunk(kind, payload):
    body = kind + payload
    return struct.pack(">I", len(payload)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)


def png_bytes(width, height, pixels):
    """pixels: rows of (r, g, b, a) tuples."""
    raw = bytearray()
    for row in pixels:
        raw.append(0)  # no filter
        for r, g, b, a in row:
            raw += bytes((r, g, b, a))
    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + png_chunk(b"IHDR", header)
            + png_chunk(b"IDAT", zlib.compress(bytes(raw), 9)) + png_chunk(b"IEND", b""))


def vertical_gradient(width, height, top, bottom):
    rows = []
    for y in range(height):
        t = y / max(1, height - 1)
        colour = tuple(int(round(a + (b - a) * t)) for a, b in zip(top, bottom)) + (255,)
        rows.append([colour] * width)
    return rows


# ---------------------------------------------------------------- GIF


def lzw_codes(indices, min_code_size):
    """Yields (code, width) pairs of the GIF variant of LZW."""
    clear = 1 << min_code_size
    end = clear + 1
    width = min_code_size + 1
    table = {(i,): i for i in range(clear)}
    next_code = end + 1
    yield clear, width
    current = (indices[0],)
    for index in indices[1:]:
        candidate = current + (index,)
        if candidate in table:
            current = candidate
            continue
        yield table[current], width
        if next_code < 4096:
            table[candidate] = next_code
            # The decoder widens its codes once the table reaches the current limit.
            if next_code == (1 << width) and width < 12:
                width += 1
            next_code += 1
        else:
            yield clear, width
            table = {(i,): i for i in range(clear)}
            next_code = end + 1
            width = min_code_size + 1
        current = (index,)
    yield table[current], width
    yield end, width


def lzw_bytes(indices, min_code_size):
    out = bytearray()
    buffer = 0
    bits = 0
    for code, width in lzw_codes(indices, min_code_size):
        buffer |= code << bits
        bits += width
        while bits >= 8:
            out.append(buffer & 0xFF)
            buffer >>= 8
            bits -= 8
    if bits:
        out.append(buffer & 0xFF)
    return bytes(out)


def gif_bytes(width, height, palette, indices, transparent):
    """palette: up to 16 (r, g, b); indices: width*height palette indices, row by row."""
    size_bits = max(1, (len(palette) - 1).bit_length())
    colours = list(palette) + [(0, 0, 0)] * ((1 << size_bits) - len(palette))
    min_code_size = max(2, size_bits)
    data = lzw_bytes(indices, min_code_size)
    blocks = b"".join(bytes((len(data[i:i + 255]),)) + data[i:i + 255] for i in range(0, len(data), 255))
    return (b"GIF89a" + struct.pack("<HHBBB", width, height, 0x80 | (size_bits - 1), 0, 0)
            + b"".join(bytes(c) for c in colours)
            + b"\x21\xf9\x04\x01\x00\x00" + bytes((transparent,)) + b"\x00"
            + b"\x2c" + struct.pack("<HHHHB", 0, 0, width, height, 0)
            + bytes((min_code_size,)) + blocks + b"\x00" + b"\x3b")


# ---------------------------------------------------------------- drawings

# 5x7 letters for the logo's word.
FONT = {
    "O": ["01110", "10001", "10001", "10001", "10001", "10001", "01110"],
    "R": ["11110", "10001", "10001", "11110", "10100", "10010", "10001"],
    "V": ["10001", "10001", "10001", "10001", "10001", "01010", "00100"],
    "E": ["11111", "10000", "10000", "11110", "10000", "10000", "11111"],
    "N": ["10001", "11001", "10101", "10011", "10001", "10001", "10001"],
    "A": ["01110", "10001", "10001", "11111", "10001", "10001", "10001"],
}


def logo():
    """A ring mark and the word ORVENA in white, on a clear background for the dark banner."""
    scale, gap, height, mark = 3, 3, 32, 30
    word = "ORVENA"
    width = mark + 8 + len(word) * (5 * scale + gap)
    rows = [[(0, 0, 0, 0)] * width for _ in range(height)]
    centre, outer, inner = (mark / 2.0, height / 2.0), 13.0, 8.5
    for y in range(height):
        for x in range(mark):
            # Four samples a pixel smooth the ring's edge.
            cover = 0
            for sy in (0.25, 0.75):
                for sx in (0.25, 0.75):
                    d = math.hypot(x + sx - centre[0], y + sy - centre[1])
                    cover += inner <= d <= outer and not (x + sx > centre[0] + 2 and abs(y + sy - centre[1]) < 2.5)
            if cover:
                rows[y][x] = (111, 214, 255, int(255 * cover / 4))
    top = (height - 7 * scale) // 2
    for n, letter in enumerate(word):
        left = mark + 8 + n * (5 * scale + gap)
        for fy, line in enumerate(FONT[letter]):
            for fx, bit in enumerate(line):
                if bit == "1":
                    for dy in range(scale):
                        for dx in range(scale):
                            rows[top + fy * scale + dy][left + fx * scale + dx] = (255, 255, 255, 255)
    return width, height, rows


ICON = 16


def icon_indices(inside, glyph):
    """0 clear, 1 edge, 2 fill, 3 glyph; inside(x, y) tells fill, glyph rows mark the symbol."""
    indices = []
    for y in range(ICON):
        for x in range(ICON):
            if glyph[y][x] == "#":
                indices.append(3)
            elif inside(x + 0.5, y + 0.5, 0.0):
                indices.append(2 if inside(x + 0.5, y + 0.5, 1.2) else 1)
            else:
                indices.append(0)
    return indices


def in_circle(x, y, inset):
    return math.hypot(x - 8, y - 8) <= 7.5 - inset


def in_triangle(x, y, inset):
    # Apex at the top centre, base on the last row.
    if y < 1 + inset * 2 or y > 15.5 - inset:
        return False
    half = (y - 0.5) * 7.5 / 15.0
    return abs(x - 8) <= half - inset * 1.1


def glyph(*rows):
    return [r.ljust(ICON, ".") for r in rows]


INFO_GLYPH = glyph(
    "................", "................", "................", ".......##.......",
    ".......##.......", "................", "......###.......", ".......##.......",
    ".......##.......", ".......##.......", ".......##.......", "......####......",
    "................", "................", "................", "................")

WARNING_GLYPH = glyph(
    "................", "................", "................", "................",
    "................", ".......##.......", ".......##.......", ".......##.......",
    ".......##.......", ".......##.......", "................", ".......##.......",
    ".......##.......", "................", "................", "................")

ERROR_GLYPH = glyph(
    "................", "................", "................", "................",
    ".....#....#.....", "....###..###....", ".....######.....", "......####......",
    "......####......", ".....######.....", "....###..###....", ".....#....#.....",
    "................", "................", "................", "................")

ICONS = {
    "i.gif": ([(255, 255, 255), (19, 84, 150), (38, 120, 200), (255, 255, 255)], in_circle, INFO_GLYPH),
    "w.gif": ([(255, 255, 255), (150, 105, 0), (247, 190, 30), (30, 30, 30)], in_triangle, WARNING_GLYPH),
    "e.gif": ([(255, 255, 255), (140, 20, 24), (208, 42, 46), (255, 255, 255)], in_circle, ERROR_GLYPH),
}


def write(name, content):
    with open(os.path.join(DATA, name), "wb") as out:
        out.write(content)


def main():
    width, height, rows = logo()
    write("orvena_logo.png", png_bytes(width, height, rows))
    write("header_bg.png", png_bytes(8, 50, vertical_gradient(8, 50, (36, 72, 112), (20, 44, 72))))
    write("banner_bg.png", png_bytes(8, 40, vertical_gradient(8, 40, (52, 104, 156), (31, 70, 112))))
    for name, (palette, shape, symbol) in ICONS.items():
        write(name, gif_bytes(ICON, ICON, palette, icon_indices(shape, symbol), transparent=0))
    print("wrote 6 images")


if __name__ == "__main__":
    main()
