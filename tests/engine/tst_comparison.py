#!/usr/bin/python3
"""Takes one thing after the other away from a document, and sees to it that each is missed."""
import os
import tempfile
import unittest

from comparison import example, judgement

# The kind that is reported, and how a copy loses it. What else goes with it is its own affair.
LOSSES = {
    "boxes": lambda pdf: pdf.pages[0].obj.__delitem__("/CropBox"),
    "turns and units": lambda pdf: pdf.pages[1].obj.__delitem__("/UserUnit"),
    "tags": lambda pdf: pdf.Root.StructTreeRoot.K[0].__delitem__("/Alt"),
    "outline": lambda pdf: pdf.Root.Outlines.First.__setitem__("/Title", "Another"),
    "links": lambda pdf: pdf.pages[0].obj.Annots[0].__setitem__("/Dest", "start"),
    "destinations": lambda pdf: pdf.Root.Names.__delitem__("/Dests"),
    "labels": lambda pdf: pdf.Root.__delitem__("/PageLabels"),
    "threads": lambda pdf: pdf.Root.__delitem__("/Threads"),
    "open action": lambda pdf: pdf.Root.__delitem__("/OpenAction"),
    "fields": lambda pdf: pdf.pages[0].obj.Annots[2].__setitem__("/V", "Zoé"),
    "form": lambda pdf: pdf.Root.AcroForm.__delitem__("/DA"),
    "scripts": lambda pdf: pdf.pages[0].obj.Annots[2].__delitem__("/AA"),
    "comments": lambda pdf: pdf.pages[0].obj.Annots[1].__delitem__("/Contents"),
    "attachments": lambda pdf: example.attach(pdf, b"c,d"),
    "portfolio": lambda pdf: pdf.Root.__delitem__("/Collection"),
    "layers": lambda pdf: pdf.Root.OCProperties.OCGs[0].__setitem__("/Name", "Layer"),
    "layer switches": lambda pdf: pdf.Root.OCProperties.D.__delitem__("/OFF"),
    "uses of layers": lambda pdf: pdf.pages[0].Resources.XObject.X.__delitem__("/OC"),
    "transitions": lambda pdf: pdf.pages[0].obj.__delitem__("/Trans"),
    "output intents": lambda pdf: pdf.Root.__delitem__("/OutputIntents"),
    "viewing": lambda pdf: pdf.Root.__delitem__("/Lang"),
    "information": lambda pdf: pdf.trailer.Info.__delitem__("/Title"),
    "metadata": lambda pdf: pdf.Root.__delitem__("/Metadata"),
    "pages": lambda pdf: pdf.pages.__delitem__(1),
}


def drawn(old, new):
    """Changes what the first page draws."""
    def change(pdf):
        content = pdf.pages[0].Contents
        content.write(content.read_bytes().replace(old, new))
    return change


PICTURES = {
    "a comma": drawn(b"Page,", b"Page "),
    "a letter": drawn(b"number", b"numbe "),
    "a thin line": drawn(b"20 60 m 280 60 l S", b""),
}


class Comparison(unittest.TestCase):
    def setUp(self):
        self._folder = tempfile.TemporaryDirectory()
        self.addCleanup(self._folder.cleanup)
        self.original = judgement.Original(self.saved("original.pdf"))

    def saved(self, name, change=None, **options):
        path = os.path.join(self._folder.name, name)
        with example.document() as pdf:
            if change:
                change(pdf)
            # As large as the original, whatever is taken away or added: size is not the subject.
            pdf.save(path, compress_streams=False, **options)
        return path

    def kinds(self, copy):
        return {kind for kind, _ in judgement.faults(copy, self.original)} - {"larger"}

    def test_the_same_has_no_fault(self):
        self.assertEqual(self.kinds(self.saved("copy.pdf")), set())

    def test_each_kind_of_thing_is_missed(self):
        for kind, change in LOSSES.items():
            with self.subTest(kind):
                self.assertIn(kind, self.kinds(self.saved("copy.pdf", change)))

    def test_each_small_thing_is_missed_in_both_pictures(self):
        for what, change in PICTURES.items():
            with self.subTest(what):
                kinds = self.kinds(self.saved("copy.pdf", change))
                self.assertLessEqual({"poppler", "mutool"}, kinds)

    def test_a_protection_is_missed(self):
        self.original = judgement.Original(self.saved("protected.pdf",
                                                      encryption=example.PROTECTION))
        self.assertEqual(self.kinds(self.saved("copy.pdf")), {"protection"})

    def test_a_damaged_copy_is_seen(self):
        path = self.saved("copy.pdf")
        with open(path, "rb+") as file:
            file.truncate(os.path.getsize(path) // 2)
        self.assertIn("check", self.kinds(path))

    def test_a_larger_copy_is_seen(self):
        path = self.saved("copy.pdf")
        with open(path, "ab") as file:
            file.write(b"\n" * 9)
        self.assertIn(("larger", "by 9"), judgement.faults(path, self.original))


if __name__ == "__main__":
    unittest.main()
