"""The parts every picture of the program is drawn with: the shared palette and the SVG
helpers. draw_pictures.py and the pictures of each window's toolbar build on them."""

import math
import os
import random

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "svg")

# Palette: warm earth, Aegean sea, olive leaves.
INK = "#3b2414"
TERRACOTTA = "#b5532c"
TERRACOTTA_DARK = "#7e3318"
OCHRE = "#d9a441"
OCHRE_LIGHT = "#f3d88f"
PARCHMENT = "#f5e7c4"
PARCHMENT_DARK = "#e3cb94"
AEGEAN = "#2c6ea6"
AEGEAN_DARK = "#1c4a75"
AEGEAN_LIGHT = "#8cc0e4"
OLIVE = "#6b7f35"
OLIVE_LIGHT = "#a6b85c"
MARBLE = "#f7f3ea"
MARBLE_SHADE = "#d6cdbb"
GOLD = "#e9b63b"



def svg(w, h, body, defs=""):
    d = f"<defs>{defs}</defs>\n" if defs else ""
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
        f'width="{w}" height="{h}" viewBox="0 0 {w} {h}">\n{d}{body}\n</svg>\n'
    )


def lin(gid, stops, x1=0, y1=0, x2=0, y2=1):
    s = "".join(
        f'<stop offset="{o}" stop-color="{c}"' + (f' stop-opacity="{a}"' if a is not None else "") + "/>"
        for o, c, a in [(t + (None,))[:3] for t in stops]
    )
    return f'<linearGradient id="{gid}" x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}">{s}</linearGradient>'


def rad(gid, stops, cx=0.5, cy=0.5, r=0.5):
    s = "".join(
        f'<stop offset="{o}" stop-color="{c}"' + (f' stop-opacity="{a}"' if a is not None else "") + "/>"
        for o, c, a in [(t + (None,))[:3] for t in stops]
    )
    return f'<radialGradient id="{gid}" cx="{cx}" cy="{cy}" r="{r}">{s}</radialGradient>'
