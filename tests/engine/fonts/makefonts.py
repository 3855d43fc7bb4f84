#!/usr/bin/python3
"""Writes the font programs that the tests embed: makefonts.py <folder>

Debian's own Python has the fontTools that script/setup installs. Each glyph is a shape of its own,
so that a wrong one is seen: a triangle that gets wider from letter to letter.
"""
import io
import os
import random
import sys

from fontTools.cffLib import FDArrayIndex, FDSelect, FontDict
from fontTools.fontBuilder import FontBuilder
from fontTools.pens.t2CharStringPen import T2CharStringPen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont
from fontTools.ttLib.tables._c_m_a_p import CmapSubtable
from fontTools.ttLib.tables.DefaultTable import DefaultTable

LETTERS = [chr(code) for code in range(ord('A'), ord('Z') + 1)]
ACCENTED = {'Adieresis': 0xC4, 'Eacute': 0xC9}
NAMES = ['.notdef', 'space'] + LETTERS + ['dieresis', 'acute'] + list(ACCENTED) + ['secret']
PARTS = {'Adieresis': ['A', 'dieresis'], 'Eacute': ['E', 'acute']}
CHARACTERS = {ord(letter): letter for letter in LETTERS}
CHARACTERS.update({32: 'space', 0xA8: 'dieresis', 0xB4: 'acute'})
CHARACTERS.update({code: name for name, code in ACCENTED.items()})
MAC = {0x80: 'Adieresis', 0x83: 'Eacute', 0xAC: 'dieresis', 0xAB: 'acute'}


def draw(pen, number):
    """Many points, so that a glyph less can be seen in the size as well."""
    if number == 1:
        return
    pen.moveTo((0, 0))
    for step in range(1, 40):
        pen.lineTo((step * (10 + number) // 2, step * 7 % 13 + step * 15))
    pen.lineTo((20 + 20 * number, 0))
    pen.closePath()


def glyf(names):
    glyphs = {}
    for number, name in enumerate(names):
        pen = TTGlyphPen(glyphs)
        if name in PARTS:
            for shift, part in enumerate(PARTS[name]):
                pen.addComponent(part, (1, 0, 0, 1, 0, shift * 200))
        else:
            draw(pen, number)
        glyphs[name] = pen.glyph()
    return glyphs


def subtable(platform, encoding, mapping):
    table = CmapSubtable.newSubtable(0 if platform == 1 else 4)
    table.platformID, table.platEncID, table.language = platform, encoding, 0
    table.cmap = dict(mapping)
    return table


def cmaps(*kinds):
    mac = {code: name for code, name in CHARACTERS.items() if code < 0x80}
    mac.update(MAC)
    tables = {
        'mac': subtable(1, 0, {code: mac.get(code, '.notdef') for code in range(256)}),
        'symbol': subtable(3, 0, {0xF000 + code: name for code, name in mac.items()}),
        'unicode': subtable(3, 1, CHARACTERS),
    }
    return [tables[kind] for kind in kinds]


def builder(names, is_truetype):
    font = FontBuilder(1000, isTTF=is_truetype)
    font.setupGlyphOrder(names)
    font.setupCharacterMap({code: name for code, name in CHARACTERS.items() if name in names})
    return font


def finish(font, names):
    font.setupHorizontalMetrics({name: (700, 0) for name in names})
    font.setupHorizontalHeader(ascent=800, descent=-200)
    font.setupNameTable({'familyName': 'Triangles', 'styleName': 'Regular'})
    font.setupOS2()
    return font


def bytes_of(font):
    buffer = io.BytesIO()
    font.font.save(buffer)
    return buffer.getvalue()


def truetype(kinds, post=True, drop=()):
    font = builder(NAMES, True)
    font.setupGlyf(glyf(NAMES))
    finish(font, NAMES)
    font.setupPost(keepGlyphNames=post)
    font.font['cmap'].tables = cmaps(*kinds)
    for table in drop:
        del font.font[table]
    return bytes_of(font)


def with_tables():
    """Also with tables that nobody reads, or only for text that is still to be set."""
    font = builder(NAMES, True)
    font.setupGlyf(glyf(NAMES))
    finish(font, NAMES)
    font.setupPost()
    noise = random.Random(1)
    for tag in ('GSUB', 'hdmx', 'kern'):
        font.font[tag] = DefaultTable(tag)
        font.font[tag].data = noise.randbytes(1000)
    return bytes_of(font)


def many_glyphs():
    names = NAMES + ['glyph%d' % number for number in range(len(NAMES), 65535)]
    glyphs = glyf(NAMES)
    for number, name in enumerate(names[len(NAMES):]):
        pen = TTGlyphPen(glyphs)
        if number % 100 == 0:
            draw(pen, number // 100)
        glyphs[name] = pen.glyph()
    font = builder(names, True)
    font.setupGlyf(glyphs)
    finish(font, names)
    font.setupPost(keepGlyphNames=False)
    return bytes_of(font)


def char_string(number):
    pen = T2CharStringPen(700, None)
    draw(pen, number)
    return pen.getCharString()


def opentype(keyed):
    """Glyph n of one that is keyed by characters is character 3 n of its collection."""
    names = NAMES[:1] + ['cid%05d' % (3 * n) for n in range(1, len(NAMES))] if keyed else NAMES
    font = builder(names, False)
    font.setupCFF('Triangles', {}, {name: char_string(n) for n, name in enumerate(names)}, {})
    finish(font, names)
    font.setupPost(keepGlyphNames=False)
    if keyed:
        key_by_characters(font.font['CFF '].cff.topDictIndex[0])
    return bytes_of(font)


def key_by_characters(top):
    top.ROS = ('Adobe', 'Identity', 0)
    top.CIDCount = 3 * len(NAMES)
    fonts = FDArrayIndex()
    fonts.strings = None
    fonts.GlobalSubrs = top.GlobalSubrs
    entry = FontDict()
    entry.setCFF2(False)
    entry.Private = top.Private
    entry.FontName = 'Triangles'
    fonts.append(entry)
    top.FDArray = fonts
    top.FDSelect = FDSelect()
    top.FDSelect.format = 3
    top.FDSelect.gidArray = [0] * len(NAMES)
    for name in ('Private', 'Encoding'):
        if hasattr(top, name):
            delattr(top, name)
        top.rawDict.pop(name, None)


def cff_of(program):
    return TTFont(io.BytesIO(program)).getTableData('CFF ')


def main(folder):
    os.makedirs(folder, exist_ok=True)
    fonts = {
        'unicode.ttf': truetype(['unicode']),
        'mac.ttf': truetype(['mac'], post=False),
        'symbol.ttf': truetype(['symbol'], post=False),
        'all-cmaps.ttf': truetype(['mac', 'symbol', 'unicode']),
        'names-only.ttf': truetype(['mac'], post=True),
        'without-cmap.ttf': truetype(['unicode'], post=False, drop=('cmap',)),
        'without-os2.ttf': truetype(['unicode'], drop=('OS/2',)),
        'tables.ttf': with_tables(),
        'many.ttf': many_glyphs(),
        'named.otf': opentype(False),
        'keyed.otf': opentype(True),
    }
    fonts['named.cff'] = cff_of(fonts['named.otf'])
    fonts['keyed.cff'] = cff_of(fonts['keyed.otf'])
    for name, program in fonts.items():
        with open(os.path.join(folder, name), 'wb') as file:
            file.write(program)


main(sys.argv[1])
