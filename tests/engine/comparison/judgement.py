"""A copy held against its original."""
import os

from . import pictures, structure, texts
from .tools import status_of

# What a repaired original may grow by.
REPAIRED = 1.05


class Original:
    """What is asked of an original more than once."""

    def __init__(self, path):
        self.path = path
        self.bytes = os.path.getsize(path)
        self.structure = structure.of(path)
        self.check = status_of("qpdf", "--check", path)
        self.letters = texts.count(texts.letters_by_page(path))

    @property
    def signed(self):
        return bool(self.structure and self.structure["signatures"])


def size_faults(copy, original):
    size = os.path.getsize(copy)
    if size <= original.bytes:
        return []
    repaired = original.check != 0 and size <= original.bytes * REPAIRED
    return [("larger", "of a repaired one" if repaired else f"by {size - original.bytes}")]


def check_faults(copy, original):
    """qpdf: 0 all is well, 3 warnings, 2 errors."""
    order = (0, 3, 2, None)
    status = status_of("qpdf", "--check", copy)
    worse = order.index(status) > order.index(original.check)
    return [("check", f"{status} instead of {original.check}")] if worse else []


def text_faults(copy, original):
    differing = texts.differing(copy, original.path)
    return [("text", f"{differing} of {original.letters} letters")] if differing else []


def picture_faults(copy, original):
    found = []
    for reader in pictures.READERS:
        fault = pictures.compared(reader, copy, original.path).fault
        if fault:
            found.append((reader, fault))
    return found


def signature_faults(copy, original):
    if not original.signed:
        return []
    with open(copy, "rb") as one, open(original.path, "rb") as other:
        return [] if one.read() == other.read() else [("signature", "broken")]


def faults(copy, original):
    """Pairs of what is wrong and how far; none if the copy is as good as its original."""
    return [*size_faults(copy, original), *check_faults(copy, original),
            *text_faults(copy, original), *picture_faults(copy, original),
            *structure.losses(structure.of(copy), original.structure),
            *signature_faults(copy, original)]


def is_serious(fault):
    return fault != ("larger", "of a repaired one")
