"""Colour spaces: each is made for a document and says how many components a sample has."""
from dataclasses import dataclass

from pikepdf import Array, Dictionary, Name

PROFILES = "/usr/share/color/icc/ghostscript/"
DEVICE = {1: Name.DeviceGray, 3: Name.DeviceRGB, 4: Name.DeviceCMYK}
WHITE = Array([0.9505, 1, 1.089])


@dataclass
class ColourSpace:
    """Components of a sample; device says whether JPEG's own kinds fit, levels how many entries an
    indexed one has."""
    object: object
    components: int
    levels: int = 0


def device(random, pdf):
    components = random.choice((1, 1, 3, 3, 4))
    return ColourSpace(DEVICE[components], components)


def calibrated(random, pdf):
    if random.random() < 0.5:
        return ColourSpace(Array([Name.CalGray, Dictionary(WhitePoint=WHITE, Gamma=1.8)]), 1)
    return ColourSpace(Array([Name.CalRGB, Dictionary(WhitePoint=WHITE,
                                                      Gamma=Array([2.2, 2.2, 2.2]))]), 3)


def lab(random, pdf):
    return ColourSpace(Array([Name.Lab, Dictionary(WhitePoint=WHITE,
                                                   Range=Array([-100, 100, -100, 100]))]), 3)


def profiled(random, pdf):
    name, components = random.choice((("sgray", 1), ("srgb", 3), ("default_cmyk", 4)))
    with open(f"{PROFILES}{name}.icc", "rb") as file:
        profile = pdf.make_stream(file.read(), N=components)
    if random.random() < 0.5:
        profile.Alternate = DEVICE[components]
    return ColourSpace(Array([Name.ICCBased, profile]), components)


def indexed(random, pdf):
    base = random.choice((device, profiled))(random, pdf)
    levels = random.choice((2, 4, 16, 200, 256))
    table = random.randbytes(levels * base.components)
    if random.random() < 0.5:
        table = pdf.make_stream(table)
    return ColourSpace(Array([Name.Indexed, base.object, levels - 1, table]), 1, levels)


def separation(random, pdf):
    tint = Dictionary(FunctionType=2, Domain=Array([0, 1]), N=1, C0=Array([0, 0, 0, 0]),
                      C1=Array([random.random() for _ in range(4)]))
    return ColourSpace(Array([Name.Separation, Name("/Spot"), Name.DeviceCMYK, tint]), 1)


def device_n(random, pdf):
    tint = pdf.make_stream(b"{ 0 0 }", FunctionType=4, Domain=Array([0, 1, 0, 1]),
                           Range=Array([0, 1] * 4))
    return ColourSpace(Array([Name.DeviceN, Array([Name("/One"), Name("/Two")]), Name.DeviceCMYK,
                              tint]), 2)


ALL = (device, device, device, calibrated, lab, profiled, profiled, indexed, separation, device_n)


def any_of(random, pdf):
    return random.choice(ALL)(random, pdf)
