#!/usr/bin/python3
"""Holds the names of glyphs, and the characters that they stand for, against fontTools' own list."""
import pathlib
import re
import unittest

from fontTools.agl import AGL2UV, LEGACY_AGL2UV

LIST = pathlib.Path(__file__).resolve().parents[3] / "engine" / "fontprograms" / "glyphlist.h"
ENTRY = re.compile(r'\{"([^"]+)", 0x([0-9A-F]+)\}')


def known():
    names = {name: characters[0] for name, characters in LEGACY_AGL2UV.items() if len(characters) == 1}
    return names | AGL2UV | {"dotlessj": 0x0237}  # fontTools has an older list without it


class GlyphList(unittest.TestCase):
    def test_every_name_stands_for_its_character(self):
        names = known()
        for name, character in ENTRY.findall(LIST.read_text()):
            with self.subTest(name=name):
                self.assertEqual(int(character, 16), names.get(name))

    def test_no_name_is_missing(self):
        here = {name for name, _ in ENTRY.findall(LIST.read_text())}
        self.assertEqual(set(AGL2UV) - here, set())


unittest.main()
