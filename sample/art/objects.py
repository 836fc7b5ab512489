"""Illustrations of objects: figurines, vessels, tablets, coins, statues.

Each drawing is a function of the picture's width and height that returns an
Svg; the shapes are laid out in a 100-unit box and scaled, so one drawing
serves a large picture for a source and a small one for a comment tip.
"""

import math
import random

from kit import *  # noqa: F401,F403


def _unit(s, box_w, box_h, margin=0.06):
    """Opens a group that maps a box_w x box_h design onto the picture, centred."""
    k = min(s.w * (1 - 2 * margin) / box_w, s.h * (1 - 2 * margin) / box_h)
    ox = (s.w - box_w * k) / 2
    oy = (s.h - box_h * k) / 2
    s.group(transform=f"translate({fmt(ox)},{fmt(oy)}) scale({k:.4f})")
    return k


# Frying-pan vessel --------------------------------------------------------------

def frying_pan(w, h):
    """The back of a Cycladic 'frying pan': incised spirals round a longboat."""
    s = Svg(w, h)
    museum(s, floor=0.9, wall="#e6dccb")
    _unit(s, 140, 110, margin=0.05)
    shadow(s, 72, 100, 52, 6)
    clay = s.radial("clay", [(0, "#8c7a68"), (1, "#5a4b3d")], cx=0.45, cy=0.4)
    # handle, two short legs at the bottom
    s.path("M52,88 L46,104 L56,104 L60,90 Z M92,88 L98,104 L88,104 L84,90 Z", fill="#4d3f33")
    s.circle(72, 52, 46, fill=clay, stroke="#3a2e24", stroke_width=1.5)
    s.circle(72, 52, 42, fill="none", stroke="#c9bba6", stroke_width=0.8, opacity=0.8)
    inc = "#d8ccb8"
    # running spirals, the incised pattern filling the upper field
    rnd = random.Random(4)
    for ring, (rr, n, r0) in enumerate([(33, 14, 4.5), (22, 9, 4.2)]):
        for i in range(n):
            a = math.pi * (1.02 + i / (n - 1) * 0.96) if ring == 0 else math.pi * (1.08 + i / (n - 1) * 0.84)
            cx, cy = 72 + rr * math.cos(a), 56 + rr * math.sin(a) * 0.95
            if cy > 60:
                continue
            spiral(s, cx, cy, r0, turns=1.6, color=inc, width=0.7, direction=1 if i % 2 else -1)
    # the sea: spirals below and the longboat with its fish standard
    s.line(36, 64, 108, 64, stroke=inc, stroke_width=0.7)
    s.path("M40,70 L100,70 L106,60 M40,70 L37,66", fill="none", stroke=inc, stroke_width=1.4,
           stroke_linecap="round")
    for x in range(44, 100, 4):
        s.line(x, 70, x - 1, 75, stroke=inc, stroke_width=0.6)
    s.path("M106,60 L106,54 M103,55 L109,55 L106,52 Z", stroke=inc, stroke_width=0.8, fill="none")
    s.path("M100,52 q3,-3 6,0 q-3,3 -6,0 Z M106,52 l2,-2 l0,4 Z", fill=inc)
    for i in range(5):
        spiral(s, 50 + i * 11, 82, 3.6, turns=1.4, color=inc, width=0.6, direction=1 if i % 2 else -1)
    # pubic triangle near the handle, as on several pans
    s.path("M66,90 L78,90 L72,96 Z", fill="none", stroke=inc, stroke_width=0.8)
    s.end()
    return s


# Kouros -----------------------------------------------------------------------------

def kouros(w, h, unfinished=False):
    """A standing archaic youth, left foot forward; unfinished, he lies in the quarry."""
    s = Svg(w, h)
    if unfinished:
        sky_and_sea(s, h * 0.3, seed=7)
        hills(s, h * 0.36, [18, 30, 22], OLIVE_LIGHT, seed=3)
        hills(s, h * 0.5, [25, 14, 30], "#b9a77a", seed=5)
        ground = s.linear("ground", [(0, "#c9b88e"), (1, "#a3926a")])
        s.rect(0, h * 0.5, w, h * 0.5, fill=ground)
        # grass tufts
        rnd = random.Random(8)
        for _ in range(40):
            x, y = rnd.uniform(0, w), rnd.uniform(h * 0.52, h)
            s.path(f"M{fmt(x)},{fmt(y)} l-3,-7 M{fmt(x)},{fmt(y)} l1,-9 M{fmt(x)},{fmt(y)} l4,-6",
                   stroke=OLIVE, stroke_width=1.2, fill="none")
        # lying figure, seen from above, rough-hewn
        s.group(transform=f"translate({fmt(w * 0.5)},{fmt(h * 0.74)}) rotate(-84) scale({fmt(h / 300)})")
        _kouros_body(s, rough=True)
        s.end()
        return s
    museum(s, floor=0.9, wall="#dde0de")
    _unit(s, 100, 230, margin=0.03)
    shadow(s, 50, 224, 32, 4)
    s.rect(28, 214, 44, 10, fill=MARBLE_SHADE, stroke=STONE, stroke_width=0.6)
    s.group(transform="translate(50,0)")
    _kouros_body(s)
    s.end()
    s.end()
    return s


def _kouros_body(s, rough=False):
    fill = s.linear("kourosg", [(0, "#fbf7ee"), (0.6, "#ece5d6"), (1, "#cfc6b3")], x2=1, y2=0)
    if rough:
        fill = s.linear("roughg", [(0, "#f2ecdf"), (1, "#cbc1ab")], x2=1, y2=0)
    edge = STONE_DARK
    # body as one outline; x relative to the axis, y from the top of the head
    right = [
        (0, 4), (7, 6), (10, 14), (9, 24), (7, 30), (7, 35),            # head, chin, neck
        (19, 39), (25, 44), (26, 56),                                   # shoulder
        (27, 80), (28, 100), (27, 112), (25, 114), (22, 110),           # arm to the fist
        (20, 96), (19, 80), (18, 62),                                   # inner arm
        (16, 84), (17, 104), (16, 118),                                 # waist and hip
        (16, 140), (15, 160), (14, 178), (13, 196), (15, 206), (12, 208), # left leg (back)
        (5, 206), (6, 180), (4, 150), (1, 124),
    ]
    left = [
        (-1, 124), (-4, 150), (-8, 180), (-10, 204), (-13, 212), (-20, 212),  # front leg, forward
        (-18, 200), (-16, 178), (-17, 160), (-17, 140), (-16, 118),
        (-17, 104), (-16, 84), (-18, 62),
        (-19, 80), (-20, 96), (-22, 110), (-25, 114), (-27, 112), (-28, 100), (-27, 80),
        (-26, 56), (-25, 44), (-19, 39), (-7, 35), (-7, 30), (-9, 24), (-10, 14), (-7, 6),
    ]
    s.path(smooth(right + left, tension=0.35), fill=fill, stroke=edge, stroke_width=1)
    if rough:
        rnd = random.Random(11)
        for _ in range(60):
            x, y = rnd.uniform(-22, 22), rnd.uniform(10, 200)
            s.line(x, y, x + rnd.uniform(-3, 3), y + rnd.uniform(2, 5), stroke=STONE, stroke_width=0.6)
        return
    # hair falling on the shoulders, beaded
    s.path("M-9,10 C-10,22 -11,32 -12,41 Q0,44 12,41 C11,32 10,22 9,10 C6,3 -6,3 -9,10 Z",
           fill="#e2d8c4", stroke=edge, stroke_width=0.7)
    for y in range(14, 42, 3):
        for x in (-10.5, 9):
            s.line(x, y, x + 1.5, y, stroke=STONE, stroke_width=0.5)
    s.path("M-8.6,10 Q0,5 8.6,10", fill="none", stroke=STONE_DARK, stroke_width=1.2)
    # the neck in front of the hair, so the braids fall behind it onto the shoulders
    s.path("M-6,26 L-6.5,42 L6.5,42 L6,26 Z", fill=fill)
    s.path("M-6,28 L-6.5,41 M6,28 L6.5,41", fill="none", stroke=STONE, stroke_width=0.7)
    s.path("M-7,12 C-7,27 -4,31 0,32 C4,31 7,27 7,12 C4,8 -4,8 -7,12 Z", fill="#f4eee1",
           stroke=edge, stroke_width=0.7)
    # archaic smile, almond eyes
    s.path("M-4,18 q2,-1.5 3.5,0 M0.5,18 q2,-1.5 3.5,0", fill="none", stroke=edge, stroke_width=0.7)
    s.path("M-2.6,26 q2.6,1.6 5.2,0", fill="none", stroke=edge, stroke_width=0.7)
    s.path("M0,19 L1.2,24 L-1.2,24", fill="none", stroke=STONE, stroke_width=0.5)
    # chest, ribs, abdomen and the knees
    s.path("M-14,60 q7,6 13,1 M1,61 q6,5 13,-1", fill="none", stroke=STONE, stroke_width=0.8)
    s.path("M-10,86 q10,4 20,0 M-10,96 q10,3 20,0", fill="none", stroke=MARBLE_DARK, stroke_width=0.6)
    s.path("M-14,114 q14,10 28,0", fill="none", stroke=STONE, stroke_width=0.8)
    s.path("M-11,168 q3,2 5,0 M5,168 q3,2 5,0", fill="none", stroke=STONE, stroke_width=0.7)
    s.line(0, 124, 0, 128, stroke=STONE, stroke_width=0.6)


# Owl coin ---------------------------------------------------------------------------

def owl_coin(w, h):
    """A silver tetradrachm of Athens, the owl side, with ΑΘΕ and the olive twig."""
    s = Svg(w, h)
    bg = s.radial("velvet", [(0, "#34506a"), (1, "#1b2c3c")], r=0.8)
    s.rect(0, 0, w, h, fill=bg)
    _unit(s, 100, 100, margin=0.06)
    shadow(s, 52, 54, 44, 44, opacity=0.45)
    coin = s.radial("coin", [(0, "#eef0f2"), (0.7, SILVER), (1, SILVER_DARK)], cx=0.4, cy=0.35)
    # a hammered coin is never quite round
    s.ellipse(50, 50, 45, 43.5, fill=coin, stroke="#6f757c", stroke_width=1)
    # the die struck the blank a little off centre, inside a sunken square
    clip = s.define("coinclip", '<clipPath id="coinclip"><ellipse cx="50" cy="50" rx="44" '
                    'ry="42.5"/></clipPath>')
    s.rect(19, 14, 70, 72, rx=9, fill="#b9bec4", opacity=0.45, stroke="#8f959c",
           stroke_width=0.8, clip_path=clip)
    dark = "#5d646b"
    # the owl, facing out, body in profile
    s.path(smooth([(52, 30), (62, 34), (66, 48), (64, 64), (58, 76), (50, 80), (42, 74),
                   (40, 60), (42, 42), (45, 33)]), fill="#dfe2e5", stroke=dark, stroke_width=1)
    s.circle(54, 34, 11, fill="#e9ebed", stroke=dark, stroke_width=1)
    s.circle(49.5, 33, 4.4, fill="#f8f8f8", stroke=dark, stroke_width=1)
    s.circle(58.5, 33, 4.4, fill="#f8f8f8", stroke=dark, stroke_width=1)
    s.circle(49.5, 33, 1.8, fill=dark)
    s.circle(58.5, 33, 1.8, fill=dark)
    s.path("M54,36 l-1.5,3.5 l3,0 Z", fill=dark)
    for y in range(48, 74, 5):
        for x in range(46, 62, 5):
            s.path(f"M{x},{y} q2,2 4,0", fill="none", stroke="#8b9299", stroke_width=0.7)
    s.path("M60,50 C66,58 66,68 60,76", fill="none", stroke=dark, stroke_width=1)
    s.path("M46,80 l-2,4 M50,81 l0,4 M54,80 l2,4", stroke=dark, stroke_width=1)
    # olive twig and crescent, top left
    s.path("M22,30 C28,26 34,24 40,24", fill="none", stroke=dark, stroke_width=1)
    for x, y, a in [(26, 27, -40), (32, 25, -20), (37, 23, -50)]:
        s.ellipse(x, y - 3, 1.6, 4, fill="#c2c7cc", stroke=dark, stroke_width=0.6,
                  transform=f"rotate({a} {x} {y - 3})")
    s.path("M26,42 a6,6 0 1,0 6,-7 a4.5,4.5 0 1,1 -6,7 Z", fill="#c2c7cc", stroke=dark, stroke_width=0.6)
    # ΑΘΕ read downwards on the right
    s.text(78, 44, "Α", size=11, family=SERIF, fill=dark, weight="bold")
    s.text(78, 58, "Θ", size=11, family=SERIF, fill=dark, weight="bold")
    s.text(78, 72, "Ε", size=11, family=SERIF, fill=dark, weight="bold")
    s.end()
    return s


# Linear B tablet -------------------------------------------------------------------

LINEAR_B = [
    # simple stroke signs in the manner of the script: syllables, a man, a tripod, numerals
    "M0,0 L0,10 M-4,3 L4,3 M-4,7 L4,7",
    "M-4,10 L0,0 L4,10 M-2,5 L2,5",
    "M-4,0 L4,0 L4,10 L-4,10 Z M0,0 L0,10",
    "M0,0 L0,10 M0,5 L4,0 M0,5 L4,10",
    "M-4,10 L-4,0 L4,10 L4,0",
    "M-3,0 A3,3 0 1,0 3,0 M0,3 L0,10 M-3,7 L3,7",
    "M-4,0 L4,0 M0,0 L0,10 M-4,10 L4,10",
    "M-4,5 A4,5 0 1,0 4,5 A4,5 0 1,0 -4,5 M0,0 L0,10",
]


# Inscription stone -------------------------------------------------------------------

def inscription(w, h, lines=None):
    """A marble stele with a decree cut in capitals, stoichedon."""
    lines = lines or [
        "ΕΔΟΞΕΝΤΕΙΒΟΛΕΙ",
        "ΚΑΙΤΟΙΔΕΜΟΙΝΑΞ",
        "ΙΟΙΣΚΑΙΠΑΡΙΟΙΣ",
        "ΦΙΛΙΑΝΕΙΝΑΙΚΑΙ",
        "ΣΥΜΜΑΧΙΑΝΤΟΝΔΕ",
        "ΛΙΟΝΤΟΣΙΕΡΟΝΕΝ",
        "ΔΕΛΟΙΑΝΑΘΕΙΝΑΙ",
    ]
    s = Svg(w, h)
    museum(s, floor=0.92, wall="#e2ddd3")
    _unit(s, 120, 170, margin=0.03)
    shadow(s, 60, 166, 50, 4)
    stone = s.linear("stele", [(0, "#f1ece1"), (1, "#d3cab7")], x2=1, y2=0.3)
    s.path("M14,18 L106,18 L108,164 L12,164 Z", fill=stone, stroke=STONE_DARK, stroke_width=1)
    s.path("M8,8 L112,8 L112,18 L8,18 Z", fill="#e9e2d3", stroke=STONE_DARK, stroke_width=1)
    # broken lower right corner
    s.path("M108,140 L96,150 L100,158 L90,164 L108,164 Z", fill="#e2ddd3", stroke=STONE_DARK,
           stroke_width=0.8)
    for r, text in enumerate(lines):
        y = 34 + r * 15
        for c, ch in enumerate(text):
            x = 19 + c * 5.8
            if x > 96 and y > 140:
                continue
            s.text(x, y, ch, size=7.6, family=SANS, fill="#4c443a", weight="bold",
                   font_stretch="condensed")
    rnd = random.Random(2)
    for _ in range(25):
        x, y = rnd.uniform(16, 104), rnd.uniform(20, 160)
        s.line(x, y, x + rnd.uniform(-4, 4), y + rnd.uniform(-2, 2), stroke=STONE, stroke_width=0.4,
               opacity=0.7)
    s.end()
    return s


def dark_backdrop(s, color="#3a3d42", edge="#1e2023"):
    """The museum photographer's grey sweep: light behind, dark at the edges."""
    g = s.radial("darkbg", [(0, color), (1, edge)], cx=0.45, cy=0.4, r=0.75)
    s.rect(0, 0, s.w, s.h, fill=g)


def black_backdrop(s):
    dark_backdrop(s, "#24211f", "#0c0b0a")


# Figurines -------------------------------------------------------------------------

def figurine(w, h):
    """A folded-arm marble figurine of the Early Cycladic age, on a dark backdrop."""
    s = Svg(w, h)
    dark_backdrop(s)
    _unit(s, 100, 200, margin=0.04)
    shadow(s, 50, 193, 30, 4, opacity=0.6)
    s.group(transform="rotate(-4 50 180)")
    _figurine_body(s)
    s.end()
    s.end()
    return s


def _figurine_body(s, scale=1.0):
    marble = s.linear("marbleg", [(0, "#fdfbf6"), (0.5, MARBLE), (1, "#bfb6a4")], x2=1, y2=0)
    half = [
        (50, 6), (55, 6), (59, 9), (59.5, 18), (56, 28),
        (55, 34), (55, 40),
        (66, 44), (72, 50), (71, 60),
        (68, 74), (66, 88), (64, 100),
        (63, 112), (61, 124), (58, 140),
        (57, 152), (56, 164), (57, 172),
        (55, 180), (51, 181),
        (50, 160),
    ]
    s.path(smooth(mirror(half, 50)), fill=marble, stroke="#8f8676", stroke_width=0.8)
    s.path("M50,11 L52.5,23 L50,24 Z", fill=MARBLE_DARK, opacity=0.6)
    s.line(50, 11, 50, 24, stroke=STONE_DARK, stroke_width=0.5)
    # upper arms marked off from the chest, then the forearms folded across the stomach,
    # the right one below the left, sloping a little
    s.path("M37,48 C34,58 34,68 36,74 M63,48 C66,58 66,68 64,76", fill="none",
           stroke=MARBLE_DARK, stroke_width=0.9)
    s.path("M35,74 L66,77 L65.5,83 L34.5,80 Z", fill="#ece6da", stroke=STONE_DARK,
           stroke_width=0.8)
    s.path("M34.5,81 L65.5,84 L64.5,90 L35.5,87 Z", fill="#e4ddcf", stroke=STONE_DARK,
           stroke_width=0.8)
    s.ellipse(44, 64, 3, 2.2, fill=MARBLE_DARK, opacity=0.35)
    s.ellipse(56, 64, 3, 2.2, fill=MARBLE_DARK, opacity=0.35)
    s.path("M42,112 L58,112 L50,124 Z", fill="none", stroke=MARBLE_DARK, stroke_width=0.9)
    s.path("M50,124 L50,178", stroke=STONE_DARK, stroke_width=1)
    s.path("M42,146 q4,2 7,0 M51,146 q4,2 7,0", fill="none", stroke=MARBLE_DARK, stroke_width=0.7)


def harp_player(w, h):
    s = Svg(w, h)
    dark_backdrop(s)
    _unit(s, 120, 140, margin=0.05)
    shadow(s, 60, 134, 44, 4, opacity=0.6)
    m = s.linear("harpm", [(0, "#fdfbf6"), (0.6, MARBLE), (1, "#b9b09e")], x2=1, y2=0.2)
    edge = "#8f8676"
    # the high-backed chair
    s.path("M30,134 L30,70 L26,36 L34,36 L38,70 L70,70 L70,134 L64,134 L64,80 L36,80 L36,134 Z",
           fill=m, stroke=edge, stroke_width=0.8)
    # the seated man: body, thighs forward, lower legs down
    s.path("M40,72 L44,38 C46,32 54,32 56,38 L60,70 Z", fill=m, stroke=edge, stroke_width=0.8)
    s.path("M40,72 L82,70 L84,78 L42,82 Z", fill=m, stroke=edge, stroke_width=0.8)
    s.path("M76,72 L82,72 L84,126 L88,132 L78,132 L76,126 Z", fill=m, stroke=edge, stroke_width=0.8)
    # head tilted up as if singing, the long neck
    s.path("M47,36 L48,24 L54,24 L55,36 Z", fill=m, stroke=edge, stroke_width=0.8)
    # the head tipped back, long and flat like the other figurines, with a jutting nose
    s.path(smooth([(42, 20), (44, 8), (52, 2), (61, 4), (64, 12), (60, 22), (53, 27), (46, 27)]),
           fill=m, stroke=edge, stroke_width=0.8)
    s.path("M60,10 L67,14 L61,18", fill=m, stroke=edge, stroke_width=0.7)
    # the harp: a triangle resting on his knee, the swan-neck end at the top
    s.path("M70,72 L74,22 C78,16 86,16 88,22 L86,26 L94,68 Z", fill="none", stroke=m,
           stroke_width=4.5, stroke_linejoin="round")
    s.path("M70,72 L74,22 C78,16 86,16 88,22 L86,26 L94,68 Z", fill="none", stroke=edge,
           stroke_width=0.6, stroke_linejoin="round")
    for i in range(5):
        s.line(74 + i * 3.5, 30 + i * 8, 76 + i * 3.5, 68, stroke="#d8d0c0", stroke_width=0.6)
    # arms: one to the frame, one plucking
    s.path("M54,40 C62,46 68,44 74,38", fill="none", stroke=m, stroke_width=4, stroke_linecap="round")
    s.path("M48,42 C52,56 64,58 82,52", fill="none", stroke=m, stroke_width=4, stroke_linecap="round")
    s.path("M54,40 C62,46 68,44 74,38 M48,42 C52,56 64,58 82,52", fill="none", stroke=edge,
           stroke_width=0.4)
    s.end()
    return s


def figurine_head(w, h):
    s = Svg(w, h)
    dark_backdrop(s)
    _unit(s, 100, 130, margin=0.05)
    shadow(s, 50, 124, 28, 4, opacity=0.6)
    m = s.radial("headm", [(0, "#fdfbf6"), (0.7, MARBLE), (1, "#b8af9c")], cx=0.4, cy=0.35)
    s.path("M38,124 L40,96 L60,96 L62,124 Z", fill="#d9d2c2", stroke="#8f8676", stroke_width=0.8)
    s.ellipse(50, 56, 30, 44, fill=m, stroke="#8f8676", stroke_width=0.9,
              transform="rotate(-8 50 56)")
    s.path("M50,30 L55,74 L48,76 Z", fill="#d2cab8", stroke="#a39a88", stroke_width=0.6)
    # faint paint: red dotted lines on the cheeks, the ghost of eyes
    for x0, sign in [(33, 1), (67, -1)]:
        for i in range(6):
            s.circle(x0 + sign * i * 0.4, 60 + i * 4, 0.9, fill="#c0533a", opacity=0.45)
    s.path("M34,48 q6,-4 12,0 q-6,3 -12,0 Z M56,46 q6,-4 12,0 q-6,3 -12,0 Z", fill="none",
           stroke="#8a8f99", stroke_width=0.8, opacity=0.5)
    s.end()
    return s


def paint_traces(w, h):
    s = Svg(w, h)
    dark_backdrop(s)
    _unit(s, 100, 120, margin=0.02)
    m = s.radial("facem", [(0, "#fdfbf6"), (0.75, MARBLE), (1, "#c2b9a6")], cx=0.4, cy=0.35)
    s.ellipse(50, 60, 42, 56, fill=m, stroke="#8f8676", stroke_width=1)
    s.path("M50,22 L56,80 L47,82 Z", fill="#d6cfbe", stroke="#a39a88", stroke_width=0.6)
    for x0, sign in [(22, 1), (78, -1)]:
        for i in range(7):
            s.circle(x0 + sign * i * 0.8, 58 + i * 5, 1.6, fill="#c0442a", opacity=0.8)
    s.path("M24,46 q9,-7 18,0 q-9,5 -18,0 Z M58,46 q9,-7 18,0 q-9,5 -18,0 Z", fill="#9aa3ae",
           fill_opacity=0.35, stroke="#6f7b88", stroke_width=1.4)
    s.circle(33, 46, 2.2, fill="#6f7b88")
    s.circle(67, 46, 2.2, fill="#6f7b88")
    s.end()
    return s


def three_figurines(w, h):
    s = Svg(w, h)
    dark_backdrop(s)
    _unit(s, 240, 200, margin=0.05)
    m = s.linear("tfm", [(0, "#fdfbf6"), (0.6, MARBLE), (1, "#b9b09e")], x2=1, y2=0)
    # violin-shaped: a flat body with a long neck
    s.path(smooth([(40, 60), (58, 70), (64, 100), (56, 124), (62, 150), (50, 172), (30, 172),
                   (18, 150), (24, 124), (16, 100), (22, 70)]), fill=m, stroke="#8f8676",
           stroke_width=0.9)
    s.rect(36, 26, 8, 40, rx=3, fill=m, stroke="#8f8676", stroke_width=0.9)
    s.path("M34,132 L46,132 L40,142 Z", fill="none", stroke="#a39a88", stroke_width=1)
    s.path("M26,96 C32,100 48,100 54,96", fill="none", stroke="#a39a88", stroke_width=0.8,
           opacity=0.6)
    # folded-arm in the middle, the tallest
    s.group(transform="translate(70,6) scale(1)")
    _figurine_body(s)
    s.end()
    # small schematic one: a pebble with a notch for the neck
    s.path(smooth([(200, 120), (210, 112), (220, 120), (218, 134), (228, 150), (222, 176),
                   (198, 176), (192, 150), (202, 134)]), fill=m, stroke="#8f8676", stroke_width=0.9)
    for x, y, r in [(40, 180, 26), (120, 192, 30), (210, 182, 20)]:
        shadow(s, x, y, r, 3, opacity=0.5)
    s.end()
    return s


def apollo_sepia(w, h):
    """The kouros again, drawn in sepia on toned paper as in an old handbook."""
    s = Svg(w, h)
    paper_ = s.radial("sepiapaper", [(0, "#e6d2ac"), (1, "#c2a272")], r=0.8)
    s.rect(0, 0, w, h, fill=paper_)
    s.define("sepiaf", '<filter id="sepiaf"><feColorMatrix type="matrix" values="'
             '0.39 0.77 0.19 0 0  0.35 0.69 0.17 0 0  0.27 0.53 0.13 0 0  0 0 0 1 0"/></filter>')
    _unit(s, 100, 230, margin=0.04)
    shadow(s, 50, 224, 32, 4, opacity=0.45)
    s.group(filter="url(#sepiaf)")
    s.rect(28, 214, 44, 10, fill=MARBLE_SHADE, stroke=STONE_DARK, stroke_width=0.6)
    s.group(transform="translate(50,0)")
    _kouros_body(s)
    s.end()
    s.end()
    s.end()
    frame(s, color="#6a4a2a", width=5)
    return s


# Obsidian, emery, pumice ----------------------------------------------------------

def _obsidian_core_shape(s, cx, base, hgt, ident="obs"):
    g = s.linear(ident, [(0, "#4a4d55"), (0.35, "#15161a"), (0.7, "#2a2c33"), (1, "#0b0b0d")],
                 x2=1, y2=0)
    wid = hgt * 0.55
    s.path(f"M{fmt(cx - wid / 2)},{fmt(base)} L{fmt(cx - wid * 0.18)},{fmt(base - hgt)} "
           f"L{fmt(cx + wid * 0.18)},{fmt(base - hgt)} L{fmt(cx + wid / 2)},{fmt(base)} "
           f"Q{fmt(cx)},{fmt(base + hgt * 0.06)} {fmt(cx - wid / 2)},{fmt(base)} Z", fill=g,
           stroke="#000", stroke_width=0.8)
    s.ellipse(cx, base - hgt, wid * 0.18, wid * 0.05, fill="#3d4048", stroke="#000",
              stroke_width=0.6)
    # long flake scars running down, with a glint on each ridge
    for i in range(-3, 4):
        t = i / 3
        s.line(cx + t * wid * 0.16, base - hgt + 2, cx + t * wid * 0.45, base - 2,
               stroke="#6a6e78", stroke_width=0.8, opacity=0.8)
    s.line(cx - wid * 0.05, base - hgt + 4, cx - wid * 0.15, base - 6, stroke="#ffffff",
           stroke_width=1.6, opacity=0.5)


def _blade(s, x, y, length, angle, width=6):
    """A long prismatic blade: parallel sides, a ridge down the middle, thin grey edges."""
    s.group(transform=f"translate({fmt(x)},{fmt(y)}) rotate({fmt(angle)})")
    half = width / 2
    outline = (f"M0,0 C{fmt(length * 0.04)},{fmt(-half)} {fmt(length * 0.1)},{fmt(-half)} {fmt(length * 0.2)},{fmt(-half)} "
               f"L{fmt(length * 0.85)},{fmt(-half * 0.9)} C{fmt(length * 0.95)},{fmt(-half * 0.7)} {fmt(length)},{fmt(-half * 0.2)} {fmt(length)},0 "
               f"C{fmt(length)},{fmt(half * 0.3)} {fmt(length * 0.95)},{fmt(half * 0.8)} {fmt(length * 0.85)},{fmt(half)} "
               f"L{fmt(length * 0.2)},{fmt(half)} C{fmt(length * 0.1)},{fmt(half)} {fmt(length * 0.04)},{fmt(half)} 0,0 Z")
    s.path(outline, fill="#8e949e", opacity=0.75)
    inner = s.linear("bladecore", [(0, "#3a3d45"), (0.5, "#0e0f12"), (1, "#2c2f36")], x2=0, y2=1)
    s.path(outline, fill=inner, stroke="#5d636d", stroke_width=0.8,
           transform=f"translate({fmt(length * 0.01)},0) scale(0.985,0.6)")
    s.line(length * 0.05, -half * 0.1, length * 0.95, -half * 0.1, stroke="#cfd4db",
           stroke_width=0.8, opacity=0.7)
    s.end()


def obsidian_blades(w, h):
    s = Svg(w, h)
    cloth = s.radial("cloth", [(0, "#e4e6e8"), (1, "#bfc3c7")], r=0.8)
    s.rect(0, 0, w, h, fill=cloth)
    rnd = random.Random(3)
    for _ in range(300):
        x, y = rnd.uniform(0, w), rnd.uniform(0, h)
        s.line(x, y, x + 4, y + 1, stroke="#aeb2b6", stroke_width=0.5, opacity=0.5)
    k = h / 420
    shadow(s, w * 0.24, h * 0.74, 70 * k, 10 * k, opacity=0.35)
    _obsidian_core_shape(s, w * 0.24, h * 0.74, 220 * k)
    for i in range(6):
        y = h * (0.2 + i * 0.1)
        shadow(s, w * 0.66, y + 10 * k, 130 * k, 4 * k, opacity=0.25)
        _blade(s, w * 0.46 + rnd.uniform(-6, 6), y, w * 0.4 - i * 5, rnd.uniform(-2, 2), width=26 * k)
    # a 5 cm scale at the foot
    x0, y0 = w * 0.52, h * 0.9
    unit = 20 * k
    for i in range(5):
        s.rect(x0 + i * unit, y0, unit, 7 * k, fill="#1a1a1a" if i % 2 == 0 else "#f4f4f4",
               stroke="#1a1a1a", stroke_width=0.8)
    s.text(x0 + 5 * unit + 8, y0 + 7 * k, "5 εκ.", size=12 * k + 2, anchor="start", fill="#1a1a1a")
    return s


def obsidian_core(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#fbfbfa")
    shadow(s, w * 0.5, h * 0.86, w * 0.3, 5, opacity=0.3)
    _obsidian_core_shape(s, w * 0.5, h * 0.86, h * 0.72)
    return s


def obsidian_lump(w, h):
    s = Svg(w, h)
    black_backdrop(s)
    shadow(s, w * 0.5, h * 0.8, w * 0.35, 8, opacity=0.6)
    g = s.linear("lump", [(0, "#4d515b"), (0.4, "#111216"), (1, "#26282e")], x2=1, y2=1)
    pts_ = [(0.18, 0.7), (0.22, 0.4), (0.4, 0.22), (0.62, 0.2), (0.8, 0.35), (0.84, 0.62),
            (0.7, 0.8), (0.35, 0.82)]
    s.poly([(w * x, h * y) for x, y in pts_], fill=g, stroke="#000", stroke_width=1)
    # the shell-like fracture: ripples round a point of impact
    cx, cy = w * 0.55, h * 0.42
    for r in range(10, 80, 12):
        s.path(f"M{fmt(cx - r)},{fmt(cy + r * 0.3)} A{r},{fmt(r * 0.7)} 0 0,1 {fmt(cx + r * 0.8)},{fmt(cy - r * 0.2)}",
               fill="none", stroke="#8a909c", stroke_width=1.1, opacity=0.55)
    s.path(f"M{fmt(w * 0.3)},{fmt(h * 0.38)} Q{fmt(w * 0.45)},{fmt(h * 0.28)} {fmt(w * 0.62)},{fmt(h * 0.27)}",
           fill="none", stroke="#ffffff", stroke_width=3, opacity=0.45, stroke_linecap="round")
    return s


def emery(w, h):
    s = Svg(w, h)
    wood = s.linear("wood", [(0, "#9a6a40"), (1, "#7a5030")])
    s.rect(0, 0, w, h, fill=wood)
    for y in range(0, h, 9):
        s.path(f"M0,{y} Q{w / 2},{y + 4} {w},{y - 2}", fill="none", stroke="#6a4428", stroke_width=1,
               opacity=0.6)
    rnd = random.Random(5)
    for i, (cx, cy, r) in enumerate([(0.25, 0.4, 0.17), (0.6, 0.35, 0.2), (0.42, 0.72, 0.16),
                                     (0.8, 0.7, 0.13)]):
        pts_ = [(w * cx + h * r * math.cos(a) * rnd.uniform(0.75, 1.2),
                 h * cy + h * r * math.sin(a) * rnd.uniform(0.7, 1.1))
                for a in [k * math.pi / 4 for k in range(8)]]
        shadow(s, w * cx + 4, h * cy + h * r * 0.8, h * r, 4, opacity=0.4)
        s.poly(pts_, fill="#3a3b3e" if i != 1 else "#2d2e31", stroke="#161618", stroke_width=1)
        if i == 1:
            # broken face glittering
            s.poly(pts_[1:5] + [(w * cx, h * cy)], fill="#5c5f66")
            for _ in range(40):
                x = w * cx + rnd.uniform(-h * r * 0.5, h * r * 0.5)
                y = h * cy + rnd.uniform(0, h * r * 0.7)
                s.circle(x, y, rnd.uniform(0.5, 1.3), fill="#e9edf2", opacity=rnd.uniform(0.4, 1))
    return s


def pumice(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#dde3e6")
    # a glass bowl of water with one stone floating
    s.ellipse(w * 0.62, h * 0.62, w * 0.32, h * 0.28, fill="#bcd6e2", opacity=0.8, stroke="#8fb0c0",
              stroke_width=1.5)
    s.ellipse(w * 0.62, h * 0.5, w * 0.3, h * 0.07, fill="#d8ebf2", stroke="#8fb0c0", stroke_width=1)
    rnd = random.Random(7)

    def stone(cx, cy, rx, ry):
        s.ellipse(cx, cy, rx, ry, fill="#eeebe4", stroke="#b5b0a5", stroke_width=1)
        for _ in range(int(rx * ry / 12)):
            a = rnd.uniform(0, 2 * math.pi)
            rr = rnd.uniform(0, 0.85)
            s.circle(cx + rx * rr * math.cos(a), cy + ry * rr * math.sin(a), rnd.uniform(0.6, 1.8),
                     fill="#a9a397")

    stone(w * 0.62, h * 0.49, w * 0.12, h * 0.07)
    stone(w * 0.18, h * 0.74, w * 0.11, h * 0.1)
    stone(w * 0.32, h * 0.86, w * 0.09, h * 0.07)
    return s


def lychnites(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#1c1a18")
    glow = s.radial("glow", [(0, "#fff2c8"), (0.5, "#f1c987"), (1, "#b98a4e")], cx=0.45, cy=0.4)
    blur = s.blur("halo", 10)
    s.rect(w * 0.2, h * 0.12, w * 0.6, h * 0.76, fill="#f4d9a0", opacity=0.6, filter=blur)
    s.rect(w * 0.22, h * 0.14, w * 0.56, h * 0.72, fill=glow, stroke="#e6c48a", stroke_width=1)
    for i in range(5):
        s.path(f"M{fmt(w * 0.24)},{fmt(h * (0.2 + i * 0.13))} q{fmt(w * 0.2)},-8 {fmt(w * 0.52)},6", fill="none",
               stroke="#e2b877", stroke_width=1, opacity=0.6)
    return s


# Tablets and writing -----------------------------------------------------------------

def linear_b(w, h):
    """A leaf-shaped tablet: two lines of signs, then a ram and its number."""
    s = Svg(w, h)
    black_backdrop(s)
    _unit(s, 170, 70, margin=0.05)
    clay = s.linear("tablet", [(0, "#a8998a"), (1, "#7d6c5c")], x2=0.3, y2=1)
    outline = [(4, 30), (20, 16), (80, 10), (150, 12), (166, 28), (160, 48), (120, 58),
               (60, 60), (14, 52)]
    s.path(smooth(outline, tension=0.35), fill=clay, stroke="#4b3f33", stroke_width=1)
    for x, y in [(40, 14), (130, 56), (160, 40)]:
        s.path(f"M{x},{y} l3,4 l-2,4 l4,3", fill="none", stroke="#4b3f33", stroke_width=0.7)
    s.line(14, 34, 158, 34, stroke="#5a4c3e", stroke_width=0.6)
    ink = "#3a2f26"
    rnd = random.Random(8)
    x = 20
    for _ in range(11):
        s.path(LINEAR_B[rnd.randrange(len(LINEAR_B))], fill="none", stroke=ink, stroke_width=1,
               transform=f"translate({x},20) scale(0.9)")
        x += 11.5
    x = 20
    for _ in range(5):
        s.path(LINEAR_B[rnd.randrange(len(LINEAR_B))], fill="none", stroke=ink, stroke_width=1,
               transform=f"translate({x},39) scale(0.9)")
        x += 11.5
    # the ideogram of a ram and the tally: tens as circles, units as strokes
    s.path("M86,49 L86,40 L96,40 L96,49 M86,40 L82,37 M96,40 L100,37 M84,44 L98,44", fill="none",
           stroke=ink, stroke_width=1.1)
    for i in range(3):
        s.circle(108 + i * 6, 44, 2, fill="none", stroke=ink, stroke_width=1)
    for i in range(4):
        s.line(128 + i * 4, 39, 128 + i * 4, 49, stroke=ink, stroke_width=1)
    s.end()
    return s


def ideograms(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#f6ecd4")
    ink = INK
    signs = [
        ("άλογο", "M-12,6 L-8,-4 L6,-4 L10,-10 L14,-8 L10,-2 L10,8 M-8,-4 L-8,8 M6,-4 L6,8"),
        ("πρόβατο", "M-8,8 L-8,-4 L8,-4 L8,8 M-8,-4 L-12,-8 M8,-4 L12,-8 M-10,2 L10,2"),
        ("σιτάρι", "M0,10 L0,-10 M0,-6 L-6,-10 M0,-6 L6,-10 M0,0 L-6,-4 M0,0 L6,-4 M0,6 L-6,2 M0,6 L6,2"),
        ("λάδι", "M-6,10 L6,10 L8,-2 L4,-8 L-4,-8 L-8,-2 Z M-2,-8 L-2,-12 L2,-12 L2,-8"),
        ("κρασί", "M-8,10 L8,10 L6,-6 L-6,-6 Z M-6,-6 L-10,-12 M6,-6 L10,-12 M-4,0 L4,0"),
        ("τρίποδας", "M-10,-6 L10,-6 L8,2 L-8,2 Z M-8,2 L-12,12 M0,2 L0,12 M8,2 L12,12 M-6,-6 L-8,-12 M6,-6 L8,-12"),
    ]
    cols, rows = 3, 2
    cw, ch = w / cols, h / rows
    for i, (word, d) in enumerate(signs):
        cx = cw * (i % cols + 0.5)
        cy = ch * (i // cols + 0.42)
        s.path(d, fill="none", stroke=ink, stroke_width=1.8, stroke_linejoin="round",
               transform=f"translate({fmt(cx)},{fmt(cy)}) scale({fmt(min(cw, ch) / 40)})")
        s.text(cx, cy + ch * 0.44, word, size=13, family=SERIF, fill="#5a2f1c", style="italic")
    for i in range(1, cols):
        s.line(cw * i, 8, cw * i, h - 8, stroke="#d3c3a0", stroke_width=1)
    s.line(8, ch, w - 8, ch, stroke="#d3c3a0", stroke_width=1)
    return s


def linear_a(w, h):
    s = Svg(w, h)
    museum(s, floor=0.85, wall="#e3dccd")
    _unit(s, 120, 90, margin=0.06)
    shadow(s, 60, 84, 48, 4)
    clay = s.linear("latab", [(0, "#d4b48c"), (1, "#a98560")], x2=0.3, y2=1)
    s.path("M10,8 L112,6 L114,80 L8,82 Z", fill=clay, stroke="#6d4c2e", stroke_width=1,
           stroke_linejoin="round")
    ink = "#5a3c22"
    for y in (28, 52):
        s.line(14, y, 108, y, stroke="#7b5735", stroke_width=0.6)
    # a jar, a branch, a double axe among simpler signs
    s.path("M18,24 L26,24 L28,16 L24,12 L20,12 L16,16 Z", fill="none", stroke=ink, stroke_width=1.1)
    s.path("M36,24 L36,10 M36,14 L32,11 M36,18 L40,15 M36,20 L32,18", fill="none", stroke=ink,
           stroke_width=1.1)
    s.path("M50,10 L50,24 M44,12 Q50,17 44,22 Z M56,12 Q50,17 56,22 Z", fill="none", stroke=ink,
           stroke_width=1.1)
    rnd = random.Random(12)
    x = 66
    for row, y in enumerate((12, 36, 60)):
        while x < 104:
            s.path(LINEAR_B[rnd.randrange(len(LINEAR_B))], fill="none", stroke=ink, stroke_width=1,
                   transform=f"translate({x},{y}) scale(0.9)")
            x += 12
        x = 18
    s.end()
    return s


def phaistos_disc(w, h):
    s = Svg(w, h)
    black_backdrop(s)
    _unit(s, 100, 100, margin=0.05)
    clay = s.radial("disc", [(0, "#e2c69a"), (0.8, "#cfae80"), (1, "#a98a60")], cx=0.45, cy=0.4)
    s.circle(50, 50, 46, fill=clay, stroke="#6d5030", stroke_width=0.8)
    ink = "#6b4a2a"
    # the spiral band and its divisions
    pts_ = []
    for i in range(200):
        t = i / 199
        a = t * 4.6 * math.pi
        r = 44 - t * 34
        pts_.append((50 + r * math.cos(a), 50 + r * math.sin(a)))
    s.path(smooth(pts_, closed=False), fill="none", stroke=ink, stroke_width=0.7)
    glyphs = [
        "M0,-2.5 a2,2 0 1,1 0.1,0 M-2,-1 L-3,-4 M0,-2.8 L0,-5.5 M2,-1 L3,-4",  # crested head
        "M-3,0 Q0,-2.5 3,0 Q0,2.5 -3,0 Z M3,0 L4.5,-1.5 L4.5,1.5 Z",             # fish
        "M-3.5,1 L3.5,1 L2.5,2.5 L-2.5,2.5 Z M0,1 L0,-3 L2,-1.5",                 # ship
        "M0,3 L0,-1 M-2,-1 a2,2 0 1,1 4,0 a2,2 0 1,1 -4,0",                      # flower
        "M0,0 m-2.6,0 a2.6,2.6 0 1,0 5.2,0 a2.6,2.6 0 1,0 -5.2,0 M-1,-1 h0.1 M1,1 h0.1",  # shield
    ]
    # signs stand in the band between the turns, divided into groups by short bars
    band = 34 / 2.3
    rnd = random.Random(17)
    a = 0.25
    count = 0
    while True:
        t = a / (4.6 * math.pi)
        r = 44 - t * 34 - band / 2
        if r < 7 or t > 1:
            break
        x, y = 50 + r * math.cos(a), 50 + r * math.sin(a)
        sc = min(1.25, 0.55 + r / 40)
        s.path(glyphs[rnd.randrange(len(glyphs))], fill="none", stroke=ink, stroke_width=0.55,
               transform=f"translate({fmt(x)},{fmt(y)}) rotate({fmt(math.degrees(a) + 90)}) scale({fmt(sc)})")
        step = 6.2 / max(r, 1)
        count += 1
        if count % 3 == 0:
            a2 = a + step / 2
            s.line(50 + (r - band / 2) * math.cos(a2), 50 + (r - band / 2) * math.sin(a2),
                   50 + (r + band / 2) * math.cos(a2), 50 + (r + band / 2) * math.sin(a2),
                   stroke=ink, stroke_width=0.5)
        a += step
    s.end()
    return s


def _capitals(s, x, y, w, rows, size, seed, fill="#4c443a", gap=1.35, col_break=None):
    letters = "ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ"
    rnd = random.Random(seed)
    per_row = int(w / (size * 0.78))
    for r in range(rows):
        row = "".join(rnd.choice(letters) for _ in range(per_row))
        if col_break:
            row = row[:col_break] + "  " + "".join(rnd.choice("ΙΔΗΧΠ") for _ in range(3))
        s.text(x, y + r * size * gap, row, size=size, family=SANS, fill=fill, anchor="start",
               weight="bold", letter_spacing=size * 0.05)


def parian_chronicle(w, h):
    s = Svg(w, h)
    dark_backdrop(s, "#4a4a48", "#242422")
    _unit(s, 120, 150, margin=0.04)
    st = s.linear("slab", [(0, "#e2ddd2"), (1, "#a8a192")], x2=1, y2=0.2)
    s.path("M6,10 L70,6 L80,12 L114,8 L112,60 L116,96 L104,142 L60,146 L30,138 L8,142 L4,80 Z",
           fill=st, stroke="#6f6a5f", stroke_width=1)
    clip = s.define("slabclip", '<clipPath id="slabclip"><path d="M8,12 L70,8 L80,14 L112,10 '
                    'L110,60 L114,96 L102,140 L60,144 L30,136 L10,140 L6,80 Z"/></clipPath>')
    s.group(clip_path=clip)
    _capitals(s, 9, 18, 104, 30, 4.2, 31, fill="#5a554c", gap=1.08)
    s.end()
    # light from the side: a soft shade across
    shade = s.linear("sideshade", [(0, "#ffffff", 0.15), (1, "#000000", 0.25)], x2=1, y2=0)
    s.path("M6,10 L70,6 L80,12 L114,8 L112,60 L116,96 L104,142 L60,146 L30,138 L8,142 L4,80 Z",
           fill=shade)
    s.end()
    return s


def tribute_list(w, h):
    s = Svg(w, h)
    museum(s, floor=0.94, wall="#e2ddd3")
    _unit(s, 80, 120, margin=0.04)
    st = s.linear("stele2", [(0, "#f1ece1"), (1, "#cfc6b3")], x2=1, y2=0.3)
    s.path("M6,6 L74,4 L76,112 L50,116 L44,108 L30,116 L4,112 Z", fill=st, stroke=STONE_DARK,
           stroke_width=0.8)
    for col, x in enumerate((9, 42)):
        _capitals(s, x, 14, 28, 16, 4.4, 50 + col, col_break=5, gap=1.35)
    s.line(40, 8, 40, 108, stroke="#a59c8a", stroke_width=0.5)
    s.end()
    return s


# Small things ---------------------------------------------------------------------

def longboat(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#f6ecd4")
    _unit(s, 200, 80, margin=0.05)
    ink = INK
    s.path("M10,52 L170,52 L186,14 L190,14 L178,56 L14,56 L4,46 Z", fill=ink)
    s.line(186, 14, 186, 2, stroke=ink, stroke_width=1.5)
    s.path("M180,2 q6,-4 12,0 q-6,4 -12,0 Z M192,2 l4,-3 l0,6 Z", fill=ink)
    s.path("M4,46 L-2,48", stroke=ink, stroke_width=2)
    for x in range(20, 170, 6):
        s.line(x, 56, x - 4, 70, stroke=ink, stroke_width=1.4)
    s.end()
    return s


def double_axe(w, h):
    s = Svg(w, h)
    dark_backdrop(s, "#33302c", "#141210")
    _unit(s, 100, 130, margin=0.05)
    br = s.linear("bronze", [(0, "#e0b070"), (0.5, "#b07a3a"), (1, "#6e4a22")], x2=1, y2=0)
    s.rect(46, 20, 8, 108, fill="#6e4a2a", stroke="#3a2414", stroke_width=0.8)
    s.path("M50,30 C40,34 24,28 8,14 C4,30 4,50 8,66 C24,52 40,46 50,50 C60,46 76,52 92,66 "
           "C96,50 96,30 92,14 C76,28 60,34 50,30 Z", fill=br, stroke="#5a3a1a", stroke_width=1)
    s.path("M12,20 C10,34 10,48 12,60 M88,20 C90,34 90,48 88,60", fill="none", stroke="#f4d49a",
           stroke_width=1.2, opacity=0.8)
    s.end()
    return s


def bed_cast(w, h):
    s = Svg(w, h)
    ash = s.linear("ashbg", [(0, "#9c978f"), (1, "#7d7871")])
    s.rect(0, 0, w, h, fill=ash)
    rnd = random.Random(21)
    for _ in range(120):
        s.circle(rnd.uniform(0, w), rnd.uniform(0, h), rnd.uniform(0.5, 1.6), fill="#5f5b55",
                 opacity=0.5)
    # a simple bed frame on four legs, in white plaster, seen at an angle
    white = "#f4f2ec"
    edge = "#a7a39a"
    x0, y0, x1, y1 = w * 0.15, h * 0.35, w * 0.85, h * 0.55
    s.poly([(x0, y0), (x1, y0 - 10), (x1 + 10, y1 - 10), (x0 + 10, y1)], fill=white, stroke=edge,
           stroke_width=1)
    for i in range(1, 7):
        t = i / 7
        s.line(x0 + (x1 - x0) * t, y0 - 10 * t, x0 + 10 + (x1 - x0) * t, y1 - 10 * t, stroke=edge,
               stroke_width=0.8)
    for x, y in [(x0, y0), (x1, y0 - 10), (x0 + 10, y1), (x1 + 10, y1 - 10)]:
        s.rect(x - 3, y, 7, h * 0.3, fill=white, stroke=edge, stroke_width=1)
    return s


def melos_coin(w, h):
    s = Svg(w, h)
    bg = s.radial("velvet2", [(0, "#5a2e3a"), (1, "#2a1218")], r=0.8)
    s.rect(0, 0, w, h, fill=bg)
    _unit(s, 100, 100, margin=0.08)
    shadow(s, 52, 54, 44, 44, opacity=0.5)
    coin = s.radial("coin2", [(0, "#eef0f2"), (0.7, SILVER), (1, SILVER_DARK)], cx=0.4, cy=0.35)
    s.ellipse(50, 50, 45, 43, fill=coin, stroke="#6f757c", stroke_width=1)
    dark = "#5d646b"
    s.path(smooth([(50, 30), (64, 34), (72, 50), (66, 70), (50, 78), (34, 70), (28, 50), (36, 34)]),
           fill="#d7dadd", stroke=dark, stroke_width=1.4)
    s.path("M50,30 C48,24 48,20 52,14", fill="none", stroke=dark, stroke_width=2)
    s.path("M52,18 C60,10 70,12 74,16 C66,22 58,22 52,18 Z", fill="#c8ccd0", stroke=dark,
           stroke_width=1)
    s.path("M38,42 Q42,36 48,35", fill="none", stroke="#f4f5f6", stroke_width=2.5,
           stroke_linecap="round")
    s.path("M50,74 l-2,3 l4,0 Z", fill=dark)
    s.text(50, 94, "ΜΑΛΙΟΝ", size=8, family=SERIF, fill=dark, weight="bold")
    s.end()
    return s
