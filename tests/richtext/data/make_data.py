#!/usr/bin/env python3
"""Writes the RTF test files of the reader, each with its expected plain text (.txt, UTF-8)
and its expected formatting runs (.runs, one JSON object a line), in the form that
`tremidia-content rtf-runs` prints. Run it again after changing a file here."""

import json
import struct
import zlib
from pathlib import Path

HERE = Path(__file__).resolve().parent


def g(text):
    """Greek text as \\'hh escapes in code page 1253, as the rich-edit control writes it."""
    out = []
    for ch in text:
        if ord(ch) < 0x80:
            out.append(ch)
        else:
            out.append("\\'%02x" % ch.encode("cp1253")[0])
    return "".join(out)


def fmt(color="auto", bold=False, italic=False, underline=False, font="", size=12):
    return dict(color=color, bold=bold, italic=italic, underline=underline, font=font, size=size)


def write(name, rtf, segments):
    """segments: (text, format) in order; equal neighbours merge into one run."""
    data = rtf.encode("latin-1") if isinstance(rtf, str) else rtf
    (HERE / (name + ".rtf")).write_bytes(data)
    text = "".join(t for t, _ in segments)
    (HERE / (name + ".txt")).write_bytes(text.encode("utf-8"))
    runs = []
    pos = 0
    for t, f in segments:
        n = len(t.encode("utf-16-le")) // 2
        if n == 0:
            continue
        if runs and all(runs[-1][k] == f[k] for k in f):
            runs[-1]["length"] += n
        else:
            run = dict(start=pos, length=n)
            run.update(f)
            runs.append(run)
        pos += n
    lines = []
    for r in runs:
        size = r["size"]
        size = int(size) if float(size).is_integer() else size
        lines.append('{"start":%d,"length":%d,"color":%s,"bold":%s,"italic":%s,"underline":%s,"font":%s,"size":%s}' % (
            r["start"], r["length"], '"auto"' if r["color"] == "auto" else str(r["color"]),
            str(r["bold"]).lower(), str(r["italic"]).lower(), str(r["underline"]).lower(),
            json.dumps(r["font"], ensure_ascii=False), size))
    (HERE / (name + ".runs")).write_bytes(("\n".join(lines) + "\n").encode("utf-8"))


RED = 0x0000FF
BLUE = 0xFF0000
GREEN = 0x008000

# Coloured hot words in Greek, code page 1253, as a text source of the content is written.
tnr = "Times New Roman Greek"
write("greek_colors",
      "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\fswiss\\fcharset161{\\*\\fname Arial;}Arial Greek;}"
      "{\\f1\\froman\\fcharset161{\\*\\fname Times New Roman;}Times New Roman Greek;}}\r\n"
      "{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}\r\n"
      "\\viewkind4\\uc1\\pard\\qj\\lang1032\\f1\\fs24 " + g("Ο ") + "\\cf1 " + g("Περικλής") + "\\cf0  " + g("ήταν ")
      + "\\cf2\\b " + g("Αθηναίος") + "\\cf0\\b0  " + g("πολιτικός.") + "\\par\r\n"
      "\\i " + g("Ακρόπολη") + "\\i0  " + g("και ") + "\\ul " + g("Παρθενώνας") + "\\ulnone .\\par\r\n}\r\n\0",
      [("Ο ", fmt(font=tnr)), ("Περικλής", fmt(RED, font=tnr)), (" ήταν ", fmt(font=tnr)),
       ("Αθηναίος", fmt(BLUE, bold=True, font=tnr)), (" πολιτικός.\n", fmt(font=tnr)),
       ("Ακρόπολη", fmt(italic=True, font=tnr)), (" και ", fmt(font=tnr)),
       ("Παρθενώνας", fmt(underline=True, font=tnr)), (".\n", fmt(font=tnr))])

# Bullets in the rich-edit control's own form.
write("bullets",
      "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\fnil\\fcharset161 Times New Roman;}"
      "{\\f1\\fnil\\fcharset2 Symbol;}}\r\n{\\colortbl ;\\red0\\green128\\blue0;}\r\n"
      "\\viewkind4\\uc1\\pard\\f0\\fs24 " + g("Θεοί:") + "\\par\r\n"
      "{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}\\fi-360\\li360 " + g("Δίας") + "\\par\r\n"
      "{\\pntext\\f1\\'B7\\tab}\\cf1 " + g("Ήρα") + "\\cf0\\par\r\n"
      "\\pard " + g("Τέλος.") + "\\par\r\n}\r\n",
      [("Θεοί:\nΔίας\n", fmt(font="Times New Roman")), ("Ήρα", fmt(GREEN, font="Times New Roman")),
       ("\nΤέλος.\n", fmt(font="Times New Roman"))])


def png_2x2():
    raw = b"".join(b"\x00" + b"\xff\x00\x00" * 2 for _ in range(2))
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 2, 2, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(raw)) + chunk(b"IEND", b""))


def dib_2x1():
    header = struct.pack("<IiiHHIIiiII", 40, 2, 1, 1, 24, 0, 8, 2835, 2835, 0, 0)
    return header + b"\x00\x00\xff" + b"\x00\xff\x00" + b"\x00\x00"  # red, green, row padding


def wmf_with_dib():
    dib = dib_2x1()
    params = struct.pack("<IHhhhhhhhhh", 0x00CC0020, 0, 1, 2, 0, 0, 1, 2, 0, 0, 0)[:22]
    record_body = params + dib
    words = (6 + len(record_body) + 1) // 2
    record = struct.pack("<IH", words, 0x0F43) + record_body + (b"\x00" if len(record_body) % 2 else b"")
    end = struct.pack("<IH", 3, 0)
    total = (18 + len(record) + len(end)) // 2
    header = struct.pack("<HHHIHIH", 1, 9, 0x0300, total, 0, words, 0)
    return header + record + end


def hexlines(data):
    h = data.hex()
    return "\r\n".join(h[i:i + 64] for i in range(0, len(h), 64))


write("pictures",
      "{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0\\fnil\\fcharset161 Arial;}}\r\n"
      "\\viewkind4\\uc1\\pard\\f0\\fs20 " + g("Εικόνα: ")
      + "{\\pict\\pngblip\\picw2\\pich2\\picwgoal1440\\pichgoal720\r\n" + hexlines(png_2x2()) + "}"
      + g(" και ") + "{\\pict\\dibitmap0\\picw2\\pich1\\picscalex200\\picscaley200 " + hexlines(dib_2x1()) + "}"
      + "{\\*\\shppict{\\pict\\wmetafile8\\picw2540\\pich2540 " + hexlines(wmf_with_dib()) + "}}"
      + "{\\nonshppict{\\pict\\wmetafile8 00}}.\\par\r\n}\r\n",
      [("Εικόνα: \ufffc και \ufffc\ufffc.\n", fmt(font="Arial", size=10))])

# Unicode escapes with their fallbacks, in a document of another code page.
write("unicode",
      "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil Calibri;}}\r\n"
      "\\uc1\\pard\\f0\\fs22 \\u913?\\u952?\\u942?\\u957?\\u945?, {\\uc2\\u8364\\'80\\'80 euro} caf\\'e9 "
      "{\\uc0\\u8212} end \\u-10179?\\u-8704?\\par\r\n}",
      [("Αθήνα, € euro café — end \U0001F600\n", fmt(font="Calibri", size=11))])

# Lists as a word processor writes them: list tables, overrides and \listtext.
write("word_lists",
      "{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0\\froman\\fcharset161 Times New Roman;}"
      "{\\f1\\fbidi \\froman\\fcharset2 Symbol;}}\r\n{\\colortbl;\\red0\\green0\\blue0;\\red255\\green0\\blue0;}\r\n"
      "{\\*\\listtable{\\list\\listtemplateid1{\\listlevel\\levelnfc23\\levelstartat1{\\leveltext\\'01\\u-3913 ?;}"
      "{\\levelnumbers;}\\f1\\fi-360\\li720}\\listid100}\r\n"
      "{\\list\\listtemplateid2{\\listlevel\\levelnfc0\\levelstartat3{\\leveltext\\'02\\'00.;}{\\levelnumbers\\'01;}"
      "\\fi-360\\li720}\\listid200}}\r\n"
      "{\\*\\listoverridetable{\\listoverride\\listid100\\listoverridecount0\\ls1}"
      "{\\listoverride\\listid200\\listoverridecount0\\ls2}}\r\n"
      "\\pard\\plain\\f0\\fs24 " + g("Λίστα:") + "\\par\r\n"
      "{\\listtext\\pard\\plain\\f1\\fs24 \\'b7\\tab}\\pard\\fi-360\\li720\\ls1 " + g("Πρώτο") + "\\par\r\n"
      "{\\listtext\\pard\\plain\\f1\\fs24 \\'b7\\tab}\\ls1 " + g("Δεύτερο") + "\\par\r\n"
      "{\\listtext\\pard\\plain\\f0\\fs24 3.\\tab}\\pard\\fi-360\\li720\\ls2 \\cf2 " + g("Τρίτο") + "\\cf0\\par\r\n}",
      [("Λίστα:\nΠρώτο\nΔεύτερο\n", fmt(font="Times New Roman")), ("Τρίτο", fmt(RED, font="Times New Roman")),
       ("\n", fmt(font="Times New Roman"))])

# Fields, objects, hidden text, line breaks, tabs, a table, \upr and unknown destinations.
write("structures",
      "{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0\\fnil\\fcharset161 Arial;}}\r\n"
      "{\\stylesheet{\\s0 Normal;}}{\\info{\\title " + g("Δοκιμή") + "}{\\author X}}\r\n"
      "{\\*\\generator Riched20 5.50.99.2050;}\\viewkind4\\uc1\\pard\\f0\\fs20 " + g("Σύνδεσμος: ")
      + "{\\field{\\*\\fldinst{HYPERLINK \"http://example.gr\"}}{\\fldrslt{\\ul\\cf0 " + g("ιστοσελίδα") + "}}}\\par\r\n"
      "{\\object\\objemb{\\*\\objclass Paint.Picture}\\objw100\\objh100{\\*\\objdata 0102}{\\result " + g("αντικείμενο")
      + "}}\\par\r\n"
      + g("Κρυφό:") + "{\\v " + g("μυστικό") + "} " + g("τέλος") + "\\line " + g("δεύτερη γραμμή") + "\\tab "
      + g("στήλη") + "\\par\r\n"
      "\\trowd\\cellx1000\\cellx2000\\intbl " + g("Α1") + "\\cell " + g("Β1") + "\\cell\\row\r\n"
      "{\\upr{" + g("Ελλάδα") + "}{\\*\\ud{\\u917?\\u955?\\u955?\\u940?\\u948?\\u945?}}}\\par\r\n"
      "{\\*\\unknowndest junk}" + g("τέλος") + "}",
      [("Σύνδεσμος: ", fmt(font="Arial", size=10)), ("ιστοσελίδα", fmt(underline=True, font="Arial", size=10)),
       ("\nαντικείμενο\nΚρυφό: τέλος\nδεύτερη γραμμή\tστήλη\nΑ1\tΒ1\t\nΕλλάδα\nτέλος", fmt(font="Arial", size=10))])

# The code page follows the font: Western, Cyrillic, Greek and a double-byte Japanese font.
write("code_pages",
      "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}{\\f1\\fnil\\fcharset204 Arial Cyr;}"
      "{\\f2\\fnil\\fcharset161 Arial Greek;}{\\f3\\fnil\\fcharset128 MS Gothic;}}\r\n"
      "\\pard\\f0\\fs24 caf\\'e9 \\f1\\'cf\\'f0\\'e8\\'e2\\'e5\\'f2 \\f2\\'e3\\'e5\\'e9\\'e1 \\f3\\'93\\'fa\\'96\\'7b\\par\r\n}",
      [("café ", fmt(font="Arial")), ("Привет ", fmt(font="Arial Cyr")), ("γεια ", fmt(font="Arial Greek")),
       ("日本\n", fmt(font="MS Gothic"))])
