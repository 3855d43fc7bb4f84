"""Letters as poppler finds them."""
from collections import Counter

from .tools import output_of


def letters_by_page(path):
    text = output_of("pdftotext", path, "-").decode("utf-8", "replace")
    return [Counter(letter for letter in page if not letter.isspace())
            for page in text.split("\f")]


def count(pages):
    return sum(sum(page.values()) for page in pages)


def differing(copy, original):
    """How many letters of the original the copy lacks and how many it has beyond it, each page for
    itself. Another order is not counted."""
    ones, others = letters_by_page(copy), letters_by_page(original)
    longest = max(len(ones), len(others))
    ones += [Counter()] * (longest - len(ones))
    others += [Counter()] * (longest - len(others))
    return sum(sum(((one - other) + (other - one)).values()) for one, other in zip(ones, others))
