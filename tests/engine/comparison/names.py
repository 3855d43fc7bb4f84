"""Ways to a place in a document: destinations, outlines, links, page labels, threads."""
from .objects import entry, identity, items, number, text, tree, walked


class Pages:
    """Which page a dictionary is, by its number from 1."""

    def __init__(self, document):
        self._numbers = {identity(page.obj): index
                         for index, page in enumerate(document.pages, 1)}

    def number_of(self, page):
        return self._numbers.get(identity(page), "nowhere")


def place(pages, destination):
    """An explicit destination: page, kind of view and its numbers."""
    parts = items(entry(destination, "/D") if entry(destination, "/D") is not None else destination)
    if not parts:
        return "nowhere"
    if len(parts) == 1:
        return str(parts[0])
    page = number(parts[0]) or pages.number_of(parts[0])
    return f"{page} " + " ".join(map(text, parts[1:]))


def action(pages, owner):
    """What a link, an outline entry or a document does when it is opened."""
    if entry(owner, "/A") is None:
        return place(pages, entry(owner, "/Dest"))
    kind = entry(owner, "/A", "/S")
    if kind == "/GoTo":
        return place(pages, entry(owner, "/A", "/D"))
    return text(owner.get("/A"))


def destinations(document):
    pages = Pages(document)
    old = entry(document.Root, "/Dests")
    named = list(old.items()) if old is not None else []
    named += tree(entry(document.Root, "/Names", "/Dests"), "/Names")
    return [f"{name}: {place(pages, destination)}" for name, destination in named]


def labels(document):
    return [f"{number(index)}: {text(label)}"
            for index, label in tree(entry(document.Root, "/PageLabels"), "/Nums")]


def outline(document):
    pages = Pages(document)
    entries = walked([entry(document.Root, "/Outlines", "/First")],
                     lambda node: [entry(node, "/First"), entry(node, "/Next")])
    return [f"{entry(node, '/Title')}: {action(pages, node)}" for node in entries]


def links(document):
    pages = Pages(document)
    return [f"page {index}: {action(pages, annotation)}"
            for index, page in enumerate(document.pages, 1)
            for annotation in items(entry(page.obj, "/Annots"))
            if entry(annotation, "/Subtype") == "/Link"]


def threads(document):
    beads = []
    for thread in items(entry(document.Root, "/Threads")):
        title = entry(thread, "/I", "/Title")
        beads += [f"{title}: {text(entry(bead, '/R'))}"
                  for bead in walked([entry(thread, "/F")], lambda bead: [entry(bead, "/N")])]
    return beads


def open_action(document):
    pages = Pages(document)
    opened = entry(document.Root, "/OpenAction")
    if opened is None:
        return []
    if entry(opened, "/S") is not None and entry(opened, "/S") != "/GoTo":
        return [text(opened)]
    return [place(pages, opened)]
