"""Where and how images are shown."""
import math

from pikepdf import Array, Dictionary, Name, String


class Page:
    """A page in the making: what it draws, what that uses, and what lies over it."""

    def __init__(self, random, pdf):
        self.random = random
        self.pdf = pdf
        self.content = []
        self.resources = {}
        self.annotations = []

    def name(self, category, thing):
        """A name for a resource."""
        names = self.resources.setdefault(category, {})
        name = f"/{category[1]}{len(names)}"
        names[name] = thing
        return name

    def draw(self, *words):
        self.content.append(" ".join(map(_text, words)))

    def resource_dictionary(self):
        return Dictionary({category: Dictionary(names)
                           for category, names in self.resources.items()})


def _text(word):
    return f"{word:.4f}" if isinstance(word, float) else str(word)


def _form(page, inner, box, **entries):
    """What has been drawn into another page, as a form."""
    return page.pdf.make_stream("\n".join(inner.content).encode(), Type=Name.XObject,
                                Subtype=Name.Form, BBox=Array(box),
                                Resources=inner.resource_dictionary(), **entries)


def _inner(page, image, matrix):
    """A page of its own that shows the image so."""
    inner = Page(page.random, page.pdf)
    direct(inner, image, matrix)
    return inner


def direct(page, image, matrix):
    page.draw("q", *[page.random.choice((0, 0.2, 0.7)) for _ in range(3)], "rg", *matrix, "cm",
              page.name("/XObject", image), "Do Q")


def clipped(page, image, matrix):
    page.draw("q", matrix[4], matrix[5], abs(matrix[0]) / 2 + 1, abs(matrix[3]) / 2 + 1, "re W n")
    direct(page, image, matrix)
    page.draw("Q")


def faded(page, image, matrix):
    state = Dictionary(ca=0.5, BM=page.random.choice((Name.Normal, Name.Multiply)))
    page.draw("q", page.name("/ExtGState", state), "gs")
    direct(page, image, matrix)
    page.draw("Q")


def in_form(page, image, matrix):
    """The form is drawn at twice its size, and may stand in another one."""
    half = [value / 2 for value in matrix]
    form = _form(page, _inner(page, image, half), [0, 0, 400, 400],
                 Matrix=Array([2, 0, 0, 2, 0, 0]))
    if page.random.random() < 0.4:
        outer = _inner(page, form, [1, 0, 0, 1, 0, 0])
        form = _form(page, outer, [0, 0, 400, 400])
    page.draw("q", page.name("/XObject", form), "Do Q")


def in_group(page, image, matrix):
    group = Dictionary(S=Name.Transparency, CS=Name.DeviceRGB, I=page.random.random() < 0.5)
    form = _form(page, _inner(page, image, matrix), [0, 0, 400, 400], Group=group)
    page.draw("q", page.name("/XObject", form), "Do Q")


def in_pattern(page, image, matrix):
    """Cells of a third of the place."""
    wide, tall = abs(matrix[0]) / 3 + 1, abs(matrix[3]) / 3 + 1
    inner = _inner(page, image, [wide, 0, 0, tall, 0, 0])
    pattern = page.pdf.make_stream(
        "\n".join(inner.content).encode(), Type=Name.Pattern, PatternType=1, PaintType=1,
        TilingType=1, BBox=Array([0, 0, wide, tall]), XStep=wide, YStep=tall,
        Resources=inner.resource_dictionary(), Matrix=Array([1, 0, 0, 1, matrix[4], matrix[5]]))
    page.draw("q /Pattern cs", page.name("/Pattern", pattern), "scn", matrix[4], matrix[5],
              wide * 3, tall * 3, "re f Q")


def in_glyph(page, image, matrix):
    """Of a font whose letter is an image."""
    inner = Page(page.random, page.pdf)
    painted = "d1" if image.get("/ImageMask", False) else "d0"
    widths = [1000, 0, 0, 0, 1000, 1000] if painted == "d1" else [1000, 0]
    inner.draw(*widths, painted, "q 1000 0 0 1000 0 0 cm", inner.name("/XObject", image), "Do Q")
    glyph = page.pdf.make_stream("\n".join(inner.content).encode())
    font = Dictionary(Type=Name.Font, Subtype=Name.Type3, FontBBox=Array([0, 0, 1000, 1000]),
                      FontMatrix=Array([0.001, 0, 0, 0.001, 0, 0]), FirstChar=97, LastChar=97,
                      Widths=Array([1000]), CharProcs=Dictionary(a=glyph),
                      Encoding=Dictionary(Differences=Array([97, Name.a])),
                      Resources=inner.resource_dictionary())
    page.draw("BT", page.name("/Font", page.pdf.make_indirect(font)), 1, "Tf", *matrix,
              "Tm (a) Tj ET")


def in_soft_mask(page, image, matrix):
    """The image's brightness says how much is seen of a rectangle."""
    group = Dictionary(S=Name.Transparency, CS=Name.DeviceGray)
    form = _form(page, _inner(page, image, matrix), [0, 0, 400, 400], Group=group)
    state = Dictionary(SMask=Dictionary(S=Name.Luminosity, G=form))
    page.draw("q", page.name("/ExtGState", state), "gs 0.1 0.3 0.8 rg", matrix[4], matrix[5],
              abs(matrix[0]), abs(matrix[3]), "re f Q")


def in_layer(page, image, matrix):
    """Shown or hidden, by the page's content or by the image itself."""
    layer = page.pdf.make_indirect(Dictionary(Type=Name.OCG, Name=String("A layer")))
    layers = page.pdf.Root.get("/OCProperties")
    if layers is None:
        layers = page.pdf.Root.OCProperties = Dictionary(OCGs=Array(), D=Dictionary(OFF=Array()))
    layers.OCGs.append(layer)
    if page.random.random() < 0.5:
        layers.D.OFF.append(layer)
    if page.random.random() < 0.5:
        image.OC = layer
        direct(page, image, matrix)
    else:
        page.draw("/OC", page.name("/Properties", layer), "BDC")
        direct(page, image, matrix)
        page.draw("EMC")


def in_stamp(page, image, matrix):
    box = [matrix[4], matrix[5], matrix[4] + abs(matrix[0]) + 1, matrix[5] + abs(matrix[3]) + 1]
    appearance = _form(page, _inner(page, image, [90.0, 0, 0, 90.0, 0, 0]), [0, 0, 90, 90])
    page.annotations.append(Dictionary(
        Type=Name.Annot, Subtype=Name.Stamp, Rect=Array(box), F=page.random.choice((4, 4, 2)),
        AP=Dictionary(N=appearance)))


def in_button(page, image, matrix):
    """With a state for on and one for off."""
    box = [matrix[4], matrix[5], matrix[4] + abs(matrix[0]) + 1, matrix[5] + abs(matrix[3]) + 1]
    lit = _form(page, _inner(page, image, [90.0, 0, 0, 90.0, 0, 0]), [0, 0, 90, 90])
    dark = _form(page, Page(page.random, page.pdf), [0, 0, 90, 90])
    states = Dictionary(On=lit, Off=dark)
    field = page.pdf.make_indirect(Dictionary(
        Type=Name.Annot, Subtype=Name.Widget, FT=Name.Btn, F=4, Rect=Array(box),
        T=String(f"button{len(page.annotations)}"), AP=Dictionary(N=states, D=lit),
        AS=page.random.choice((Name.On, Name.Off))))
    page.annotations.append(field)
    if "/AcroForm" not in page.pdf.Root:
        page.pdf.Root.AcroForm = Dictionary(Fields=Array())
    page.pdf.Root.AcroForm.Fields.append(field)


def inline(page, image, matrix):
    """As a part of the page's content: gray, of a size that contents allow."""
    width, height = page.random.randrange(1, 40), page.random.randrange(1, 40)
    data = page.random.randbytes(width * height).hex()
    page.draw("q", *matrix, "cm BI /W", width, "/H", height,
              f"/BPC 8 /CS /G /F /AHx ID {data}> EI Q")


def twice(page, image, matrix):
    """Once as said and once at a third of it."""
    direct(page, image, matrix)
    direct(page, image, [value / 3 for value in matrix[:4]] + [matrix[4] + 1, matrix[5] + 1])


ALL = (direct, direct, direct, direct, twice, clipped, faded, in_form, in_form, in_group,
       in_pattern, in_glyph, in_soft_mask, in_layer, in_stamp, in_button, inline)


def matrix(random, left, bottom):
    """Upright mostly, else turned, mirrored or slanted; of all sizes, tiny and none as well."""
    edge = random.choice((80.0, 80.0, 80.0, 60.0, 40.0, 20.0, 8.0, 2.5, 0.4, 0.0))
    tall = edge if random.random() < 0.6 else random.choice((80.0, 30.0, 1.0))
    way = random.choice(("upright",) * 6 + ("turned", "quarter", "mirrored", "slanted"))
    if way == "turned":
        angle = random.random() * math.pi / 2
        cosine, sine = math.cos(angle) * 0.7, math.sin(angle) * 0.7
        return [edge * cosine, edge * sine, -tall * sine, tall * cosine, left + tall * sine, bottom]
    if way == "quarter":
        return [0.0, edge, -tall, 0.0, left + tall, bottom]
    if way == "mirrored":
        return [-edge, 0.0, 0.0, tall, left + edge, bottom]
    slant = edge / 5 if way == "slanted" else 0.0
    return [edge * 0.8, 0.0, slant, tall, left, bottom]
