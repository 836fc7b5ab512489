"""Reads the RTF that the course's texts are written in, far enough to know each
character and its colour, and tells whether a hot word can be found in it the way the
text viewer finds it: the first occurrence, regardless of case, whose first character is
painted in a colour other than black, then the whole phrase in one colour.
"""

import re

COMMENT_COLOUR = 1
TERM_COLOUR = 2

# Destinations whose text is not part of the document.
SKIPPED_GROUPS = ("fonttbl", "colortbl", "stylesheet", "info", "*")

TOKEN = re.compile(rb"\\'([0-9a-fA-F]{2})|\\([a-z]+)(-?\d+)? ?|\\(.)|([{}])|([^\\{}\r\n]+)|[\r\n]+", re.S)


def read_rtf(data):
    """Returns a list of (character, colour index) for the text of an RTF file."""
    chars = []
    colour = 0
    stack = []
    skip_depth = None
    uc_skip = 0
    for match in TOKEN.finditer(data):
        hexbyte, word, number, symbol, brace, text = match.groups()
        if brace == b"{":
            stack.append(colour)
            continue
        if brace == b"}":
            colour = stack.pop() if stack else 0
            if skip_depth is not None and len(stack) < skip_depth:
                skip_depth = None
            continue
        if skip_depth is not None:
            continue
        if word is not None:
            name = word.decode("ascii")
            if name in SKIPPED_GROUPS:
                skip_depth = len(stack)
            elif name == "cf":
                colour = int(number or 0)
            elif name == "plain":
                colour = 0
            elif name == "par" or name == "line":
                chars.append(("\n", colour))
            elif name == "tab":
                chars.append(("\t", colour))
            elif name == "u":
                value = int(number)
                chars.append((chr(value + 0x10000 if value < 0 else value), colour))
                uc_skip = 1
            continue
        if symbol is not None:
            if symbol == b"*":
                skip_depth = len(stack)
            elif symbol in (b"\\", b"{", b"}"):
                chars.append((symbol.decode("ascii"), colour))
            continue
        if hexbyte is not None:
            if uc_skip:
                uc_skip -= 1
                continue
            chars.append((bytes([int(hexbyte, 16)]).decode("cp1253"), colour))
            continue
        if text is not None:
            for ch in text.decode("cp1253"):
                if uc_skip:
                    uc_skip -= 1
                    continue
                chars.append((ch, colour))
    return chars


def fold(ch):
    lower = ch.lower()
    if len(lower) != 1:
        return ch
    return "σ" if lower == "ς" else lower


def check_hot_word(chars, phrase, colour):
    """None if the phrase is found painted in the given colour, else what is wrong."""
    if not phrase:
        return "the phrase is empty"
    text = "".join(fold(c) for c, _ in chars)
    wanted = "".join(fold(c) for c in phrase)
    start = text.find(wanted)
    while start >= 0 and chars[start][1] == 0:
        start = text.find(wanted, start + 1)
    if start < 0:
        return "no painted occurrence"
    colours = {c for _, c in chars[start:start + len(phrase)]}
    if len(colours) != 1:
        return "painted in more than one colour"
    if colours != {colour}:
        return "painted in colour %d instead of %d" % (colours.pop(), colour)
    return None
