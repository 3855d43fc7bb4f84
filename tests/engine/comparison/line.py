"""The line that the window runs the engine with as long as nobody has changed an option."""

DEFAULT = """-q -dBATCH -dMaxBitmap=300000000 -dNOPAUSE -dSAFER -sDEVICE=pdfwrite
-dCompatibilityLevel=1.4 -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic
-dColorImageResolution=150 -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode
-dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=150 -dAutoFilterGrayImages=false
-dGrayImageFilter=/DCTEncode -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Bicubic
-dMonoImageResolution=300 -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode
-dEmbedAllFonts=true -dCompressFonts=true -dSubsetFonts=true -dPermissions=-4""".split()


def change(text):
    """'OLD NEW' puts NEW in OLD's place, 'OLD ' takes OLD away, ' NEW' or 'NEW' adds NEW."""
    old, _, new = text.rpartition(" ")
    return old.strip("' "), new


def switches_with(changes):
    switches = list(DEFAULT)
    for old, new in changes:
        place = switches.index(old) if old else len(switches)
        switches[place:place + 1] = [new] if new else []
    return switches


def command(program, switches, original, copy, mark=None):
    # The copy's name has no per cent sign: plain Ghostscript would read it as a template.
    return [program, *switches, "-sOutputFile=" + copy, "-f", original, *([mark] if mark else [])]
