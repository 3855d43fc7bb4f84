"""Pictures as arrays of rows, columns and components, each from 0 to 1."""
import numpy


def picture(random, width, height, components):
    """Slopes, patches, lines and some noise: what photographs, drawings and scans have."""
    noise = numpy.random.default_rng(random.getrandbits(32))
    down, across = numpy.mgrid[0:height, 0:width]
    result = numpy.empty((height, width, components))
    for component in range(components):
        result[:, :, component] = (random.random() * down / height
                                   + random.random() * across / width) / 2 + random.random() / 3
    result += noise.normal(0, random.choice((0, 0.01, 0.04)), (height, width, 1))
    for _ in range(random.randrange(6)):
        _draw(random, result)
    return result.clip(0, 1)


def _draw(random, result):
    """A patch, or a line as thin as a hair."""
    height, width, components = result.shape
    top, left = random.randrange(height), random.randrange(width)
    tall, wide = random.choice(((1, width), (height, 1), (height // 3 + 1, width // 3 + 1)))
    colour = [random.random() for _ in range(components)]
    result[top:top + tall, left:left + wide] = colour


def bilevel(random, width, height):
    """Letters from afar: few shapes, which come again."""
    result = numpy.ones((height, width, 1))
    shapes = [numpy.random.default_rng(random.getrandbits(32)).random((9, 7)) < 0.5
              for _ in range(4)]
    for top in range(2, height - 10, 14):
        for left in range(2, width - 8, 9):
            result[top:top + 9, left:left + 7, 0][random.choice(shapes)] = 0
    return result if random.random() < 0.8 else 1 - result


def packed(values, bits):
    """Samples as PDF has them, each row to the end of its last byte."""
    levels = numpy.rint(values * (2 ** bits - 1)).astype(numpy.uint16)
    height = levels.shape[0]
    rows = levels.reshape(height, -1)
    if bits == 16:
        return rows.astype(">u2").tobytes()
    if bits == 8:
        return rows.astype(numpy.uint8).tobytes()
    digits = (rows[:, :, None] >> numpy.arange(bits - 1, -1, -1)) & 1
    return numpy.packbits(digits.reshape(height, -1).astype(numpy.uint8), axis=1).tobytes()
