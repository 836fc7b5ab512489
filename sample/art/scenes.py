"""Landscapes and sites: the islands, the palaces, the excavations.

Drawn as a book illustrator would paint a photograph: a horizon, the light of
the Aegean, stone, whitewash and sea, in the course's palette.
"""

import math
import random

from kit import *  # noqa: F401,F403

WHITEWASH = "#fbfaf5"
SHADE = "#d9dde2"
DOOR_BLUE = "#2f6fa8"


def _rnd(seed):
    return random.Random(seed)


def island(s, x0, x1, base, height, color, seed=1, peaks=3):
    """An island seen from the sea: a smooth ridge resting on the water."""
    rnd = _rnd(seed)
    pts_ = [(x0, base)]
    for i in range(1, peaks * 2):
        t = i / (peaks * 2)
        bump = height * (0.55 + 0.45 * rnd.random()) * math.sin(math.pi * t) ** 0.6
        pts_.append((x0 + (x1 - x0) * t, base - bump))
    pts_.append((x1, base))
    s.path(smooth(pts_, closed=False) + " Z", fill=color)


def house(s, x, y, w, h, seed=0, door=True, flat=True):
    """A whitewashed cube house with a blue door and a window; (x, y) is its base left."""
    s.rect(x, y - h, w, h, fill=WHITEWASH, stroke="#c9ccd0", stroke_width=0.6)
    s.rect(x + w * 0.7, y - h, w * 0.3, h, fill=SHADE, opacity=0.8)
    if door and w > 10:
        s.rect(x + w * 0.2, y - h * 0.55, w * 0.18, h * 0.55, fill=DOOR_BLUE)
        s.rect(x + w * 0.48, y - h * 0.75, w * 0.16, h * 0.2, fill=DOOR_BLUE)


def town(s, x0, x1, base, top, seed=1, count=26, church=True):
    """Houses stacked up a hill between base and top, higher ones smaller."""
    rnd = _rnd(seed)
    items = []
    for _ in range(count):
        t = rnd.random()
        x = x0 + (x1 - x0) * rnd.random()
        hill = math.sin(math.pi * (x - x0) / (x1 - x0))
        y = base - (base - top) * hill * rnd.uniform(0.2, 1.0)
        size = rnd.uniform(14, 24) * (1 - 0.35 * (base - y) / max(1, base - top))
        items.append((y, x, size))
    for y, x, size in sorted(items):
        house(s, x, y, size * rnd.uniform(1.0, 1.5), size, door=rnd.random() < 0.7)
    if church:
        x = (x0 + x1) / 2 + (x1 - x0) * 0.15
        y = base - (base - top) * 0.75
        s.rect(x, y - 22, 24, 22, fill=WHITEWASH, stroke="#c9ccd0", stroke_width=0.6)
        s.path(f"M{x + 2},{y - 22} A10,10 0 0,1 {x + 22},{y - 22} Z", fill=DOOR_BLUE)
        s.line(x + 12, y - 32, x + 12, y - 38, stroke=INK, stroke_width=1)
        s.line(x + 9, y - 35, x + 15, y - 35, stroke=INK, stroke_width=1)


def caique(s, x, y, size=1.0, color=TERRACOTTA):
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) scale({fmt(size)})")
    s.path("M-20,-4 L20,-4 L16,4 L-16,4 Z", fill=WHITEWASH, stroke=INK, stroke_width=0.6)
    s.path("M-20,-4 L20,-4 L19,-1 L-19,-1 Z", fill=color)
    s.line(0, -4, 0, -22, stroke=INK, stroke_width=0.8)
    s.end()


def windmill(s, x, y, size=1.0):
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) scale({fmt(size)})")
    s.path("M-8,0 L-6,-26 L6,-26 L8,0 Z", fill=WHITEWASH, stroke="#c9ccd0", stroke_width=0.6)
    s.path("M-7,-26 Q0,-34 7,-26 Z", fill="#8a6a4a")
    for a in range(0, 360, 45):
        r = math.radians(a)
        s.line(0, -28, 16 * math.cos(r), -28 + 16 * math.sin(r), stroke=INK, stroke_width=0.7)
        s.poly([(3 * math.cos(r), -28 + 3 * math.sin(r)),
                (15 * math.cos(r), -28 + 15 * math.sin(r)),
                (15 * math.cos(r + 0.35), -28 + 15 * math.sin(r + 0.35))],
               fill="#f4f0e4", stroke="#bbb", stroke_width=0.4)
    s.rect(-2, -10, 4, 10, fill=DOOR_BLUE)
    s.end()


def shrubs(s, y0, y1, count, seed=3, color=OLIVE, x0=0, x1=None):
    rnd = _rnd(seed)
    x1 = s.w if x1 is None else x1
    for _ in range(count):
        x, y = rnd.uniform(x0, x1), rnd.uniform(y0, y1)
        r = rnd.uniform(3, 8) * (0.6 + 0.8 * (y - y0) / max(1, y1 - y0))
        s.ellipse(x, y, r * 1.4, r, fill=rnd.choice([color, OLIVE_DARK, OLIVE_LIGHT]), opacity=0.9)


def cypress(s, x, y, h):
    s.path(f"M{fmt(x)},{fmt(y - h)} C{fmt(x + h * 0.16)},{fmt(y - h * 0.6)} {fmt(x + h * 0.14)},{fmt(y - h * 0.1)} {fmt(x)},{fmt(y)} "
           f"C{fmt(x - h * 0.14)},{fmt(y - h * 0.1)} {fmt(x - h * 0.16)},{fmt(y - h * 0.6)} {fmt(x)},{fmt(y - h)} Z",
           fill=OLIVE_DARK)


def drum(s, x, y, r, h, color=MARBLE):
    """A column drum lying on its base, with flutes."""
    s.rect(x - r, y - h, 2 * r, h, fill=color, stroke=STONE_DARK, stroke_width=0.7)
    for i in range(1, 6):
        fx = x - r + 2 * r * i / 6
        s.line(fx, y - h, fx, y, stroke=MARBLE_DARK, stroke_width=0.6)
    s.ellipse(x, y - h, r, r * 0.25, fill="#fbf8f0", stroke=STONE_DARK, stroke_width=0.7)


def column(s, x, base, h, r, color=MARBLE, capital=True):
    s.rect(x - r, base - h, 2 * r, h, fill=color, stroke=STONE_DARK, stroke_width=0.7)
    for i in range(1, 4):
        s.line(x - r + 2 * r * i / 4, base - h, x - r + 2 * r * i / 4, base, stroke=MARBLE_DARK,
               stroke_width=0.6)
    if capital:
        s.rect(x - r * 1.5, base - h - r * 0.7, r * 3, r * 0.7, fill=color, stroke=STONE_DARK,
               stroke_width=0.7)


def stone_wall(s, x, y, w, h, seed=1, color=STONE, rows=None):
    """Dry-stone walling: irregular blocks in courses."""
    rnd = _rnd(seed)
    rows = rows or max(1, int(h // 9))
    rh = h / rows
    s.rect(x, y, w, h, fill=STONE_DARK)
    for r in range(rows):
        cx = x - rnd.uniform(0, 10)
        while cx < x + w:
            bw = rnd.uniform(10, 22)
            x0, x1 = max(x, cx + 1), min(x + w, cx + bw - 1)
            if x1 > x0:
                shade = rnd.choice([color, "#b8ad98", "#9c927f", "#c2b8a3"])
                s.rect(x0, y + r * rh + 1, x1 - x0, rh - 2, fill=shade, rx=1.5)
            cx += bw


def sun_glow(s, x, y, r, color="#fff3c8"):
    g = s.radial(f"glow{int(x)}", [(0, color, 0.95), (1, color, 0)])
    s.circle(x, y, r, fill=g)


# Sources -----------------------------------------------------------------------

def throne_room(w, h):
    s = Svg(w, h)
    # the walls: red plaster with the griffin painting, a dark doorway at the side
    wall = s.linear("redwall", [(0, "#b5452e"), (1, "#8f3322")])
    s.rect(0, 0, w, h * 0.78, fill=wall)
    s.rect(0, h * 0.78, w, h * 0.22, fill="#cdbb98")
    for i in range(8):
        s.line(0, h * 0.78 + i * 14, w, h * 0.78 + i * 14 + 6, stroke="#b4a27e", stroke_width=1)
    # wavy band along the foot of the painting
    band_y = h * 0.62
    s.rect(0, band_y, w, h * 0.16, fill="#e9dcc0")
    s.path(" ".join(f"M{x},{fmt(band_y + 12)} q15,-18 30,0 t30,0" for x in range(-30, w, 60)),
           fill="none", stroke="#8f3322", stroke_width=3)
    # griffins couchant, one each side of the throne
    for cx, flip in [(w * 0.26, 1), (w * 0.74, -1)]:
        s.group(transform=f"translate({fmt(cx)},{fmt(h * 0.47)}) scale({fmt(flip * w / 640)},{fmt(w / 640)})")
        # a lion's body lying down, forelegs stretched out, an eagle's head with its crest
        s.path("M-120,30 C-130,10 -124,-14 -100,-16", fill="none", stroke="#3b2417", stroke_width=3)
        s.path("M-100,40 C-104,0 -60,-14 10,-8 C30,-6 40,-20 52,-40 C58,-50 70,-52 78,-46 "
               "L92,-42 Q100,-38 94,-30 L90,-34 L80,-33 C74,-20 66,0 62,20 L110,30 L110,40 Z",
               fill="#f1dcb1", stroke="#3b2417", stroke_width=2)
        s.path("M52,-40 C44,-64 40,-80 30,-96 C44,-88 52,-76 56,-66 C58,-80 56,-92 50,-104 "
               "C62,-94 66,-78 64,-52", fill="#5f8fb0", stroke="#3b2417", stroke_width=1.5)
        for sx, sy in [(32, -94), (50, -102)]:
            s.circle(sx, sy, 4, fill="none", stroke="#3b2417", stroke_width=1.5)
        s.circle(72, -42, 3, fill="#3b2417")
        for i in range(6):
            s.circle(-50 + i * 16, 14 + (i % 2) * 6, 3, fill="#b5452e", stroke="#3b2417",
                     stroke_width=0.8)
        # the spiral on the shoulder, the mark of these beasts
        spiral(s, 30, 8, 9, turns=1.8, color="#3b2417", width=1.4)
        s.path("M62,30 L110,34 M-80,40 L-84,44", stroke="#3b2417", stroke_width=2)
        s.end()
    # lilies and reeds between
    for x in [w * 0.08, w * 0.42, w * 0.58, w * 0.92]:
        s.path(f"M{fmt(x)},{fmt(band_y)} q-6,-60 6,-120", fill="none", stroke="#2f5a2a",
               stroke_width=2)
        s.circle(x + 6, band_y - 122, 6, fill="#f4eee0")
    # benches
    for x0, x1 in [(0, w * 0.4), (w * 0.6, w)]:
        s.rect(x0, h * 0.7, x1 - x0, h * 0.06, fill="#e2d8c4", stroke="#8f8470", stroke_width=1)
        s.rect(x0, h * 0.76, x1 - x0, h * 0.05, fill="#c9bea8", stroke="#8f8470", stroke_width=1)
    # the throne, gypsum, with its wavy high back
    cx = w / 2
    gyp = s.linear("gypsum", [(0, "#f1ece2"), (1, "#cfc7b5")], x2=1, y2=0)
    back = (f"M{fmt(cx - 34)},{fmt(h * 0.72)} L{fmt(cx - 34)},{fmt(h * 0.42)} "
            f"C{fmt(cx - 40)},{fmt(h * 0.36)} {fmt(cx - 24)},{fmt(h * 0.3)} {fmt(cx - 14)},{fmt(h * 0.34)} "
            f"C{fmt(cx - 6)},{fmt(h * 0.3)} {fmt(cx + 6)},{fmt(h * 0.3)} {fmt(cx + 14)},{fmt(h * 0.34)} "
            f"C{fmt(cx + 24)},{fmt(h * 0.3)} {fmt(cx + 40)},{fmt(h * 0.36)} {fmt(cx + 34)},{fmt(h * 0.42)} "
            f"L{fmt(cx + 34)},{fmt(h * 0.72)} Z")
    s.path(back, fill=gyp, stroke="#7d735f", stroke_width=1.5)
    s.rect(cx - 46, h * 0.62, 92, h * 0.06, fill="#ece6da", stroke="#7d735f", stroke_width=1.5, rx=3)
    s.path(f"M{fmt(cx - 42)},{fmt(h * 0.68)} L{fmt(cx - 36)},{fmt(h * 0.8)} L{fmt(cx + 36)},{fmt(h * 0.8)} L{fmt(cx + 42)},{fmt(h * 0.68)} Z",
           fill="#ddd5c4", stroke="#7d735f", stroke_width=1.5)
    s.path(f"M{fmt(cx - 30)},{fmt(h * 0.8)} Q{fmt(cx)},{fmt(h * 0.7)} {fmt(cx + 30)},{fmt(h * 0.8)}",
           fill="#b9af9b")
    # warm light from the left
    light = s.linear("warm", [(0, "#ffe9b0", 0.25), (1, "#000000", 0.25)], x2=1, y2=0)
    s.rect(0, 0, w, h, fill=light)
    return s


def _lion(s, x, y, k, seed):
    """A slim archaic lion seated upright on its front legs, facing left."""
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) scale({fmt(k)})")
    marble = s.linear("lionm", [(0, "#f3efe6"), (1, "#b3aa98")], x2=1, y2=0)
    edge = STONE_DARK
    s.rect(-40, -6, 86, 10, fill="#b8ae9c", stroke=edge, stroke_width=0.8)
    # haunch and back, rising steeply to the shoulders
    s.path("M-10,-6 C-8,-30 10,-46 28,-44 C44,-42 48,-24 44,-6 Z", fill=marble, stroke=edge,
           stroke_width=1)
    s.path("M-18,-60 C-4,-70 14,-60 28,-44 C30,-30 20,-20 4,-18 L-14,-24 Z", fill=marble,
           stroke=edge, stroke_width=1)
    # straight front legs with the paws on the plinth
    s.path("M-24,-58 L-26,-6 L-14,-6 L-12,-40 L-4,-40 L-6,-6 L6,-6 L4,-50 Z", fill=marble,
           stroke=edge, stroke_width=1)
    s.path("M-30,-6 L-24,-10 L-12,-6 Z M-10,-6 L-4,-10 L8,-6 Z", fill="#cfc6b3", stroke=edge,
           stroke_width=0.8)
    # chest and the raised head with its mane, muzzle open to the left
    s.path("M-28,-56 C-30,-70 -26,-84 -18,-92 C-6,-98 6,-90 6,-76 C6,-66 0,-58 -6,-54 Z",
           fill=marble, stroke=edge, stroke_width=1)
    s.path("M-22,-90 L-38,-88 L-42,-80 L-34,-78 L-40,-74 L-30,-70 L-22,-74", fill=marble,
           stroke=edge, stroke_width=1, stroke_linejoin="round")
    s.path("M-14,-92 C-8,-84 -4,-74 -8,-62 M-2,-90 C4,-80 4,-68 -2,-58", fill="none",
           stroke=STONE, stroke_width=1.2)
    s.circle(-26, -86, 1.4, fill=edge)
    # tail curling along the plinth
    s.path("M42,-8 C52,-8 56,-16 52,-22", fill="none", stroke=edge, stroke_width=2)
    rnd = _rnd(seed)
    for _ in range(14):
        px, py = rnd.uniform(-24, 40), rnd.uniform(-88, -10)
        s.circle(px, py, rnd.uniform(0.6, 1.6), fill="#8c826f", opacity=0.5)
    s.end()


def delos_lions(w, h):
    s = Svg(w, h)
    sky = s.linear("sky", [(0, "#7fb4dc"), (1, "#d9ecf5")])
    s.rect(0, 0, w, h, fill=sky)
    hills(s, h * 0.52, [30, 44, 26], "#c9b27e", seed=4, step=90)
    ground = s.linear("dust", [(0, "#dcc79a"), (1, "#c4aa76")])
    s.rect(0, h * 0.52, w, h * 0.48, fill=ground)
    shrubs(s, h * 0.54, h * 0.98, 40, seed=2, color="#8a8a4a")
    # terrace edge and the row receding to the right
    for i in range(5):
        t = i / 4
        x = w * (0.16 + 0.74 * t)
        y = h * (0.9 - 0.3 * t)
        k = (h / 260) * (1.0 - 0.55 * t)
        shadow(s, x + 14 * k, y + 2 * k, 44 * k, 6 * k, opacity=0.35)
    for i in reversed(range(5)):
        t = i / 4
        _lion(s, w * (0.16 + 0.74 * t), h * (0.9 - 0.3 * t), (h / 260) * (1.0 - 0.55 * t), i)
    return s


def portara(w, h):
    s = Svg(w, h)
    sky = s.linear("sunset", [(0, "#f0a868"), (0.55, "#f7d2a0"), (1, "#fde9c8")])
    s.rect(0, 0, w, h * 0.62, fill=sky)
    sun_glow(s, w * 0.78, h * 0.56, 80)
    s.circle(w * 0.78, h * 0.58, 22, fill="#fff1c9")
    sea = s.linear("eveningsea", [(0, "#d79a78"), (0.15, "#6f8fb0"), (1, "#35597c")])
    s.rect(0, h * 0.62, w, h * 0.38, fill=sea)
    # the town across the water, warm in the last light
    island(s, -20, w * 0.55, h * 0.62, 70, "#b58a6a", seed=3, peaks=2)
    town(s, 10, w * 0.48, h * 0.62, h * 0.5, seed=6, count=40)
    # islet, causeway and the great door
    s.path(f"M{fmt(w * 0.3)},{fmt(h * 0.86)} L{fmt(w * 0.95)},{fmt(h * 0.8)} L{fmt(w)},{fmt(h * 0.84)} L{fmt(w * 0.32)},{fmt(h * 0.9)} Z",
           fill="#8f7d62")
    s.path(smooth([(w * 0.5, h * 0.9), (w * 0.56, h * 0.74), (w * 0.7, h * 0.7), (w * 0.86, h * 0.76),
                   (w * 0.92, h * 0.9)], closed=False) + " Z", fill="#a08a66")
    x0, x1 = w * 0.6, w * 0.8
    top, base = h * 0.2, h * 0.73
    mar = s.linear("doorm", [(0, "#f4e6cf"), (1, "#c9ab86")], x2=1, y2=0)
    s.rect(x0, top + 30, 30, base - top - 30, fill=mar, stroke="#7a6448", stroke_width=1)
    s.rect(x1 - 30, top + 30, 30, base - top - 30, fill=mar, stroke="#7a6448", stroke_width=1)
    s.rect(x0 - 4, top, x1 - x0 + 8, 32, fill=mar, stroke="#7a6448", stroke_width=1)
    s.line(x0 + 8, top + 34, x0 + 8, base, stroke="#b8987a", stroke_width=1)
    s.line(x1 - 8, top + 34, x1 - 8, base, stroke="#b8987a", stroke_width=1)
    s.rect(x0 - 20, base, x1 - x0 + 40, 10, fill="#b89c78", stroke="#7a6448", stroke_width=1)
    for i in range(20):
        x = (i * 37) % w
        s.line(x, h * 0.66 + (i * 13) % (h * 0.3), x + 18, h * 0.66 + (i * 13) % (h * 0.3),
               stroke="#ffd9a8", stroke_width=1.2, opacity=0.5)
    return s


def kastri(w, h):
    """A fortified hilltop seen from the air: packed houses, a wall with horseshoe towers."""
    s = Svg(w, h)
    sea = s.linear("kastrisea", [(0, "#2f6f99"), (1, "#5f9dc2")], x2=0.3, y2=1)
    s.rect(0, 0, w, h, fill=sea)
    rnd = _rnd(41)
    for _ in range(70):
        x, y = rnd.uniform(0, w), rnd.uniform(0, h)
        s.path(f"M{fmt(x)},{fmt(y)} q5,-2 10,0", fill="none", stroke="#ffffff", stroke_width=1,
               opacity=0.35)
    # the headland: cliffs to the sea on three sides, the slope running down to the south
    cliff = [(w * 0.02, h), (w * 0.06, h * 0.62), (w * 0.2, h * 0.34), (w * 0.42, h * 0.16),
             (w * 0.64, h * 0.14), (w * 0.84, h * 0.28), (w * 0.96, h * 0.56), (w * 0.98, h)]
    s.path(smooth(cliff, closed=False) + " Z", fill="#6e5a44")
    top = [(p[0] + (w * 0.5 - p[0]) * 0.05, p[1] + 10) for p in cliff]
    land = s.linear("kastriland", [(0, "#c9b48a"), (1, "#a8925f")])
    s.path(smooth(top, closed=False) + " Z", fill=land)
    s.path(smooth([(x, y) for x, y in cliff[1:-1]], closed=False), fill="none", stroke="#e8f3f8",
           stroke_width=3, opacity=0.7)
    # the summit plateau, a lighter earth, and contour lines below it
    cx, cy = w * 0.5, h * 0.4
    s.ellipse(cx, cy, w * 0.3, h * 0.19, fill="#d9c89e")
    shrubs(s, h * 0.62, h, 45, seed=5, color="#7d7d44", x0=w * 0.06, x1=w * 0.94)
    # houses: small rooms sharing walls, packed tight
    wall_col = "#5f5444"
    y = cy - h * 0.15
    while y < cy + h * 0.1:
        rh = rnd.uniform(0.045, 0.07) * h
        x = cx - w * 0.26 + rnd.uniform(-8, 8)
        while x < cx + w * 0.26:
            bw = rnd.uniform(22, 46)
            mx, my = x + bw / 2, y + rh / 2
            if ((mx - cx) / (w * 0.26)) ** 2 + ((my - cy) / (h * 0.15)) ** 2 < 1:
                ang = rnd.uniform(-7, 7)
                s.rect(x, y, bw, rh, fill="#e6dac0", stroke=wall_col, stroke_width=3,
                       transform=f"rotate({fmt(ang)} {fmt(mx)} {fmt(my)})")
                if rnd.random() < 0.5:
                    s.line(mx, y, mx, y + rh, stroke=wall_col, stroke_width=2,
                           transform=f"rotate({fmt(ang)} {fmt(mx)} {fmt(my)})")
            x += bw + rnd.uniform(2, 12)
        y += rh + rnd.uniform(4, 10)
    # the wall on the landward side, with horseshoe towers standing out from it
    arc = []
    for i in range(31):
        a = math.pi * (0.08 + 0.84 * i / 30)
        arc.append((cx + w * 0.3 * math.cos(a), cy + h * 0.19 * math.sin(a)))
    d = smooth(arc, closed=False)
    s.path(d, fill="none", stroke=wall_col, stroke_width=10, stroke_linecap="round")
    s.path(d, fill="none", stroke="#cdbf9f", stroke_width=5, stroke_linecap="round")
    for i in (4, 10, 15, 20, 26):
        x, y = arc[i]
        a = math.atan2((y - cy) / (h * 0.19), (x - cx) / (w * 0.3))
        s.group(transform=f"translate({fmt(x)},{fmt(y)}) rotate({fmt(math.degrees(a) - 90)})")
        s.path("M-11,0 L-11,10 A11,11 0 0,0 11,10 L11,0 Z", fill="#cdbf9f", stroke=wall_col,
               stroke_width=3)
        s.end()
    # the gate, a gap in the wall
    gx, gy = arc[12]
    s.circle(gx, gy, 5, fill="#d9c89e")
    return s


def akrotiri_street(w, h):
    s = Svg(w, h)
    # the modern roof overhead and the grey ash behind
    s.rect(0, 0, w, h * 0.16, fill="#6f6a62")
    for x in range(0, w, 40):
        s.line(x, 0, x + 20, h * 0.16, stroke="#57524b", stroke_width=6)
    ash = s.linear("ash", [(0, "#a7a29a"), (1, "#8c877f")])
    s.rect(0, h * 0.16, w, h * 0.3, fill=ash)
    for i in range(5):
        y = h * (0.2 + i * 0.05)
        s.path(f"M0,{fmt(y)} Q{fmt(w / 2)},{fmt(y + 8)} {w},{fmt(y - 4)}", fill="none",
               stroke="#bdb8b0", stroke_width=2)
    # the street runs on into the dark under the roof, between more houses
    s.rect(w * 0.3, h * 0.3, w * 0.4, h * 0.55, fill="#5f5a53")
    stone_wall(s, w * 0.42, h * 0.44, w * 0.16, h * 0.38, seed=9, color="#8f877a")
    s.rect(w * 0.47, h * 0.52, w * 0.06, h * 0.08, fill="#2f2924", stroke="#5e4a32", stroke_width=3)
    # houses left and right, with timber-framed windows
    for side in (0, 1):
        x0 = 0 if side == 0 else w * 0.6
        x1 = w * 0.4 if side == 0 else w
        top = h * (0.22 if side == 0 else 0.3)
        stone_wall(s, x0, top, x1 - x0, h * 0.82 - top, seed=10 + side)
        for row in range(2):
            wy = top + 20 + row * (h * 0.25)
            wx = x0 + (x1 - x0) * 0.3
            s.rect(wx, wy, 50, 40, fill="#3a2f26", stroke="#7a5a36", stroke_width=5)
            s.line(wx + 25, wy, wx + 25, wy + 40, stroke="#7a5a36", stroke_width=3)
        s.rect(x0, top - 6, x1 - x0, 8, fill="#7a5a36")
    # the paved street, receding
    pave = [(w * 0.4, h * 0.82), (w * 0.6, h * 0.82), (w * 0.85, h), (w * 0.15, h)]
    s.poly([(0, h * 0.82), (w, h * 0.82), (w, h), (0, h)], fill="#8f8577")
    s.poly(pave, fill="#b5aa96")
    rnd = _rnd(12)
    for _ in range(40):
        x, y = rnd.uniform(w * 0.2, w * 0.8), rnd.uniform(h * 0.84, h)
        s.ellipse(x, y, rnd.uniform(6, 14), rnd.uniform(3, 6), fill="#a39883", stroke="#7f7566",
                  stroke_width=0.8)
    # the fallen staircase: tumbled blocks in the middle of the street
    for i, (x, y, a) in enumerate([(0.45, 0.8, -20), (0.52, 0.84, 15), (0.49, 0.9, -8),
                                   (0.58, 0.88, 30), (0.42, 0.93, 10)]):
        s.rect(w * x - 24, h * y - 10, 48, 20, fill="#c3b9a6", stroke="#6f6656", stroke_width=1.2,
               transform=f"rotate({a} {fmt(w * x)} {fmt(h * y)})")
    return s


def _pithos(s, x, base, hgt, seed=0, color="#c68a5c"):
    """A tall storage jar with rope bands and handles on the shoulder."""
    w = hgt * 0.42
    body = (f"M{fmt(x - w * 0.25)},{fmt(base)} C{fmt(x - w * 0.55)},{fmt(base - hgt * 0.4)} "
            f"{fmt(x - w * 0.62)},{fmt(base - hgt * 0.75)} {fmt(x - w * 0.35)},{fmt(base - hgt * 0.94)} "
            f"L{fmt(x + w * 0.35)},{fmt(base - hgt * 0.94)} C{fmt(x + w * 0.62)},{fmt(base - hgt * 0.75)} "
            f"{fmt(x + w * 0.55)},{fmt(base - hgt * 0.4)} {fmt(x + w * 0.25)},{fmt(base)} Z")
    g = s.linear(f"pith{seed}", [(0, "#e0b08a"), (0.5, color), (1, "#8a5634")], x2=1, y2=0)
    s.path(body, fill=g, stroke="#5e3a22", stroke_width=1.2)
    s.rect(x - w * 0.36, base - hgt, w * 0.72, hgt * 0.07, fill="#b57a50", stroke="#5e3a22",
           stroke_width=1.2)
    for t in (0.3, 0.5, 0.7):
        y = base - hgt * t
        half = w * (0.5 if t != 0.3 else 0.44)
        s.path(" ".join(f"M{fmt(x - half + i * 6)},{fmt(y)} l3,-4 l3,4" for i in range(int(2 * half / 6))),
               fill="none", stroke="#6e4328", stroke_width=1.2)
    # vertical loop handles round the shoulder; the outer two seen edge-on
    for dx in (-0.42, -0.14, 0.14, 0.42):
        s.rect(x + w * dx - hgt * 0.018, base - hgt * 0.88, hgt * 0.036, hgt * 0.07, rx=hgt * 0.015,
               fill="none", stroke="#6e4328", stroke_width=max(1.2, hgt * 0.008))


def pithoi_magazine(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#d7c4a0")
    # corridor walls in perspective
    s.poly([(0, 0), (w * 0.4, h * 0.3), (w * 0.4, h * 0.66), (0, h)], fill="#b9a27a")
    s.poly([(w, 0), (w * 0.62, h * 0.3), (w * 0.62, h * 0.66), (w, h)], fill="#a68e66")
    s.poly([(w * 0.4, h * 0.3), (w * 0.62, h * 0.3), (w * 0.62, h * 0.66), (w * 0.4, h * 0.66)],
           fill="#8c7654")
    sky = s.linear("skyband", [(0, "#a9cfe6"), (1, "#e6f1f5")])
    s.poly([(w * 0.1, 0), (w * 0.9, 0), (w * 0.62, h * 0.3), (w * 0.4, h * 0.3)], fill=sky)
    s.poly([(0, h), (w * 0.4, h * 0.66), (w * 0.62, h * 0.66), (w, h)], fill="#c9b48c")
    # cists sunk in the floor
    for i in range(4):
        t = i / 4
        y = h * (0.7 + 0.3 * t)
        cx = w * 0.51
        half = w * (0.04 + 0.1 * t)
        s.rect(cx - half, y, half * 2, h * 0.03 * (1 + t), fill="#6d5a40", stroke="#4d3e2a",
               stroke_width=1)
    # the jars along the left wall, large in front
    for i in reversed(range(6)):
        t = i / 5
        x = w * (0.38 - 0.3 * t)
        base = h * (0.66 + 0.3 * t)
        _pithos(s, x, base, h * (0.18 + 0.5 * t), seed=i)
    for i in reversed(range(4)):
        t = i / 3
        x = w * (0.64 + 0.26 * t)
        base = h * (0.66 + 0.3 * t)
        _pithos(s, x, base, h * (0.14 + 0.36 * t), seed=10 + i, color="#b77e52")
    return s


def delos_sanctuary(w, h):
    s = Svg(w, h)
    sky = s.linear("sky", [(0, "#6fa8d6"), (1, "#e1eff6")])
    s.rect(0, 0, w, h, fill=sky)
    hills(s, h * 0.5, [60, 90, 50], "#b59f74", seed=7, step=120)
    ground = s.linear("ground", [(0, "#d8c69c"), (1, "#bfa978")])
    s.rect(0, h * 0.5, w, h * 0.5, fill=ground)
    shrubs(s, h * 0.52, h * 0.98, 30, seed=8, color="#8a8a4a")
    # paved way and scattered ruins
    s.poly([(w * 0.42, h * 0.52), (w * 0.5, h * 0.52), (w * 0.8, h), (w * 0.15, h)], fill="#cdbb94")
    rnd = _rnd(13)
    for _ in range(30):
        x, y = rnd.uniform(w * 0.2, w * 0.75), rnd.uniform(h * 0.55, h)
        if abs((x - w * 0.47) / ((y - h * 0.52) / h * w * 0.6 + 20)) < 1:
            s.rect(x, y, rnd.uniform(10, 24), rnd.uniform(4, 8), fill="#e8e1d0", stroke="#9c927f",
                   stroke_width=0.6)
    for x, y, r in [(0.12, 0.8, 20), (0.25, 0.66, 14), (0.7, 0.7, 16), (0.86, 0.9, 24),
                    (0.6, 0.6, 10)]:
        drum(s, w * x, h * y, r, r * 1.2)
    # temple bases
    for x0, y0, ww in [(0.05, 0.6, 0.2), (0.62, 0.56, 0.25)]:
        s.rect(w * x0, h * y0, w * ww, 10, fill="#e8e1d0", stroke="#9c927f", stroke_width=0.8)
        s.rect(w * x0 - 6, h * y0 + 10, w * ww + 12, 8, fill="#d8cfbc", stroke="#9c927f",
               stroke_width=0.8)
    column(s, w * 0.33, h * 0.62, h * 0.18, 7)
    column(s, w * 0.38, h * 0.6, h * 0.09, 6, capital=False)
    return s


def paros_quarry(w, h):
    s = Svg(w, h)
    sky_and_sea(s, h * 0.3, seed=3)
    hill = s.linear("marblehill", [(0, "#f0ebe0"), (1, "#cfc6b3")])
    s.path(smooth([(-20, h * 0.35), (w * 0.3, h * 0.18), (w * 0.7, h * 0.22), (w + 20, h * 0.3)],
                  closed=False) + f" L{w + 20},{h} L-20,{h} Z", fill=hill)
    # tool marks on the rock face
    rnd = _rnd(14)
    for _ in range(60):
        x, y = rnd.uniform(w * 0.2, w * 0.85), rnd.uniform(h * 0.3, h * 0.85)
        s.line(x, y, x + rnd.uniform(-6, 6), y + rnd.uniform(4, 10), stroke="#b3ab9a",
               stroke_width=0.9)
    # the tunnel mouth
    s.path(f"M{fmt(w * 0.38)},{fmt(h * 0.86)} L{fmt(w * 0.38)},{fmt(h * 0.48)} Q{fmt(w * 0.5)},{fmt(h * 0.36)} "
           f"{fmt(w * 0.62)},{fmt(h * 0.48)} L{fmt(w * 0.62)},{fmt(h * 0.86)} Z", fill="#2a2622")
    s.path(f"M{fmt(w * 0.42)},{fmt(h * 0.86)} L{fmt(w * 0.44)},{fmt(h * 0.55)} Q{fmt(w * 0.5)},{fmt(h * 0.48)} "
           f"{fmt(w * 0.56)},{fmt(h * 0.55)} L{fmt(w * 0.58)},{fmt(h * 0.86)} Z", fill="#14110f")
    # the carved relief panel: a row of small figures
    px, py = w * 0.68, h * 0.44
    s.rect(px, py, w * 0.16, h * 0.14, fill="#e8e1d2", stroke="#9c927f", stroke_width=1.5)
    for i in range(6):
        fx = px + 10 + i * (w * 0.16 - 20) / 5
        s.circle(fx, py + 16, 3.5, fill="#d3cab6", stroke="#9c927f", stroke_width=0.8)
        s.path(f"M{fmt(fx - 4)},{fmt(py + h * 0.12)} L{fmt(fx)},{fmt(py + 20)} L{fmt(fx + 4)},{fmt(py + h * 0.12)} Z",
               fill="#d3cab6", stroke="#9c927f", stroke_width=0.8)
    # fig tree and dry grass
    fx, fy = w * 0.2, h * 0.78
    s.path(f"M{fmt(fx)},{fmt(fy)} q-4,-40 -2,-70 M{fmt(fx)},{fmt(fy - 40)} q20,-20 30,-30", fill="none",
           stroke="#6e5a44", stroke_width=6)
    for dx, dy, r in [(-30, -90, 34), (10, -100, 38), (34, -76, 30), (-10, -70, 30)]:
        s.circle(fx + dx, fy + dy, r, fill=OLIVE, opacity=0.9)
        s.circle(fx + dx - 8, fy + dy - 8, r * 0.5, fill=OLIVE_LIGHT, opacity=0.6)
    s.rect(0, h * 0.86, w, h * 0.14, fill="#c9b27a")
    for i in range(120):
        x = (i * 47) % w
        y = h * 0.86 + (i * 7) % (h * 0.14)
        s.line(x, y, x + (i % 5) - 2, y - 12, stroke="#a58a50", stroke_width=1)
    return s


# Comment pictures ----------------------------------------------------------------

def cist_grave(w, h):
    s = Svg(w, h)
    earth = s.linear("earth", [(0, "#a88a62"), (1, "#8a6c48")])
    s.rect(0, 0, w, h, fill=earth)
    rnd = _rnd(15)
    for _ in range(80):
        s.circle(rnd.uniform(0, w), rnd.uniform(0, h), rnd.uniform(0.8, 2.2), fill="#6e5638",
                 opacity=0.5)
    # a stone box seen from above at an angle: four slabs and the floor
    x0, y0, x1, y1 = w * 0.15, h * 0.2, w * 0.85, h * 0.82
    s.poly([(x0, y0), (x1, y0), (x1 - 14, y0 + 14), (x0 + 14, y0 + 14)], fill="#c9c0ad")
    s.poly([(x0, y0), (x0 + 14, y0 + 14), (x0 + 14, y1 - 14), (x0, y1)], fill="#b3aa96")
    s.poly([(x1, y0), (x1, y1), (x1 - 14, y1 - 14), (x1 - 14, y0 + 14)], fill="#a49b88")
    s.poly([(x0, y1), (x0 + 14, y1 - 14), (x1 - 14, y1 - 14), (x1, y1)], fill="#d4ccba")
    s.rect(x0 + 14, y0 + 14, x1 - x0 - 28, y1 - y0 - 28, fill="#7d6548")
    s.rect(x0, y0, x1 - x0, y1 - y0, fill="none", stroke="#5d5446", stroke_width=2)
    # small vessels inside
    for cx, cy, r, c in [(w * 0.35, h * 0.5, 12, TERRACOTTA), (w * 0.55, h * 0.45, 9, "#5a4b3d"),
                         (w * 0.65, h * 0.6, 10, OCHRE_DARK)]:
        s.ellipse(cx, cy, r, r * 0.8, fill=c, stroke="#3b2e24", stroke_width=1)
        s.ellipse(cx, cy - r * 0.2, r * 0.55, r * 0.35, fill="#2e241c")
    return s


# Term pictures --------------------------------------------------------------------

def evans(w, h):
    """A portrait drawn in sepia: a gentleman of 1900 among red columns."""
    s = Svg(w, h)
    sep = s.linear("sepia", [(0, "#efe0c0"), (1, "#d9c29a")])
    s.rect(0, 0, w, h, fill=sep)
    # ruins behind: a restored portico with tapering red columns
    s.rect(0, h * 0.2, w, h * 0.06, fill="#8a5a3a", opacity=0.6)
    for x in (w * 0.08, w * 0.28, w * 0.72, w * 0.92):
        s.path(f"M{fmt(x - 10)},{fmt(h * 0.26)} L{fmt(x + 10)},{fmt(h * 0.26)} L{fmt(x + 7)},{fmt(h * 0.62)} L{fmt(x - 7)},{fmt(h * 0.62)} Z",
               fill="#a0523a", opacity=0.75)
        s.rect(x - 13, h * 0.24, 26, 8, fill="#5a3a2a", opacity=0.7)
    stone_wall(s, 0, h * 0.62, w, h * 0.1, seed=2, color="#c8b48e")
    s.rect(0, h * 0.72, w, h * 0.28, fill="#cdb48a")
    ink = "#4a3322"
    cx = w * 0.5
    # figure: light suit, hat, stick
    suit = "#e8dcc4"
    s.path(f"M{fmt(cx - 40)},{fmt(h * 0.9)} L{fmt(cx - 46)},{fmt(h * 0.5)} C{fmt(cx - 44)},{fmt(h * 0.4)} "
           f"{fmt(cx - 30)},{fmt(h * 0.36)} {fmt(cx)},{fmt(h * 0.35)} C{fmt(cx + 30)},{fmt(h * 0.36)} "
           f"{fmt(cx + 44)},{fmt(h * 0.4)} {fmt(cx + 46)},{fmt(h * 0.5)} L{fmt(cx + 40)},{fmt(h * 0.9)} Z",
           fill=suit, stroke=ink, stroke_width=1.5)
    s.path(f"M{fmt(cx - 28)},{fmt(h * 0.9)} L{fmt(cx - 24)},{fmt(h * 0.97)} L{fmt(cx - 4)},{fmt(h * 0.97)} L{fmt(cx - 4)},{fmt(h * 0.9)} Z "
           f"M{fmt(cx + 4)},{fmt(h * 0.9)} L{fmt(cx + 4)},{fmt(h * 0.97)} L{fmt(cx + 26)},{fmt(h * 0.97)} L{fmt(cx + 28)},{fmt(h * 0.9)} Z",
           fill="#5a4230")
    s.path(f"M{fmt(cx - 10)},{fmt(h * 0.35)} L{fmt(cx)},{fmt(h * 0.48)} L{fmt(cx + 10)},{fmt(h * 0.35)} Z", fill="#f6efe0",
           stroke=ink, stroke_width=1)
    s.path(f"M{fmt(cx - 3)},{fmt(h * 0.37)} L{fmt(cx + 3)},{fmt(h * 0.37)} L{fmt(cx + 2)},{fmt(h * 0.45)} L{fmt(cx - 2)},{fmt(h * 0.45)} Z",
           fill="#6a3a2a")
    s.line(cx, h * 0.48, cx, h * 0.88, stroke=ink, stroke_width=1)
    for y in (0.55, 0.63, 0.71):
        s.circle(cx + 4, h * y, 1.8, fill=ink)
    # head with white moustache
    s.ellipse(cx, h * 0.27, 21, 25, fill="#e9cfae", stroke=ink, stroke_width=1.5)
    s.path(f"M{fmt(cx - 14)},{fmt(h * 0.3)} q7,6 14,0 q7,6 14,0 q-7,-5 -14,-2 q-7,-3 -14,2 Z", fill="#fbfaf5",
           stroke=ink, stroke_width=0.8)
    s.circle(cx - 7, h * 0.255, 1.6, fill=ink)
    s.circle(cx + 7, h * 0.255, 1.6, fill=ink)
    s.path(f"M{fmt(cx - 12)},{fmt(h * 0.235)} l7,-2 M{fmt(cx + 5)},{fmt(h * 0.233)} l7,2", stroke=ink, stroke_width=1)
    # round glasses suit an antiquarian
    s.circle(cx - 7, h * 0.255, 5, fill="none", stroke=ink, stroke_width=0.8)
    s.circle(cx + 7, h * 0.255, 5, fill="none", stroke=ink, stroke_width=0.8)
    s.path(f"M{fmt(cx - 30)},{fmt(h * 0.205)} L{fmt(cx + 30)},{fmt(h * 0.205)} L{fmt(cx + 20)},{fmt(h * 0.19)} L{fmt(cx + 18)},{fmt(h * 0.13)} "
           f"Q{fmt(cx)},{fmt(h * 0.11)} {fmt(cx - 18)},{fmt(h * 0.13)} L{fmt(cx - 20)},{fmt(h * 0.19)} Z",
           fill="#e0d2b4", stroke=ink, stroke_width=1.2)
    s.rect(cx - 19, h * 0.175, 38, 5, fill="#5a4230")
    # walking stick in the right hand
    s.line(cx + 52, h * 0.55, cx + 62, h * 0.97, stroke="#5a3a22", stroke_width=4, stroke_linecap="round")
    s.path(f"M{fmt(cx + 52)},{fmt(h * 0.55)} q-4,-10 6,-12", fill="none", stroke="#5a3a22", stroke_width=4)
    s.circle(cx + 50, h * 0.58, 7, fill="#e9cfae", stroke=ink, stroke_width=1)
    # the whole in brown ink, as an old photograph would be
    s.define("evanssepia", '<filter id="evanssepia"><feColorMatrix type="matrix" values="'
             '0.39 0.77 0.19 0 0.03  0.35 0.69 0.17 0 0.01  0.27 0.53 0.13 0 0  0 0 0 1 0"/></filter>')
    s.body.insert(0, '<g filter="url(#evanssepia)">')
    s.body.append("</g>")
    frame(s, color="#6a4a2a", width=6)
    return s


def naxos_town(w, h):
    s = Svg(w, h)
    sky_and_sea(s, h * 0.56, seed=21)
    island(s, w * 0.2, w * 1.1, h * 0.56, h * 0.42, "#8d9a6a", seed=5, peaks=2)
    island(s, w * 0.45, w * 0.95, h * 0.56, h * 0.5, "#7b8660", seed=6, peaks=1)
    island(s, -10, w * 0.7, h * 0.6, h * 0.2, "#a9a77a", seed=7)
    hills(s, h * 0.62, [14, 10, 18], "#c2b98a", seed=3, step=50)
    town(s, w * 0.05, w * 0.55, h * 0.66, h * 0.36, seed=9, count=40)
    s.rect(0, h * 0.66, w, h * 0.34, fill=s.linear("harb", [(0, "#5f9dc2"), (1, "#2c6a96")]))
    s.rect(0, h * 0.66, w * 0.7, 6, fill="#d8ccb4")
    caique(s, w * 0.3, h * 0.8, 0.9)
    caique(s, w * 0.55, h * 0.9, 1.1, color=DOOR_BLUE)
    # the great door on its islet at the left
    s.rect(w * 0.04, h * 0.5, 5, 26, fill="#f0e2c8")
    s.rect(w * 0.04 + 18, h * 0.5, 5, 26, fill="#f0e2c8")
    s.rect(w * 0.04 - 2, h * 0.49, 27, 6, fill="#f0e2c8")
    return s


def parikia(w, h):
    s = Svg(w, h)
    sky_and_sea(s, h * 0.5, seed=22)
    island(s, -20, w * 1.1, h * 0.52, h * 0.22, "#b7b189", seed=8, peaks=3)
    hills(s, h * 0.62, [12, 8, 14], "#d2c69e", seed=4, step=60)
    town(s, w * 0.02, w * 0.98, h * 0.68, h * 0.5, seed=12, count=48)
    windmill(s, w * 0.86, h * 0.66, 1.1)
    harbour = s.linear("harb2", [(0, "#62a3c6"), (1, "#2f6e98")])
    s.rect(0, h * 0.68, w, h * 0.32, fill=harbour)
    s.rect(0, h * 0.68, w, 5, fill="#d8ccb4")
    for i, (x, y, c) in enumerate([(0.2, 0.8, TERRACOTTA), (0.42, 0.86, DOOR_BLUE),
                                   (0.65, 0.78, OCHRE), (0.78, 0.92, TERRACOTTA)]):
        caique(s, w * x, h * y, 0.8 + 0.2 * (i % 2), color=c)
    return s


def milos_coast(w, h):
    s = Svg(w, h)
    sky = s.linear("sky", [(0, "#8cc2e6"), (1, "#e1f0f7")])
    s.rect(0, 0, w, h * 0.4, fill=sky)
    sea = s.linear("turq", [(0, "#3aa6b8"), (1, "#1f7f9a")])
    s.rect(0, h * 0.4, w, h * 0.6, fill=sea)
    # white volcanic rock in smooth waves, a few caves
    for i, (top, col) in enumerate([(0.3, "#eef0ec"), (0.45, "#f7f8f4"), (0.58, "#e3e6e0")]):
        pts_ = [(-20, h * 0.72)]
        for k in range(8):
            x = w * k / 7
            pts_.append((x, h * (top + 0.06 * math.sin(k * 1.7 + i))))
        pts_.append((w + 20, h * 0.72))
        s.path(smooth(pts_, closed=False) + f" L{w + 20},{fmt(h * 0.78)} L-20,{fmt(h * 0.78)} Z", fill=col,
               stroke="#c9cec8", stroke_width=1)
        for k in range(5):
            x = w * (0.1 + 0.2 * k + 0.05 * i)
            s.path(f"M{fmt(x)},{fmt(h * (top + 0.1))} q30,-12 60,0", fill="none", stroke="#cdd2cc",
                   stroke_width=1.5)
    for x in (0.22, 0.7):
        s.path(f"M{fmt(w * x - 16)},{fmt(h * 0.76)} q16,-30 32,0 Z", fill="#2b4a52")
    s.path(f"M0,{fmt(h * 0.78)} L{w},{fmt(h * 0.76)}", stroke="#bfe6ee", stroke_width=3)
    s.rect(0, h * 0.78, w, h * 0.22, fill=s.linear("shallow", [(0, "#5cc3cf"), (1, "#238aa3")]))
    return s


def keros(w, h):
    s = Svg(w, h)
    sky_and_sea(s, h * 0.55, seed=23)
    island(s, w * 0.05, w * 0.95, h * 0.55, h * 0.35, "#b9a57a", seed=10, peaks=2)
    island(s, w * 0.15, w * 0.85, h * 0.55, h * 0.22, "#a89268", seed=11, peaks=3)
    # Daskalio, the islet in front
    island(s, w * 0.52, w * 0.66, h * 0.66, h * 0.08, "#9c8660", seed=12, peaks=1)
    s.rect(w * 0.5, h * 0.66, w * 0.18, 3, fill="#e8f3f8", opacity=0.7)
    return s


def akrotiri_roof(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#5b5750")
    # the roof: a wide grid of beams with light falling through
    for x in range(-40, w + 40, 36):
        s.line(x, 0, x + 30, h * 0.3, stroke="#3f3c37", stroke_width=8)
    s.rect(0, h * 0.28, w, 10, fill="#3f3c37")
    glow = s.linear("down", [(0, "#fff4d6", 0.5), (1, "#fff4d6", 0)])
    s.rect(0, h * 0.3, w, h * 0.3, fill=glow)
    # stone houses below, the walkway across
    for i, (x, y, bw, bh) in enumerate([(0.05, 0.5, 0.3, 0.35), (0.38, 0.46, 0.25, 0.4),
                                        (0.66, 0.52, 0.3, 0.34)]):
        stone_wall(s, w * x, h * y, w * bw, h * bh, seed=30 + i)
        s.rect(w * x + 14, h * y + 14, 20, 20, fill="#2b241e", stroke="#7a5a36", stroke_width=3)
    s.rect(0, h * 0.86, w, h * 0.14, fill="#8c877f")
    s.poly([(0, h * 0.42), (w, h * 0.36), (w, h * 0.4), (0, h * 0.46)], fill="#b8a07a")
    for x in range(0, w, 20):
        s.line(x, h * 0.42 - x * 0.06 * h / w, x, h * 0.46 - x * 0.06 * h / w - 14, stroke="#6e5a3e",
               stroke_width=1.5)
    s.line(0, h * 0.42 - 14, w, h * 0.36 - 14, stroke="#6e5a3e", stroke_width=2)
    # visitors on the walkway give the scale
    for i, (x, c) in enumerate([(0.3, TERRACOTTA), (0.36, AEGEAN), (0.7, OCHRE_DARK)]):
        px = w * x
        py = h * 0.42 - px * 0.06 * h / w
        s.rect(px - 3, py - 16, 6, 12, fill=c, rx=2)
        s.circle(px, py - 19, 3, fill="#e9c4a0")
        s.line(px - 2, py - 4, px - 2, py, stroke="#3a3a3a", stroke_width=2)
        s.line(px + 2, py - 4, px + 2, py, stroke="#3a3a3a", stroke_width=2)
    return s


def north_entrance(w, h):
    s = Svg(w, h)
    sky = s.linear("sky", [(0, "#79b2dc"), (1, "#dcedf5")])
    s.rect(0, 0, w, h, fill=sky)
    for x, hh in [(0.06, 0.5), (0.93, 0.55), (0.84, 0.4)]:
        cypress(s, w * x, h * 0.75, h * hh)
    # the portico: a terrace on stone, red columns narrow at the foot, a black capital
    s.rect(w * 0.15, h * 0.2, w * 0.7, h * 0.06, fill="#6e3a22")
    s.rect(w * 0.13, h * 0.16, w * 0.74, h * 0.05, fill="#e0d3b8", stroke="#8a7b60", stroke_width=1)
    wall = s.linear("wallrel", [(0, "#d8c9a6"), (1, "#c4b38c")])
    s.rect(w * 0.18, h * 0.26, w * 0.64, h * 0.4, fill=wall)
    # the charging bull in relief on the wall
    bx, by = w * 0.5, h * 0.46
    s.path(f"M{fmt(bx - 70)},{fmt(by)} C{fmt(bx - 60)},{fmt(by - 30)} {fmt(bx + 10)},{fmt(by - 30)} {fmt(bx + 40)},{fmt(by - 24)} "
           f"L{fmt(bx + 62)},{fmt(by - 34)} L{fmt(bx + 70)},{fmt(by - 20)} L{fmt(bx + 60)},{fmt(by - 8)} "
           f"C{fmt(bx + 40)},{fmt(by + 8)} {fmt(bx - 20)},{fmt(by + 14)} {fmt(bx - 70)},{fmt(by)} Z",
           fill="#efe5d0", stroke="#7a6a4c", stroke_width=1.5)
    s.path(f"M{fmt(bx + 58)},{fmt(by - 34)} q4,-14 14,-16 M{fmt(bx + 52)},{fmt(by - 30)} q-2,-14 6,-20",
           fill="none", stroke="#7a6a4c", stroke_width=2.5)
    s.path(f"M{fmt(bx - 50)},{fmt(by + 4)} l-10,22 M{fmt(bx - 30)},{fmt(by + 8)} l4,22 M{fmt(bx + 20)},{fmt(by + 4)} l14,18 M{fmt(bx + 36)},{fmt(by)} l-4,22",
           stroke="#7a6a4c", stroke_width=3)
    for x in (0.22, 0.38, 0.62, 0.78):
        cx = w * x
        s.path(f"M{fmt(cx - 10)},{fmt(h * 0.28)} L{fmt(cx + 10)},{fmt(h * 0.28)} L{fmt(cx + 7)},{fmt(h * 0.66)} L{fmt(cx - 7)},{fmt(h * 0.66)} Z",
               fill="#b03a26", stroke="#6e2214", stroke_width=1)
        s.ellipse(cx, h * 0.27, 14, 5, fill="#2a211c")
        s.rect(cx - 14, h * 0.255, 28, 5, fill="#2a211c")
    stone_wall(s, w * 0.1, h * 0.66, w * 0.8, h * 0.14, seed=5, color="#cbbd9e")
    s.rect(0, h * 0.8, w, h * 0.2, fill="#c9b88e")
    return s


def phaistos(w, h):
    s = Svg(w, h)
    sky = s.linear("sky", [(0, "#86bde2"), (1, "#e8f2f5")])
    s.rect(0, 0, w, h, fill=sky)
    hills(s, h * 0.42, [40, 60, 30], "#8a93a6", seed=3, step=90)
    hills(s, h * 0.5, [10, 16, 8], "#8ea05e", seed=4, step=60)
    s.rect(0, h * 0.5, w, h * 0.5, fill="#b5a27a")
    # the west court and its broad stair
    s.poly([(0, h * 0.62), (w, h * 0.58), (w, h), (0, h)], fill="#d8c9a6")
    for i in range(8):
        y = h * (0.56 + i * 0.035)
        s.rect(w * (0.3 - i * 0.02), y, w * (0.4 + i * 0.04), h * 0.035, fill="#e6dbc2" if i % 2 else "#d6c9ac",
               stroke="#9c8d6e", stroke_width=0.8)
    for i in range(12):
        x = w * (0.05 + i * 0.08)
        s.line(x, h * 0.85, x + 20, h, stroke="#b9a884", stroke_width=1)
    stone_wall(s, w * 0.72, h * 0.48, w * 0.2, h * 0.1, seed=4, color="#cbbd9e")
    stone_wall(s, w * 0.05, h * 0.5, w * 0.18, h * 0.1, seed=5, color="#cbbd9e")
    return s


def delos_from_sea(w, h):
    s = Svg(w, h)
    sky_and_sea(s, h * 0.6, seed=24)
    island(s, -30, w * 1.05, h * 0.6, h * 0.1, "#c7b68a", seed=14, peaks=4)
    island(s, w * 0.55, w * 0.85, h * 0.6, h * 0.22, "#b5a27a", seed=15, peaks=1)
    for x in (0.2, 0.26, 0.31, 0.4, 0.46):
        column(s, w * x, h * 0.6, h * 0.07 * (1 + (x * 10 % 2)), 2.2, capital=False)
    s.rect(w * 0.15, h * 0.595, w * 0.4, 3, fill="#e8e1d0")
    return s


def phylakopi(w, h):
    s = Svg(w, h)
    sky_and_sea(s, h * 0.45, seed=25)
    s.poly([(0, h * 0.45), (w * 0.65, h * 0.45), (w * 0.75, h * 0.6), (w * 0.7, h), (0, h)],
           fill="#c5ad7c")
    s.path(f"M{fmt(w * 0.65)},{fmt(h * 0.45)} L{fmt(w * 0.75)},{fmt(h * 0.6)} L{fmt(w * 0.7)},{fmt(h)}",
           fill="none", stroke="#e8f4f8", stroke_width=3)
    rnd = _rnd(16)
    for i in range(9):
        x, y = rnd.uniform(0.05, 0.55) * w, rnd.uniform(0.5, 0.85) * h
        bw, bh = rnd.uniform(40, 80), rnd.uniform(18, 30)
        s.rect(x, y, bw, 6, fill="#9c927f")
        stone_wall(s, x, y, 8, bh, seed=i, rows=3)
        stone_wall(s, x, y, bw, 8, seed=i + 30, rows=1)
    shrubs(s, h * 0.5, h, 20, seed=9, color="#8a8a4a", x1=w * 0.6)
    return s


def pithos_child(w, h):
    s = Svg(w, h)
    museum(s, floor=0.86, wall="#e8dcc4")
    _pithos(s, w * 0.4, h * 0.9, h * 0.82, seed=40)
    shadow(s, w * 0.4, h * 0.9, w * 0.22, 6)
    # a child beside it, reaching to the jar's shoulder
    cx, base = w * 0.8, h * 0.9
    ch = h * 0.48
    s.rect(cx - 9, base - ch * 0.45, 7, ch * 0.45, fill="#3f5f8a", rx=2)
    s.rect(cx + 2, base - ch * 0.45, 7, ch * 0.45, fill="#3f5f8a", rx=2)
    s.path(f"M{fmt(cx - 14)},{fmt(base - ch * 0.42)} L{fmt(cx - 12)},{fmt(base - ch * 0.8)} "
           f"Q{fmt(cx)},{fmt(base - ch * 0.86)} {fmt(cx + 12)},{fmt(base - ch * 0.8)} L{fmt(cx + 14)},{fmt(base - ch * 0.42)} Z",
           fill=TERRACOTTA)
    s.circle(cx, base - ch * 0.9, ch * 0.1, fill="#e9c4a0")
    s.path(f"M{fmt(cx - ch * 0.1)},{fmt(base - ch * 0.92)} Q{fmt(cx)},{fmt(base - ch * 1.04)} {fmt(cx + ch * 0.1)},{fmt(base - ch * 0.92)}",
           fill="#5a3a22")
    s.line(cx - 12, base - ch * 0.75, cx - 30, base - ch * 0.6, stroke="#e9c4a0", stroke_width=5,
           stroke_linecap="round")
    shadow(s, cx, base, 18, 3)
    return s


def caldera_cliffs(w, h):
    s = Svg(w, h)
    sky = s.linear("sky", [(0, "#7ab5e0"), (1, "#e3f0f7")])
    s.rect(0, 0, w, h * 0.4, fill=sky)
    sea = s.linear("deep", [(0, "#2b6d9c"), (1, "#123e63")])
    s.rect(0, h * 0.4, w, h * 0.6, fill=sea)
    # islands of the ring far across, the dark volcano in the lagoon
    island(s, w * 0.3, w * 1.05, h * 0.4, h * 0.08, "#8c6f5c", seed=17, peaks=2)
    island(s, w * 0.55, w * 0.8, h * 0.52, h * 0.06, "#3d3431", seed=18, peaks=2)
    # the cliff in the foreground: uneven bands of red, black and white rock
    rnd = _rnd(27)
    edge = [(w * 0.36, h * 0.22)]
    for i in range(1, 9):
        edge.append((w * (0.36 - 0.012 * i) + rnd.uniform(-8, 8), h * (0.22 + 0.1 * i)))
    cliff = [(0, h * 0.2)] + edge + [(0, h)]
    s.poly(cliff, fill="#8c4a2a")
    colours = ["#a0522d", "#3b302b", "#e6ded0", "#8c4a2a", "#4b3f3a", "#d9cfbf", "#6e3a22", "#2f2825"]
    clip = s.define("cliffclip", '<clipPath id="cliffclip"><polygon points="' + pts(cliff) + '"/></clipPath>')
    s.group(clip_path=clip)
    y = h * 0.2
    for i, col in enumerate(colours):
        th = h * rnd.uniform(0.06, 0.13)
        pts_ = [(0, y)]
        for k in range(6):
            pts_.append((w * 0.4 * k / 5, y + rnd.uniform(-5, 5) + k * 3))
        pts_ += [(w * 0.4, y + th + 15), (0, y + th)]
        s.poly(pts_, fill=col)
        y += th * 0.85
    s.end()
    s.polyline(edge, stroke="#2a1f1a", stroke_width=1.5)
    # village on the rim
    for i in range(10):
        house(s, w * (0.0 + i * 0.03), h * (0.22 - (i % 3) * 0.015), 14, 12, door=i % 2 == 0)
    s.rect(w * 0.16, h * 0.12, 14, 14, fill=WHITEWASH)
    s.path(f"M{fmt(w * 0.16)},{fmt(h * 0.12)} a7,7 0 0,1 14,0 Z", fill=DOOR_BLUE)
    return s


def trireme(w, h, with_sea=True):
    s = Svg(w, h)
    if with_sea:
        sky_and_sea(s, h * 0.5, seed=26)
        island(s, w * 0.6, w * 1.05, h * 0.5, h * 0.08, "#a9a77a", seed=3)
    draw_trireme(s, w * 0.48, h * 0.8, w / 500, oar_phase=0.0)
    s.path(f"M{fmt(w * 0.06)},{fmt(h * 0.8 + 3)} L{fmt(w * 0.92)},{fmt(h * 0.8 + 3)}", stroke="#ffffff",
           stroke_width=1.5, opacity=0.5)
    return s


def draw_trireme(s, x, y, k, oar_phase=0.0):
    """The warship in side view, facing right; oar_phase turns the oars (0 to 1)."""
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) scale({fmt(k)})")
    # three banks of oars, drawn first so the hull covers their inner ends
    for bank, (oy, length, colour) in enumerate([(-14, 52, "#5a3a20"), (-6, 44, "#7a5230"),
                                                 (2, 36, "#9a6a3e")]):
        swing = math.sin(2 * math.pi * (oar_phase + bank * 0.08)) * 10
        for i in range(16):
            ox = -146 + i * 19 + bank * 6
            s.line(ox, oy, ox - 12 + swing, oy + length - abs(swing) * 0.3, stroke=colour,
                   stroke_width=2, stroke_linecap="round")
    hull = ("M-180,-20 C-190,-40 -200,-60 -186,-74 C-182,-60 -176,-44 -166,-34 L150,-34 "
            "L176,-24 L206,-8 L210,0 L170,0 C120,8 -120,8 -160,-2 Z")
    s.path(hull, fill="#5a3b24", stroke="#2f1e12", stroke_width=1.5)
    s.path("M-166,-34 L150,-34 L150,-26 L-168,-26 Z", fill="#b8863a")
    for i in range(3):
        s.line(-160, -22 + i * 8, 160, -22 + i * 8, stroke="#7a5234", stroke_width=1)
    # the bronze ram and the painted eye
    s.path("M180,-6 L222,-2 L222,4 L176,6 Z", fill="#b07a3a", stroke="#5a3a1a", stroke_width=1)
    s.ellipse(158, -18, 9, 5, fill="#ffffff", stroke="#2a211c", stroke_width=1.2)
    s.circle(159, -18, 3, fill="#2a211c")
    # mast and square sail
    s.line(0, -34, 0, -150, stroke="#3b2a1a", stroke_width=3)
    s.line(-60, -146, 60, -146, stroke="#3b2a1a", stroke_width=3)
    sail = s.linear("sail", [(0, "#f6ecd6"), (1, "#d9c7a2")], x2=1, y2=0)
    s.path("M-58,-144 L58,-144 C62,-110 60,-80 56,-60 L-56,-60 C-60,-80 -62,-110 -58,-144 Z",
           fill=sail, stroke="#8a7450", stroke_width=1)
    s.path("M-56,-102 L56,-102", stroke=TERRACOTTA, stroke_width=4)
    s.path("M-20,-90 a20,20 0 1,1 40,0", fill="none", stroke=TERRACOTTA, stroke_width=2)
    # the curled stern
    s.path("M-186,-74 C-200,-82 -200,-96 -188,-98", fill="none", stroke="#5a3b24", stroke_width=5)
    s.end()


def open_quarry(w, h):
    s = Svg(w, h)
    sky = s.linear("sky", [(0, "#86bde2"), (1, "#e8f2f5")])
    s.rect(0, 0, w, h * 0.3, fill=sky)
    face = s.linear("face", [(0, "#f4f1ea"), (1, "#d6cfbf")])
    s.rect(0, h * 0.25, w, h * 0.75, fill=face)
    # stepped cuts
    for i in range(4):
        y = h * (0.25 + i * 0.16)
        s.poly([(w * (0.05 + i * 0.05), y), (w, y), (w, y + 10), (w * (0.05 + i * 0.05) + 10, y + 10)],
               fill="#c9c1b0")
        s.line(0, y, w, y, stroke="#a89f8e", stroke_width=1)
    # the half-cut block, with the channel round it
    bx, by, bw, bh = w * 0.3, h * 0.5, w * 0.42, h * 0.26
    s.rect(bx - 6, by - 6, bw + 12, bh + 6, fill="#8d8476")
    s.rect(bx, by, bw, bh, fill="#ece7dc", stroke="#9c927f", stroke_width=1.2)
    rnd = _rnd(19)
    for _ in range(90):
        x, y = rnd.uniform(0, w), rnd.uniform(h * 0.27, h)
        s.line(x, y, x + rnd.uniform(-3, 3), y + rnd.uniform(4, 8), stroke="#a99f8b", stroke_width=0.8)
    for i in range(6):
        x = bx + 10 + i * (bw - 20) / 5
        s.path(f"M{fmt(x)},{fmt(by + bh - 2)} l-4,8 l8,0 Z", fill="#6e665a")
    return s
