"""Whole documents, each made by its seed, and how some of them are broken."""
import pikepdf
from pikepdf import Array, Dictionary, Name, Pdf

from . import images, places

CELL = 95.0
CELLS = [(5 + CELL * across, 5 + CELL * down) for across in range(3) for down in range(3)]


def make(random, path):
    """Writes a document; true if nothing is wrong with it."""
    with Pdf.new() as pdf:
        stock = [images.any_of(random, pdf) for _ in range(random.randint(1, 6))]
        for _ in range(random.choice((1, 1, 1, 2, 3))):
            _add_page(random, pdf, stock)
        broken = random.random() < 0.15
        if broken:
            _break(random, random.choice(stock))
        _save(random, pdf, path, broken)
    return not broken


def _add_page(random, pdf, stock):
    """The pages share the images."""
    page = places.Page(random, pdf)
    for left, bottom in random.sample(CELLS, random.randint(1, 6)):
        place = random.choice(places.ALL)
        place(page, random.choice(stock), places.matrix(random, left, bottom))
    pdf.add_blank_page(page_size=(295, 295))
    made = pdf.pages[-1].obj
    made.Resources = page.resource_dictionary()
    made.Contents = pdf.make_stream("\n".join(page.content).encode())
    if page.annotations:
        made.Annots = Array([annotation if annotation.is_indirect
                             else pdf.make_indirect(annotation)
                             for annotation in page.annotations])
    _turn(random, made)


def _turn(random, page):
    if random.random() < 0.15:
        page.Rotate = random.choice((90, 180, 270))
    if random.random() < 0.1:
        page.CropBox = Array([20, 30, 250, 270])
    if random.random() < 0.1:
        page.UserUnit = random.choice((0.5, 2))
    if random.random() < 0.1:
        page.MediaBox = Array([-50, -20, 295, 295])


def _save(random, pdf, path, broken):
    way = random.random()
    options = {"object_stream_mode": random.choice((pikepdf.ObjectStreamMode.disable,
                                                    pikepdf.ObjectStreamMode.generate)),
               # The library reads what it compresses or encrypts, and stumbles over broken streams.
               "compress_streams": random.random() < 0.7 and not broken,
               "static_id": broken or way >= 0.05}
    if way < 0.05 and not broken:
        options["encryption"] = pikepdf.Encryption(owner="owner", user="", R=random.choice((4, 6)))
    else:
        # As they stand: filters and chains are what is tried.
        options["stream_decode_level"] = pikepdf.StreamDecodeLevel.none
        options["linearize"] = way < 0.1
    pdf.save(path, **options)


def _break(random, image):
    random.choice((_cut, _spoil, _wrong_size, _wrong_entries, _mask_itself))(random, image)


def _rewrite(image, data):
    image.write(data, filter=image.get("/Filter"), decode_parms=image.get("/DecodeParms"))


def _cut(random, image):
    data = image.read_raw_bytes()
    _rewrite(image, data[:random.randrange(len(data) + 1)])


def _spoil(random, image):
    data = bytearray(image.read_raw_bytes())
    for _ in range(random.randint(1, 20)):
        if data:
            data[random.randrange(len(data))] = random.randrange(256)
    _rewrite(image, bytes(data))


def _wrong_size(random, image):
    image[random.choice(("/Width", "/Height"))] = random.choice((0, -1, 7, 5000, 100000))


def _wrong_entries(random, image):
    key, value = random.choice((
        ("/ColorSpace", Name.DeviceCMYK), ("/ColorSpace", Name("/Nowhere")),
        ("/BitsPerComponent", 3), ("/BitsPerComponent", 16), ("/Filter", Name.DCTDecode),
        ("/Filter", Name.LZWDecode), ("/Filter", Name("/Unknown")), ("/Decode", Array([0])),
        ("/Mask", Array([1])), ("/ImageMask", True), ("/DecodeParms", Dictionary(Predictor=99)),
        ("/ColorSpace", Array([Name.Indexed, Name.DeviceRGB, 255, b"\x01\x02"]))))
    image[key] = value


def _mask_itself(random, image):
    image[random.choice(("/SMask", "/Mask"))] = image
