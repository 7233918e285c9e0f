# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""The glyphs of the stroked text face that are drawn here: letters and signs that the source fonts lack.

Units are those of the source: capitals are 21 high, small letters 14, the baseline is 0. A path is in the steps of
docs/symbol-sets.md. GLYPHS: code -> (name, advance, path). ALIKE: code -> (name, character of the same shape).
ACCENTED: code -> (name, base, accent, ...).
"""


def ellipse(x, y, rx, ry):
    """A closed path around (x, y) of four cubic curves."""
    k = 0.5523
    return (
        f"M {x + rx} {y} C {x + rx} {y + k * ry} {x + k * rx} {y + ry} {x} {y + ry} "
        f"C {x - k * rx} {y + ry} {x - rx} {y + k * ry} {x - rx} {y} "
        f"C {x - rx} {y - k * ry} {x - k * rx} {y - ry} {x} {y - ry} "
        f"C {x + k * rx} {y - ry} {x + rx} {y - k * ry} {x + rx} {y} Z"
    )


def dot(x, y):
    return f"M {x} {y} L {x} {y + 0.01}"


# Accents: the path above a middle of (0, 0), where 0 is the top of the letter. Those below stand at the baseline.
ACCENTS = {
    "grave": "M -3.5 7 L 1.5 3",
    "acute": "M 3.5 7 L -1.5 3",
    "circumflex": "M -4 3 L 0 7 4 3",
    "tilde": "M -5.5 3.5 C -4 7.5 -1.5 6.5 0 5.2 C 1.5 4 4 3 5.5 7",
    "dieresis": dot(-3.5, 4.5) + " " + dot(3.5, 4.5),
    "ring": "A 0 5 2.5 0 360 Z",
    "breve": "M -4.5 7.5 C -4 2.5 4 2.5 4.5 7.5",
    "tonos": "M 2.5 8 L -1 3.5",
    "dieresis tonos": dot(-4.5, 4) + " " + dot(4.5, 4) + " M 1.5 8.5 L -0.5 4",
}
BELOW = {"cedilla": "M 0.5 0 L -0.5 -2.5 C 5 -2.5 4.5 -7 0 -7 Q -2 -7 -3.5 -6"}

DOTLESS_I = "M 4 14 L 4 0"

ALIKE = {
    0x2010: ("hyphen", "-"), 0xA0: ("no-break space", " "), 0xAD: ("soft hyphen", " "),
    0x391: ("Alpha", "A"), 0x392: ("Beta", "B"), 0x395: ("Epsilon", "E"), 0x396: ("Zeta", "Z"),
    0x397: ("Eta", "H"), 0x399: ("Iota", "I"), 0x39A: ("Kappa", "K"), 0x39C: ("Mu", "M"),
    0x39D: ("Nu", "N"), 0x39F: ("Omicron", "O"), 0x3A1: ("Rho", "P"), 0x3A4: ("Tau", "T"),
    0x3A5: ("Upsilon", "Y"), 0x3A7: ("Chi", "X"), 0x3BF: ("omicron", "o"),
    0x405: ("Dze", "S"), 0x406: ("Ukrainian I", "I"), 0x408: ("Je", "J"),
    0x410: ("A", "A"), 0x412: ("Ve", "B"), 0x413: ("Ghe", "\u0393"), 0x415: ("Ie", "E"), 0x41A: ("Ka", "K"),
    0x41C: ("Em", "M"), 0x41D: ("En", "H"), 0x41E: ("O", "O"), 0x41F: ("Pe", "\u03a0"), 0x420: ("Er", "P"),
    0x421: ("Es", "C"), 0x422: ("Te", "T"), 0x424: ("Ef", "\u03a6"), 0x425: ("Ha", "X"),
    0x430: ("a", "a"), 0x435: ("ie", "e"), 0x43E: ("o", "o"), 0x440: ("er", "p"), 0x441: ("es", "c"),
    0x443: ("u", "y"), 0x445: ("ha", "x"), 0x455: ("dze", "s"), 0x456: ("Ukrainian i", "i"), 0x458: ("je", "j"),
    0xB5: ("micro sign", "\u03bc"),
}

GLYPHS = {
    # Signs of ASCII for which the source has others: an arrow, curved quotes, a minus.
    0x27: ("apostrophe", 8, "M 4 21 L 4 15"),
    0x2D: ("hyphen-minus", 16, "M 3 8 L 13 8"),
    0x5E: ("circumflex accent", 18, "M 3 14 L 9 21 15 14"),
    0x60: ("grave accent", 12, "M 4 21.5 L 8 17"),
    # Signs of Latin-1.
    0xA1: ("inverted exclamation mark", 10, "M 5 0 L 5 14 M 5 20 L 5 20.01"),
    0xA2: ("cent sign", 18, "M 15 11 C 12 15.5 3 15 3 7 C 3 -1 12 -1.5 15 3 M 9.5 18 L 9.5 -4"),
    0xA3: ("pound sign", 20, "M 16 17 C 14 23 6 22 6.5 15 C 7 10 8.5 4 3 0 L 17 0 M 3 10 L 13 10"),
    0xA4: ("currency sign", 20, "A 10 10 5 0 360 Z M 3 17 L 6.5 13.5 M 17 17 L 13.5 13.5 M 3 3 L 6.5 6.5 M 17 3 "
           "L 13.5 6.5"),
    0xA5: ("yen sign", 18, "M 1 21 L 9 11 17 21 M 9 11 L 9 0 M 3 10 L 15 10 M 3 5.5 L 15 5.5"),
    0xA6: ("broken bar", 8, "M 4 25 L 4 12 M 4 6 L 4 -7"),
    0xA7: ("section sign", 17, "M 13.5 18 C 12 22.5 4 22 4 17.5 C 4 12 14 13 14 7.5 C 14 4.5 11 3 9 3.5 "
           "M 3.5 -1.5 C 5 -6 13 -5.5 13 -1 C 13 4.5 3 3.5 3 9 C 3 12 6 13.5 8 13"),
    0xA8: ("dieresis", 14, "M 3.5 18.5 L 3.5 18.51 M 10.5 18.5 L 10.5 18.51"),
    0xA9: ("copyright sign", 26, "A 13 10.5 10.5 0 360 Z M 17.5 14 C 15 18 7.5 17 7.5 10.5 C 7.5 4 15 3 17.5 7"),
    0xAA: ("feminine ordinal", 12, "M 9.5 21 L 9.5 13 M 9.5 19 C 7 22.5 2.5 21 2.5 17 C 2.5 13 7 11.5 9.5 15 M 2 "
           "9 L 10 9"),
    0xAB: ("left guillemets", 18, "M 9 13 L 3 7.5 9 2 M 15.5 13 L 9.5 7.5 15.5 2"),
    0xAC: ("not sign", 22, "M 3 11 L 19 11 19 5"),
    0xAE: ("registered sign", 26, "A 13 10.5 10.5 0 360 Z M 9.5 4.5 L 9.5 16.5 14 16.5 C 18 16.5 18 10.5 14 10.5 "
           "L 9.5 10.5 M 14 10.5 L 17.5 4.5"),
    0xAF: ("macron", 14, "M 2 19 L 12 19"),
    0xB0: ("degree sign", 13, "A 6.5 17.5 3.5 0 360 Z"),
    0xB1: ("plus-minus sign", 22, "M 11 19 L 11 5 M 4 12 L 18 12 M 4 1 L 18 1"),
    0xB2: ("superscript two", 12, "M 2.5 19 C 3 22.5 9.5 22 9.5 18.5 C 9.5 16 6 14 2.5 10.5 L 10 10.5"),
    0xB3: ("superscript three", 12, "M 2.5 20 C 4 22 9 22 9 18.7 C 9 16.8 7 16.2 5.5 16.2 C 7.5 16.2 9.5 15.5 "
           "9.5 13.3 C 9.5 9.5 3.5 9.5 2.2 12"),
    0xB4: ("acute accent", 12, "M 8 21.5 L 4 17"),
    0xB6: ("pilcrow sign", 20, "M 16 21 L 16 -4 M 11.5 21 L 11.5 -4 M 17 21 L 9 21 C 1.5 21 1.5 10 9 10 L 11.5 10"),
    0xB7: ("middle dot", 8, "M 4 8 L 4 8.01"),
    0xB8: ("cedilla", 12, "M 6 0 L 5 -2.5 C 10.5 -2.5 10 -7 5.5 -7 Q 3.5 -7 2 -6"),
    0xB9: ("superscript one", 10, "M 3 18.5 L 6.5 21.5 6.5 10.5"),
    0xBA: ("masculine ordinal", 12, ellipse(6, 17, 3.8, 4.3) + " M 2 9 L 10 9"),
    0xBB: ("right guillemets", 18, "M 3 13 L 9 7.5 3 2 M 9.5 13 L 15.5 7.5 9.5 2"),
    0xBC: ("one quarter", 27, "M 2 18.5 L 5.5 21.5 5.5 10.5 M 21 22 L 6 -1 M 22 0 L 22 10.5 15.5 3.5 24.5 3.5"),
    0xBD: ("one half", 27, "M 2 18.5 L 5.5 21.5 5.5 10.5 M 21 22 L 6 -1 M 17 8 C 17.5 11 24 11 24 7.5 C 24 5 "
           "20.5 3.5 17 0 L 24.5 0"),
    0xBE: ("three quarters", 28, "M 1.5 20 C 3 22 8 22 8 18.7 C 8 16.8 6 16.2 4.5 16.2 C 6.5 16.2 8.5 15.5 8.5 13.3 C 8.5 9.5 2.5 9.5 1.2 12 "
           "M 22 22 L 7 -1 M 23 0 L 23 10.5 16.5 3.5 25.5 3.5"),
    0xBF: ("inverted question mark", 18, "M 9 20 L 9 20.01 M 9 14.5 L 9 11.5 C 9 8.5 3.5 8 3.5 4.5 C 3.5 -1 13.5 "
           "-1.5 14.5 4"),
    0xC6: ("AE", 26, "M 1 0 L 11 21 24 21 M 13 21 L 13 0 24 0 M 13 11 L 21 11 M 4.5 7 L 13 7"),
    0xD0: ("Eth", 21, "M 4 21 L 4 0 11 0 C 21 0 21 21 11 21 L 4 21 M 0.5 11 L 10 11"),
    0xD7: ("multiplication sign", 22, "M 5 16 L 17 4 M 5 4 L 17 16"),
    0xD8: ("O with stroke", 22, ellipse(11, 10.5, 8.5, 10.5) + " M 3 -1 L 19 22"),
    0xDE: ("Thorn", 20, "M 4 21 L 4 0 M 4 16.5 L 11 16.5 C 19 16.5 19 5 11 5 L 4 5"),
    0xDF: ("sharp s", 19, "M 4 0 L 4 15 C 4 23 14.5 23 14.5 16.5 C 14.5 13 11 12.5 10 11.5 C 16 11 16.5 8 16.5 6 "
           "C 16.5 0 11 -0.5 8.5 1"),
    0xE6: ("ae", 26, "M 12.5 7 L 23 7 C 23.5 16.5 12.5 17 12.5 7 C 12.5 -1.5 20 -1.5 22.5 3 M 12.5 11 C 10 15 3 "
           "15 3 7 C 3 -1 10 -1 12.5 3"),
    0xF0: ("eth", 18, ellipse(9, 6.5, 6, 6.5) + " M 5 20.5 C 12 18 15 12 15 6.5 M 5 15.5 L 13 20"),
    0xF7: ("division sign", 22, "M 3.5 10 L 18.5 10 M 11 16 L 11 16.01 M 11 4 L 11 4.01"),
    0xF8: ("o with stroke", 19, ellipse(9.5, 7, 6.5, 7) + " M 3 -1 L 16 15"),
    0xFE: ("thorn", 19, "M 4 21 L 4 -7 M 4 11 C 7 15 16 15.5 16 7 C 16 -1.5 7 -1 4 3"),
    # Beyond Latin-1.
    0x131: ("dotless i", 8, DOTLESS_I),
    0x2013: ("en dash", 20, "M 2 9 L 18 9"),
    0x2014: ("em dash", 32, "M 2 9 L 30 9"),
    0x2018: ("left single quotation mark", 8, "M 5.5 21 Q 3 19 3 16.5"),
    0x2019: ("right single quotation mark", 8, "M 5 21 Q 5 18.5 2.5 16.5"),
    0x201C: ("left double quotation mark", 13, "M 5.5 21 Q 3 19 3 16.5 M 10.5 21 Q 8 19 8 16.5"),
    0x201D: ("right double quotation mark", 13, "M 5 21 Q 5 18.5 2.5 16.5 M 10 21 Q 10 18.5 7.5 16.5"),
    0x2022: ("bullet", 12, "A 6 8 2.2 0 360 Z A 6 8 1 0 360 Z"),
    0x2026: ("ellipsis", 28, "M 5 0.5 L 5 0.51 M 14 0.5 L 14 0.51 M 23 0.5 L 23 0.51"),
    0x2032: ("prime", 8, "M 5.5 21 L 3 15.5"),
    0x2033: ("double prime", 13, "M 5.5 21 L 3 15.5 M 10.5 21 L 8 15.5"),
    0x20AC: ("euro sign", 21, "M 18 18.5 C 15 23 6 22.5 6 10.5 C 6 -1.5 15 -1.5 18 2.5 M 2 13 L 14 13 M 2 8 L 13 8"),
    0x2212: ("minus sign", 26, "M 4 9 L 22 9"),
    0x25A1: ("missing character", 20, "M 4 0 L 16 0 16 21 4 21 Z"),
    # Greek.
    0x37E: ("Greek question mark", 9, "M 4.5 12 L 4.5 12.01 M 5 1 Q 5 -2.5 2.5 -4"),
    0x387: ("ano teleia", 8, "M 4 12 L 4 12.01"),
    0x3C2: ("final sigma", 17, "M 14 12 C 10 15.5 3.5 14 3.5 7.5 C 3.5 1 13.5 3 13.5 -1.5 C 13.5 -4 11.5 -5 9.5 -5"),
    # Cyrillic capitals.
    0x402: ("Dje", 23, "M 1 21 L 15 21 M 8 21 L 8 0 M 8 11 C 12 15 20 14 20 7 C 20 2 18 0 14 0"),
    0x404: ("Ukrainian Ie", 21, "M 18 16 C 16 23 3 24 3 10.5 C 3 -3 16 -2 18 5 M 3 10.5 L 13 10.5"),
    0x409: ("Lje", 29, "M 1 0 Q 5.5 0.5 6 8 L 7 21 15 21 15 0 20 0 C 28 0 28 11 20 11 L 15 11"),
    0x40A: ("Nje", 29, "M 4 21 L 4 0 M 4 11 L 20 11 C 28 11 28 0 20 0 L 15 0 15 21"),
    0x40B: ("Tshe", 23, "M 1 21 L 15 21 M 8 21 L 8 0 M 8 11 C 12 15 19 14 19 8 L 19 0"),
    0x40F: ("Dzhe", 22, "M 4 21 L 4 0 18 0 18 21 M 11 0 L 11 -6"),
    0x411: ("Be", 21, "M 16 21 L 4 21 4 0 11 0 C 20 0 20 12 11 12 L 4 12"),
    0x414: ("De", 23, "M 5 0 Q 8 6 8 21 L 18 21 18 0 M 2 -6 L 2 0 21 0 21 -6"),
    0x416: ("Zhe", 26, "M 3 21 L 13 10.5 3 0 M 23 21 L 13 10.5 23 0 M 13 21 L 13 0"),
    0x417: ("Ze", 20, "M 3 18 C 5 22.3 16.5 22.3 16.5 16 C 16.5 12 12.5 11 8.5 11 C 14.5 11 17.5 9.5 17.5 5.5 C "
           "17.5 -1.5 5 -1.5 2.5 4"),
    0x418: ("I", 22, "M 4 21 L 4 0 18 21 18 0"),
    0x41B: ("El", 22, "M 1.5 0 Q 6 0.5 6.5 8 L 7.5 21 18 21 18 0"),
    0x423: ("U", 20, "M 2.5 21 L 10 7 M 17.5 21 L 8.5 3 Q 7 0 3 0"),
    0x426: ("Tse", 23, "M 4 21 L 4 0 18 0 M 18 21 L 18 0 21 0 21 -6"),
    0x427: ("Che", 22, "M 4 21 L 4 15 C 4 9 11 8.5 18 11.5 M 18 21 L 18 0"),
    0x428: ("Sha", 28, "M 4 21 L 4 0 24 0 24 21 M 14 21 L 14 0"),
    0x429: ("Shcha", 30, "M 4 21 L 4 0 27 0 27 -6 M 14 21 L 14 0 M 24 21 L 24 0"),
    0x42A: ("hard sign", 24, "M 1 21 L 7 21 7 0 14 0 C 22.5 0 22.5 12 14 12 L 7 12"),
    0x42B: ("Yeru", 27, "M 4 21 L 4 0 10 0 C 18.5 0 18.5 12 10 12 L 4 12 M 23 21 L 23 0"),
    0x42C: ("soft sign", 20, "M 4 21 L 4 0 11 0 C 19.5 0 19.5 12 11 12 L 4 12"),
    0x42D: ("E", 21, "M 3 16 C 5 23 18 24 18 10.5 C 18 -3 5 -2 3 5 M 18 10.5 L 8 10.5"),
    0x42E: ("Yu", 29, "M 4 21 L 4 0 M 4 10.5 L 10 10.5 " + ellipse(18, 10.5, 8, 10.5)),
    0x42F: ("Ya", 21, "M 17 0 L 17 21 9.5 21 C 1.5 21 1.5 10 9.5 10 L 17 10 M 10 10 L 3 0"),
    # Cyrillic small letters.
    0x431: ("be", 19, "M 15 21 C 7 19.5 3.5 16 3.5 7 C 3.5 -2.3 15.5 -2.3 15.5 7 C 15.5 15.5 5.5 15.5 3.7 9"),
    0x432: ("ve", 17, "M 4 14 L 4 0 9.5 0 C 15 0 15 7.5 9.5 7.5 L 4 7.5 M 9.5 7.5 C 14 7.5 14 14 9.5 14 L 4 14"),
    0x433: ("ghe", 14, "M 4 0 L 4 14 12 14"),
    0x434: ("de", 18, "M 4.5 0 Q 6.5 4 6.5 14 L 14 14 14 0 M 2 -5 L 2 0 16.5 0 16.5 -5"),
    0x436: ("zhe", 21, "M 2.5 14 L 10.5 7 2.5 0 M 18.5 14 L 10.5 7 18.5 0 M 10.5 14 L 10.5 0"),
    0x437: ("ze", 16, "M 3 12 C 5 15 13 15 13 10.8 C 13 8 9.5 7.3 7 7.3 C 10.5 7.3 13.7 6.5 13.7 3.6 C 13.7 -1 "
           "4.5 -1 2.5 2.5"),
    0x438: ("i", 18, "M 4 14 L 4 0 14 14 14 0"),
    0x43A: ("ka", 16, "M 4 14 L 4 0 M 4 7 L 6.5 7 13.5 14 M 6.5 7 L 14 0"),
    0x43B: ("el", 17, "M 1.5 0 Q 4.5 0.5 5 7 L 5.5 14 13 14 13 0"),
    0x43C: ("em", 20, "M 4 0 L 4 14 10 4 16 14 16 0"),
    0x43D: ("en", 18, "M 4 14 L 4 0 M 14 14 L 14 0 M 4 7 L 14 7"),
    0x43F: ("pe", 18, "M 4 0 L 4 14 14 14 14 0"),
    0x442: ("te", 15, "M 1.5 14 L 13.5 14 M 7.5 14 L 7.5 0"),
    0x444: ("ef", 22, "M 11 21 L 11 -7 " + ellipse(11, 7, 8, 7)),
    0x446: ("tse", 18, "M 4 14 L 4 0 13.5 0 M 13.5 14 L 13.5 0 16.5 0 16.5 -5"),
    0x447: ("che", 17, "M 3.5 14 L 3.5 10 C 3.5 6 8.5 5.5 13.5 7.5 M 13.5 14 L 13.5 0"),
    0x448: ("sha", 23, "M 4 14 L 4 0 19 0 19 14 M 11.5 14 L 11.5 0"),
    0x449: ("shcha", 24, "M 4 14 L 4 0 22 0 22 -5 M 11.5 14 L 11.5 0 M 19 14 L 19 0"),
    0x44A: ("small hard sign", 18, "M 1 14 L 6 14 6 0 11 0 C 16.7 0 16.7 8 11 8 L 6 8"),
    0x44B: ("yeru", 22, "M 4 14 L 4 0 8.5 0 C 14.2 0 14.2 8 8.5 8 L 4 8 M 18 14 L 18 0"),
    0x44C: ("small soft sign", 17, "M 4 14 L 4 0 9.5 0 C 15.2 0 15.2 8 9.5 8 L 4 8"),
    0x44D: ("e", 17, "M 3 11.5 C 5 15 14 15.5 14 7 C 14 -1.5 5 -1 2.5 2.8 M 14 7 L 7 7"),
    0x44E: ("yu", 24, "M 4 14 L 4 0 M 4 7 L 8.5 7 " + ellipse(14.5, 7, 6, 7)),
    0x44F: ("ya", 17, "M 13 0 L 13 14 7.5 14 C 2 14 2 6.5 7.5 6.5 L 13 6.5 M 8 6.5 L 3 0"),
    0x452: ("dje", 19, "M 1 17 L 10 17 M 5 21 L 5 0 M 5 10 C 8 15 15 15 15 9 L 15 0 C 15 -5 13 -7 9 -7"),
    0x454: ("Ukrainian ie", 17, "M 14 11.5 C 12 15 3 15.5 3 7 C 3 -1.5 12 -1 14.5 2.8 M 3 7 L 10 7"),
    0x459: ("lje", 23, "M 1 0 Q 4 0.5 4.5 7 L 5 14 12 14 12 0 16 0 C 21.7 0 21.7 7.5 16 7.5 L 12 7.5"),
    0x45A: ("nje", 24, "M 4 14 L 4 0 M 4 7.5 L 17 7.5 C 22.7 7.5 22.7 0 17 0 L 13 0 13 14"),
    0x45B: ("tshe", 19, "M 1 17 L 10 17 M 5 21 L 5 0 M 5 10 C 8 15 15 15 15 9 L 15 0"),
    0x45F: ("dzhe", 18, "M 4 14 L 4 0 14 0 14 14 M 9 0 L 9 -5"),
}

ACCENTED = {}
for base, first in (("A", 0xC0), ("a", 0xE0)):
    for k, accent in enumerate(("grave", "acute", "circumflex", "tilde", "dieresis", "ring")):
        ACCENTED[first + k] = (f"{base} with {accent}", base, accent)
for base, first, accents in (
    ("E", 0xC8, ("grave", "acute", "circumflex", "dieresis")), ("I", 0xCC, ("grave", "acute", "circumflex", "dieresis")),
    ("O", 0xD2, ("grave", "acute", "circumflex", "tilde", "dieresis")),
    ("U", 0xD9, ("grave", "acute", "circumflex", "dieresis")),
    ("e", 0xE8, ("grave", "acute", "circumflex", "dieresis")),
    ("\u0131", 0xEC, ("grave", "acute", "circumflex", "dieresis")),
    ("o", 0xF2, ("grave", "acute", "circumflex", "tilde", "dieresis")),
    ("u", 0xF9, ("grave", "acute", "circumflex", "dieresis")),
):
    for k, accent in enumerate(accents):
        ACCENTED[first + k] = (f"{'i' if base == chr(0x131) else base} with {accent}", base, accent)
ACCENTED.update({
    0xC7: ("C with cedilla", "C", "cedilla"), 0xE7: ("c with cedilla", "c", "cedilla"),
    0xD1: ("N with tilde", "N", "tilde"), 0xF1: ("n with tilde", "n", "tilde"),
    0xDD: ("Y with acute", "Y", "acute"), 0xFD: ("y with acute", "y", "acute"), 0xFF: ("y with dieresis", "y", "dieresis"),
    0x386: ("Alpha with tonos", "A", "before"), 0x388: ("Epsilon with tonos", "E", "before"),
    0x389: ("Eta with tonos", "H", "before"), 0x38A: ("Iota with tonos", "I", "before"),
    0x38C: ("Omicron with tonos", "O", "before"), 0x38E: ("Upsilon with tonos", "Y", "before"),
    0x38F: ("Omega with tonos", "\u03a9", "before"),
    0x390: ("iota with dieresis and tonos", "\u03b9", "dieresis tonos"),
    0x3AA: ("Iota with dieresis", "I", "dieresis"), 0x3AB: ("Upsilon with dieresis", "Y", "dieresis"),
    0x3AC: ("alpha with tonos", "\u03b1", "tonos"), 0x3AD: ("epsilon with tonos", "\u03b5", "tonos"),
    0x3AE: ("eta with tonos", "\u03b7", "tonos"), 0x3AF: ("iota with tonos", "\u03b9", "tonos"),
    0x3B0: ("upsilon with dieresis and tonos", "\u03c5", "dieresis tonos"),
    0x3CA: ("iota with dieresis", "\u03b9", "dieresis"), 0x3CB: ("upsilon with dieresis", "\u03c5", "dieresis"),
    0x3CC: ("omicron with tonos", "o", "tonos"), 0x3CD: ("upsilon with tonos", "\u03c5", "tonos"),
    0x3CE: ("omega with tonos", "\u03c9", "tonos"),
    0x400: ("Ie with grave", "E", "grave"), 0x401: ("Io", "E", "dieresis"), 0x403: ("Gje", "\u0393", "acute"),
    0x407: ("Yi", "I", "dieresis"), 0x40C: ("Kje", "K", "acute"), 0x40D: ("I with grave", "\u0418", "grave"),
    0x40E: ("short U", "\u0423", "breve"), 0x419: ("short I", "\u0418", "breve"),
    0x439: ("short i", "\u0438", "breve"), 0x450: ("ie with grave", "e", "grave"), 0x451: ("io", "e", "dieresis"),
    0x453: ("gje", "\u0433", "acute"), 0x457: ("yi", "\u0131", "dieresis"), 0x45C: ("kje", "\u043a", "acute"),
    0x45D: ("i with grave", "\u0438", "grave"), 0x45E: ("short u", "y", "breve"),
})
