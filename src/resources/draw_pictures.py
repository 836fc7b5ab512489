#!/usr/bin/env python3
"""Writes the program's pictures as SVG files into svg/ and lists them in programpictures.qrc.

The pictures share one palette and a few drawn parts (the button plate, the tile plaque,
the glyphs of the source kinds), so they are composed here rather than kept by hand in
sixty files that would drift apart. Run it after changing a drawing and commit its output:

    python3 src/resources/draw_pictures.py

Only what Qt's SVG renderer understands is used: paths, shapes, gradients, opacity and
transforms; no filters, masks, clip paths or text.
"""

from picturekit import *  # noqa: F401,F403 (the palette and the SVG helpers)
from notes_pictures import notes_toolbar_pictures

pictures = {}


# ---------------------------------------------------------------------------------------
# Glyphs of the source kinds, each drawn in a 32 x 32 box. `p` prefixes gradient ids so a
# glyph can appear twice in one file.


def glyph_photo(p):
    defs = lin(p + "sky", [(0, "#bfe0f4"), (1, AEGEAN_LIGHT)]) + lin(
        p + "vase", [(0, "#d9773f"), (1, TERRACOTTA_DARK)], 0, 0, 1, 0
    )
    body = f"""
<g transform="rotate(-6 16 16)">
  <rect x="3" y="4" width="26" height="24" rx="1.5" fill="#ffffff" stroke="{INK}" stroke-width="1"/>
  <rect x="5.5" y="6.5" width="21" height="16" fill="url(#{p}sky)"/>
  <path d="M5.5 18 Q10 14.5 15 17 T26.5 16.5 V22.5 H5.5 Z" fill="{OLIVE_LIGHT}"/>
  <path d="M5.5 20 Q12 18 18 20.5 T26.5 20 V22.5 H5.5 Z" fill="{OLIVE}"/>
</g>
<g transform="translate(17.5 9)">
  <path d="M3.2 0 H8.8 V1.4 H7.6 Q7.4 3 8.6 4.2 Q12.4 7.4 11.6 12.6 Q11 17.4 7.4 20.6 L8 22 H4 L4.6 20.6
           Q1 17.4 0.4 12.6 Q-0.4 7.4 3.4 4.2 Q4.6 3 4.4 1.4 H3.2 Z"
        fill="url(#{p}vase)" stroke="{INK}" stroke-width="0.9" stroke-linejoin="round"/>
  <path d="M3.4 4.2 Q0.6 4 0.8 7.4" fill="none" stroke="{INK}" stroke-width="0.9"/>
  <path d="M8.6 4.2 Q11.4 4 11.2 7.4" fill="none" stroke="{INK}" stroke-width="0.9"/>
  <path d="M0.9 10.2 H11.1 V14 H0.9 Z" fill="{INK}" opacity="0.85"/>
  <path d="M2 12.1 H10" stroke="{OCHRE_LIGHT}" stroke-width="0.8" stroke-dasharray="1.2 0.8"/>
</g>"""
    return defs, body


def glyph_scroll(p):
    defs = lin(p + "sheet", [(0, "#fbf0d2"), (1, PARCHMENT_DARK)], 0, 0, 1, 0) + lin(
        p + "roll", [(0, OCHRE_LIGHT), (0.5, OCHRE), (1, "#9a6a1e")], 0, 0, 0, 1
    )
    lines = "".join(
        f'<path d="M9 {y} H{x2}" stroke="{INK}" stroke-width="1" stroke-linecap="round" opacity="0.75"/>'
        for y, x2 in [(10.5, 24), (13.5, 22), (16.5, 24), (19.5, 20), (22.5, 23)]
    )
    body = f"""
<rect x="6" y="5" width="21" height="22" fill="url(#{p}sheet)" stroke="{INK}" stroke-width="1"/>
{lines}
<rect x="3" y="3" width="26" height="4.5" rx="2.25" fill="url(#{p}roll)" stroke="{INK}" stroke-width="1"/>
<rect x="3" y="24.5" width="26" height="4.5" rx="2.25" fill="url(#{p}roll)" stroke="{INK}" stroke-width="1"/>
<circle cx="3.6" cy="5.25" r="1.6" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="0.8"/>
<circle cx="28.4" cy="5.25" r="1.6" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="0.8"/>
<circle cx="3.6" cy="26.75" r="1.6" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="0.8"/>
<circle cx="28.4" cy="26.75" r="1.6" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="0.8"/>"""
    return defs, body


def glyph_map(p):
    defs = lin(p + "sea", [(0, AEGEAN_LIGHT), (1, AEGEAN)], 0, 0, 1, 1)
    body = f"""
<path d="M2 7 L11 4 L21 7 L30 4 V25 L21 28 L11 25 L2 28 Z" fill="url(#{p}sea)" stroke="{INK}"
      stroke-width="1" stroke-linejoin="round"/>
<path d="M4 10 Q8 8 10 11 Q13 14 9 17 Q6 19 4 17 Z" fill="{OCHRE_LIGHT}" stroke="#8a6326" stroke-width="0.7"/>
<path d="M16 13 Q19 10 23 12 Q27 14 25 18 Q22 21 18 19 Q15 17 16 13 Z" fill="{OLIVE_LIGHT}"
      stroke="#56692a" stroke-width="0.7"/>
<path d="M21 23 Q24 21 27 23 Q26 25.5 23 25.5 Z" fill="{OCHRE_LIGHT}" stroke="#8a6326" stroke-width="0.7"/>
<path d="M9 14 Q13 21 20 16" fill="none" stroke="{TERRACOTTA}" stroke-width="1.3" stroke-dasharray="1.8 1.3"
      stroke-linecap="round"/>
<path d="M19 14.5 L22 17.5 M22 14.5 L19 17.5" stroke="{TERRACOTTA_DARK}" stroke-width="1.5"
      stroke-linecap="round"/>
<path d="M11 4 V25 M21 7 V28" stroke="{INK}" stroke-width="0.8" opacity="0.35"/>
<path d="M11 4 L21 7 V28 L11 25 Z" fill="#000000" opacity="0.08"/>"""
    return defs, body


def glyph_statue(p):
    defs = lin(p + "stone", [(0, "#ffffff"), (0.6, MARBLE), (1, MARBLE_SHADE)], 0, 0, 1, 0)
    body = f"""
<rect x="8" y="25" width="16" height="4" rx="0.6" fill="{MARBLE_SHADE}" stroke="{INK}" stroke-width="1"/>
<rect x="10" y="22" width="12" height="3.2" fill="url(#{p}stone)" stroke="{INK}" stroke-width="1"/>
<path d="M9 22 Q9 15 12 13.5 L14 12.5 V11 H18 V12.5 L20 13.5 Q23 15 23 22 Z" fill="url(#{p}stone)"
      stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>
<ellipse cx="16" cy="7.6" rx="4" ry="4.6" fill="url(#{p}stone)" stroke="{INK}" stroke-width="1"/>
<path d="M12.2 6.6 Q12.6 2.6 16 2.8 Q19.6 2.6 19.8 6.6 Q18 5 16 5.4 Q14 5 12.2 6.6 Z" fill="{MARBLE_SHADE}"
      stroke="{INK}" stroke-width="0.8"/>
<path d="M12 16 Q16 18.5 20 16 M11.5 19 Q16 21.5 20.5 19" fill="none" stroke="{INK}" stroke-width="0.7"
      opacity="0.55"/>"""
    return defs, body


def glyph_stele(p):
    defs = lin(p + "stone", [(0, "#ede6d6"), (0.5, "#d8cfbc"), (1, "#b5aa92")], 0, 0, 1, 0)
    # Three lines of large carved letters, so that they still read as letters when small.
    letters = ""
    rows = [(9.5, "ΔΟΣ"), (15, "ΙΕΡ"), (20.5, "ΟΣΔ")]
    for y, word in rows:
        for i, ch in enumerate(word):
            x = 9 + i * 5.2
            if ch == "Δ":
                letters += f'<path d="M{x} {y + 3.6} L{x + 1.8} {y} L{x + 3.6} {y + 3.6} Z"/>'
            elif ch == "Ο":
                letters += f'<circle cx="{x + 1.8}" cy="{y + 1.8}" r="1.7"/>'
            elif ch == "Σ":
                letters += f'<path d="M{x + 3.4} {y} H{x} L{x + 1.8} {y + 1.8} L{x} {y + 3.6} H{x + 3.4}"/>'
            elif ch == "Ι":
                letters += f'<path d="M{x + 1.8} {y} V{y + 3.6}"/>'
            elif ch == "Ε":
                letters += f'<path d="M{x + 3.2} {y} H{x + 0.4} V{y + 3.6} H{x + 3.2} M{x + 0.4} {y + 1.8} H{x + 2.6}"/>'
            elif ch == "Ρ":
                letters += f'<path d="M{x + 0.6} {y + 3.6} V{y} H{x + 2.2} Q{x + 3.6} {y + 1} {x + 2.2} {y + 2} H{x + 0.6}"/>'
    body = f"""
<path d="M6 29 V9 Q6 3 16 3 Q26 3 26 9 V29 Z" fill="url(#{p}stone)" stroke="{INK}" stroke-width="1"
      stroke-linejoin="round"/>
<path d="M8 8.5 Q9 5 16 5 Q23 5 24 8.5" fill="none" stroke="{INK}" stroke-width="0.7" opacity="0.5"/>
<g fill="none" stroke="{TERRACOTTA_DARK}" stroke-width="1.1" stroke-linejoin="round">{letters}</g>
<path d="M4 29 H28" stroke="{INK}" stroke-width="1.4" stroke-linecap="round"/>
<path d="M21 24 L23.5 26.5 M19.5 27 L22 25.5" stroke="{INK}" stroke-width="0.6" opacity="0.45"/>"""
    return defs, body


def glyph_temple(p):
    defs = lin(p + "stone", [(0, "#ffffff"), (1, MARBLE_SHADE)], 0, 0, 0, 1)
    cols = "".join(
        f'<rect x="{x}" y="13" width="2.6" height="11" fill="url(#{p}stone)" stroke="{INK}" stroke-width="0.8"/>'
        for x in [6.2, 11, 15.7, 20.4, 25.2]
    )
    body = f"""
<path d="M3 11 L16 3.5 L29 11 Z" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>
<path d="M8.5 9.6 L16 5.6 L23.5 9.6 Z" fill="{OCHRE_LIGHT}" opacity="0.85"/>
<rect x="4" y="11" width="24" height="2.4" fill="url(#{p}stone)" stroke="{INK}" stroke-width="0.9"/>
{cols}
<rect x="4" y="24" width="24" height="2.2" fill="url(#{p}stone)" stroke="{INK}" stroke-width="0.9"/>
<rect x="2.5" y="26.2" width="27" height="2.6" fill="{MARBLE_SHADE}" stroke="{INK}" stroke-width="0.9"/>"""
    return defs, body


def glyph_coin(p):
    defs = rad(p + "gold", [(0, "#fff1b8"), (0.55, GOLD), (1, "#a8741a")], 0.38, 0.35, 0.7)
    body = f"""
<circle cx="16" cy="16" r="13.5" fill="url(#{p}gold)" stroke="#6d4a10" stroke-width="1"/>
<circle cx="16" cy="16" r="11" fill="none" stroke="#8a5f14" stroke-width="0.8" stroke-dasharray="1.2 1"/>
<path d="M11 24 Q9.5 17 11.6 12.5 Q12.6 9.6 14.2 9.4 L16 11 L17.8 9.4 Q19.4 9.6 20.4 12.5 Q22.5 17 21 24 Z"
      fill="#c99026" stroke="#6d4a10" stroke-width="0.9" stroke-linejoin="round"/>
<circle cx="14.1" cy="14.2" r="2" fill="#fff3c4" stroke="#6d4a10" stroke-width="0.8"/>
<circle cx="17.9" cy="14.2" r="2" fill="#fff3c4" stroke="#6d4a10" stroke-width="0.8"/>
<circle cx="14.3" cy="14.3" r="0.9" fill="{INK}"/>
<circle cx="17.7" cy="14.3" r="0.9" fill="{INK}"/>
<path d="M15.3 16.4 L16 17.8 L16.7 16.4 Z" fill="#6d4a10"/>
<path d="M12.6 19 Q16 21.4 19.4 19 M13 21.5 Q16 23.4 19 21.5" fill="none" stroke="#6d4a10" stroke-width="0.7"/>
<path d="M22.5 9 Q25 10.5 24.5 13.5 Q23 12 22.5 9 Z" fill="{OLIVE}"/>"""
    return defs, body


GLYPHS = {
    "AGEIA": glyph_photo,
    "KEIMENO": glyph_scroll,
    "XARTIS": glyph_map,
    "AGALMA": glyph_statue,
    "EPIGRAFI": glyph_stele,
    "NAOS": glyph_temple,
    "NOMISMA": glyph_coin,
}

# ---------------------------------------------------------------------------------------
# Tiles, 50 x 47: a plaque with the glyph of the source kind. Closed is plain; open glows
# warm gold, as if lit, while its window is up; visited is faded and carries a tick. The
# tile writes its number over the top left corner, so the glyph keeps clear of it.


def tile(family, state):
    gdefs, gbody = GLYPHS[family]("g")
    if state == 0:
        defs = lin("plate", [(0, "#fbf1d6"), (1, PARCHMENT_DARK)])
        back = f"""
<rect x="0.5" y="0.5" width="49" height="46" rx="6" fill="{TERRACOTTA}"/>
<rect x="2.5" y="2.5" width="45" height="42" rx="4.5" fill="url(#plate)" stroke="{TERRACOTTA_DARK}"
      stroke-width="1"/>
<path d="M5 4.5 H45" stroke="#ffffff" stroke-width="1" opacity="0.6" stroke-linecap="round"/>"""
        glyph = f'<g transform="translate(13 9.5) scale(1.03)">{gbody}</g>'
        extra = ""
    elif state == 1:
        defs = rad("glow", [(0, "#fffbe6"), (0.55, "#ffe58a"), (1, GOLD)], 0.5, 0.45, 0.62) + lin(
            "rim", [(0, "#ffe27a"), (1, "#d08a12")]
        )
        back = f"""
<rect x="0.5" y="0.5" width="49" height="46" rx="6" fill="url(#rim)" stroke="#9a5b08" stroke-width="1"/>
<rect x="3" y="3" width="44" height="41" rx="4.5" fill="url(#glow)" stroke="#ffffff" stroke-width="1.2"/>
<g stroke="#ffffff" stroke-width="1.1" stroke-linecap="round" opacity="0.9">
  <path d="M25 3.8 V6.2 M6 23.5 H8.2 M41.8 23.5 H44 M9.5 8.5 L11 10 M40.5 8.5 L39 10"/>
</g>"""
        glyph = f'<g transform="translate(12.2 8.7) scale(1.08)">{gbody}</g>'
        extra = ""
    else:
        defs = lin("plate", [(0, "#e9e1cc"), (1, "#cdbf9f")])
        back = f"""
<rect x="0.5" y="0.5" width="49" height="46" rx="6" fill="#a58a76"/>
<rect x="2.5" y="2.5" width="45" height="42" rx="4.5" fill="url(#plate)" stroke="#7d6654" stroke-width="1"/>"""
        glyph = f'<g transform="translate(13 9.5) scale(1.03)" opacity="0.55">{gbody}</g>'
        extra = f"""
<circle cx="40" cy="37.5" r="6.5" fill="{OLIVE}" stroke="#ffffff" stroke-width="1.3"/>
<path d="M36.8 37.6 L39.2 40 L43.4 35" fill="none" stroke="#ffffff" stroke-width="1.9" stroke-linecap="round"
      stroke-linejoin="round"/>"""
    return svg(50, 47, back + glyph + extra, defs + gdefs)


for fam in GLYPHS:
    pictures[fam] = tile(fam, 0)
    pictures[fam + "1"] = tile(fam, 1)
    pictures[fam + "2"] = tile(fam, 2)

# Search list icons, 32 x 32: the glyph alone.
for name, fam in [("epigrafi", "EPIGRAFI"), ("keimeno", "KEIMENO"), ("agio", "AGEIA"), ("xartis", "XARTIS")]:
    d, b = GLYPHS[fam]("g")
    pictures[name] = svg(32, 32, b, d)

# ---------------------------------------------------------------------------------------
# Toolbar buttons, 40 x 40: an ochre plate on the dark red bar, with a dark glyph. The
# pressed face is the plate sunk in: darker, lit from below, glyph one pixel down-right.


def tb_exit():
    return "", f"""
<rect x="9" y="7" width="15" height="26" fill="{INK}" stroke="{INK}" stroke-width="1.4" stroke-linejoin="round"/>
<path d="M9 7 L18 10 V35 L9 33 Z" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1.4" stroke-linejoin="round"/>
<circle cx="15.5" cy="21.5" r="1.2" fill="{OCHRE_LIGHT}"/>
<path d="M22 20 H32" stroke="{AEGEAN_DARK}" stroke-width="3.4" stroke-linecap="round"/>
<path d="M28 15 L33.5 20 L28 25" fill="none" stroke="{AEGEAN_DARK}" stroke-width="3.4" stroke-linecap="round"
      stroke-linejoin="round"/>"""


def tb_first():
    return "", f"""
<path d="M6 19 L20 7 L34 19" fill="none" stroke="{INK}" stroke-width="3" stroke-linecap="round"
      stroke-linejoin="round"/>
<path d="M10 17.5 L20 9.5 L30 17.5 V32 H10 Z" fill="{PARCHMENT}" stroke="{INK}" stroke-width="1.5"
      stroke-linejoin="round"/>
<path d="M6 19 L20 7 L34 19" fill="none" stroke="{TERRACOTTA}" stroke-width="1.6" stroke-linecap="round"
      stroke-linejoin="round"/>
<rect x="17" y="22" width="6" height="10" fill="{AEGEAN}" stroke="{INK}" stroke-width="1.2"/>
<rect x="24.5" y="10" width="3" height="5" fill="{INK}"/>"""


def tb_prev():
    return "", f"""
<path d="M20 7 L7 20 L20 33 V25 H32 V15 H20 Z" fill="{AEGEAN}" stroke="{AEGEAN_DARK}" stroke-width="2"
      stroke-linejoin="round"/>
<path d="M19 10.5 L9.8 19.5" stroke="#ffffff" stroke-width="1.4" stroke-linecap="round" opacity="0.6"/>"""


def tb_tree():
    return "", f"""
<path d="M11 12 V29 H20 M11 20 H20" fill="none" stroke="{INK}" stroke-width="2"/>
<rect x="6" y="5" width="11" height="8" rx="1.5" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1.3"/>
<rect x="19" y="16" width="15" height="8" rx="1.5" fill="{OCHRE_LIGHT}" stroke="{INK}" stroke-width="1.3"/>
<rect x="19" y="25" width="15" height="8" rx="1.5" fill="{OLIVE_LIGHT}" stroke="{INK}" stroke-width="1.3"/>
<path d="M22 20 H31 M22 29 H29" stroke="{INK}" stroke-width="1.2" opacity="0.7"/>"""


def tb_network():
    def screen(x, y):
        return f"""
<rect x="{x}" y="{y}" width="15" height="12" rx="1.2" fill="{AEGEAN_LIGHT}" stroke="{INK}" stroke-width="1.4"/>
<circle cx="{x+7.5}" cy="{y+4.6}" r="2.3" fill="{TERRACOTTA}"/>
<path d="M{x+3} {y+11.3} Q{x+7.5} {y+5.6} {x+12} {y+11.3} Z" fill="{TERRACOTTA}"/>
<path d="M{x+4.5} {y+14.5} H{x+10.5} M{x+7.5} {y+12} V{y+14.5}" stroke="{INK}" stroke-width="1.6"/>"""

    return "", f"""
{screen(2.5, 5)}
{screen(22.5, 19)}
<path d="M15 24 L24 13" stroke="{OLIVE}" stroke-width="2.4" stroke-linecap="round"/>
<path d="M19.8 12.2 L24.6 12.4 L24.4 17.2" fill="none" stroke="{OLIVE}" stroke-width="2.4" stroke-linecap="round"
      stroke-linejoin="round"/>
<path d="M19.2 24.8 L14.4 24.6 L14.6 19.8" fill="none" stroke="{OLIVE}" stroke-width="2.4" stroke-linecap="round"
      stroke-linejoin="round"/>"""


def tb_mail():
    return "", f"""
<rect x="5" y="10" width="30" height="21" rx="1.5" fill="#ffffff" stroke="{INK}" stroke-width="1.6"/>
<path d="M5.8 11 L20 22 L34.2 11" fill="none" stroke="{INK}" stroke-width="1.6" stroke-linejoin="round"/>
<path d="M5.8 30 L16 20.5 M34.2 30 L24 20.5" stroke="{INK}" stroke-width="1.2"/>
<circle cx="20" cy="22" r="2.6" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1"/>"""


def tb_sound():
    return "", f"""
<path d="M6 16 H12 L20 9 V31 L12 24 H6 Z" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1.5"
      stroke-linejoin="round"/>
<path d="M24 15.5 Q26.5 20 24 24.5" fill="none" stroke="{AEGEAN_DARK}" stroke-width="2.2" stroke-linecap="round"/>
<path d="M27.5 12 Q32 20 27.5 28" fill="none" stroke="{AEGEAN_DARK}" stroke-width="2.2" stroke-linecap="round"/>
<path d="M31 8.5 Q37.5 20 31 31.5" fill="none" stroke="{AEGEAN_DARK}" stroke-width="2.2" stroke-linecap="round"/>"""


def tb_index():
    return lin("cov", [(0, "#3b7fb8"), (1, AEGEAN_DARK)]), f"""
<path d="M20 10 Q13 7 5 8 V31 Q13 30 20 33 Q27 30 35 31 V8 Q27 7 20 10 Z" fill="url(#cov)" stroke="{INK}"
      stroke-width="1.3" stroke-linejoin="round"/>
<path d="M20 11 Q14 8.5 7 9.3 V29.3 Q14 28.6 20 31 Z" fill="#fffaf0" stroke="{INK}" stroke-width="1"/>
<path d="M20 11 Q26 8.5 33 9.3 V29.3 Q26 28.6 20 31 Z" fill="#fffaf0" stroke="{INK}" stroke-width="1"/>
<path d="M10 14 H17 M10 17.5 H16 M10 21 H17 M10 24.5 H15" stroke="{INK}" stroke-width="1.1" opacity="0.7"/>
<path d="M23 14 H30 M23 17.5 H29 M23 21 H30" stroke="{INK}" stroke-width="1.1" opacity="0.7"/>
<path d="M26 9.6 V19 L28 17.3 L30 19 V9.4" fill="{TERRACOTTA}" stroke="{TERRACOTTA_DARK}" stroke-width="0.8"/>"""


def tb_notes():
    rings = "".join(
        f'<path d="M{x} 6 V11" stroke="{INK}" stroke-width="1.8" stroke-linecap="round"/>' for x in [12, 17, 22, 27]
    )
    return "", f"""
<rect x="8" y="8" width="23" height="27" rx="1.5" fill="#fffdf4" stroke="{INK}" stroke-width="1.5"/>
<path d="M12 16 H27 M12 20 H27 M12 24 H22 M12 28 H20" stroke="{AEGEAN}" stroke-width="1.2" opacity="0.8"/>
{rings}
<g transform="rotate(40 27 25)">
  <rect x="24.5" y="10" width="5" height="18" fill="{OCHRE}" stroke="{INK}" stroke-width="1.2"/>
  <rect x="24.5" y="10" width="5" height="3" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1.2"/>
  <path d="M24.5 28 L27 33 L29.5 28 Z" fill="{PARCHMENT}" stroke="{INK}" stroke-width="1.2" stroke-linejoin="round"/>
  <path d="M26.3 31.5 L27 33 L27.7 31.5 Z" fill="{INK}"/>
</g>"""


def tb_drawing():
    return "", f"""
<path d="M20 6 C9 6 4 13 5 20 C6 27 11 31 16 30 C19 29.5 18 26 20.5 25 C23 24 27 27 31 24 C35 21 35 13 30 9
         C27 7 24 6 20 6 Z M13.5 22.5 A2.6 2.6 0 1 1 13.5 27.7 A2.6 2.6 0 1 1 13.5 22.5 Z"
      fill="{PARCHMENT}" stroke="{INK}" stroke-width="1.5" fill-rule="evenodd"/>
<circle cx="11.5" cy="15" r="2.8" fill="{TERRACOTTA}"/>
<circle cx="17.5" cy="10.8" r="2.8" fill="{OCHRE}"/>
<circle cx="24.5" cy="11" r="2.8" fill="{AEGEAN}"/>
<circle cx="29" cy="16.5" r="2.8" fill="{OLIVE}"/>
<g transform="rotate(35 30 28)">
  <rect x="28.5" y="14" width="3.2" height="13" rx="1" fill="{TERRACOTTA_DARK}" stroke="{INK}" stroke-width="1"/>
  <rect x="28.3" y="26.5" width="3.6" height="3" fill="#c8c8c8" stroke="{INK}" stroke-width="1"/>
  <path d="M28.3 29.5 Q28 33 30.1 36 Q32.2 33 31.9 29.5 Z" fill="{AEGEAN_DARK}" stroke="{INK}" stroke-width="1"/>
</g>"""


def tb_search():
    return rad("lens", [(0, "#ffffff"), (0.7, "#d4ecfa"), (1, AEGEAN_LIGHT)], 0.4, 0.35, 0.7), f"""
<rect x="5" y="5" width="19" height="24" fill="#fffdf4" stroke="{INK}" stroke-width="1.3"/>
<path d="M8 10 H21 M8 13.5 H19 M8 17 H21 M8 20.5 H16" stroke="{INK}" stroke-width="1.1" opacity="0.6"/>
<path d="M27.5 27.5 L35 35" stroke="{INK}" stroke-width="5" stroke-linecap="round"/>
<path d="M27.5 27.5 L35 35" stroke="{TERRACOTTA}" stroke-width="2.8" stroke-linecap="round"/>
<circle cx="22" cy="22" r="8.5" fill="url(#lens)" fill-opacity="0.9" stroke="{INK}" stroke-width="2.4"/>
<path d="M17.5 19 Q19 16.5 22 16" fill="none" stroke="#ffffff" stroke-width="1.6" stroke-linecap="round"/>"""


TOOLBAR = {
    "exit": tb_exit,
    "first": tb_first,
    "prev": tb_prev,
    "Ploigisi": tb_tree,
    "Network": tb_network,
    "e-mail": tb_mail,
    "Sound": tb_sound,
    "Search": tb_index,
    "Notes": tb_notes,
    "drawing": tb_drawing,
    "SearchResources": tb_search,
}


def toolbar_button(glyph, down):
    gdefs, gbody = glyph()
    if not down:
        defs = lin("plate", [(0, "#fbe7b0"), (0.5, OCHRE_LIGHT), (1, "#d29a3a")])
        body = f"""
<rect x="1" y="1.5" width="38" height="38" rx="6" fill="#000000" opacity="0.35"/>
<rect x="0.5" y="0.5" width="38" height="38" rx="6" fill="url(#plate)" stroke="#5a2a10" stroke-width="1"/>
<path d="M5 2 H34" stroke="#ffffff" stroke-width="1.2" opacity="0.75" stroke-linecap="round"/>
<g transform="translate(0 -0.5)">{gbody}</g>"""
    else:
        defs = lin("plate", [(0, "#b87a22"), (0.45, "#d9a441"), (1, "#eecb7c")])
        body = f"""
<rect x="1.5" y="1.5" width="38" height="38" rx="6" fill="url(#plate)" stroke="#5a2a10" stroke-width="1"/>
<path d="M3.5 8 V7.5 Q3.5 3.5 7.5 3.5 H33" fill="none" stroke="#5a2a10" stroke-width="1.6" opacity="0.5"/>
<g transform="translate(1 0.8)">{gbody}</g>"""
    return svg(40, 40, body, defs + gdefs)


for key, g in TOOLBAR.items():
    pictures["tlb_" + key] = toolbar_button(g, False)
    pictures["tlb_" + key + "_down"] = toolbar_button(g, True)

# The index window's buttons for a term's picture, sound and video, in the toolbar's style.


def ix_picture():
    d, b = glyph_photo("p")
    return d, f'<g transform="translate(3.5 3.5) scale(1.03)">{b}</g>'


def ix_video():
    holes = "".join(
        f'<rect x="{x}" y="{y}" width="2.6" height="2.2" rx="0.4" fill="#fffdf4"/>'
        for x in [8.2, 13.2, 18.2, 23.2, 28.2]
        for y in [9.4, 28.4]
    )
    return "", f"""
<rect x="5" y="7.5" width="30" height="25" rx="2" fill="{INK}" stroke="{INK}" stroke-width="1.2"/>
{holes}
<rect x="7.5" y="13" width="25" height="14" fill="{AEGEAN_LIGHT}"/>
<path d="M16.5 15 L25.5 20 L16.5 25 Z" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1.1"
      stroke-linejoin="round"/>"""


INDEX = {"PICTURE": ix_picture, "SOUND": tb_sound, "VIDEO": ix_video}

for key, g in INDEX.items():
    pictures[key] = toolbar_button(g, False)
    pictures[key + "_DOWN"] = toolbar_button(g, True)

# ---------------------------------------------------------------------------------------
# Start screen buttons, 64 x 64: round medallions. Go is an olive disc with a white arrow,
# exit a terracotta disc with an open door.


def medallion(kind, down):
    if kind == "GO":
        c0, c1, edge = "#b9cc6c", "#4f6323", "#2f3c12"
        glyph = f"""
<path d="M20 27 H33 V19 L47 32 L33 45 V37 H20 Z" fill="#ffffff" stroke="{edge}" stroke-width="1.6"
      stroke-linejoin="round"/>"""
    else:
        c0, c1, edge = "#e58a5c", "#8e3518", "#4d1b08"
        glyph = f"""
<rect x="20" y="17" width="19" height="31" fill="{INK}" stroke="#ffffff" stroke-width="2" stroke-linejoin="round"/>
<path d="M20 17 L31 20.5 V51 L20 48 Z" fill="#ffffff" stroke="{edge}" stroke-width="1.2" stroke-linejoin="round"/>
<circle cx="28" cy="34.5" r="1.6" fill="{TERRACOTTA}"/>
<path d="M35 32.5 H46 M42 27.5 L47 32.5 L42 37.5" fill="none" stroke="#ffffff" stroke-width="3.2"
      stroke-linecap="round" stroke-linejoin="round"/>"""
    if not down:
        defs = rad("disc", [(0, c0), (1, c1)], 0.4, 0.32, 0.75) + lin("ring", [(0, "#fff0b8"), (1, "#b07a16")])
        body = f"""
<circle cx="33" cy="33.5" r="29.5" fill="#000000" opacity="0.3"/>
<circle cx="32" cy="32" r="30" fill="url(#ring)" stroke="{INK}" stroke-width="1"/>
<circle cx="32" cy="32" r="25" fill="url(#disc)" stroke="{edge}" stroke-width="1"/>
<path d="M14 24 Q20 10 36 9" fill="none" stroke="#ffffff" stroke-width="2.5" stroke-linecap="round" opacity="0.45"/>
{glyph}"""
    else:
        defs = rad("disc", [(0, c1), (1, c0)], 0.55, 0.6, 0.8) + lin("ring", [(0, "#b07a16"), (1, "#ffe6a0")])
        body = f"""
<circle cx="33" cy="33" r="30" fill="url(#ring)" stroke="{INK}" stroke-width="1"/>
<circle cx="33" cy="33" r="25" fill="url(#disc)" stroke="{edge}" stroke-width="1"/>
<g transform="translate(1 1)">{glyph}</g>"""
    return svg(64, 64, body, defs)


for k in ["GO", "EXIT"]:
    pictures[k] = medallion(k, False)
    pictures[k + "_DOWN"] = medallion(k, True)

# ---------------------------------------------------------------------------------------
# Navigation tree icons, 16 x 16, kept on whole pixels so they stay sharp at 1x.

pictures["Th"] = svg(16, 16, f"""
<path d="M1.5 13.5 V3.5 H6 L7.5 5 H14.5 V13.5 Z" fill="{OCHRE}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>
<path d="M1.5 6.5 H14.5 V13.5 H1.5 Z" fill="{OCHRE_LIGHT}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>
<path d="M3 9.5 H13" stroke="{TERRACOTTA}" stroke-width="1"/>""")

pictures["Sc"] = svg(16, 16, f"""
<rect x="3.5" y="2.5" width="9" height="11" fill="#fbf0d2" stroke="{INK}" stroke-width="1"/>
<rect x="1.5" y="1.5" width="13" height="3" rx="1.5" fill="{OCHRE}" stroke="{INK}" stroke-width="1"/>
<rect x="1.5" y="11.5" width="13" height="3" rx="1.5" fill="{OCHRE}" stroke="{INK}" stroke-width="1"/>
<path d="M5 6.5 H11 M5 9.5 H10" stroke="{INK}" stroke-width="1" opacity="0.8"/>""")

pictures["Ac"] = svg(16, 16, f"""
<circle cx="8" cy="8" r="6.5" fill="{OLIVE}" stroke="#3d4a1a" stroke-width="1"/>
<path d="M6 4.8 L11.4 8 L6 11.2 Z" fill="#ffffff"/>""")

# ---------------------------------------------------------------------------------------
# The hand shown over hot words: white glove, dark outline, the index finger up. Its hot
# spot is the fingertip at (12, 1).

pictures["HAND"] = svg(32, 32, f"""
<path d="M10.5 3 Q10.5 0.8 12.5 0.8 Q14.5 0.8 14.5 3 V13 Q15 11.6 16.6 11.6 Q18.4 11.6 18.5 13.5 V14.4
         Q19 13.2 20.6 13.2 Q22.4 13.2 22.5 15.2 V16 Q23 14.9 24.4 14.9 Q26.3 15 26.3 17.2 V22.5
         Q26.3 26.6 24 29 Q23 30.2 23 31 H12.5 Q12.5 29.8 11 28.2 L6.2 22.6 Q4.8 20.8 6.2 19.4
         Q7.6 18.2 9.2 19.6 L10.5 20.8 Z"
      fill="#ffffff" stroke="#000000" stroke-width="1.2" stroke-linejoin="round"/>
<path d="M14.5 13 V19 M18.5 14.4 V19 M22.5 16 V19.5" stroke="#000000" stroke-width="1"
      stroke-linecap="round"/>""")

# ---------------------------------------------------------------------------------------
# The line-width palette's picture, 70 x 170: ten black lines, one a row of 16 pixels from
# y = 5, the line of row i i pixels thick and centred in its row. Whole pixels only, so the
# widths read exactly; the window's own colour shows through around them.


def line_widths():
    rows = []
    for i in range(1, 11):
        top = (i - 1) * 16 + 5 + 8 - (i + 1) // 2
        rows.append(f'<rect x="9" y="{top}" width="52" height="{i}" fill="#000000"/>')
    return svg(70, 170, "\n".join(rows))


pictures["LINEWIDTHS"] = line_widths()

# ---------------------------------------------------------------------------------------
# The text viewer's parchment, 620 x 354: a sheet of papyrus with its crossed fibres and
# darker, worn edges. It is stretched to the window, so it carries no hard details.


def papiros():
    w, h = 620, 354
    defs = (
        rad("sheet", [(0, "#fbf0d3"), (0.6, "#f3e2b8"), (1, "#d9bd82")], 0.5, 0.5, 0.75)
        + lin("edgeL", [(0, "#8a6327", 0.55), (1, "#8a6327", 0)], 0, 0, 1, 0)
        + lin("edgeR", [(0, "#8a6327", 0), (1, "#8a6327", 0.55)], 0, 0, 1, 0)
        + lin("edgeT", [(0, "#8a6327", 0.45), (1, "#8a6327", 0)])
        + lin("edgeB", [(0, "#8a6327", 0), (1, "#8a6327", 0.5)])
        + rad("spot", [(0, "#a07838", 0.10), (1, "#a07838", 0)])
    )
    rnd = random.Random(7)
    fibres = []
    # Horizontal strands of the upper layer: long, slightly wavy, of uneven tone.
    y = 3.0
    while y < h:
        x = rnd.uniform(-60, 0)
        while x < w:
            length = rnd.uniform(80, 260)
            bend = rnd.uniform(-1.5, 1.5)
            op = rnd.uniform(0.04, 0.11)
            sw = rnd.uniform(0.6, 1.8)
            fibres.append(f'<path d="M{x:.1f} {y:.1f} q{length / 2:.1f} {bend:.1f} {length:.1f} 0" fill="none" '
                          f'stroke="#94703a" stroke-width="{sw:.1f}" opacity="{op:.3f}"/>')
            x += length + rnd.uniform(4, 30)
        y += rnd.uniform(2.5, 6.5)
    # Vertical strands of the lower layer show through faintly.
    x = 5.0
    while x < w:
        op = rnd.uniform(0.02, 0.05)
        fibres.append(f'<path d="M{x:.1f} 0 V{h}" stroke="#a5834a" stroke-width="{rnd.uniform(1.5, 4):.1f}" opacity="{op:.3f}"/>')
        x += rnd.uniform(6, 16)
    # A ragged outline: the sheet does not reach the corners everywhere.
    pts = []
    n = 40
    for k in range(n):
        t = k / n
        pts.append((t * w, 2 + 3 * math.sin(k * 1.7) ** 2))
    for k in range(n):
        t = k / n
        pts.append((w - 2 - 3 * math.sin(k * 2.3) ** 2, t * h))
    for k in range(n):
        t = k / n
        pts.append((w - t * w, h - 2 - 3 * math.sin(k * 1.3) ** 2))
    for k in range(n):
        t = k / n
        pts.append((2 + 3 * math.sin(k * 2.9) ** 2, h - t * h))
    outline = "M" + " L".join(f"{a:.1f} {b:.1f}" for a, b in pts) + " Z"
    spots = "".join(
        f'<ellipse cx="{cx}" cy="{cy}" rx="{rx}" ry="{ry}" fill="url(#spot)"/>'
        for cx, cy, rx, ry in [(90, 70, 50, 30), (520, 280, 70, 40), (300, 200, 110, 55), (480, 60, 40, 22), (150, 300, 60, 28)]
    )
    body = f"""
<rect width="{w}" height="{h}" fill="#c8a56a"/>
<path d="{outline}" fill="url(#sheet)"/>
{''.join(fibres)}
{spots}
<rect x="0" y="0" width="40" height="{h}" fill="url(#edgeL)"/>
<rect x="{w-40}" y="0" width="40" height="{h}" fill="url(#edgeR)"/>
<rect x="0" y="0" width="{w}" height="26" fill="url(#edgeT)"/>
<rect x="0" y="{h-26}" width="{w}" height="26" fill="url(#edgeB)"/>"""
    return svg(w, h, body, defs)


pictures["PAPIROS"] = papiros()

# ---------------------------------------------------------------------------------------
# The start screen and shell background, 800 x 600: warm parchment with a meander border,
# a calm strip of Aegean sea at the foot, and a faint column and amphora at the sides. The
# middle stays light and even, since lists and tiles stand on it.


def meander(x0, y0, length, unit, horizontal=True):
    # One period of the key, on a grid of 10 x 8 units, ends where the next begins.
    period = [(0, 8), (0, 0), (8, 0), (8, 6), (4, 6), (4, 4), (6, 4), (6, 2), (2, 2), (2, 8), (10, 8)]
    pts = []
    k = 0
    while (k + 1) * 10 * unit <= length + 0.01:
        for i, (a, b) in enumerate(period):
            if k > 0 and i == 0:
                continue
            u = x0 + (k * 10 + a) * unit if horizontal else x0 + b * unit
            v = y0 + b * unit if horizontal else y0 + (k * 10 + a) * unit
            pts.append((u, v))
        k += 1
    return "M" + " L".join(f"{u:.2f} {v:.2f}" for u, v in pts)


def background():
    w, h = 800, 600
    band = 26
    unit = 2.2
    defs = (
        rad("paper", [(0, "#fdf6e0"), (0.7, "#f6e6bd"), (1, "#e8cf95")], 0.5, 0.45, 0.72)
        + lin("sea", [(0, "#cfe4ef", 0), (0.35, "#a9cde3", 0.55), (1, "#6fa6cc", 0.75)])
        + lin("bandH", [(0, "#c46a3c"), (1, "#9b4322")])
    )
    # Meander strips, centred in the border band, in whole periods.
    period = 10 * unit
    body = [f'<rect width="{w}" height="{h}" fill="url(#paper)"/>']
    # Faint column at the left and amphora at the right, behind everything.
    col_x, col_w, col_top, col_bottom = 60, 46, 120, 520
    flutes = "".join(
        f'<path d="M{col_x + 6 + i * 7} {col_top + 22} V{col_bottom - 14}" stroke="#8a6a3a" stroke-width="2"/>'
        for i in range(5)
    )
    body.append(f"""
<g opacity="0.10">
  <rect x="{col_x - 10}" y="{col_top}" width="{col_w + 20}" height="10" fill="#6e5128"/>
  <path d="M{col_x - 6} {col_top + 10} Q{col_x + col_w / 2} {col_top + 26} {col_x + col_w + 6} {col_top + 10} Z" fill="#6e5128"/>
  <rect x="{col_x}" y="{col_top + 16}" width="{col_w}" height="{col_bottom - col_top - 24}" fill="#9c7a44"/>
  {flutes}
  <rect x="{col_x - 8}" y="{col_bottom - 8}" width="{col_w + 16}" height="10" fill="#6e5128"/>
</g>
<g opacity="0.10" transform="translate(676 318)">
  <path d="M-11 0 H11 V5 H8 Q7 14 16 22 Q36 38 35 70 Q34 104 14 124 Q9 129 10 134 H15 V140 H-15 V134 H-10
           Q-9 129 -14 124 Q-34 104 -35 70 Q-36 38 -16 22 Q-7 14 -8 5 H-11 Z" fill="#7a3a1a"/>
  <path d="M-9 9 Q-30 6 -33 24 Q-34 36 -26 44 M9 9 Q30 6 33 24 Q34 36 26 44" fill="none" stroke="#7a3a1a"
        stroke-width="5" stroke-linecap="round"/>
  <path d="M-33 58 H33 V92 H-33 Z" fill="#2a1608"/>
  <path d="M-33 62 H33 M-33 88 H33" stroke="#f5e7c4" stroke-width="2"/>
  <path d="M-18 86 L-12 68 L-6 86 M4 86 L10 68 L16 86" fill="none" stroke="#f5e7c4" stroke-width="2.5"/>
</g>""")
    # The sea, a low strip of soft waves above the bottom border.
    sea_top = h - band - 70
    waves = []
    for row, (yy, op, amp) in enumerate([(sea_top + 22, 0.35, 4), (sea_top + 38, 0.45, 5), (sea_top + 54, 0.5, 5)]):
        d = f"M{band} {yy}"
        x = band
        step = 48
        phase = row * 16
        x += phase / 2
        d = f"M{band} {yy}"
        while x < w - band:
            d += f" q{step / 4} {-amp} {step / 2} 0 t{step / 2} 0"
            x += step
        waves.append(f'<path d="{d}" fill="none" stroke="#ffffff" stroke-width="1.6" opacity="{op}"/>')
    body.append(f'<rect x="{band}" y="{sea_top}" width="{w - 2 * band}" height="{h - band - sea_top}" fill="url(#sea)"/>')
    # Low islands on the horizon, barely there.
    hz = sea_top + 16
    body.append(f'<path d="M120 {hz} Q150 {hz - 14} 175 {hz - 10} Q200 {hz - 18} 235 {hz} Z" fill="#6f97b3" opacity="0.30"/>')
    body.append(f'<path d="M470 {hz} Q500 {hz - 9} 530 {hz - 6} Q560 {hz - 12} 610 {hz} Z" fill="#6f97b3" opacity="0.25"/>')
    body.append(f'<path d="M400 {hz - 4} l10 -14 v14 z M398 {hz - 2} h16 l-3 3 h-11 z" fill="#8aa9bf" opacity="0.35"/>')
    body.append("".join(waves))
    # The border: terracotta band with an ochre meander, framed by thin dark lines.
    body.append(f"""
<path d="M0 0 H{w} V{h} H0 Z M{band} {band} V{h - band} H{w - band} V{band} Z" fill="url(#bandH)" fill-rule="evenodd"/>
<path d="M3.5 3.5 H{w - 3.5} V{h - 3.5} H3.5 Z" fill="none" stroke="{OCHRE_LIGHT}" stroke-width="1" opacity="0.8"/>
<path d="M{band - 0.5} {band - 0.5} H{w - band + 0.5} V{h - band + 0.5} H{band - 0.5} Z" fill="none" stroke="#5c240c" stroke-width="1"/>
<path d="M{band + 3.5} {band + 3.5} H{w - band - 3.5} V{h - band - 3.5} H{band + 3.5} Z" fill="none" stroke="#b5532c" stroke-width="1" opacity="0.35"/>""")
    inner = 8 * unit
    off = (band - inner) / 2
    nh = int((w - 2 * band) // period)
    lh = nh * period
    x_start = (w - lh) / 2
    nv = int((h - 2 * band) // period)
    lv = nv * period
    y_start = (h - lv) / 2
    style = f'fill="none" stroke="{OCHRE_LIGHT}" stroke-width="{unit * 0.95:.2f}" stroke-linecap="square" stroke-linejoin="miter"'
    body.append(f'<path d="{meander(x_start, off, lh, unit)}" {style}/>')
    body.append(f'<path d="{meander(x_start, h - band + off, lh, unit)}" {style}/>')
    body.append(f'<path d="{meander(off, y_start, lv, unit, horizontal=False)}" {style}/>')
    body.append(f'<path d="{meander(w - band + off, y_start, lv, unit, horizontal=False)}" {style}/>')
    # Corner squares so the strips meet cleanly.
    for cx, cy in [(0, 0), (w - band, 0), (0, h - band), (w - band, h - band)]:
        body.append(f'<rect x="{cx + 5}" y="{cy + 5}" width="{band - 10}" height="{band - 10}" fill="#9b4322" stroke="{OCHRE_LIGHT}" stroke-width="1.6"/>')
        body.append(f'<circle cx="{cx + band / 2}" cy="{cy + band / 2}" r="3" fill="{OCHRE_LIGHT}"/>')
    return svg(w, h, "\n".join(body), defs)


pictures["BGR_1"] = background()

# ---------------------------------------------------------------------------------------
# The painter: tool and command icons (20 by 20; the dropdown ones carry a small arrow),
# the four stamps and the drawing cursor.

def icon(body, defs=""):
    return svg(20, 20, body, defs)


DROP_ARROW = f'<path d="M14 16 H20 L17 19.5 Z" fill="{INK}"/>'
PENCIL = (f'<path d="M4 16 L5 12 L14 3 L17 6 L8 15 Z" fill="{OCHRE}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>'
          f'<path d="M4 16 L5 12 L8 15 Z" fill="{PARCHMENT}" stroke="{INK}" stroke-width="0.8"/>'
          f'<path d="M4 16 L4.6 13.8 L6.2 15.4 Z" fill="{INK}"/>'
          f'<path d="M12.5 4.5 L15.5 7.5" stroke="{TERRACOTTA}" stroke-width="2"/>')
BUCKET = (f'<path d="M4 8 L10 2 L16 8 L10 14 Z" fill="{MARBLE}" stroke="{INK}" stroke-width="1.1" stroke-linejoin="round"/>'
          f'<path d="M4 8 L16 8 L10 14 Z" fill="{AEGEAN}"/>'
          f'<path d="M16 8 C18 10 18.5 13 17 14.5 C16 13 15.5 10.5 16 8 Z" fill="{AEGEAN}" stroke="{AEGEAN_DARK}" stroke-width="0.6"/>')


def tools():
    line = f'stroke="{INK}" stroke-width="1.6" fill="none"'
    pictures["dt_Arrow"] = icon(f'<path d="M5 2 V16 L8.5 12.5 L11 18 L13 17 L10.5 11.5 H15 Z" fill="{MARBLE}" stroke="{INK}" stroke-width="1.1" stroke-linejoin="round"/>')
    pictures["dt_Pen"] = icon(PENCIL + f'<path d="M2 18.5 C5 17 7 19 10 18" {line}/>')
    pictures["dt_Line"] = icon(f'<path d="M3 17 L17 3" stroke="{INK}" stroke-width="2" stroke-linecap="round"/>'
                               f'<circle cx="3" cy="17" r="1.6" fill="{TERRACOTTA}"/><circle cx="17" cy="3" r="1.6" fill="{TERRACOTTA}"/>')
    pictures["dt_Ellipse"] = icon(f'<ellipse cx="10" cy="10" rx="8" ry="5.5" {line}/>')
    corners = "".join(f'<circle cx="{x}" cy="{y}" r="1.5" fill="{TERRACOTTA}"/>' for x, y in [(2.5, 4.5), (17.5, 15.5)])
    pictures["dt_Rectangle"] = icon(f'<rect x="2.5" y="4.5" width="15" height="11" {line}/>' + corners)
    pictures["dt_FilledEllipse"] = icon(f'<ellipse cx="10" cy="10" rx="8" ry="5.5" fill="{AEGEAN_LIGHT}" stroke="{INK}" stroke-width="1.6"/>')
    pictures["dt_FilledRectangle"] = icon(f'<rect x="2.5" y="4.5" width="15" height="11" fill="{OLIVE_LIGHT}" stroke="{INK}" stroke-width="1.6"/>' + corners)
    pictures["dt_FloodFill"] = icon(BUCKET)
    pictures["dt_Text"] = icon(f'<path d="M3 17 L9 3 H11 L17 17 H14.5 L13 13 H7 L5.5 17 Z M7.8 11 H12.2 L10 5.5 Z" fill="{INK}" fill-rule="evenodd"/>')


def commands():
    page = f'fill="{MARBLE}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"'
    pictures["dg_New"] = icon(f'<path d="M4 1.5 H12 L16 5.5 V18.5 H4 Z" {page}/><path d="M12 1.5 V5.5 H16" fill="none" stroke="{INK}" stroke-width="1"/>')
    pictures["dg_Open"] = icon(f'<path d="M1.5 5 H7 L8.5 6.5 H15.5 V16.5 H1.5 Z" fill="{OCHRE}" stroke="{INK}" stroke-width="1"/>'
                               f'<path d="M1.5 16.5 L4.5 9 H18.5 L15.5 16.5 Z" fill="{OCHRE_LIGHT}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>')
    disk = (f'<path d="M2.5 2.5 H15 L17.5 5 V17.5 H2.5 Z" fill="{AEGEAN}" stroke="{AEGEAN_DARK}" stroke-width="1"/>'
            f'<rect x="5.5" y="2.5" width="8" height="5" fill="{MARBLE}"/><rect x="5" y="11" width="10" height="6.5" fill="{MARBLE_SHADE}"/>')
    pictures["dg_Save"] = icon(disk)
    pictures["dg_SaveAs"] = icon(disk + f'<g transform="translate(6 4) scale(0.7)">{PENCIL}</g>')
    writing = "".join(f'<path d="M10 {9.3 + 2.2 * i} H15" stroke="{AEGEAN_DARK}" stroke-width="0.7"/>' for i in range(4))
    pictures["dg_Copy"] = icon(f'<path d="M2.5 2.5 H10.5 V13.5 H2.5 Z" {page}/><path d="M8.5 6.5 H16.5 V17.5 H8.5 Z" {page}/>' + writing)
    pictures["dg_Paste"] = icon(f'<rect x="3" y="3.5" width="12" height="15" rx="1" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1"/>'
                                f'<rect x="6.5" y="2" width="5" height="3" fill="{MARBLE_SHADE}" stroke="{INK}" stroke-width="0.8"/>'
                                f'<path d="M9 8.5 H17.5 V18.5 H9 Z" {page}/>')
    pictures["dg_Print"] = icon(f'<path d="M5.5 2.5 H14.5 V8 H5.5 Z" {page}/>'
                                f'<rect x="1.5" y="8" width="17" height="7" rx="1.5" fill="{MARBLE_SHADE}" stroke="{INK}" stroke-width="1"/>'
                                f'<path d="M5.5 12.5 H14.5 V18 H5.5 Z" {page}/><circle cx="16" cy="10.5" r="0.9" fill="{OLIVE}"/>')
    pictures["dg_Undo"] = icon(f'<path d="M6 8 H12.5 C15.5 8 17 10 17 12.5 C17 15 15.5 17 12.5 17 H8" fill="none" stroke="{AEGEAN_DARK}" stroke-width="2" stroke-linecap="round"/>'
                               f'<path d="M2 8 L7 3.5 V12.5 Z" fill="{AEGEAN_DARK}"/>')
    pictures["dg_Picture"] = icon(f'<rect x="1.5" y="3.5" width="17" height="13" fill="{AEGEAN_LIGHT}" stroke="{INK}" stroke-width="1"/>'
                                  f'<path d="M2 16 L7.5 9 L11 13 L13.5 10.5 L18 16 Z" fill="{OLIVE}"/><circle cx="14.5" cy="7" r="1.8" fill="{GOLD}"/>')
    pictures["dg_Exit"] = icon(f'<path d="M3 2.5 H12 V17.5 H3 Z" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="1"/>'
                               f'<path d="M9 10 H18 M15 6.5 L18.5 10 L15 13.5" fill="none" stroke="{INK}" stroke-width="1.8" stroke-linecap="round" stroke-linejoin="round"/>')
    pictures["dg_Shape"] = icon(f'<path d="M2 13 L6.5 3 L11 13 Z" fill="{OCHRE}" stroke="{INK}" stroke-width="0.9"/>'
                                f'<path d="M12.5 3 L13.6 6.3 H17 L14.2 8.3 L15.3 11.6 L12.5 9.6 L9.7 11.6 L10.8 8.3 L8 6.3 H11.4 Z" fill="{GOLD}" stroke="{INK}" stroke-width="0.7"/>' + DROP_ARROW)
    pictures["dg_BorderWidth"] = icon("".join(f'<path d="M1.5 {3 + 4.5 * i} H14" stroke="{INK}" stroke-width="{0.8 + 0.9 * i}"/>' for i in range(4)) + DROP_ARROW)
    pictures["dg_BorderColor"] = icon(f'<g transform="translate(0 -1)">{PENCIL}</g><rect x="1" y="16.5" width="12" height="3" fill="{TERRACOTTA}"/>' + DROP_ARROW)
    pictures["dg_FillColor"] = icon(f'<g transform="scale(0.85)">{BUCKET}</g><rect x="1" y="16.5" width="12" height="3" fill="{AEGEAN}"/>' + DROP_ARROW)
    pictures["dg_FillStyle"] = icon(f'<rect x="2" y="2" width="11" height="13" fill="{MARBLE}" stroke="{INK}" stroke-width="1"/>'
                                    + "".join(f'<path d="M2 {4 + 3 * i} H13" stroke="{INK}" stroke-width="0.8"/>' for i in range(4)) + DROP_ARROW)


def stamps():
    pictures["STAMP_TRIANGLE"] = svg(22, 24, f'<path d="M11 3 L20 21 H2 Z" fill="{OCHRE}" stroke="{INK}" stroke-width="1.2" stroke-linejoin="round"/>')
    pts = []
    for k in range(10):
        r = 10 if k % 2 == 0 else 4.2
        a = -math.pi / 2 + k * math.pi / 5
        pts.append(f"{11 + r * math.cos(a):.2f} {12.5 + r * math.sin(a):.2f}")
    pictures["STAMP_STAR"] = svg(22, 24, f'<path d="M{" L".join(pts)} Z" fill="{GOLD}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>')
    pictures["STAMP_ROMBOS"] = svg(22, 24, f'<path d="M11 2 L20 12 L11 22 L2 12 Z" fill="{AEGEAN}" stroke="{INK}" stroke-width="1.2" stroke-linejoin="round"/>')
    pictures["STAMP_PERIERGO"] = svg(22, 24, f'<path d="M11 3 C16 1 21 6 18 10 C22 13 19 21 14 19 C12 23 5 22 5 17 C0 15 1 8 6 8 C5 4 8 2 11 3 Z" fill="{OLIVE_LIGHT}" stroke="{INK}" stroke-width="1.1"/>'
                                          f'<circle cx="9" cy="11" r="1.3" fill="{INK}"/><circle cx="14" cy="11" r="1.3" fill="{INK}"/>')


def draw_cursor():
    # A fine cross whose centre, the hot spot, is left open so the pixel under it shows.
    return svg(32, 32, f'<path d="M16 3 V13 M16 19 V29 M3 16 H13 M19 16 H29" stroke="#ffffff" stroke-width="3"/>'
                       f'<path d="M16 3 V13 M16 19 V29 M3 16 H13 M19 16 H29" stroke="#000000" stroke-width="1"/>'
                       f'<circle cx="16" cy="16" r="4.3" fill="none" stroke="{TERRACOTTA}" stroke-width="0.9" opacity="0.8"/>')


tools()
commands()
stamps()
pictures["DRAWCURSOR"] = draw_cursor()
pictures.update(notes_toolbar_pictures())

# ---------------------------------------------------------------------------------------

if __name__ == "__main__":
    os.makedirs(OUT, exist_ok=True)
    for name, text in pictures.items():
        with open(os.path.join(OUT, name + ".svg"), "w", encoding="utf-8") as f:
            f.write(text)
    with open(os.path.join(HERE, "programpictures.qrc"), "w", encoding="utf-8") as f:
        f.write("<!DOCTYPE RCC>\n<RCC version=\"1.0\">\n<qresource prefix=\"/pictures\">\n")
        for name in sorted(pictures):
            f.write(f'    <file alias="{name}.svg">svg/{name}.svg</file>\n')
        f.write("</qresource>\n</RCC>\n")
    print(len(pictures), "pictures")
