"""What a document says about itself, and what it is protected with."""
import xml.etree.ElementTree as ElementTree

from .objects import entry, text

RDF = "{http://www.w3.org/1999/02/22-rdf-syntax-ns#}"
# A writer's own marks, its palettes, and the history of editing, which no reader shows.
OF_WRITERS = ("{http://ns.adobe.com/xap/1.0/mm/}", "{http://ns.adobe.com/pdf/1.3/}Producer",
              "{http://ns.adobe.com/xap/1.0/}ModifyDate",
              "{http://ns.adobe.com/xap/1.0/}MetadataDate",
              "{http://ns.adobe.com/xap/1.0/}Thumbnails",
              "{http://ns.adobe.com/xap/1.0/t/pg/}SwatchGroups",
              "{http://ns.adobe.com/photoshop/1.0/}History",
              "{http://ns.adobe.com/photoshop/1.0/}DocumentAncestors")


def information(document):
    info = entry(document.trailer, "/Info")
    return [f"{key} {text(value)}" for key, value in (info.items() if info is not None else ())
            if key not in ("/Producer", "/ModDate")]


def properties(document):
    """Of the document's own metadata."""
    stream = entry(document.Root, "/Metadata")
    if stream is None:
        return []
    try:
        root = ElementTree.fromstring(stream.read_bytes().strip(b"\0 \r\n\t"))
    except ElementTree.ParseError:
        return ["unreadable"]
    return [found for description in root.iter(RDF + "Description")
            for found in _properties_of(description)]


def _properties_of(description):
    found = [f"{name} {value}" for name, value in description.attrib.items()
             if not name.startswith((RDF, *OF_WRITERS))]
    return found + [f"{child.tag} {' '.join(''.join(child.itertext()).split())}"
                    for child in description if not child.tag.startswith((RDF, *OF_WRITERS))]


def protection(document):
    if not document.is_encrypted:
        return []
    return [f"{name} {allowed}" for name, allowed in document.allow._asdict().items()] + \
        ["encrypted"]


def signatures(document):
    return [text(value.ByteRange) for value in document.objects
            if entry(value, "/ByteRange") is not None]
