"""Image objects."""
from pikepdf import Array, Dictionary, Name, String

from . import codecs, colours, filters, masks, pixels

SIZES = (1, 2, 3, 8, 17, 40, 64, 100, 150, 200, 320, 500)
LARGE = (700, 1000)


def size(random):
    if random.random() < 0.04:
        return 1, 1
    width = random.choice(LARGE if random.random() < 0.1 else SIZES[3:])
    height = random.choice((width, width, random.choice(SIZES)))
    return width, height


def _new(pdf, width, height, **entries):
    return pdf.make_stream(b"", Type=Name.XObject, Subtype=Name.Image, Width=width,
                           Height=height, **entries)


def photograph(random, pdf):
    """Of JPEG, in the colours of the device or of a profile."""
    space = random.choice((colours.device, colours.device, colours.profiled))(random, pdf)
    width, height = size(random)
    image = _new(pdf, width, height, ColorSpace=space.object, BitsPerComponent=8)
    values = pixels.picture(random, width, height, space.components)
    filters.chained(random, filters.jpeg(random, values)).apply(image)
    if space.components == 4 and random.random() < 0.5:
        image.Decode = Array([1, 0] * 4)
    masks.add_any(random, pdf, image, space)
    return image


def samples(random, pdf):
    """Of any colours and any number of bits, without loss."""
    space = colours.any_of(random, pdf)
    width, height = size(random)
    bits = random.choice((1, 2, 4, 8, 8, 8, 8, 16))
    if space.levels:
        bits = next(enough for enough in (1, 2, 4, 8) if 2 ** enough >= space.levels)
    image = _new(pdf, width, height, ColorSpace=space.object, BitsPerComponent=bits)
    values = pixels.picture(random, width, height, space.components)
    if space.levels:
        values = values * (space.levels - 1) / (2 ** bits - 1)
    filters.chained(random, filters.samples(random, values, bits)).apply(image)
    if random.random() < 0.15 and not space.levels:
        image.Decode = _decode(random, image, space)
    masks.add_any(random, pdf, image, space)
    return image


def _decode(random, image, space):
    """The colours turned round, or only some of their range."""
    if isinstance(space.object, Array) and space.object[0] == Name.Lab:
        return Array([0, 100, 100, -100, -100, 100])
    low, high = random.choice(((1, 0), (0, 0.5), (0.25, 0.75), (0, 1)))
    return Array([low, high] * space.components)


def scan(random, pdf):
    """Of one bit, dark on light."""
    width, height = random.choice(((300, 200), (640, 400), (1000, 700), (64, 64)))
    values = pixels.bilevel(random, width, height)
    space = random.choice((Name.DeviceGray, Name.DeviceGray, Name.DeviceGray, None))
    if space is None:
        space = Array([Name.Indexed, Name.DeviceRGB, 1, String(b"\x10\x20\x60\xff\xf0\xe0")])
    image = _new(pdf, width, height, ColorSpace=space, BitsPerComponent=1)
    encoded = filters.fax(random, values) if random.random() < 0.6 \
        else filters.samples(random, values, 1)
    filters.chained(random, encoded).apply(image)
    if random.random() < 0.2:
        image.Decode = Array([1, 0])
    return image


def stencil(random, pdf):
    return masks.stencil(random, pdf, *size(random))


def jpeg2000(random, pdf):
    width, height = (max(16, edge) for edge in size(random))
    components = random.choice((1, 3))
    alpha = random.random() < 0.2
    values = pixels.picture(random, width, height, components)
    image = _new(pdf, width, height)
    if random.random() < 0.5 and not alpha:
        image.ColorSpace = colours.DEVICE[components]
        image.BitsPerComponent = 8
    filters.Encoded(codecs.jpeg2000(random, values, alpha), (Name.JPXDecode, None)).apply(image)
    if alpha:
        image.SMaskInData = 1
    return image


KINDS = (photograph, photograph, photograph, samples, samples, samples, scan, scan, stencil,
         jpeg2000)


def any_of(random, pdf):
    """With entries that belong to the image's place and not to its samples."""
    image = random.choice(KINDS)(random, pdf)
    if random.random() < 0.2:
        image.Interpolate = True
    if random.random() < 0.1:
        image.Intent = Name.Perceptual
    if random.random() < 0.05:
        image.Metadata = pdf.make_stream(b"<x/>", Type=Name.Metadata, Subtype=Name.XML)
    if random.random() < 0.03:
        other = random.choice(KINDS)(random, pdf)
        image.Alternates = Array([Dictionary(Image=other, DefaultForPrinting=True)])
    return image
