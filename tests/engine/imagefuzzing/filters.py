"""Samples put through filters."""
from pikepdf import Array, Dictionary, Name

from . import codecs, pixels


class Encoded:
    """Bytes and the filters that lead to them, the outermost first."""

    def __init__(self, data, *filters):
        self.data = data
        self.filters = list(filters)

    def wrapped(self, data, name, parameters=None):
        self.data = data
        self.filters.insert(0, (name, parameters))

    def apply(self, stream):
        """To a stream: as a name, or as a list, as chains have to."""
        names = [name for name, _ in self.filters]
        parameters = [parameter for _, parameter in self.filters]
        if len(names) == 1:
            stream.write(self.data, filter=names[0], decode_parms=parameters[0])
        else:
            stream.write(self.data, filter=Array(names) if names else None,
                         decode_parms=_list_of(parameters))


def _list_of(parameters):
    return Array([parameter or Dictionary() for parameter in parameters]) \
        if any(parameters) else None


def flate(random, data, bits, components, columns):
    row = (columns * bits * components + 7) // 8
    way = random.randrange(3)
    parameters = Dictionary(Colors=components, BitsPerComponent=bits, Columns=columns)
    if way == 0:
        return Encoded(codecs.flate(random, data), (Name.FlateDecode, None))
    if way == 1 and bits == 8:
        data = codecs.tiff_predicted(data, row, components)
        parameters.Predictor = 2
    else:
        data = codecs.png_predicted(random, data, row, max(1, bits * components // 8))
        parameters.Predictor = random.choice((10, 12, 15))
    return Encoded(codecs.flate(random, data), (Name.FlateDecode, parameters))


def plain(random, data, *_):
    return Encoded(data)


def run_length(random, data, *_):
    return Encoded(codecs.run_length(data), (Name.RunLengthDecode, None))


def lzw(random, data, *_):
    return Encoded(codecs.lzw(data), (Name.LZWDecode, None))


def samples(random, values, bits):
    """Without loss."""
    way = random.choice((flate, flate, flate, plain, run_length, lzw))
    return way(random, pixels.packed(values, bits), bits, values.shape[2], values.shape[1])


def fax(random, values):
    height, width, _ = values.shape
    parameters = Dictionary(K=-1, Columns=width, Rows=height)
    if random.random() < 0.5:
        parameters.BlackIs1 = True
    return Encoded(codecs.fax(values), (Name.CCITTFaxDecode, parameters))


def jpeg(random, values):
    data, parameters = codecs.jpeg(random, values), None
    if random.random() < 0.4:
        data = codecs.without_adobe_marker(data)
    if values.shape[2] == 3 and random.random() < 0.2:
        parameters = Dictionary(ColorTransform=random.randrange(2))
    return Encoded(data, (Name.DCTDecode, parameters))


def chained(random, encoded):
    """One filter in ten stands behind another, or two others."""
    for name, wrap in ((Name.FlateDecode, lambda data: codecs.flate(random, data)),
                       (Name.ASCII85Decode, codecs.ascii85),
                       (Name.ASCIIHexDecode, codecs.ascii_hex)):
        if random.random() < 0.1:
            encoded.wrapped(wrap(encoded.data), name)
    return encoded
