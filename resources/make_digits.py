#!/usr/bin/python3
"""Draws Text2Image/digits.bmp, the glyphs of vo::CText2Image. README.md tells when and how.

Usage: make_digits.py [FONT.ttf]
"""

import pathlib
import struct
import sys

from PIL import Image, ImageDraw, ImageFont

FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"
CELL_WIDTH, CELL_HEIGHT, CELL_COUNT = 16, 20, 16
CHARACTERS = "0123456789:.-"  # cells 0 to 12; 13 and 15 stay black
HOURGLASS_CELL = 14
MARGIN = 1  # pixels of black on every side, so that neighbours never touch
SCALE = 32  # drawn so much larger; the average of SCALE x SCALE dots is the grey of an edge
HOURGLASS = (
    "................",
    ".##############.",
    ".##############.",
    "..##........##..",
    "..##........##..",
    "..##+......+##..",
    "..+##########+..",
    "...+########+...",
    "....+######+....",
    ".....+####+.....",
    ".....+#++#+.....",
    "....+##++##+....",
    "...+##.++.##+...",
    "..+##..++..##+..",
    "..##...++...##..",
    "..##..+##+..##..",
    "..##+######+##..",
    ".##############.",
    ".##############.",
    "................",
)


def draw_outline(font, character):
    image = Image.new("L", (2 * font.size, 2 * font.size))
    ImageDraw.Draw(image).text((font.size // 2, 0), character, fill=255, font=font)
    return image


def draw_characters(font_file):
    """All in one scale, by which the digits just fill the cell, and on one base line."""
    outlines = [draw_outline(ImageFont.truetype(font_file, 1000), c) for c in CHARACTERS]
    digits = [outline.getbbox() for outline in outlines[:10]]
    top = min(box[1] for box in digits)
    bottom = max(box[3] for box in digits)
    widest = max(box[2] - box[0] for box in digits)
    height = (CELL_HEIGHT - 2 * MARGIN) * SCALE
    x_scale = (CELL_WIDTH - 2 * MARGIN) * SCALE / widest
    for outline in outlines:
        left, _, right, _ = outline.getbbox()
        width = round((right - left) * x_scale)
        glyph = outline.crop((left, top, right, bottom)).resize((width, height), Image.BILINEAR)
        cell = Image.new("L", (CELL_WIDTH * SCALE, CELL_HEIGHT * SCALE))
        cell.paste(glyph, ((cell.width - width) // 2, MARGIN * SCALE))
        yield cell.resize((CELL_WIDTH, CELL_HEIGHT), Image.BOX)


def draw_hourglass():
    """Dot by dot: at this size no outline falls on the pixels by itself."""
    cell = Image.new("L", (CELL_WIDTH, CELL_HEIGHT))
    for y, row in enumerate(HOURGLASS):
        for x, dot in enumerate(row):
            cell.putpixel((x, y), {".": 0, "+": 128, "#": 255}[dot])
    return cell


def draw_strip(font_file):
    strip = Image.new("L", (CELL_COUNT * CELL_WIDTH, CELL_HEIGHT))
    for number, cell in enumerate(draw_characters(font_file)):
        strip.paste(cell, (number * CELL_WIDTH, 0))
    strip.paste(draw_hourglass(), (HOURGLASS_CELL * CELL_WIDTH, 0))
    return strip


def bmp_bytes(strip):
    """24 bits per pixel, bottom row first, no gaps: the width is a multiple of 4."""
    rows = [strip.crop((0, y, strip.width, y + 1)).tobytes() for y in range(strip.height)]
    pixels = b"".join(bytes(grey for value in row for grey in (value,) * 3)
                      for row in reversed(rows))
    pixels_per_metre = 2835
    header = struct.pack("<2sIHHI IiiHHIIiiII",
                         b"BM", 54 + len(pixels), 0, 0, 54,
                         40, strip.width, strip.height, 1, 24, 0, len(pixels),
                         pixels_per_metre, pixels_per_metre, 0, 0)
    return header + pixels


def main():
    font_file = sys.argv[1] if len(sys.argv) > 1 else FONT
    target = pathlib.Path(__file__).parent / "Text2Image" / "digits.bmp"
    target.write_bytes(bmp_bytes(draw_strip(font_file)))


if __name__ == "__main__":
    main()
