#!/usr/bin/env python3
"""Build the pictures of Snipstore from their editable sources.

    make_pictures.py SOURCE_DIR OUT_DIR [--contact-sheet FILE.png]

SOURCE_DIR holds

    palette.gpl       the colours every picture is drawn with (GIMP palette)
    *.svg             the program icon and the four message-box icons
    toolbar/NUMBER-NAME.xpm
                      the toolbar pictures, one character per pixel

OUT_DIR receives snipstore.ico, the four message-box .ico files, and of each
toolbar picture NAME.bmp with its number in toolbar.h and its resource in
toolbar.rc, both under the name IDB_NAME.  The same sources always give the
same bytes.

Needs Python 3 and rsvg-convert (Debian package librsvg2-bin), nothing else.
Every source is checked before anything is written; a picture with a fault
stops the script with one line that names the file.
"""

import argparse
import re
import struct
import subprocess
import sys
import zlib
from pathlib import Path

# ---------------------------------------------------------------------------
# What is built from what
# ---------------------------------------------------------------------------

# Icon file -> list of (size in pixels, source).  The program icon has one
# drawing for each size: fewer details and edges on whole pixels where it is
# small, more details where there is room.
ICONS = {
    "snipstore": [
        (16, "app-icon-16.svg"),
        (24, "app-icon-24.svg"),
        (32, "app-icon-32.svg"),
        (48, "app-icon-48.svg"),
        # Twice the size of an ordinary icon, for the About box, at 96 and 144 dots to the inch.
        (64, "app-icon-256.svg"),
        (96, "app-icon-256.svg"),
        (256, "app-icon-256.svg"),
    ],
    "information": [(size, "information.svg") for size in (32, 40, 48)],
    "question": [(size, "question.svg") for size in (32, 40, 48)],
    "exclamation": [(size, "exclamation.svg") for size in (32, 40, 48)],
    "critical": [(size, "critical.svg") for size in (32, 40, 48)],
}

# The toolbar pictures that have another size than the others.
TOOLBAR_SIZE = (16, 16)
OTHER_SIZES = {"drop-arrow": (5, 3)}

MASK = (0xC0, 0xC0, 0xC0)

# A colour nearer to the mask than this (sum of the differences of the three
# channels) looks like the mask and is taken for a fringe.
LEAST_DISTANCE_FROM_MASK = 80

# Icon sizes above this are stored as PNG, which Windows Vista and later read,
# in a sixth of the bytes. Windows XP's Explorer shows programs at 48 pixels;
# messages need 32 there (SharedIcon in the program goes back to that).
LARGEST_BMP_OF_PROGRAM = 48
LARGEST_BMP_OF_MESSAGES = 32


class PictureError(Exception):
    """A fault in a source; the text starts with the name of the file."""


class Picture:
    """A rectangle of (red, green, blue, alpha) pixels, stored by rows."""

    def __init__(self, width, height, fill=(0, 0, 0, 0)):
        self.width = width
        self.height = height
        self.rows = [[fill] * width for _ in range(height)]

    def pixels(self):
        """Yield (x, y, pixel) from the top left to the bottom right."""
        for y, row in enumerate(self.rows):
            for x, pixel in enumerate(row):
                yield x, y, pixel


# ---------------------------------------------------------------------------
# Reading the sources
# ---------------------------------------------------------------------------

def read_text(path):
    """Return the text of a source file, or fail naming the file."""
    try:
        return path.read_text(encoding="utf-8")
    except FileNotFoundError:
        raise PictureError(f"{path}: this picture is missing") from None
    except (OSError, UnicodeDecodeError) as error:
        raise PictureError(f"{path}: cannot be read ({error})") from None


def parse_hex_colour(text):
    """Turn 'RRGGBB' into (red, green, blue)."""
    return tuple(int(text[i:i + 2], 16) for i in (0, 2, 4))


def hex_colour(rgb):
    """Turn (red, green, blue) into '#RRGGBB', for messages."""
    return "#%02X%02X%02X" % tuple(rgb[:3])


def read_palette(path):
    """Return the set of colours listed in a GIMP palette file."""
    lines = read_text(path).splitlines()
    if not lines or lines[0].strip() != "GIMP Palette":
        raise PictureError(f"{path}: does not start with 'GIMP Palette'")
    colours = set()
    for line in lines[1:]:
        entry = re.match(r"\s*(\d+)\s+(\d+)\s+(\d+)(\s|$)", line)
        if entry:
            colours.add(tuple(int(entry.group(i)) for i in (1, 2, 3)))
    if MASK not in colours:
        raise PictureError(f"{path}: lacks the mask colour {hex_colour(MASK)}")
    return colours


def read_xpm(path):
    """Read an XPM picture; 'None' and the mask colour both mean transparent.

    Any number of characters per pixel is understood, because paint programs
    choose their own when they save.  Colours must be written as #RRGGBB.
    """
    text = re.sub(r"/\*.*?\*/", "", read_text(path), flags=re.S)
    strings = re.findall(r'"([^"]*)"', text)
    try:
        width, height, colour_count, chars = map(int, strings[0].split()[:4])
    except (IndexError, ValueError):
        raise PictureError(f"{path}: has no XPM header line") from None
    legend_lines = strings[1:1 + colour_count]
    pixel_lines = strings[1 + colour_count:]

    legend = {}
    for line in legend_lines:
        symbol, definition = line[:chars], line[chars:]
        value = re.search(r"\bc\s+(#[0-9A-Fa-f]{6}|[Nn]one)\s*$", definition)
        if not value:
            raise PictureError(f"{path}: cannot read the colour '{line}'")
        if symbol in legend:
            raise PictureError(f"{path}: colour '{symbol}' is defined twice")
        name = value.group(1)
        legend[symbol] = (MASK if name.lower() == "none"
                          else parse_hex_colour(name[1:]))

    if len(pixel_lines) != height:
        raise PictureError(f"{path}: has {len(pixel_lines)} rows of pixels, "
                           f"its header says {height}")
    picture = Picture(width, height)
    for y, line in enumerate(pixel_lines):
        if len(line) != width * chars:
            raise PictureError(f"{path}: row {y} has {len(line) / chars:g} "
                               f"pixels, the header says {width}")
        for x in range(width):
            symbol = line[x * chars:(x + 1) * chars]
            if symbol not in legend:
                raise PictureError(f"{path}: row {y}, column {x}: "
                                   f"'{symbol}' is not in the legend")
            picture.rows[y][x] = legend[symbol] + (255,)
    return picture


def render_svg(path, size):
    """Draw an SVG file at size x size pixels."""
    try:
        result = subprocess.run(
            ["rsvg-convert", "--format=png", f"--width={size}",
             f"--height={size}", str(path)],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    except FileNotFoundError:
        raise PictureError("rsvg-convert: not found; install the package "
                           "librsvg2-bin") from None
    if result.returncode != 0:
        reason = result.stderr.decode("utf-8", "replace").strip()
        raise PictureError(f"{path}: rsvg-convert refuses it: {reason}")
    return decode_png(result.stdout, f"{path} at {size} px")


def decode_png(data, name):
    """Decode an 8-bit RGBA PNG without interlacing, as rsvg-convert writes."""
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise PictureError(f"{name}: rsvg-convert gave no PNG")
    position, header, packed = 8, b"", b""
    while position < len(data):
        length, kind = struct.unpack(">I4s", data[position:position + 8])
        body = data[position + 8:position + 8 + length]
        position += 12 + length
        if kind == b"IHDR":
            header = body
        elif kind == b"IDAT":
            packed += body
    width, height, depth, colour, _, _, interlace = struct.unpack(
        ">IIBBBBB", header)
    if (depth, colour, interlace) != (8, 6, 0):
        raise PictureError(f"{name}: is not an 8-bit RGBA picture")

    raw = zlib.decompress(packed)
    stride = width * 4
    picture = Picture(width, height)
    previous = bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        line = unfilter_png_row(raw[start], bytearray(
            raw[start + 1:start + 1 + stride]), previous)
        picture.rows[y] = [tuple(line[i:i + 4]) for i in range(0, stride, 4)]
        previous = line
    return picture


def unfilter_png_row(kind, line, above):
    """Undo the filter of one PNG row (4 bytes per pixel), in place."""
    for i in range(len(line)):
        left = line[i - 4] if i >= 4 else 0
        up = above[i]
        corner = above[i - 4] if i >= 4 else 0
        if kind == 0:
            guess = 0
        elif kind == 1:
            guess = left
        elif kind == 2:
            guess = up
        elif kind == 3:
            guess = (left + up) // 2
        else:  # Paeth: whichever neighbour is nearest to left + up - corner
            target = left + up - corner
            guess = min((left, up, corner), key=lambda v: abs(target - v))
        line[i] = (line[i] + guess) & 0xFF
    return line


# ---------------------------------------------------------------------------
# Checks
# ---------------------------------------------------------------------------

def distance(one, other):
    """Sum of the differences of the three channels."""
    return sum(abs(a - b) for a, b in zip(one[:3], other[:3]))


def check_toolbar_picture(path, picture, size, palette):
    """Size right, no colour mistakable for the mask, only palette colours."""
    if (picture.width, picture.height) != size:
        raise PictureError(f"{path}: is {picture.width}x{picture.height}, "
                           f"must be {size[0]}x{size[1]}")
    drawn = 0
    for x, y, pixel in picture.pixels():
        rgb = pixel[:3]
        if rgb == MASK:
            continue
        drawn += 1
        place = f"{path}: row {y}, column {x}: {hex_colour(rgb)}"
        if distance(rgb, MASK) < LEAST_DISTANCE_FROM_MASK:
            raise PictureError(f"{place} is too near to the mask colour "
                               f"{hex_colour(MASK)}: a fringe pixel")
        if rgb not in palette:
            raise PictureError(f"{place} is not in palette.gpl")
    if not drawn:
        raise PictureError(f"{path}: is empty")


def check_svg_source(path, palette):
    """Square, self-contained and drawn with palette colours only."""
    text = read_text(path)
    view = re.search(r'viewBox="0 0 (\d+) (\d+)"', text)
    if not view or view.group(1) != view.group(2):
        raise PictureError(f"{path}: must have a square viewBox from 0 0")
    if re.search(r"<(text|image)\b", text):
        # A font or an outside file would make the result depend on the
        # machine on which it is built.
        raise PictureError(f"{path}: must not contain text or image elements")
    for value in re.findall(r"#([0-9A-Fa-f]{3,8})\b", text):
        if len(value) != 6 or parse_hex_colour(value) not in palette:
            raise PictureError(f"{path}: #{value} is not in palette.gpl")


def check_icon_picture(path, picture, size):
    """Size right, something drawn, and not on a solid background."""
    if (picture.width, picture.height) != (size, size):
        raise PictureError(f"{path}: drawn as {picture.width}x"
                           f"{picture.height}, must be {size}x{size}")
    opaque = sum(1 for _, _, pixel in picture.pixels() if pixel[3] == 255)
    if opaque < size * size // 5:
        raise PictureError(f"{path}: hardly anything is drawn at {size} px")
    corners = [picture.rows[y][x] for x in (0, -1) for y in (0, -1)]
    if all(pixel[3] for pixel in corners):
        raise PictureError(f"{path}: has a background, no transparent corner, "
                           f"at {size} px")


def check_nothing_is_left_over(source):
    """An icon's drawing nobody uses is mostly a misspelt name; say so."""
    used = {source / name for sizes in ICONS.values() for _, name in sizes}
    for path in sorted(set(source.glob("**/*.svg")) - used):
        raise PictureError(f"{path}: no picture of the program is made from "
                           f"this file")


# ---------------------------------------------------------------------------
# Writing the file formats
# ---------------------------------------------------------------------------

def encode_bmp(picture):
    """24-bit uncompressed BMP, rows from the bottom up."""
    padding = b"\0" * (-picture.width * 3 % 4)
    body = b"".join(
        b"".join(bytes((blue, green, red)) for red, green, blue, _ in row)
        + padding
        for row in reversed(picture.rows))
    header_size = 14 + 40
    return (struct.pack("<2sIHHI", b"BM", header_size + len(body), 0, 0,
                        header_size)
            + struct.pack("<IiiHHIIiiII", 40, picture.width, picture.height,
                          1, 24, 0, len(body), 2835, 2835, 0, 0)
            + body)


def encode_png(picture):
    """8-bit RGBA PNG without filters: flat drawings shrink well like this."""
    raw = b"".join(b"\0" + b"".join(bytes(pixel) for pixel in row)
                   for row in picture.rows)

    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body
                + struct.pack(">I", zlib.crc32(kind + body)))

    return (b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", struct.pack(">IIBBBBB", picture.width,
                                         picture.height, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(raw, 9))
            + chunk(b"IEND", b""))


def encode_icon_bmp(picture):
    """The classic body of an icon: 32-bit colours, then the 1-bit mask.

    A Windows that knows alpha ignores the mask; an older one draws by the
    mask alone, so it follows the outline: set (transparent) where less than
    half of the pixel is covered.
    """
    colours, mask = b"", b""
    mask_stride = (picture.width + 31) // 32 * 4
    for row in reversed(picture.rows):
        colours += b"".join(
            bytes((blue, green, red, alpha)) if alpha else b"\0\0\0\0"
            for red, green, blue, alpha in row)
        bits = bytearray(mask_stride)
        for x, pixel in enumerate(row):
            if pixel[3] < 128:
                bits[x // 8] |= 0x80 >> (x % 8)
        mask += bytes(bits)
    # The height counts both bitmaps; that is how the format wants it.
    header = struct.pack("<IiiHHIIiiII", 40, picture.width,
                         picture.height * 2, 1, 32, 0,
                         len(colours) + len(mask), 0, 0, 0, 0)
    return header + colours + mask


def encode_ico(pictures, largest_bmp):
    """An icon file with one entry for each picture."""
    offset = 6 + 16 * len(pictures)
    directory = struct.pack("<HHH", 0, 1, len(pictures))
    bodies = b""
    for picture in pictures:
        small = picture.width <= largest_bmp
        body = encode_icon_bmp(picture) if small else encode_png(picture)
        # 256 does not fit into the byte and is written as 0.
        directory += struct.pack("<BBBBHHII", picture.width % 256,
                                 picture.height % 256, 0, 0, 1, 32,
                                 len(body), offset + len(bodies))
        bodies += body
    return directory + bodies


# ---------------------------------------------------------------------------
# The contact sheet: every picture in every state, for a person to look at
# ---------------------------------------------------------------------------

BUTTON_FACE = (0xF0, 0xF0, 0xF0)
CLASSIC_FACE = MASK
HIGHLIGHT = (0x00, 0x78, 0xD7)
CLASSIC_HIGHLIGHT = (0x0A, 0x24, 0x6A)
GREY_TEXT = (0xA0, 0xA0, 0xA0)
WHITE = (0xFF, 0xFF, 0xFF)
SHEET_BACK = (0xFA, 0xFA, 0xFA)

LARGEST_ENLARGED = 48

# Digits for the captions, 3x5 pixels, one row per group.
DIGITS = {
    "0": "111 101 101 101 111", "1": "010 110 010 010 111",
    "2": "111 001 111 100 111", "3": "111 001 111 001 111",
    "4": "101 101 111 001 001", "5": "111 100 111 001 111",
    "6": "111 100 111 101 111", "7": "111 001 010 010 010",
    "8": "111 101 111 101 111", "9": "111 101 111 001 111",
}


def fill(sheet, left, top, width, height, rgb):
    """Fill a rectangle of the sheet, which grows downwards as needed."""
    while sheet.height < top + height:
        sheet.rows.append([SHEET_BACK + (255,)] * sheet.width)
        sheet.height += 1
    for y in range(top, top + height):
        sheet.rows[y][left:left + width] = [rgb + (255,)] * width


def write_number(sheet, left, top, number, scale=2):
    """Write a number in small digits."""
    for digit in str(number):
        for y, bits in enumerate(DIGITS[digit].split()):
            for x, bit in enumerate(bits):
                if bit == "1":
                    fill(sheet, left + x * scale, top + y * scale,
                         scale, scale, (0x40, 0x40, 0x40))
        left += 4 * scale


def paste(sheet, left, top, picture, scale, back):
    """Draw a picture on a plate of one colour, each pixel scale wide."""
    fill(sheet, left, top, (picture.width + 4) * scale,
         (picture.height + 4) * scale, back)
    for x, y, (red, green, blue, alpha) in picture.pixels():
        if alpha:
            rgb = tuple((c * alpha + b * (255 - alpha) + 127) // 255
                        for c, b in zip((red, green, blue), back))
            fill(sheet, left + (x + 2) * scale, top + (y + 2) * scale,
                 scale, scale, rgb)


def masked(picture):
    """The toolbar picture with its mask colour made transparent."""
    result = Picture(picture.width, picture.height)
    for x, y, pixel in picture.pixels():
        if pixel[:3] != MASK:
            result.rows[y][x] = pixel
    return result


def disabled(picture):
    """The embossed look: dark pixels in grey with a white edge below right.

    Dark means a brightness (3 red + 6 green + 1 blue parts) below one half.
    """
    dark = {(x, y) for x, y, (red, green, blue, alpha) in picture.pixels()
            if alpha and red * 3 + green * 6 + blue < 10 * 128}
    result = Picture(picture.width, picture.height)
    for x, y in dark:
        if x + 1 < result.width and y + 1 < result.height:
            result.rows[y + 1][x + 1] = WHITE + (255,)
    for x, y in dark:
        result.rows[y][x] = GREY_TEXT + (255,)
    return result


def toolbar_views(picture):
    """The states in which a toolbar picture is seen, with their ground.

    Two lists: what is worth enlarging, and what is shown small only.
    """
    plain, grey = masked(picture), disabled(masked(picture))
    main_views = [(plain, BUTTON_FACE), (plain, HIGHLIGHT),
                  (grey, BUTTON_FACE)]
    classic_views = [(plain, CLASSIC_FACE), (plain, CLASSIC_HIGHLIGHT)]
    return main_views, classic_views


def contact_sheet(icons, toolbar):
    """Draw all pictures at 1x and 4x on the grounds they will meet."""
    cell_width, cell_height, columns = 288, 112, 4
    toolbar_rows = (len(toolbar) + columns - 1) // columns
    sheet = Picture(columns * cell_width, 0)

    for index, ((number, _), picture) in enumerate(toolbar.items()):
        left = index % columns * cell_width + 6
        top = index // columns * cell_height + 6
        write_number(sheet, left, top, number)
        main_views, classic_views = toolbar_views(picture)
        for i, (view, back) in enumerate(main_views):
            paste(sheet, left + 34 + i * 82, top, view, 4, back)
        for i, (view, back) in enumerate(main_views + classic_views):
            paste(sheet, left + 34 + i * 26, top + 83, view, 1, back)

    top = toolbar_rows * cell_height + 8
    for pictures in icons.values():
        top = sheet_icon_rows(sheet, top, pictures)
    return sheet


def sheet_icon_rows(sheet, top, pictures):
    """One icon: all sizes at 1x, then the small ones at 4x.

    Returns where the next icon may begin.
    """
    left, row_height = 6, 0
    views = [(p, 1, back) for p in pictures if p.width <= LARGEST_ENLARGED
             for back in (BUTTON_FACE, HIGHLIGHT)]
    views += [(p, 4, BUTTON_FACE) for p in pictures
              if p.width <= LARGEST_ENLARGED]
    views += [(p, 1, BUTTON_FACE) for p in pictures
              if p.width > LARGEST_ENLARGED]
    for picture, factor, back in views:
        width = (picture.width + 4) * factor
        if left + width > sheet.width:
            left, top, row_height = 6, top + row_height + 6, 0
        paste(sheet, left, top, picture, factor, back)
        left += width + 6
        row_height = max(row_height, (picture.height + 4) * factor)
    return top + row_height + 12


# ---------------------------------------------------------------------------
# Putting it together
# ---------------------------------------------------------------------------

def load_toolbar(source, palette):
    """Read and check the toolbar pictures: {(number, name): picture}, in the
    order of their numbers."""
    toolbar = {}
    for path in sorted((source / "toolbar").iterdir()):
        label = re.fullmatch(r"(\d{3})-([a-z]+(?:-[a-z]+)*)\.xpm", path.name)
        if not label:
            raise PictureError(f"{path}: is not called NUMBER-NAME.xpm")
        number, name = int(label[1]), label[2]
        if any(number == other or name == its_name
               for other, its_name in toolbar):
            raise PictureError(f"{path}: another picture has this number or "
                               f"name")
        picture = read_xpm(path)
        check_toolbar_picture(path, picture,
                              OTHER_SIZES.get(name, TOOLBAR_SIZE), palette)
        toolbar[number, name] = picture
    return toolbar


def resource_name(name):
    """What the program calls a toolbar picture."""
    return "IDB_" + name.upper().replace("-", "_")


def load_icon(source, sizes, palette):
    """Render and check one icon in all its sizes."""
    pictures = []
    for size, name in sizes:
        path = source / name
        check_svg_source(path, palette)
        picture = render_svg(path, size)
        check_icon_picture(path, picture, size)
        pictures.append(picture)
    return pictures


def main():
    """Read the command line, build everything, then write it."""
    parser = argparse.ArgumentParser(
        description="Build the pictures of Snipstore from their sources.")
    parser.add_argument("source", type=Path, metavar="SOURCE_DIR")
    parser.add_argument("output", type=Path, metavar="OUT_DIR")
    parser.add_argument("--contact-sheet", type=Path, metavar="FILE.png",
                        help="also draw all pictures together, to look at")
    options = parser.parse_args()

    palette = read_palette(options.source / "palette.gpl")
    check_nothing_is_left_over(options.source)
    toolbar = load_toolbar(options.source, palette)
    icons = {name: load_icon(options.source, sizes, palette)
             for name, sizes in ICONS.items()}

    files = {f"{name}.bmp": encode_bmp(picture)
             for (_, name), picture in toolbar.items()}
    files["toolbar.h"] = "".join(
        f"#define {resource_name(name)} {number}\n"
        for number, name in toolbar).encode()
    files["toolbar.rc"] = "".join(
        f'{resource_name(name)} BITMAP "{name}.bmp"\n'
        for _, name in toolbar).encode()
    files.update((f"{name}.ico", encode_ico(
                     pictures, LARGEST_BMP_OF_PROGRAM if name == "snipstore"
                     else LARGEST_BMP_OF_MESSAGES))
                 for name, pictures in icons.items())

    options.output.mkdir(parents=True, exist_ok=True)
    for name, data in files.items():
        (options.output / name).write_bytes(data)
    if options.contact_sheet:
        options.contact_sheet.write_bytes(
            encode_png(contact_sheet(icons, toolbar)))


if __name__ == "__main__":
    try:
        main()
    except (PictureError, OSError) as fault:
        sys.exit(f"make_pictures.py: {fault}")
