"""The pages of two documents, drawn by one reader and held against each other by block."""
import itertools

import numpy

from .tools import Pipe

RESOLUTION = 72
BLOCK = 4  # pixels
# In levels of 256. The brightness of a block's mean moves by up to 28 where a scan has half its
# resolution and JPEG's traces, and by 32 where a black line of half a point is missing from it.
LEVELS = 30
# A single colour moves further where JPEG keeps colours more coarsely than brightness.
COLOUR_LEVELS = 48
BRIGHTNESS = (0.3, 0.59, 0.11)
# What a whole page may be brighter or darker in its mean.
PAGE_LEVELS = 4

READERS = ("poppler", "mutool")
# poppler draws the media box if it isn't told otherwise, mutool the crop box.
COMMANDS = {
    "poppler": ("pdftoppm", "-r", str(RESOLUTION)),
    "poppler in the crop box": ("pdftoppm", "-cropbox", "-r", str(RESOLUTION)),
    "mutool": ("mutool", "draw", "-q", "-r", str(RESOLUTION), "-F", "ppm", "-o", "-"),
}


def pages_drawn(reader, path):
    """The pages one by one, as arrays of rows, columns and colours."""
    with Pipe(*COMMANDS[reader], path) as stream:
        while stream.readline().strip() == b"P6":
            width, height = map(int, stream.readline().split())
            stream.readline()
            data = stream.read(width * height * 3)
            if len(data) < width * height * 3:
                return
            yield numpy.frombuffer(data, numpy.uint8).reshape(height, width, 3)


def block_means(page, edge=BLOCK):
    height, width, _ = page.shape
    padded = numpy.pad(page, ((0, -height % edge), (0, -width % edge), (0, 0)), mode="edge")
    rows, columns = padded.shape[0] // edge, padded.shape[1] // edge
    return padded.reshape(rows, edge, columns, edge, 3).mean(axis=(1, 3))


def apart(means, others):
    """How far blocks, or pages, are apart: in brightness, or in a colour on its own scale."""
    differences = means - others
    colours = numpy.abs(differences).max(axis=-1) * LEVELS / COLOUR_LEVELS
    return numpy.maximum(numpy.abs(differences @ numpy.array(BRIGHTNESS)), colours)


def shifted(page, down, across):
    return numpy.roll(page, (down, across), axis=(0, 1))


def block_differences(one, other):
    """How far each block is apart. The second page is tried at nine places, as a whole: Ghostscript
    may move everything by a pixel."""
    means = block_means(one)
    places = sorted(itertools.product((0, 1, -1), repeat=2), key=lambda place: place != (0, 0))
    best = None
    for down, across in places:
        here = apart(means, block_means(shifted(other, down, across)))
        if best is None or (here > LEVELS).sum() < (best > LEVELS).sum():
            best = here
        if best.max(initial=0) <= LEVELS:
            break
    return best


class Comparison:
    """How many pages were compared, how many blocks of them differ, the greatest difference of a
    block and of a page's mean in levels of 256, and what is wrong with their number or size."""

    def __init__(self):
        self.pages = 0
        self.blocks = 0
        self.level = 0.0
        self.page_level = 0.0
        self.complaint = ""

    def add(self, one, other):
        self.pages += 1
        if one.shape != other.shape:
            self.complaint = f"size of page {self.pages}"
        elif one.tobytes() != other.tobytes():
            self._add_differences(block_differences(one, other))
            moved = apart(one.mean(axis=(0, 1)), other.mean(axis=(0, 1)))
            self.page_level = max(self.page_level, float(moved))

    def _add_differences(self, differences):
        self.blocks += int((differences > LEVELS).sum())
        self.level = max(self.level, float(differences.max()))

    @property
    def fault(self):
        """Empty if the pictures are alike."""
        if self.complaint:
            return self.complaint
        if self.blocks:
            return f"{self.blocks} blocks, by {self.level:.0f}"
        return f"page by {self.page_level:.0f}" if self.page_level > PAGE_LEVELS else ""


def compared(reader, copy, original):
    result = Comparison()
    for one, other in itertools.zip_longest(pages_drawn(reader, copy),
                                            pages_drawn(reader, original)):
        if one is None or other is None:
            result.complaint = "pages are missing" if one is None else "more pages"
            break
        result.add(one, other)
    return result
