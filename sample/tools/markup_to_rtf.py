#!/usr/bin/env python3
"""Turns the course's readable text sources into RTF files as the rich-edit control
writes them (code page 1253, CRLF line ends), so that the program reads them exactly
as it would read files saved on a school's machine.

Markup, one UTF-8 file per text:
  blank line        ends a paragraph
  **words**         bold
  [[words]]         comment hot word, painted dark red (colour 1)
  {{words}}         index hot word, painted blue (colour 2)
Lines inside a paragraph are joined with one space.

Usage: markup_to_rtf.py SOURCE_DIR TARGET_DIR
Each SOURCE_DIR/name.txt becomes TARGET_DIR/name.rtf; a file is only rewritten when
its content changes, so the build stays incremental.
"""

import os
import re
import sys

HEADER = (
    "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032"
    "{\\fonttbl{\\f0\\fnil\\fcharset161 Times New Roman;}}\r\n"
    "{\\colortbl ;\\red192\\green0\\blue0;\\red0\\green0\\blue192;}\r\n"
    "\\viewkind4\\uc1\\pard\\lang1032\\f0\\fs24 "
)

COMMENT_COLOUR = 1
TERM_COLOUR = 2

TOKEN = re.compile(r"\*\*(.+?)\*\*|\[\[(.+?)\]\]|\{\{(.+?)\}\}")


def escape(text):
    out = []
    for ch in text:
        if ch in "\\{}":
            out.append("\\" + ch)
            continue
        code = ord(ch)
        if code < 0x80:
            out.append(ch)
            continue
        try:
            byte = ch.encode("cp1253")
        except UnicodeEncodeError:
            # Rich edit writes a character outside the code page as \u with a "?" fallback.
            value = code if code < 0x8000 else code - 0x10000
            out.append("\\u%d?" % value)
            continue
        out.append("\\'%02x" % byte[0])
    return "".join(out)


def paragraph_to_rtf(text):
    out = []
    pos = 0
    for match in TOKEN.finditer(text):
        out.append(escape(text[pos:match.start()]))
        bold, comment, term = match.groups()
        if bold is not None:
            out.append("\\b " + escape(bold) + "\\b0 ")
        elif comment is not None:
            out.append("\\cf%d " % COMMENT_COLOUR + escape(comment) + "\\cf0 ")
        else:
            out.append("\\cf%d " % TERM_COLOUR + escape(term) + "\\cf0 ")
        pos = match.end()
    out.append(escape(text[pos:]))
    return "".join(out)


def paragraphs(source):
    blocks = re.split(r"\n\s*\n", source.strip())
    return [" ".join(line.strip() for line in block.splitlines()) for block in blocks]


def markup_to_rtf(source):
    body = "\\par\r\n\\par\r\n".join(paragraph_to_rtf(p) for p in paragraphs(source))
    return HEADER + body + "\\par\r\n}\r\n"


def main(argv):
    if len(argv) != 3:
        sys.stderr.write("usage: markup_to_rtf.py SOURCE_DIR TARGET_DIR\n")
        return 2
    source_dir, target_dir = argv[1], argv[2]
    os.makedirs(target_dir, exist_ok=True)
    for name in sorted(os.listdir(source_dir)):
        if not name.endswith(".txt"):
            continue
        with open(os.path.join(source_dir, name), encoding="utf-8") as f:
            rtf = markup_to_rtf(f.read()).encode("ascii")
        target = os.path.join(target_dir, name[:-4] + ".rtf")
        if os.path.exists(target):
            with open(target, "rb") as f:
                if f.read() == rtf:
                    continue
        with open(target, "wb") as f:
            f.write(rtf)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
