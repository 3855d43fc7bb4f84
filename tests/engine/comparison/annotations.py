"""What lies over pages or belongs to them: comments, fields, scripts, attachments, layers."""
import pikepdf

from .objects import digest, entry, everything, identity, items, text, tree


def comments(document):
    """Every annotation that isn't a link, by subtype, with what it says and how it looks."""
    found = []
    for index, page in enumerate(document.pages, 1):
        for annotation in items(entry(page.obj, "/Annots")):
            kind = entry(annotation, "/Subtype")
            if kind not in ("/Link", None):
                appearance = "with" if entry(annotation, "/AP", "/N") is not None else "without"
                found.append(f"page {index}: {kind} {entry(annotation, '/Contents')} "
                             f"{text(entry(annotation, '/Rect'))} {appearance} appearance")
    return found


def fields(document):
    """With their full names, types and values."""
    found = []

    def visit(field, prefix, kind, seen):
        if identity(field) in seen or not isinstance(field, pikepdf.Dictionary):
            return
        name = prefix + (f".{field.T}" if "/T" in field else "")
        kind = field.get("/FT", kind)
        if "/T" in field:
            found.append(f"{name} {kind} {text(field.get('/V'))} {field.get('/Ff', 0)}")
        for kid in items(entry(field, "/Kids")):
            visit(kid, name, kind, seen | {identity(field)})

    for field in items(entry(document.Root, "/AcroForm", "/Fields")):
        visit(field, "", None, set())
    return found


def form(document):
    """What holds for a form as a whole."""
    keys = ("/NeedAppearances", "/SigFlags", "/CO", "/Q", "/DA")
    return [f"{key} {text(entry(document.Root, '/AcroForm', key))}" for key in keys
            if entry(document.Root, "/AcroForm", key) is not None] + \
        [f"XFA {index} {text(part)}"
         for index, part in enumerate(items(entry(document.Root, "/AcroForm", "/XFA")))]


def scripts(document):
    """Wherever they are: of the document, of pages, fields, outlines and other actions."""
    return [digest(value.JS) if isinstance(value.JS, pikepdf.Stream) else str(value.JS)
            for value in everything(document)
            if entry(value, "/S") == "/JavaScript" and "/JS" in value]


def attachments(document):
    found = [f"{name} {_file(specification)}"
             for name, specification in tree(entry(document.Root, "/Names", "/EmbeddedFiles"),
                                             "/Names")]
    found += [f"associated {_file(specification)}"
              for specification in items(entry(document.Root, "/AF"))]
    return found + [f"page {index}: {_file(annotation.FS)}"
                    for index, page in enumerate(document.pages, 1)
                    for annotation in items(entry(page.obj, "/Annots"))
                    if entry(annotation, "/FS") is not None]


def _file(specification):
    stream = entry(specification, "/EF", "/UF")
    stream = stream if stream is not None else entry(specification, "/EF", "/F")
    return f"{entry(specification, '/F')} {digest(stream) if stream is not None else 'outside'}"


def layers(document):
    return [f"{entry(layer, '/Name')} {text(entry(layer, '/Usage'))}"
            for layer in items(entry(document.Root, "/OCProperties", "/OCGs"))]


def layer_switches(document):
    """Which layers are on, off, locked, in which order and group, for each configuration."""
    properties = entry(document.Root, "/OCProperties")
    configurations = [entry(properties, "/D"), *items(entry(properties, "/Configs"))]
    return [f"{index} {key} {_layer_names(value)}"
            for index, configuration in enumerate(configurations) if configuration is not None
            for key, value in sorted(configuration.items())]


def _layer_names(value, depth=6):
    if entry(value, "/Type") == "/OCG":
        return str(entry(value, "/Name"))
    if isinstance(value, pikepdf.Array) and depth:
        return "[" + " ".join(_layer_names(item, depth - 1) for item in value) + "]"
    if isinstance(value, pikepdf.Dictionary) and depth:
        return " ".join(f"{key} {_layer_names(item, depth - 1)}"
                        for key, item in sorted(value.items()))
    return str(value)


def uses_of_layers(document):
    """What stands in a layer: images, forms and annotations."""
    return [f"{entry(value, '/Subtype')} {_layer_names(entry(value, '/OC'))}"
            for value in everything(document) if entry(value, "/OC") is not None]
