"""The notepad's toolbar pictures, 20 x 20, on the program's palette."""

from picturekit import *  # noqa: F401,F403 (the palette and the SVG helpers)

# The notepad's toolbar, 20 x 20: flat glyphs in the program's palette on a pale plate,
# kept on half pixels so that the strokes stay sharp at 1x.


def nt_page(extra="", fold=True):
    corner = f'<path d="M12.5 2.5 V6.5 H16.5" fill="none" stroke="{INK}" stroke-width="1"/>' if fold else ""
    return f"""
<path d="M4.5 2.5 H12.5 L16.5 6.5 V17.5 H4.5 Z" fill="#fffdf4" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>
{corner}{extra}"""


def nt_lines(x0, x1, ys, colour=AEGEAN, width=1):
    return "".join(f'<path d="M{x0} {y} H{x1}" stroke="{colour}" stroke-width="{width}"/>' for y in ys)


def nt_disk(x=0, y=0):
    return f"""<g transform="translate({x} {y})">
<path d="M2.5 2.5 H14 L17.5 6 V17.5 H2.5 Z" fill="{AEGEAN}" stroke="{AEGEAN_DARK}" stroke-width="1" stroke-linejoin="round"/>
<rect x="5.5" y="2.5" width="8" height="5" fill="#ffffff" stroke="{AEGEAN_DARK}" stroke-width="1"/>
<rect x="10.5" y="3.5" width="2" height="3" fill="{AEGEAN_DARK}"/>
<rect x="5.5" y="11.5" width="9" height="6" fill="#fffdf4" stroke="{AEGEAN_DARK}" stroke-width="1"/></g>"""


def nt_align(kind):
    rows = [(3.5, 16), (6.5, 11), (9.5, 16), (12.5, 9), (15.5, 14)]
    out = []
    for y, w in rows:
        if kind == "Left":
            x0 = 3
        elif kind == "Right":
            x0 = 17 - w
        else:
            x0 = 10 - w / 2
        out.append(f'<path d="M{x0} {y} H{x0 + w}" stroke="{INK}" stroke-width="1.6"/>')
    return "".join(out)


NOTES_TOOLBAR = {
    "New": nt_page(f'<path d="M14 11 V17 M11 14 H17" stroke="{OLIVE}" stroke-width="2"/>'),
    "Open": f"""
<path d="M1.5 5.5 H7 L8.5 7 H15.5 V16.5 H1.5 Z" fill="{OCHRE}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>
<path d="M3.5 9.5 H18.5 L15.5 16.5 H1.5 Z" fill="{OCHRE_LIGHT}" stroke="{INK}" stroke-width="1" stroke-linejoin="round"/>""",
    "Save": nt_disk(),
    "SaveAs": nt_disk(-1, -1) + f'<path d="M11 18 L18 11 L19.5 12.5 L12.5 19.5 H11 Z" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="0.8"/>',
    "Exit": f"""
<rect x="2.5" y="3.5" width="15" height="13" fill="#fffdf4" stroke="{INK}" stroke-width="1"/>
<rect x="2.5" y="3.5" width="15" height="3" fill="{AEGEAN}" stroke="{INK}" stroke-width="1"/>
<path d="M6 13.5 H14" stroke="{TERRACOTTA}" stroke-width="2.2"/>""",
    "Word": nt_page(nt_lines(6.5, 11, [6.5, 9, 11.5], INK) + f"""
<path d="M10 13.5 H15 M13 11 L16 13.5 L13 16" fill="none" stroke="{OLIVE}" stroke-width="1.8" stroke-linecap="round" stroke-linejoin="round"/>"""),
    "Print": f"""
<rect x="5.5" y="2.5" width="9" height="6" fill="#ffffff" stroke="{INK}" stroke-width="1"/>
<rect x="1.5" y="7.5" width="17" height="7" rx="1" fill="{MARBLE_SHADE}" stroke="{INK}" stroke-width="1"/>
<rect x="5.5" y="12.5" width="9" height="5" fill="#ffffff" stroke="{INK}" stroke-width="1"/>
<circle cx="15.5" cy="10" r="0.9" fill="{OLIVE}"/>""",
    "Cut": f"""
<circle cx="6" cy="15" r="2.5" fill="none" stroke="{INK}" stroke-width="1.4"/>
<circle cx="14" cy="15" r="2.5" fill="none" stroke="{INK}" stroke-width="1.4"/>
<path d="M7.5 13 L13 2.5 M12.5 13 L7 2.5" stroke="{AEGEAN_DARK}" stroke-width="1.4" stroke-linecap="round"/>""",
    "Copy": f"""
<rect x="2.5" y="2.5" width="9" height="11" fill="#fffdf4" stroke="{INK}" stroke-width="1"/>
<rect x="8.5" y="6.5" width="9" height="11" fill="#fffdf4" stroke="{INK}" stroke-width="1"/>
{nt_lines(10.5, 15.5, [9.5, 12, 14.5])}""",
    "Paste": f"""
<rect x="2.5" y="3.5" width="12" height="14" rx="1" fill="{OCHRE}" stroke="{INK}" stroke-width="1"/>
<rect x="6" y="2" width="5" height="3" rx="0.8" fill="{MARBLE_SHADE}" stroke="{INK}" stroke-width="0.8"/>
<rect x="8.5" y="8.5" width="9" height="10" fill="#fffdf4" stroke="{INK}" stroke-width="1"/>
{nt_lines(10.5, 15.5, [11.5, 14, 16.5])}""",
    "Delete": f"""
<path d="M4 4 L16 16 M16 4 L4 16" stroke="{TERRACOTTA}" stroke-width="2.8" stroke-linecap="round"/>""",
    "Find": f"""
<path d="M12 12 L17.5 17.5" stroke="{INK}" stroke-width="3" stroke-linecap="round"/>
<circle cx="8.5" cy="8.5" r="5.5" fill="{AEGEAN_LIGHT}" fill-opacity="0.7" stroke="{INK}" stroke-width="1.6"/>""",
    "Undo": f"""
<path d="M5 8 H12.5 A4.5 4.5 0 0 1 12.5 17 H7" fill="none" stroke="{AEGEAN_DARK}" stroke-width="2" stroke-linecap="round"/>
<path d="M8.5 4 L4 8 L8.5 12" fill="none" stroke="{AEGEAN_DARK}" stroke-width="2" stroke-linecap="round" stroke-linejoin="round"/>""",
    # Β, Π and Υ, the Greek initials of the three kinds of type, drawn as strokes.
    "Bold": f"""
<path d="M6 3 V17 H11.5 A3.5 3.5 0 0 0 11.5 10 H6 M6 10 H10.5 A3.5 3.5 0 0 0 10.5 3 H6" fill="none" stroke="{INK}"
      stroke-width="2.6" stroke-linejoin="round"/>""",
    "Italics": f"""
<path d="M7 17 L10 3 H16 L13 17" fill="none" stroke="{INK}" stroke-width="1.5" stroke-linejoin="round"/>""",
    "Underline": f"""
<path d="M5 3 L10 10 L15 3 M10 10 V14" fill="none" stroke="{INK}" stroke-width="1.6" stroke-linejoin="round"/>
<path d="M4 17.5 H16" stroke="{TERRACOTTA}" stroke-width="1.4"/>""",
    "Left": nt_align("Left"),
    "Center": nt_align("Center"),
    "Right": nt_align("Right"),
    "Bullets": "".join(
        f'<circle cx="4" cy="{y}" r="1.6" fill="{TERRACOTTA}"/><path d="M8 {y} H17" stroke="{INK}" stroke-width="1.5"/>'
        for y in [4.5, 10, 15.5]
    ),
    "Fonts": f"""
<path d="M2 17 L7 3 L12 17 M4 12 H10" fill="none" stroke="{INK}" stroke-width="1.7" stroke-linejoin="round"/>
<path d="M12 17 L15 9 L18 17 M13.2 14 H16.8" fill="none" stroke="{AEGEAN_DARK}" stroke-width="1.3" stroke-linejoin="round"/>""",
    "FontsColor": f"""
<path d="M4 13 L10 2 L16 13 M6.3 9 H13.7" fill="none" stroke="{INK}" stroke-width="1.7" stroke-linejoin="round"/>
<rect x="2" y="15" width="16" height="3.5" fill="{TERRACOTTA}" stroke="{INK}" stroke-width="0.8"/>""",
}

def nt_plate(body):
    # A pale ochre tile under each glyph, lit from above like the shell's toolbar plates.
    defs = lin("ntplate", [(0, "#fffaf0"), (1, "#f0dcaa")])
    return svg(20, 20, f"""
<rect x="0.5" y="0.5" width="19" height="19" rx="3.5" fill="url(#ntplate)" stroke="{PARCHMENT_DARK}" stroke-width="1"/>
{body}""", defs)


def notes_toolbar_pictures():
    return {"nt_" + key: nt_plate(body) for key, body in NOTES_TOOLBAR.items()}
