#!/usr/bin/python3
"""Builds the window's typefaces from Debian's Inter: make_tabular_font.py INTER_FOLDER OUTPUT_FOLDER

Qt 6.4 cannot switch OpenType features, so what the window needs is made the default of a renamed copy:
- every digit has the same width, so that counts do not jitter while they grow and columns line up;
- no contextual alternates, which would draw the x of "1920x1080.png" as a multiplication sign and so
  misreport a file's name.

Inter is under the SIL Open Font License 1.1 and reserves no font name; the copies keep the licence.
"""
import pathlib
import sys

from fontTools import subset
from fontTools.pens.t2CharStringPen import T2CharStringPen
from fontTools.pens.transformPen import TransformPen
from fontTools.ttLib import TTFont

# source face, family, weight: the file written is family without spaces, a dash, and the weight.
FACES = [
    ("Inter-Regular", "Inter Tabular", "Regular"),
    ("Inter-Medium", "Inter Tabular", "Medium"),
    ("Inter-SemiBold", "Inter Tabular", "SemiBold"),
    ("Inter-Bold", "Inter Tabular", "Bold"),
    ("InterDisplay-Bold", "Inter Display Tabular", "Bold"),
]
DIGITS = range(ord("0"), ord("9") + 1)
KEPT_FEATURES = ["ccmp", "kern", "locl", "mark"]
FIRST_PRIVATE_USE = 0xE000  # Inter's icons live from here on; the window draws its own.

COPYRIGHT, FAMILY, STYLE, UNIQUE_ID, FULL_NAME, POSTSCRIPT_NAME = 0, 1, 2, 3, 4, 6
TRADEMARK, LICENCE, LICENCE_URL, TYPOGRAPHIC_FAMILY, TYPOGRAPHIC_STYLE = 7, 13, 14, 16, 17
WINDOWS_UNICODE_ENGLISH = (3, 1, 0x409)


def tabular_glyphs(font):
    """Maps each glyph that has a fixed-width form to that form."""
    substitutions = font["GSUB"].table
    for record in substitutions.FeatureList.FeatureRecord:
        if record.FeatureTag == "tnum":
            lookup = substitutions.LookupList.Lookup[record.Feature.LookupListIndex[0]]
            table = lookup.SubTable[0]
            return getattr(table, "ExtSubTable", table).mapping
    raise SystemExit("this Inter has no tabular digits (feature tnum)")


def use_tabular_digits(font):
    tabular = tabular_glyphs(font)
    for table in font["cmap"].tables:
        for code in DIGITS:
            glyph = table.cmap.get(code)
            if glyph in tabular:
                table.cmap[code] = tabular[glyph]
    align_digits(font)


def align_digits(font):
    """Gives every digit the advance of the widest, its strokes in the middle.

    Inter's in-between weights are a few units off, and the Display cut's "1" a seventh.
    """
    characters, metrics = font.getBestCmap(), font["hmtx"].metrics
    digits = [characters[code] for code in DIGITS]
    width = max(metrics[glyph][0] for glyph in digits)
    outlines = font["CFF "].cff.topDictIndex[0].CharStrings
    for glyph in digits:
        advance, left_bearing = metrics[glyph]
        shift = (width - advance) // 2
        if width == advance:
            continue
        pen = T2CharStringPen(width, None)
        font.getGlyphSet()[glyph].draw(TransformPen(pen, (1, 0, 0, 1, shift, 0)))
        outlines[glyph] = pen.getCharString(outlines[glyph].private, outlines[glyph].globalSubrs)
        metrics[glyph] = (width, left_bearing + shift)


def rename(font, family, weight):
    # The old name pair knows only four styles a family, so other weights become families of their own.
    has_own_style = weight in ("Regular", "Bold")
    postscript_name = f"{family.replace(' ', '')}-{weight}"
    names = font["name"]
    names.names = [n for n in names.names if n.nameID in (COPYRIGHT, TRADEMARK, LICENCE, LICENCE_URL)]
    for name_id, text in {
        FAMILY: family if has_own_style else f"{family} {weight}",
        STYLE: weight if has_own_style else "Regular",
        UNIQUE_ID: postscript_name,
        FULL_NAME: f"{family} {weight}",
        POSTSCRIPT_NAME: postscript_name,
        TYPOGRAPHIC_FAMILY: family,
        TYPOGRAPHIC_STYLE: weight,
    }.items():
        names.setName(text, name_id, *WINDOWS_UNICODE_ENGLISH)
    outlines = font["CFF "].cff
    outlines.fontNames = [postscript_name]
    outlines.topDictIndex[0].FullName = f"{family} {weight}"
    outlines.topDictIndex[0].FamilyName = family
    return postscript_name


def drop_unused(font):
    """Leaves every written character and only the features named above."""
    options = subset.Options(
        layout_features=KEPT_FEATURES, name_IDs=["*"], notdef_outline=True, desubroutinize=True)
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=[code for code in font.getBestCmap() if code < FIRST_PRIVATE_USE])
    subsetter.subset(font)


def main(source, destination):
    destination.mkdir(parents=True, exist_ok=True)
    for face, family, weight in FACES:
        font = TTFont(source / f"{face}.otf", recalcTimestamp=False)
        use_tabular_digits(font)
        name = rename(font, family, weight)
        drop_unused(font)
        font.save(destination / f"{name}.otf")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]))
