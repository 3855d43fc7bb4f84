"""Filters of streams."""
import base64
import io
import zlib

import numpy
from PIL import Image, TiffImagePlugin


def ascii85(data):
    return base64.a85encode(data) + b"~>"


def ascii_hex(data):
    return data.hex().encode() + b">"


def run_length(data):
    """Runs where bytes come again, else literals."""
    result, place = bytearray(), 0
    while place < len(data):
        end = place
        while end < len(data) and end - place < 128 and data[end] == data[place]:
            end += 1
        if end - place > 1:
            result += bytes((257 - (end - place), data[place]))
        else:
            end = min(place + 16, len(data))
            result += bytes((end - place - 1,)) + data[place:end]
        place = end
    return bytes(result + b"\x80")


def lzw(data):
    """With codes that become longer one code early, as PDF has it unless it says otherwise."""
    clear, end = 256, 257
    table, following = {}, 258
    codes, prefix = [(clear, 9)], b""
    for value in data:
        longer = prefix + bytes((value,))
        if len(longer) == 1 or longer in table:
            prefix = longer
            continue
        codes.append((_code(table, prefix), _length(following)))
        table[longer] = following
        following += 1
        prefix = longer[-1:]
        if following == 4095:
            codes.append((clear, 12))
            table, following = {}, 258
    if prefix:
        codes.append((_code(table, prefix), _length(following)))
        following += 1
    codes.append((end, _length(following)))
    digits = "".join(f"{code:0{length}b}" for code, length in codes)
    digits += "0" * (-len(digits) % 8)
    return int(digits, 2).to_bytes(len(digits) // 8, "big")


def _code(table, prefix):
    return prefix[0] if len(prefix) == 1 else table[prefix]


def _length(following):
    """Of a code that is written when the next entry of the table is this one."""
    return max(9, min(12, following.bit_length()))


def png_predicted(random, data, row, distance):
    """Each row with a way of its own: as it is, less its left neighbour, less the row above."""
    rows = numpy.frombuffer(data, numpy.uint8).reshape(-1, row)
    result, above = [], numpy.zeros(row, numpy.uint8)
    for line in rows:
        way = random.randrange(3)
        left = numpy.concatenate((numpy.zeros(distance, numpy.uint8), line))[:row]
        less = (numpy.zeros(row, numpy.uint8), left, above)[way]
        result.append(bytes((way,)) + (line - less).tobytes())
        above = line
    return b"".join(result)


def tiff_predicted(data, row, components):
    """Of samples of 8 bits."""
    rows = numpy.frombuffer(data, numpy.uint8).reshape(-1, row // components, components)
    before = numpy.concatenate((numpy.zeros_like(rows[:, :1]), rows[:, :-1]), axis=1)
    return (rows - before).tobytes()


def flate(random, data):
    return zlib.compress(data, random.choice((1, 6, 9)))


def _image(values):
    bytes_of = numpy.rint(values * 255).astype(numpy.uint8)
    mode = {1: "L", 2: "LA", 3: "RGB", 4: "CMYK"}[bytes_of.shape[2]]
    return Image.fromarray(bytes_of[:, :, 0] if mode == "L" else bytes_of, mode)


def jpeg(random, values):
    """Of one, three or four components; those of four have Adobe's marker, and are inverted."""
    options = {"quality": random.choice((50, 75, 92)), "progressive": random.random() < 0.3,
               "optimize": random.random() < 0.3}
    if values.shape[2] == 3:
        options["subsampling"] = random.choice((0, 1, 2))
    file = io.BytesIO()
    _image(values).save(file, "JPEG", **options)
    return file.getvalue()


def without_adobe_marker(data):
    start = data.find(b"\xff\xee")
    if start < 0:
        return data
    length = int.from_bytes(data[start + 2:start + 4], "big")
    return data[:start] + data[start + 2 + length:]


def jpeg2000(random, values, alpha=False):
    """Without its file format's box of colours, if so drawn: a bare codestream."""
    image = _image(values)
    if alpha:
        image.putalpha(Image.linear_gradient("L").resize(image.size))
    file = io.BytesIO()
    image.save(file, "JPEG2000", irreversible=random.random() < 0.5,
               no_jp2=not alpha and random.random() < 0.3)
    return file.getvalue()


def fax(values):
    """Group 4, one strip; white is 1."""
    file = io.BytesIO()
    height = values.shape[0]
    image = Image.fromarray(values[:, :, 0] >= 0.5)
    TiffImagePlugin.STRIP_SIZE = 1 << 30
    image.save(file, "TIFF", compression="group4", tiffinfo={278: height})
    file.seek(0)
    with Image.open(file) as tiff:
        (offset,), (length,) = tiff.tag_v2[273], tiff.tag_v2[279]
    return file.getvalue()[offset:offset + length]
