"""One document through corvgs, and its copy held against it."""
import os
import random
import re
import tempfile
from dataclasses import dataclass, field
from itertools import zip_longest

import numpy

from comparison import judgement, line, pictures, structure
from comparison.tools import Timed

from . import documents

# Of the default line; one trial in two changes some of them.
CHANGES = (
    ("-dColorImageDownsampleType=/Bicubic", "-dColorImageDownsampleType=/Average"),
    ("-dColorImageDownsampleType=/Bicubic", "-dColorImageDownsampleType=/Subsample"),
    ("-dDownsampleColorImages=true", "-dDownsampleColorImages=false"),
    ("-dColorImageResolution=150", "-dColorImageResolution=300"),
    ("-dColorImageFilter=/DCTEncode", "-dColorImageFilter=/FlateEncode"),
    ("-dGrayImageDownsampleType=/Bicubic", "-dGrayImageDownsampleType=/Average"),
    ("-dGrayImageDownsampleType=/Bicubic", "-dDownsampleGrayImages=false"),
    ("-dGrayImageFilter=/DCTEncode", "-dGrayImageFilter=/FlateEncode"),
    ("-dDownsampleMonoImages=true", "-dDownsampleMonoImages=false"),
    ("-dMonoImageDownsampleType=/Bicubic", "-dMonoImageDownsampleType=/Subsample"),
    ("-dMonoImageFilter=/FlateEncode", "-dMonoImageFilter=/JBIG2Encode"),
    ("-dMonoImageFilter=/FlateEncode", "-dMonoImageFilter=/CCITTFaxEncode"),
)
# Where the two readers' pictures of the original are this close, in levels of 256, a block counts.
AGREEMENT = 20
# What a block may then differ by: more than in real documents, because JPEG has the colours of
# neighbours run into each other, and these are as unlike as chance makes them.
TOLERANCE = 40


@dataclass
class Result:
    """What is wrong with the copy, by kind; blocks of the pictures that were compared, of how many;
    how many bytes the copy has, of how many."""
    faults: list = field(default_factory=list)
    compared: int = 0
    blocks: int = 0
    bytes: int = 0
    original_bytes: int = 0
    reports: list = field(default_factory=list)

    @property
    def images(self):
        """How many corvgs says it has made smaller."""
        found = re.search(r"made smaller: (\d+) images?", "\n".join(self.reports))
        return int(found[1]) if found else 0


def switches(dice):
    chosen = dice.sample(CHANGES, dice.choice((0, 0, 0, 1, 2, 3)))
    return line.switches_with(list({old: (old, new) for old, new in chosen}.values()))


def run(number, seed, corvgs, keep=None):
    """The document of that number in the row that the seed begins."""
    dice = random.Random(f"{seed}-{number}")
    with tempfile.TemporaryDirectory() as folder:
        original = os.path.join(keep or folder, f"{number}.pdf")
        copy = os.path.join(keep or folder, f"{number}-copy.pdf")
        whole = documents.make(dice, original)
        ended = Timed(line.command(corvgs, switches(dice), original, copy))
        result = _judged(ended, copy, original, whole)
        if dice.random() < 0.2 and not result.faults and os.path.exists(copy):
            again = os.path.join(keep or folder, f"{number}-again.pdf")
            ended = Timed(line.command(corvgs, switches(dice), copy, again))
            result.faults = [("again " + kind, how)
                             for kind, how in _judged(ended, again, copy, True).faults]
        return result


def _judged(ended, copy, original, whole):
    result = Result(original_bytes=os.path.getsize(original), reports=ended.output.splitlines())
    if ended.status < 0:
        result.faults = [("crash", str(ended.status))]
    elif ended.status != 0:
        # What is broken may be refused, with a word.
        if whole or len(ended.errors.splitlines()) != 1:
            result.faults = [("no copy", ended.errors.strip())]
        if os.path.exists(copy):
            result.faults.append(("copy", "in spite of a failure"))
    elif not os.path.exists(copy):
        result.faults = [("no copy", "in spite of success")]
    else:
        _compare(result, copy, judgement.Original(original))
    return result


def _compare(result, copy, original):
    result.bytes = os.path.getsize(copy)
    faults = [*judgement.size_faults(copy, original), *judgement.check_faults(copy, original),
              *structure.losses(structure.of(copy), original.structure)]
    result.faults = [fault for fault in faults if judgement.is_serious(fault)]
    pages = zip_longest(pictures.pages_drawn("mutool", copy),
                        pictures.pages_drawn("mutool", original.path),
                        pictures.pages_drawn("poppler in the crop box", original.path))
    for number, (ours, one, other) in enumerate(pages, 1):
        if one is None or other is None:
            break  # one of the readers can't read the original to its end
        fault = _page_fault(result, ours, one, other)
        if fault:
            result.faults.append((f"picture of page {number}", fault))


def _page_fault(result, ours, one, other):
    """Ours, and the original's by two readers, of which the second knows no units of pages."""
    if ours is None or ours.shape != one.shape:
        return "missing" if ours is None else "of another size"
    means, copied = pictures.block_means(one), pictures.block_means(ours)
    scale = one.shape[1] / other.shape[1]
    second = pictures.block_means(other, max(1, round(pictures.BLOCK / scale)))
    rows, columns = (min(means.shape[axis], second.shape[axis]) for axis in (0, 1))
    agreed = (numpy.abs(means[:rows, :columns] - second[:rows, :columns]).max(axis=2) <= AGREEMENT)
    apart = numpy.abs(means - copied).max(axis=2)[:rows, :columns]
    result.blocks += agreed.size
    result.compared += int(agreed.sum())
    bad = apart[agreed & (apart > TOLERANCE)]
    return f"{bad.size} blocks, by {bad.max():.0f}" if bad.size else ""
