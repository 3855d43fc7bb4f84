"""Everything in a document that is neither text nor picture, counted by kind.

A kind is a list of short descriptions, equal in two documents where the things are equal."""
from collections import Counter

import pikepdf

from . import annotations, metadata, names
from .objects import digest, entry, items, number, text, walked

BOXES = ("/MediaBox", "/CropBox", "/BleedBox", "/TrimBox", "/ArtBox")


def tags(document):
    """The elements of the tree that screen readers walk."""
    elements = walked([entry(document.Root, "/StructTreeRoot")],
                      lambda node: items(entry(node, "/K")))
    return [f"{entry(node, '/S')} {entry(node, '/Alt')} {entry(node, '/ActualText')} "
            f"{entry(node, '/Lang')}" for node in elements if entry(node, "/S") is not None] + \
        [f"marked {text(value)}" for value in items(entry(document.Root, "/MarkInfo"))]


def output_intents(document):
    return [f"{entry(intent, '/S')} {entry(intent, '/OutputConditionIdentifier')} "
            f"{_profile(intent)}" for intent in items(entry(document.Root, "/OutputIntents"))]


def _profile(intent):
    profile = entry(intent, "/DestOutputProfile")
    return digest(profile) if profile is not None else "no profile"


def viewing(document):
    keys = ("/ViewerPreferences", "/Lang", "/PageLayout", "/PageMode", "/URI", "/Requirements",
            "/Legal", "/AA", "/Perms")
    return [f"{key} {text(value)}" for key in keys for value in items(entry(document.Root, key))]


def portfolio(document):
    collection = entry(document.Root, "/Collection")
    return [] if collection is None else [f"{key} {text(value)}"
                                          for key, value in collection.items()]


def transitions(document):
    return [f"page {index}: {key} {text(entry(page.obj, key))}"
            for index, page in enumerate(document.pages, 1) for key in ("/Trans", "/Dur", "/AA")
            if entry(page.obj, key) is not None]


def inherited(page, key):
    for _ in range(50):
        if page is None or entry(page, key) is not None:
            break
        page = entry(page, "/Parent")
    return entry(page, key)


def boxes(document):
    return [f"page {index}: {key} {text(inherited(page.obj, key))}"
            for index, page in enumerate(document.pages, 1) for key in BOXES
            if inherited(page.obj, key) is not None]


def turns_and_units(document):
    found = []
    for index, page in enumerate(document.pages, 1):
        found.append(f"page {index}: turned by {number(inherited(page.obj, '/Rotate')) or 0}")
        found.append(f"page {index}: unit {number(entry(page.obj, '/UserUnit')) or 1}")
    return found


KINDS = {
    "pages": lambda document: ["page"] * len(document.pages),
    "boxes": boxes,
    "turns and units": turns_and_units,
    "tags": tags,
    "outline": names.outline,
    "links": names.links,
    "destinations": names.destinations,
    "labels": names.labels,
    "threads": names.threads,
    "open action": names.open_action,
    "fields": annotations.fields,
    "form": annotations.form,
    "scripts": annotations.scripts,
    "comments": annotations.comments,
    "attachments": annotations.attachments,
    "portfolio": portfolio,
    "layers": annotations.layers,
    "layer switches": annotations.layer_switches,
    "uses of layers": annotations.uses_of_layers,
    "transitions": transitions,
    "output intents": output_intents,
    "viewing": viewing,
    "information": metadata.information,
    "metadata": metadata.properties,
    "protection": metadata.protection,
    "signatures": metadata.signatures,
}


def counted(kind, document):
    """None where it is too broken to be counted."""
    try:
        return Counter(KINDS[kind](document))
    except (pikepdf.PdfError, AttributeError, IndexError, KeyError, RecursionError, TypeError,
            ValueError):
        return None


def of(path, password=""):
    """Kind by kind; None if the document can't be opened."""
    try:
        with pikepdf.open(path, password=password) as document:
            return {kind: counted(kind, document) for kind in KINDS}
    except (pikepdf.PdfError, pikepdf.PasswordError, RuntimeError):
        return None


def losses(copy, original):
    """What the original has and the copy hasn't: pairs of a kind and what is lost of how much."""
    if original is None:
        return []
    if copy is None:
        return [("structure", "unreadable")]
    found = []
    for kind, things in original.items():
        if things and copy[kind] is None:
            found.append((kind, "unreadable"))
        elif things and things - copy[kind]:
            lost = sum((things - copy[kind]).values())
            found.append((kind, f"{lost} of {sum(things.values())}"))
    return found
