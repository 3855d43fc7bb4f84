"""Small questions to PDF objects."""
import hashlib

import pikepdf

DEPTH = 200


def text(value):
    """A short form of any object in which equal things are equal; what is indirect is followed for
    two levels only, because it may lead back."""
    return _text(value, 2)


def _text(value, depth):
    if isinstance(value, pikepdf.Stream):
        return "stream " + digest(value)
    if isinstance(value, pikepdf.Dictionary):
        if depth == 0:
            return "<<>>"
        return "<<" + " ".join(f"{key} {_text(entry, depth - 1)}"
                               for key, entry in sorted(value.items()) if key != "/Parent") + ">>"
    if isinstance(value, pikepdf.Array):
        return "[" + (" ".join(_text(item, depth - 1) for item in value) if depth else "") + "]"
    return number(value) or str(value)


def number(value):
    """A number without the digits in which two ways of writing it differ; else nothing."""
    try:
        return f"{round(float(value), 3):g}" if not isinstance(value, (pikepdf.Object, str)) else ""
    except (TypeError, ValueError):
        return ""


def digest(stream):
    """Of what a reader gets out of it, however it is compressed."""
    try:
        data = stream.read_bytes(pikepdf.StreamDecodeLevel.generalized)
    except pikepdf.PdfError:
        data = stream.read_raw_bytes()
    return hashlib.sha1(data).hexdigest()[:12]


def entry(value, *keys):
    """The entry of an entry of ...; None if there is none."""
    for key in keys:
        if not isinstance(value, (pikepdf.Dictionary, pikepdf.Stream)):
            return None
        value = value.get(key)
    return value


def items(value):
    """Those of an array; a single thing is one item, and nothing is none."""
    if isinstance(value, pikepdf.Array):
        return list(value)
    return [] if value is None else [value]


def identity(value):
    return value.objgen if isinstance(value, pikepdf.Object) and value.is_indirect else None


def walked(roots, children):
    """Things below these, each once, however deep or tangled they are."""
    seen, waiting = set(), list(reversed(list(roots)))
    while waiting:
        value = waiting.pop()
        if not isinstance(value, (pikepdf.Dictionary, pikepdf.Stream)):
            continue
        if identity(value) in seen:
            continue
        if identity(value):
            seen.add(identity(value))
        yield value
        waiting.extend(reversed(children(value)))


def tree(root, leaf):
    """Pairs of a name or number tree."""
    for node in walked([root], lambda node: items(entry(node, "/Kids"))):
        pairs = items(entry(node, leaf))
        yield from zip(pairs[::2], pairs[1::2])


# What editors leave for themselves.
NOBODY_READS = ("/PieceInfo", "/Thumb", "/LastModified")


def everything(document):
    """Every dictionary and stream that the catalogue leads to, those of indirect objects once."""
    seen, waiting = set(), [document.Root]
    while waiting:
        value = waiting.pop()
        if identity(value):
            if identity(value) in seen:
                continue
            seen.add(identity(value))
        if isinstance(value, pikepdf.Array):
            children = list(value)
        else:
            yield value
            children = [child for key, child in value.items() if key not in NOBODY_READS]
        waiting += [child for child in children
                    if isinstance(child, (pikepdf.Array, pikepdf.Dictionary, pikepdf.Stream))]
