"""Wall paintings of Akrotiri on Thera, redrawn in the course's own hand.

Each drawing is a fresco panel: lime plaster, painted bands, the figures in
the flat colours of the originals, and the losses of plaster that every
visitor of the site remembers.
"""

import math
import random

from kit import *  # noqa: F401,F403

PLASTER = "#efe6d2"
FRESCO_RED = "#b8432c"
FRESCO_BLUE = "#3f7fa6"
FRESCO_YELLOW = "#e0b24a"
FRESCO_BLACK = "#2a2220"
SKIN_RED = "#b5532f"


def _panel(s, seed, bands=True):
    g = s.radial("plaster", [(0, "#f6eedc"), (1, "#e3d6b9")], r=0.8)
    s.rect(0, 0, s.w, s.h, fill=g)
    rnd = random.Random(seed)
    for _ in range(int(s.w * s.h / 500)):
        s.circle(rnd.uniform(0, s.w), rnd.uniform(0, s.h), rnd.uniform(0.3, 1.1),
                 fill="#9c8560", opacity=rnd.uniform(0.05, 0.18))
    if bands:
        for y, c in [(0.035, FRESCO_RED), (0.065, FRESCO_YELLOW), (0.095, FRESCO_BLUE)]:
            s.rect(0, s.h * y - s.h * 0.012, s.w, s.h * 0.024, fill=c, opacity=0.9)
        for y, c in [(0.905, FRESCO_BLUE), (0.935, FRESCO_YELLOW), (0.965, FRESCO_RED)]:
            s.rect(0, s.h * y - s.h * 0.012, s.w, s.h * 0.024, fill=c, opacity=0.9)


def _losses(s, seed, count=5):
    """Patches where the plaster has fallen and been filled in a plain tone."""
    rnd = random.Random(seed)
    for _ in range(count):
        # losses keep to the edges, where the plaster broke off, not over the figures
        cx = rnd.choice([rnd.uniform(-0.05, 0.12), rnd.uniform(0.88, 1.05)]) * s.w
        cy = rnd.uniform(0, s.h)
        r = rnd.uniform(0.04, 0.09) * min(s.w, s.h)
        blob = [(cx + r * (0.7 + 0.5 * rnd.random()) * math.cos(a),
                 cy + r * (0.7 + 0.5 * rnd.random()) * math.sin(a))
                for a in [i * math.pi / 5 for i in range(10)]]
        s.path(smooth(blob), fill="#d9ccb0", stroke="#b9a888", stroke_width=1)
    for _ in range(4):
        x, y = rnd.uniform(0, s.w), rnd.uniform(0, s.h)
        p = [(x, y)]
        for _ in range(5):
            x += rnd.uniform(-25, 25)
            y += rnd.uniform(5, 30)
            p.append((x, y))
        s.polyline(p, stroke="#8d7a5c", stroke_width=0.8, opacity=0.55)


def _unit(s, box_w, box_h, margin=0.04):
    k = min(s.w * (1 - 2 * margin) / box_w, s.h * (1 - 2 * margin) / box_h)
    s.group(transform=f"translate({fmt((s.w - box_w * k) / 2)},{fmt((s.h - box_h * k) / 2)}) scale({k:.4f})")


def _boy(s, x, flip, skin=SKIN_RED):
    """One young boxer; flip mirrors him so the two face each other."""
    t = f"translate({x},0)" + (" scale(-1,1)" if flip else "")
    s.group(transform=t)
    # legs
    s.path("M-6,118 L-12,150 L-10,178 L-16,184 L-4,184 L-4,150 L0,124 Z", fill=skin)
    s.path("M4,118 L12,146 L22,176 L16,184 L30,184 L28,176 L18,140 L10,116 Z", fill=skin)
    # loincloth and belt
    s.path("M-10,104 L14,102 L16,118 L-8,122 Z", fill=FRESCO_BLUE)
    s.rect(-11, 100, 26, 4, fill=FRESCO_YELLOW)
    # torso
    s.path("M-8,60 C-12,76 -12,92 -10,102 L14,100 C16,88 16,74 12,58 Z", fill=skin)
    # the shaved head painted blue, with long locks
    s.rect(-3, 50, 10, 12, fill=skin)
    s.circle(2, 44, 11, fill=skin)
    s.path("M-8,40 C-8,28 10,26 13,38 C10,34 -2,33 -8,40 Z", fill="#6d94b3")
    s.path("M-6,34 C-14,38 -16,50 -12,58 M-2,31 C-10,24 -18,28 -22,36 M4,30 C0,20 -8,18 -14,20",
           fill="none", stroke=FRESCO_BLACK, stroke_width=2.2, stroke_linecap="round")
    s.circle(9, 43, 1.3, fill=FRESCO_BLACK)
    s.path("M12,47 l2,1", stroke=FRESCO_BLACK, stroke_width=1)
    s.path("M-2,54 L4,58 L8,56", fill=skin)
    # arms, the front one punching forward, both in a glove
    s.path("M10,62 C20,62 28,60 36,58 L36,64 C28,68 20,70 10,70 Z", fill=skin)
    s.path("M-6,64 C-2,78 6,86 16,86 L16,80 C8,78 2,72 2,62 Z", fill=skin)
    # one glove only, on the punching hand
    s.ellipse(40, 61, 7, 6, fill=FRESCO_BLACK)
    s.ellipse(18, 83, 3.5, 3.2, fill=skin)
    s.end()


def boxing_boys(w, h):
    s = Svg(w, h)
    _panel(s, 31)
    _unit(s, 200, 200, margin=0.03)
    s.rect(0, 186, 200, 3, fill=FRESCO_BLACK, opacity=0.25)
    _boy(s, 58, False)
    _boy(s, 142, True, skin="#a9482a")
    s.end()
    _losses(s, 32, 4)
    return s


def _dolphin_fish(s, x, y, length, angle):
    """A dolphin fish hanging head up: blue back, yellow belly, forked tail below."""
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) rotate({fmt(angle)})")
    L = length
    s.path(f"M0,0 C{fmt(L * 0.13)},{fmt(L * 0.08)} {fmt(L * 0.12)},{fmt(L * 0.6)} {fmt(L * 0.04)},{fmt(L * 0.86)} "
           f"L0,{fmt(L * 0.86)} C{fmt(-L * 0.09)},{fmt(L * 0.6)} {fmt(-L * 0.08)},{fmt(L * 0.1)} 0,0 Z",
           fill=FRESCO_YELLOW, stroke=FRESCO_BLACK, stroke_width=0.6)
    s.path(f"M0,0 C{fmt(L * 0.13)},{fmt(L * 0.08)} {fmt(L * 0.12)},{fmt(L * 0.6)} {fmt(L * 0.04)},{fmt(L * 0.86)} "
           f"L{fmt(L * 0.02)},{fmt(L * 0.86)} C{fmt(L * 0.05)},{fmt(L * 0.5)} {fmt(L * 0.04)},{fmt(L * 0.1)} 0,0 Z",
           fill=FRESCO_BLUE)
    s.path(f"M{fmt(L * 0.03)},{fmt(L * 0.84)} L{fmt(-L * 0.1)},{fmt(L)} L{fmt(L * 0.03)},{fmt(L * 0.93)} "
           f"L{fmt(L * 0.16)},{fmt(L)} Z", fill=FRESCO_BLUE, stroke=FRESCO_BLACK, stroke_width=0.6)
    s.circle(L * 0.02, L * 0.09, max(0.8, L * 0.03), fill=FRESCO_BLACK)
    s.end()


def fisherman(w, h):
    s = Svg(w, h)
    _panel(s, 41, bands=False)
    _unit(s, 120, 200, margin=0.03)
    skin = SKIN_RED
    ink = FRESCO_BLACK
    # legs in profile, the left one a step ahead
    s.path("M52,116 C50,134 50,150 48,168 L46,186 L38,190 L52,190 L54,170 C58,150 60,134 62,118 Z",
           fill=skin)
    s.path("M62,116 C66,134 70,150 72,168 L74,186 L70,190 L84,190 L80,168 C78,150 74,132 72,114 Z",
           fill="#a9482a")
    # torso: broad shoulders, narrow waist, the chest in profile
    s.path("M46,58 C44,52 52,48 60,48 C70,48 78,52 78,58 C78,70 74,78 72,90 C71,100 72,108 72,118 "
           "L52,118 C52,106 52,96 50,86 C48,76 46,68 46,58 Z", fill=skin)
    s.path("M72,60 C76,66 76,72 72,76", fill="none", stroke="#8e3520", stroke_width=1)
    # neck and head, the shaved scalp painted blue, one long lock
    s.path("M56,40 L57,50 L66,50 L66,40 Z", fill=skin)
    s.path(smooth([(52, 34), (56, 24), (66, 22), (74, 28), (74, 36), (77, 40), (72, 43),
                   (68, 46), (58, 46), (53, 41)]), fill=skin)
    s.path("M52,34 C54,22 70,19 74,30 C68,27 58,27 52,34 Z", fill="#6d94b3")
    s.path("M55,28 C46,30 44,40 46,50 M55,28 C52,20 58,14 62,16", fill="none", stroke=ink,
           stroke_width=2, stroke_linecap="round")
    s.path("M68,33 q2.5,-1.4 5,0 q-2.5,1.2 -5,0 Z", fill=ink)
    s.path("M72,42 l3,0", stroke=ink, stroke_width=1)
    # arms hanging at the sides, the fists holding the cords
    s.path("M48,56 C42,68 38,80 36,92", fill="none", stroke=skin, stroke_width=6,
           stroke_linecap="round")
    s.path("M76,56 C82,68 86,80 88,92", fill="none", stroke="#a9482a", stroke_width=6,
           stroke_linecap="round")
    for hx in (36, 88):
        s.circle(hx, 94, 3.6, fill=skin)
        s.line(hx, 96, hx, 102, stroke=ink, stroke_width=0.9)
        for k in range(6):
            ang = (k - 2.5) * 9
            _dolphin_fish(s, hx + (k - 2.5) * 2.5, 102 + abs(k - 2.5) * 1.5, 48, ang)
    s.end()
    _losses(s, 42, 4)
    return s


def _lily(s, x, y, height, lean, seed):
    rnd = random.Random(seed)
    top = (x + lean, y - height)
    s.path(f"M{x},{y} Q{x + lean * 0.2},{y - height * 0.5} {fmt(top[0])},{fmt(top[1])}", fill="none",
           stroke=FRESCO_BLACK, stroke_width=1.4)
    tx, ty = top
    # three red petals curling outward, yellow anthers
    s.path(f"M{fmt(tx)},{fmt(ty)} C{fmt(tx - 10)},{fmt(ty - 4)} {fmt(tx - 16)},{fmt(ty - 16)} {fmt(tx - 12)},{fmt(ty - 22)} "
           f"C{fmt(tx - 10)},{fmt(ty - 14)} {fmt(tx - 6)},{fmt(ty - 8)} {fmt(tx)},{fmt(ty - 6)} Z", fill=FRESCO_RED)
    s.path(f"M{fmt(tx)},{fmt(ty)} C{fmt(tx + 10)},{fmt(ty - 4)} {fmt(tx + 16)},{fmt(ty - 16)} {fmt(tx + 12)},{fmt(ty - 22)} "
           f"C{fmt(tx + 10)},{fmt(ty - 14)} {fmt(tx + 6)},{fmt(ty - 8)} {fmt(tx)},{fmt(ty - 6)} Z", fill=FRESCO_RED)
    s.path(f"M{fmt(tx - 3)},{fmt(ty - 4)} C{fmt(tx - 4)},{fmt(ty - 16)} {fmt(tx + 4)},{fmt(ty - 16)} {fmt(tx + 3)},{fmt(ty - 4)} Z",
           fill="#c9553a")
    for dx in (-5, 0, 5):
        s.line(tx, ty - 6, tx + dx, ty - 20, stroke=FRESCO_BLACK, stroke_width=0.6)
        s.circle(tx + dx, ty - 20, 1.4, fill=FRESCO_YELLOW)


def _swallow(s, x, y, angle, size=1.0):
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) rotate({fmt(angle)}) scale({fmt(size)})")
    s.path("M0,0 C8,-4 16,-3 22,0 C16,3 8,4 0,0 Z", fill=FRESCO_BLACK)
    s.path("M6,-1 C2,-14 -6,-20 -16,-22 C-8,-12 -2,-6 2,0 Z", fill=FRESCO_BLACK)
    s.path("M8,1 C6,12 0,18 -10,22 C-4,12 0,6 4,1 Z", fill="#3c3432")
    s.path("M0,0 L-10,-5 L-4,0 L-10,5 Z", fill=FRESCO_BLACK)
    s.path("M17,0.5 C19,1.5 21,1 22,0", fill="none", stroke=FRESCO_RED, stroke_width=2)
    s.circle(19, -1, 0.8, fill=WHITE)
    s.end()


def swallows_lilies(w, h):
    """The spring fresco: red lilies on rocks of many colours, swallows courting."""
    s = Svg(w, h)
    _panel(s, 51, bands=False)
    _unit(s, 240, 180, margin=0.0)
    rocks = [
        ([(0, 180), (0, 130), (20, 118), (46, 126), (60, 150), (70, 180)], FRESCO_RED),
        ([(60, 180), (66, 144), (90, 128), (118, 136), (124, 160), (128, 180)], FRESCO_YELLOW),
        ([(120, 180), (130, 146), (158, 124), (186, 134), (190, 160), (196, 180)], FRESCO_BLUE),
        ([(186, 180), (196, 138), (220, 120), (240, 126), (240, 180)], FRESCO_RED),
    ]
    for i, (r, c) in enumerate(rocks):
        s.path(smooth(r, closed=True, tension=0.35), fill=c, opacity=0.92)
        # veins in the rock
        xs = [p[0] for p in r]
        for k in range(3):
            x0 = min(xs) + 10 + k * 14
            s.path(f"M{x0},178 q6,-14 -2,-28 q-6,-10 4,-18", fill="none", stroke=FRESCO_BLACK,
                   stroke_width=0.9, opacity=0.55)
    lily_spots = [(18, 122, 34, -6), (36, 126, 42, 4), (94, 132, 38, -8), (110, 134, 30, 6),
                  (154, 128, 44, -4), (172, 130, 36, 8), (214, 124, 40, -6), (230, 126, 30, 4)]
    for i, (x, y, hh, lean) in enumerate(lily_spots):
        _lily(s, x, y, hh, lean, i)
    _swallow(s, 64, 46, 20, 1.2)
    _swallow(s, 150, 36, 160, 1.1)
    _swallow(s, 198, 70, -20, 0.9)
    _swallow(s, 116, 74, 200, 1.0)
    s.end()
    _losses(s, 52, 3)
    return s


def _long_ship(s, x, y, scale, seed, sail=False):
    """One of the festive ships: a crescent hull, a cabin at the stern, oars or a sail."""
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) scale({fmt(scale)})")
    s.path("M-60,0 C-40,10 40,10 56,-2 L66,-14 L62,-14 L54,-4 C30,2 -30,2 -58,-6 L-64,-10 Z",
           fill=FRESCO_BLACK)
    s.path("M-50,-2 C-30,4 30,4 50,-2", fill="none", stroke=FRESCO_YELLOW, stroke_width=1.4)
    for i in range(-44, 44, 8):
        s.line(i, -2, i + 2, 2, stroke=FRESCO_RED, stroke_width=1.3)
    # the stern cabin (ikrion) and the awning over the passengers
    s.rect(-52, -22, 12, 16, fill=FRESCO_YELLOW, stroke=FRESCO_BLACK, stroke_width=0.8)
    s.path("M-52,-22 L-40,-22 M-52,-14 L-40,-14", stroke=FRESCO_RED, stroke_width=1)
    s.path("M-30,-6 L-30,-16 L30,-16 L30,-6", fill="none", stroke=FRESCO_BLACK, stroke_width=1)
    for i in range(-28, 30, 6):
        s.circle(i, -19, 2.4, fill="#e8d8b6", stroke=FRESCO_BLACK, stroke_width=0.5)
    if sail:
        s.line(0, -6, 0, -52, stroke=FRESCO_BLACK, stroke_width=1.4)
        s.path("M-24,-50 L24,-50 L22,-20 L-22,-20 Z", fill="#f6efdf", stroke=FRESCO_BLACK,
               stroke_width=0.8)
        s.path("M-22,-40 L22,-40 M-22,-30 L22,-30", stroke=FRESCO_RED, stroke_width=0.8)
    else:
        for i in range(-36, 40, 7):
            s.line(i, 0, i - 8, 14, stroke=FRESCO_BLACK, stroke_width=0.8)
    # the lion at the prow, a garland line to the stern
    s.path("M58,-14 q4,-6 8,0", fill=FRESCO_YELLOW)
    s.path("M-60,-8 Q0,-30 60,-14", fill="none", stroke=FRESCO_RED, stroke_width=0.6,
           stroke_dasharray="2 2")
    s.end()


def ship_fresco(w, h):
    """The flotilla frieze: ships between two harbour towns, dolphins leaping."""
    s = Svg(w, h)
    _panel(s, 61)
    _unit(s, 300, 150, margin=0.0)
    s.rect(0, 64, 300, 72, fill="#8fbcd6", opacity=0.75)
    for x in range(0, 300, 14):
        for y in (80, 100, 120):
            s.path(f"M{x},{y + (x // 14) % 2 * 4} q3,-2 6,0", fill="none", stroke="#4f86ad",
                   stroke_width=0.6)
    # towns at both ends: houses stacked on a hill, people watching from the roofs
    rnd = random.Random(63)
    for ox, flip in [(0, 1), (300, -1)]:
        s.path(f"M{ox},24 Q{ox + 34 * flip},24 {ox + 62 * flip},86 L{ox},86 Z", fill="#c9a66b")
        spots = [(4, 34), (16, 40), (28, 50), (40, 62), (6, 50), (18, 58), (30, 70), (8, 66),
                 (20, 76), (44, 80)]
        for i, (hx, hy) in enumerate(spots):
            x0 = ox + hx * flip - (12 if flip < 0 else 0)
            s.rect(x0, hy - 11, 12, 11, fill=[FRESCO_YELLOW, "#f3e6c8", FRESCO_RED][i % 3],
                   stroke=FRESCO_BLACK, stroke_width=0.5)
            s.rect(x0 + 3, hy - 8, 3, 3, fill=FRESCO_BLACK)
            if rnd.random() < 0.6:
                for k in range(rnd.randint(1, 2)):
                    px = x0 + 3 + k * 5
                    s.circle(px, hy - 14, 1.6, fill=SKIN_RED)
                    s.line(px, hy - 12.5, px, hy - 11, stroke=SKIN_RED, stroke_width=1.6)
    _long_ship(s, 112, 92, 0.9, 1)
    _long_ship(s, 196, 112, 0.9, 2, sail=True)
    _long_ship(s, 140, 132, 0.7, 3)
    for x, y, a in [(66, 114, -20), (258, 98, 200), (172, 78, -10), (238, 132, 190)]:
        s.group(transform=f"translate({x},{y}) rotate({a})")
        s.path("M-12,0 C-6,-6 6,-6 12,0 C6,3 -6,3 -12,0 Z M-12,0 l-4,-4 l0,8 Z M0,-4 l3,-4 l2,4",
               fill=FRESCO_BLUE, stroke=FRESCO_BLACK, stroke_width=0.5)
        s.end()
    s.end()
    _losses(s, 64, 2)
    return s


def fresco_fragment(w, h):
    """A small piece of painted plaster, for a comment: one swallow and a lily."""
    s = Svg(w, h)
    _panel(s, 71, bands=False)
    _unit(s, 100, 100, margin=0.02)
    _lily(s, 30, 96, 36, 4, 1)
    _swallow(s, 62, 36, 15, 1.3)
    s.end()
    return s


def _antelope(s, x, y, k, flip=False, head_back=False):
    sx = -k if flip else k
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) scale({fmt(sx)},{fmt(k)})")
    ink = FRESCO_BLACK
    body = ("M-40,0 C-42,-18 -30,-30 -10,-30 L24,-30 C36,-30 42,-22 42,-10 C42,0 38,6 32,8 "
            "L32,40 L28,40 L26,12 L-26,12 L-28,40 L-32,40 L-34,10 C-38,8 -40,4 -40,0 Z")
    s.path(body, fill="#f3e9d6", stroke=ink, stroke_width=2.2)
    s.path("M-20,12 L-22,40 M20,12 L22,40", stroke=ink, stroke_width=2)
    s.path("M-30,-6 C-10,-2 10,-2 30,-8", fill="none", stroke="#b9835a", stroke_width=5,
           opacity=0.5)
    if head_back:
        neck = "M-34,-20 C-44,-38 -50,-50 -46,-60"
        head = "M-46,-60 L-60,-52 L-56,-46 L-44,-52"
        horn = "M-48,-62 C-40,-80 -28,-84 -20,-80"
    else:
        neck = "M34,-22 C42,-38 46,-48 44,-58"
        head = "M44,-58 L62,-50 L58,-44 L42,-50"
        horn = "M44,-60 C36,-78 24,-84 14,-80"
    s.path(neck, fill="none", stroke=ink, stroke_width=9, stroke_linecap="round")
    s.path(neck, fill="none", stroke="#f3e9d6", stroke_width=5, stroke_linecap="round")
    s.path(head, fill="#f3e9d6", stroke=ink, stroke_width=2.2, stroke_linejoin="round")
    s.path(horn, fill="none", stroke=ink, stroke_width=3, stroke_linecap="round")
    s.path(horn, fill="none", stroke=ink, stroke_width=3, stroke_linecap="round",
           transform="translate(4,2)")
    s.end()


def antelopes(w, h):
    s = Svg(w, h)
    _panel(s, 81, bands=False)
    k = h / 260
    _antelope(s, w * 0.3, h * 0.62, k, head_back=False)
    _antelope(s, w * 0.72, h * 0.62, k, flip=False, head_back=True)
    _losses(s, 82, 4)
    return s


def _monkey(s, x, y, k, angle=0, flip=False):
    sx = -k if flip else k
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) rotate({angle}) scale({fmt(sx)},{fmt(k)})")
    blue = "#5b8fc0"
    ink = FRESCO_BLACK
    s.path("M-20,0 C-40,10 -50,30 -40,50 C-34,60 -24,58 -28,48", fill="none", stroke=blue,
           stroke_width=4, stroke_linecap="round")
    s.ellipse(0, 0, 22, 12, fill=blue, stroke=ink, stroke_width=1)
    s.circle(26, -8, 9, fill=blue, stroke=ink, stroke_width=1)
    s.path("M30,-8 q6,2 8,6", fill="none", stroke=ink, stroke_width=1)
    s.circle(28, -10, 1.4, fill=ink)
    for lx, ly, ex, ey in [(14, 6, 24, 22), (10, 8, 4, 26), (-14, 6, -8, 24), (-18, 4, -30, 18)]:
        s.path(f"M{lx},{ly} L{ex},{ey}", stroke=blue, stroke_width=5, stroke_linecap="round")
    s.end()


def blue_monkeys(w, h):
    s = Svg(w, h)
    _panel(s, 91, bands=False)
    s.rect(0, 0, w, h * 0.18, fill=FRESCO_BLUE, opacity=0.85)
    rocks = [
        ([(0, h), (0, h * 0.55), (w * 0.2, h * 0.4), (w * 0.38, h * 0.6), (w * 0.4, h)], FRESCO_RED),
        ([(w * 0.34, h), (w * 0.42, h * 0.45), (w * 0.62, h * 0.34), (w * 0.72, h * 0.6), (w * 0.7, h)], FRESCO_YELLOW),
        ([(w * 0.66, h), (w * 0.74, h * 0.5), (w * 0.9, h * 0.42), (w, h * 0.5), (w, h)], FRESCO_RED),
    ]
    for r, c in rocks:
        s.path(smooth(r, tension=0.3), fill=c, opacity=0.92)
        xs = [p[0] for p in r]
        for k in range(4):
            x0 = min(xs) + 20 + k * 30
            s.path(f"M{fmt(x0)},{fmt(h)} q12,-40 -4,-80 q-10,-20 6,-40", fill="none",
                   stroke=FRESCO_BLACK, stroke_width=1.2, opacity=0.5)
    k = h / 300
    _monkey(s, w * 0.2, h * 0.42, k, angle=-20)
    _monkey(s, w * 0.55, h * 0.34, k, angle=10, flip=True)
    _monkey(s, w * 0.84, h * 0.44, k * 0.9, angle=-30)
    _losses(s, 92, 3)
    return s


def _woman(s, x, y, k, flip=False, reach=False):
    sx = -k if flip else k
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) scale({fmt(sx)},{fmt(k)})")
    skin = "#f3e6d6"
    ink = FRESCO_BLACK
    # flounced skirt in bands
    for i, c in enumerate([FRESCO_BLUE, FRESCO_YELLOW, FRESCO_RED, FRESCO_BLUE, FRESCO_YELLOW]):
        y0 = 10 + i * 14
        s.path(f"M{-14 - i * 4},{y0} L{14 + i * 4},{y0} L{18 + i * 4},{y0 + 14} L{-18 - i * 4},{y0 + 14} Z",
               fill=c, stroke=ink, stroke_width=0.8)
    s.path("M-8,84 L-10,96 L-2,96 M4,84 L6,96 L14,96", fill="none", stroke=skin, stroke_width=3)
    # bodice, short sleeves, the arm
    s.path("M-12,10 L-10,-26 L10,-26 L12,10 Z", fill=FRESCO_RED, stroke=ink, stroke_width=0.8)
    s.path("M-12,-26 L-20,-16 L-12,-12 Z M12,-26 L20,-16 L12,-12 Z", fill=FRESCO_BLUE, stroke=ink,
           stroke_width=0.6)
    arm = "M16,-18 L30,-4 L42,6" if reach else "M16,-18 L26,0 L24,12"
    s.path(arm, fill="none", stroke=ink, stroke_width=6, stroke_linecap="round")
    s.path(arm, fill="none", stroke="#ecd3b8", stroke_width=4.4, stroke_linecap="round")
    # head in profile looking right: nose and lips on the right, hair behind, an earring
    s.rect(-3, -34, 7, 9, fill="#ecd3b8")
    s.path("M-8,-42 C-8,-52 6,-54 9,-46 L12,-42 L9,-40 L10,-37 L8,-34 C2,-32 -8,-34 -8,-42 Z",
           fill="#ecd3b8", stroke=ink, stroke_width=0.8)
    s.path("M-9,-44 C-8,-56 8,-56 9,-47 C2,-50 -2,-49 -4,-46 C-6,-40 -6,-36 -8,-32 "
           "C-14,-26 -16,-18 -10,-8 C-18,-16 -18,-32 -9,-44 Z", fill=ink)
    s.path("M2,-44 q2.5,-1.5 5,0 q-2.5,1.2 -5,0 Z", fill=ink)
    s.circle(-3, -34, 2.4, fill="none", stroke=FRESCO_YELLOW, stroke_width=1.4)
    s.path("M8.5,-37.5 l2.5,0", stroke=FRESCO_RED, stroke_width=1.5)
    s.end()


def _crocus(s, x, y, k=1.0):
    s.path(f"M{fmt(x)},{fmt(y)} l0,{fmt(-14 * k)}", stroke="#4a6a2a", stroke_width=1.2)
    for a in (-25, 0, 25):
        s.ellipse(x, y - 18 * k, 3 * k, 6 * k, fill="#c47ab8", transform=f"rotate({a} {fmt(x)} {fmt(y - 14 * k)})")
    s.path(f"M{fmt(x)},{fmt(y - 16 * k)} l-2,-8 M{fmt(x)},{fmt(y - 16 * k)} l2,-8", stroke=FRESCO_RED,
           stroke_width=1.2)


def saffron_gatherers(w, h):
    s = Svg(w, h)
    _panel(s, 101)
    for r in [([(0, h * 0.92), (0, h * 0.7), (w * 0.2, h * 0.62), (w * 0.35, h * 0.8), (w * 0.4, h * 0.92)], FRESCO_YELLOW),
              ([(w * 0.6, h * 0.92), (w * 0.66, h * 0.66), (w * 0.86, h * 0.6), (w, h * 0.7), (w, h * 0.92)], FRESCO_YELLOW)]:
        s.path(smooth(r[0], tension=0.3), fill=r[1], opacity=0.9)
    rnd = random.Random(102)
    for _ in range(16):
        _crocus(s, rnd.uniform(0.02, 0.98) * w, rnd.uniform(0.7, 0.88) * h, h / 300)
    k = h / 230
    bx, by = w * 0.52, h * 0.76
    _woman(s, w * 0.3, h * 0.44, k, reach=True)
    _woman(s, w * 0.72, h * 0.44, k, flip=True)
    # the basket between them, half full of flowers
    for i in range(5):
        _crocus(s, bx - 12 + i * 6, by - 14, h / 400)
    s.path(f"M{fmt(bx - 24)},{fmt(by - 26)} L{fmt(bx + 24)},{fmt(by - 26)} L{fmt(bx + 18)},{fmt(by)} L{fmt(bx - 18)},{fmt(by)} Z",
           fill="#c9a060", stroke=FRESCO_BLACK, stroke_width=1)
    for i in range(4):
        s.line(bx - 16 + i * 2, by - 16 + i * 4, bx + 16 - i * 2, by - 16 + i * 4, stroke="#8a6030",
               stroke_width=1)
    _losses(s, 103, 3)
    return s


def painter_at_work(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#d8c7a6")
    # the fresh plaster panel, half painted
    s.rect(w * 0.05, h * 0.08, w * 0.62, h * 0.62, fill="#f3ebda", stroke="#b8a78a", stroke_width=2)
    s.rect(w * 0.05, h * 0.1, w * 0.62, h * 0.03, fill=FRESCO_RED)
    s.rect(w * 0.05, h * 0.14, w * 0.42, h * 0.02, fill=FRESCO_BLUE)
    s.path(f"M{fmt(w * 0.1)},{fmt(h * 0.5)} q20,-30 40,0 t40,0 t40,0", fill="none", stroke=FRESCO_BLUE,
           stroke_width=3)
    _lily(s, w * 0.16, h * 0.66, 40, 4, 1)
    # the painter, seen from the side, brush raised
    x, y = w * 0.74, h * 0.9
    skin = SKIN_RED
    s.path(f"M{fmt(x - 14)},{fmt(y)} L{fmt(x - 10)},{fmt(y - 60)} L{fmt(x + 14)},{fmt(y - 60)} L{fmt(x + 16)},{fmt(y)} Z",
           fill="#efe4cc", stroke=FRESCO_BLACK, stroke_width=1)
    s.path(f"M{fmt(x - 12)},{fmt(y - 60)} L{fmt(x - 10)},{fmt(y - 110)} L{fmt(x + 12)},{fmt(y - 110)} L{fmt(x + 14)},{fmt(y - 60)} Z",
           fill=skin)
    s.circle(x, y - 124, 14, fill=skin)
    s.path(f"M{fmt(x - 14)},{fmt(y - 128)} C{fmt(x - 12)},{fmt(y - 144)} {fmt(x + 14)},{fmt(y - 144)} {fmt(x + 14)},{fmt(y - 128)} Z",
           fill=FRESCO_BLACK)
    s.path(f"M{fmt(x - 8)},{fmt(y - 104)} L{fmt(x - 40)},{fmt(y - 128)} L{fmt(x - 60)},{fmt(y - 150)}", fill="none",
           stroke=skin, stroke_width=7, stroke_linecap="round")
    s.line(x - 60, y - 150, x - 76, y - 168, stroke="#7a5a36", stroke_width=3)
    s.line(x - 76, y - 168, x - 80, y - 172, stroke=FRESCO_RED, stroke_width=4, stroke_linecap="round")
    s.rect(0, h * 0.9, w, h * 0.1, fill="#b8a27c")
    # pots of pigment on the floor
    for i, c in enumerate([FRESCO_RED, FRESCO_BLUE, FRESCO_YELLOW, FRESCO_BLACK]):
        px = w * (0.12 + i * 0.12)
        s.path(f"M{fmt(px - 12)},{fmt(h * 0.86)} L{fmt(px + 12)},{fmt(h * 0.86)} L{fmt(px + 9)},{fmt(h * 0.95)} L{fmt(px - 9)},{fmt(h * 0.95)} Z",
               fill="#b7774e", stroke="#5e3a22", stroke_width=1)
        s.ellipse(px, h * 0.86, 12, 3.5, fill=c)
    return s


def bull_leaping(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#e9dcc0")
    # decorated border of bands and lozenges
    s.rect(w * 0.04, h * 0.06, w * 0.92, h * 0.88, fill=FRESCO_BLUE, stroke=FRESCO_BLACK, stroke_width=2)
    for x0, y0, ww, hh in [(0, 0, w, h * 0.06), (0, h * 0.94, w, h * 0.06), (0, 0, w * 0.04, h),
                           (w * 0.96, 0, w * 0.04, h)]:
        s.rect(x0, y0, ww, hh, fill=FRESCO_YELLOW)
    for i in range(int(w // 24)):
        cx = 12 + i * 24
        for cy in (h * 0.03, h * 0.97):
            s.poly([(cx - 7, cy), (cx, cy - 7), (cx + 7, cy), (cx, cy + 7)], fill=FRESCO_RED)
    k = h / 260
    s.group(transform=f"translate({fmt(w * 0.5)},{fmt(h * 0.64)}) scale({fmt(k)})")
    ink = FRESCO_BLACK
    hide = "#f5efe2"
    # the bull in the flying gallop: fore and hind legs stretched out level
    s.path("M-100,-20 L-160,10 L-164,4 L-112,-30 Z M-96,0 L-150,24 L-152,16 L-104,-10 Z",
           fill=hide, stroke=ink, stroke_width=1.5)
    s.path("M70,-6 L140,10 L140,18 L64,6 Z M60,6 L126,30 L122,36 L54,16 Z", fill=hide, stroke=ink,
           stroke_width=1.5)
    s.path("M-110,-24 C-112,-50 -80,-62 -30,-60 C20,-58 60,-56 80,-44 C92,-36 96,-20 90,-4 "
           "C80,10 40,18 -20,16 C-70,14 -106,4 -110,-24 Z", fill=hide, stroke=ink, stroke_width=2)
    # the head low and forward, the horns sweeping up
    s.path("M80,-44 C100,-44 116,-36 128,-20 C132,-12 126,-6 118,-8 C108,-12 96,-14 88,-12 Z",
           fill=hide, stroke=ink, stroke_width=2)
    s.path("M98,-44 C106,-70 124,-80 140,-78 M92,-46 C94,-74 106,-90 120,-94", fill="none",
           stroke=ink, stroke_width=3, stroke_linecap="round")
    s.circle(108, -30, 2.5, fill=ink)
    s.path("M-110,-24 C-130,-30 -140,-50 -134,-66", fill="none", stroke=ink, stroke_width=2)
    for cx, cy, r in [(-70, -36, 12), (-20, -42, 14), (30, -30, 11), (-50, 0, 9), (50, 0, 8)]:
        s.circle(cx, cy, r, fill=ink, opacity=0.85)
    # the leaper in a handstand over the back
    red = SKIN_RED
    s.path("M-10,-64 L-4,-96 L12,-130 M-4,-96 L-20,-128", fill="none", stroke=red, stroke_width=6,
           stroke_linecap="round", stroke_linejoin="round")
    s.path("M-10,-64 L-18,-62 M-10,-64 L0,-62", stroke=red, stroke_width=5, stroke_linecap="round")
    s.circle(-12, -56, 6, fill=red)
    s.path("M-16,-60 C-24,-56 -26,-50 -24,-44", fill="none", stroke=ink, stroke_width=2)
    # one holds the horns, one waits behind with arms out
    fair = "#f3e6d6"
    s.circle(140, -98, 7, fill=fair, stroke=ink, stroke_width=0.8)
    s.path("M140,-90 L146,-60 M142,-84 L124,-92 M142,-80 L118,-78 M146,-60 L138,-36 M146,-60 L158,-40",
           fill="none", stroke=fair, stroke_width=6, stroke_linecap="round")
    s.circle(-170, -60, 7, fill=fair, stroke=ink, stroke_width=0.8)
    s.path("M-170,-52 L-170,-14 M-170,-44 L-190,-60 M-170,-44 L-150,-60 M-170,-14 L-180,14 M-170,-14 L-160,14",
           fill="none", stroke=fair, stroke_width=6, stroke_linecap="round")
    s.end()
    return s
