"""What hides a part of an image: none, a stencil, colours, or transparency."""
from pikepdf import Array, Name

from . import filters, pixels


def stencil(random, pdf, width, height):
    """An image that is a mask, in its own right or beside an image."""
    values = pixels.bilevel(random, width, height)
    encoded = filters.fax(random, values) if random.random() < 0.4 \
        else filters.samples(random, values, 1)
    image = pdf.make_stream(b"", Type=Name.XObject, Subtype=Name.Image, Width=width,
                            Height=height, ImageMask=True, BitsPerComponent=1)
    filters.chained(random, encoded).apply(image)
    if random.random() < 0.4:
        image.Decode = Array([1, 0])
    return image


def soft(random, pdf, width, height):
    values = pixels.picture(random, width, height, 1)
    bits = random.choice((1, 4, 8, 8, 8, 16))
    encoded = filters.jpeg(random, values) if bits == 8 and random.random() < 0.3 \
        else filters.samples(random, values, bits)
    image = pdf.make_stream(b"", Type=Name.XObject, Subtype=Name.Image, Width=width,
                            Height=height, ColorSpace=Name.DeviceGray, BitsPerComponent=bits)
    filters.chained(random, encoded).apply(image)
    if random.random() < 0.2:
        image.Decode = Array([1, 0])
    return image


def _size(random, image):
    """The image's own, or another."""
    if random.random() < 0.5:
        return int(image.Width), int(image.Height)
    return random.randrange(1, 300), random.randrange(1, 300)


def add_stencil(random, pdf, image, space):
    image.Mask = stencil(random, pdf, *_size(random, image))


def add_soft(random, pdf, image, space):
    image.SMask = soft(random, pdf, *_size(random, image))


def add_matte(random, pdf, image, space):
    """Which asks for a mask of the same size."""
    image.SMask = soft(random, pdf, int(image.Width), int(image.Height))
    image.SMask.Matte = Array([0] * space.components)


def add_colours(random, pdf, image, space):
    top = 2 ** int(image.BitsPerComponent) - 1
    low = [random.randint(0, top) for _ in range(space.components)]
    image.Mask = Array([value for least in low
                        for value in (least, min(top, least + max(1, top // 3)))])


def add_any(random, pdf, image, space):
    way = random.choice((None, None, None, add_stencil, add_soft, add_soft, add_matte, add_colours))
    if way and not (way is add_matte and space.levels):
        way(random, pdf, image, space)
