"""Ground plans of excavated sites, drawn as an archaeologist's sheet.

Walls are thick dark lines on cream paper with a faint grid; open courts are
left pale, rooms that matter to the course are tinted and named.
"""

import math
import random

from kit import *  # noqa: F401,F403
from maps import Map

WALL = "#2f2720"
PAPER = "#f6efdc"


def _sheet(w, h, seed):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill=PAPER)
    for x in range(0, w, 20):
        s.line(x, 0, x, h, stroke="#d9ceb2", stroke_width=0.5)
    for y in range(0, h, 20):
        s.line(0, y, w, y, stroke="#d9ceb2", stroke_width=0.5)
    return s


def _room(s, x, y, w, h, fill="none", width=3):
    s.rect(x, y, w, h, fill=fill, stroke=WALL, stroke_width=width, stroke_linejoin="miter")


def _label(s, x, y, text, size=14, fill="#3b2f22", weight="bold", anchor="middle", style=None,
           rotate=None):
    s.add(f"<text {attrs(x=x, y=y, font_family=SANS, font_size=size, fill=fill, text_anchor=anchor, font_weight=weight, font_style=style, stroke=PAPER, stroke_width=3, stroke_linejoin='round', paint_order='stroke', transform=f'rotate({rotate} {x} {y})' if rotate else None)}>{esc(text)}</text>")


def _north(s, x, y):
    s.poly([(x, y - 30), (x + 10, y + 8), (x, y + 2), (x - 10, y + 8)], fill=WALL)
    s.poly([(x, y - 30), (x - 10, y + 8), (x, y + 2)], fill=PAPER, stroke=WALL, stroke_width=1)
    s.text(x, y - 36, "Β", size=16, family=SERIF, weight="bold", fill=WALL)


def _scale(s, x, y, px_per_m, metres):
    total = px_per_m * metres
    s.rect(x - 10, y - 24, total + 50, 44, fill=PAPER, opacity=0.9)
    for i in range(4):
        s.rect(x + i * total / 4, y, total / 4, 6, fill=WALL if i % 2 == 0 else PAPER,
               stroke=WALL, stroke_width=1)
    s.text(x, y - 6, "0", size=11)
    s.text(x + total / 2, y - 6, str(metres // 2), size=11)
    s.text(x + total, y - 6, str(metres), size=11)
    s.text(x + total + 30, y + 8, "μ", size=12)


def _title(s, text):
    m = Map.__new__(Map)
    m.s = s
    m.title(text)


def knossos_plan(w, h):
    s = _sheet(w, h, 1)
    rnd = random.Random(3)
    # west court, paved, with its raised walks
    s.rect(40, 150, 120, 380, fill="#ece3cb", stroke=WALL, stroke_width=1, stroke_dasharray="6 4")
    s.path("M60,520 L60,300 L150,230 M60,400 L150,400", fill="none", stroke="#b9a77e",
           stroke_width=5)
    # west magazines: long narrow rooms off a corridor
    s.rect(175, 180, 110, 340, fill="#e8dcc0", stroke=WALL, stroke_width=3)
    s.line(265, 180, 265, 520, stroke=WALL, stroke_width=3)
    for i in range(17):
        y = 190 + i * 20
        s.line(175, y, 255, y, stroke=WALL, stroke_width=2.5)
    for i in range(16):
        y = 200 + i * 20
        for k in range(3):
            s.circle(195 + k * 22, y, 4, fill="#c28a5a", stroke=WALL, stroke_width=0.8)
    # throne room and the rooms beside the court
    s.rect(285, 180, 65, 100, fill="#f2c8b0", stroke=WALL, stroke_width=3)
    s.rect(295, 200, 20, 22, fill="#c0392b", stroke=WALL, stroke_width=1)
    for y in range(290, 520, 38):
        _room(s, 285, y, 65, 38)
    # the central court
    s.rect(350, 190, 150, 300, fill="#fbf6e8", stroke=WALL, stroke_width=3.5)
    # north entrance passage
    s.rect(395, 80, 50, 110, fill="#e8dcc0", stroke=WALL, stroke_width=3)
    s.line(420, 80, 420, 190, stroke=WALL, stroke_width=1, stroke_dasharray="4 4")
    for x, y, w_, h_ in [(300, 80, 95, 100), (445, 80, 110, 100), (555, 110, 80, 70)]:
        _room(s, x, y, w_, h_)
    # east wing with the grand staircase
    s.rect(500, 190, 190, 330, fill="none", stroke=WALL, stroke_width=3)
    for x, y, w_, h_ in [(500, 190, 70, 60), (570, 190, 120, 60), (500, 250, 60, 60),
                         (620, 250, 70, 80), (500, 420, 90, 100), (590, 420, 100, 100),
                         (620, 330, 70, 90)]:
        _room(s, x, y, w_, h_)
    s.rect(515, 320, 70, 80, fill="#e8dcc0", stroke=WALL, stroke_width=3)
    for i in range(9):
        s.line(515, 328 + i * 8, 585, 328 + i * 8, stroke=WALL, stroke_width=1.2)
    # south rooms
    for x in range(285, 500, 54):
        _room(s, x, 520, 54, 50)
    _label(s, 425, 340, "Κεντρική αυλή", size=16)
    _label(s, 318, 162, "Αίθουσα του θρόνου", size=14, anchor="middle")
    s.line(318, 167, 318, 195, stroke="#c0392b", stroke_width=1.5)
    _label(s, 210, 355, "Δυτικές αποθήκες", size=15, rotate=-90)
    _label(s, 100, 560, "Δυτική αυλή", size=15)
    _label(s, 420, 66, "Βόρεια είσοδος", size=14)
    _label(s, 550, 314, "Μεγάλο", size=13)
    _label(s, 550, 412, "κλιμακοστάσιο", size=13)
    _label(s, 745, 350, "Ανατολική πτέρυγα", size=15, rotate=90)
    _title(s, "Η Κνωσός")
    _north(s, w - 50, 80)
    _scale(s, w - 200, h - 34, 5.2, 20)
    frame(s, color=WALL, width=3)
    return s


def akrotiri_plan(w, h):
    s = _sheet(w, h, 2)
    street = "#e9dfc4"
    # the Telchines street winding from south to north, opening into the Triangle square
    st = [(380, 600), (390, 520), (370, 440), (392, 360), (380, 280), (400, 210)]
    s.path(smooth(st, closed=False), fill="none", stroke="#cdbf9c", stroke_width=46,
           stroke_linecap="round")
    s.path(smooth(st, closed=False), fill="none", stroke=street, stroke_width=40,
           stroke_linecap="round")
    s.poly([(330, 210), (470, 170), (440, 260)], fill=street, stroke="#cdbf9c", stroke_width=3)
    # a side street to the east
    s.path("M400,380 C470,370 540,390 620,360", fill="none", stroke=street, stroke_width=28)
    houses = [
        (210, 150, 120, 110, "Δυτική Οικία", "#d7cbb0"),
        (110, 440, 190, 150, "Ξεστή 3", "#d7cbb0"),
        (430, 420, 150, 110, None, "#cfc6b2"),
        (470, 230, 170, 120, "Τομέας Γάμμα", "#d7cbb0"),
        (230, 300, 120, 110, None, "#cfc6b2"),
        (480, 80, 120, 80, None, "#cfc6b2"),
        (50, 260, 130, 120, None, "#cfc6b2"),
        (600, 420, 90, 130, None, "#cfc6b2"),
    ]
    for x, y, w_, h_, name, fill in houses:
        s.rect(x, y, w_, h_, fill=fill, stroke=WALL, stroke_width=3.5)
        # inner walls: each house is divided into a few rooms
        s.line(x + w_ * 0.45, y, x + w_ * 0.45, y + h_ * 0.7, stroke=WALL, stroke_width=2)
        s.line(x, y + h_ * 0.55, x + w_ * 0.45, y + h_ * 0.55, stroke=WALL, stroke_width=2)
        s.line(x + w_ * 0.45, y + h_ * 0.35, x + w_, y + h_ * 0.35, stroke=WALL, stroke_width=2)
        if name:
            _label(s, x + w_ * 0.62, y + h_ * 0.72, name, size=15)
    _label(s, 395, 205, "Πλατεία", size=13)
    _label(s, 395, 221, "του Τριγώνου", size=13)
    _label(s, 382, 470, "Οδός των Τελχινών", size=14, rotate=-84)
    _title(s, "Ο οικισμός του Ακρωτηρίου")
    _north(s, w - 50, 80)
    _scale(s, w - 200, h - 34, 12, 10)
    frame(s, color=WALL, width=3)
    return s


def delos_plan(w, h):
    s = Svg(w, h)
    s.rect(0, 0, w, h, fill="#a9cfe3")
    land = [(250, -20), (230, 80), (200, 160), (215, 230), (170, 300), (190, 380), (160, 470),
            (200, 560), (250, 660), (820, 660), (820, -20)]
    s.path(smooth(land, closed=False) + " Z", fill="#efe6c8", stroke=MAP_LAND_EDGE,
           stroke_width=1.5)
    # the hill of Kynthos with contour lines
    for i, r in enumerate([150, 115, 80, 45]):
        s.ellipse(640, 470, r * 1.1, r * 0.8, fill=["#e6d9b0", "#ddcc98", "#d4bf84", "#cab06f"][i],
                  stroke="#a8915a", stroke_width=1)
    # sacred harbour: a mole and the shore
    s.path("M215,250 L130,230 L125,245 L205,262", fill="#d8cca8", stroke=WALL, stroke_width=1.5)
    # the Sacred Way to the temples
    way = "M230,330 L300,280 L365,235"
    s.path(way, fill="none", stroke="#c9b88a", stroke_width=22, stroke_linecap="round")
    s.path(way, fill="none", stroke=WALL, stroke_width=1, stroke_dasharray="3 5")
    temples = [(370, 196, 70, 40), (392, 262, 50, 30), (455, 226, 46, 30)]
    for x, y, w_, h_ in temples:
        s.rect(x, y, w_, h_, fill="#f7f1e0", stroke=WALL, stroke_width=2.5)
        for k in range(int(w_ // 8)):
            s.circle(x + 4 + k * 8, y + 4, 1.8, fill=WALL)
            s.circle(x + 4 + k * 8, y + h_ - 4, 1.8, fill=WALL)
    _label(s, 405, 186, "Ναός των Δηλίων", size=13)
    _label(s, 420, 312, "Ναός των Αθηναίων", size=13)
    _label(s, 510, 246, "Πώρινος ναός", size=13, anchor="start")
    # sacred lake, dry, and the terrace of the lions looking over it
    s.ellipse(570, 95, 62, 32, fill="#e3d6b0", stroke=WALL, stroke_width=1.5,
              stroke_dasharray="5 3")
    _label(s, 570, 100, "Ιερή λίμνη", size=13)
    for i in range(5):
        y = 52 + i * 18
        s.rect(470, y - 4, 14, 8, fill=STONE, stroke=WALL, stroke_width=0.8)
        s.circle(486, y - 2, 3, fill=STONE, stroke=WALL, stroke_width=0.8)
    _label(s, 458, 96, "Άνδηρο των λεόντων", size=13, anchor="end")
    _label(s, 640, 476, "Όρος Κύνθος", size=16)
    _label(s, 160, 205, "Ιερό λιμάνι", size=14)
    _label(s, 300, 318, "Ιερά Οδός", size=14, rotate=-36)
    s.add(f'<text x="70" y="420" font-family="{SERIF}" font-size="16" font-style="italic" '
          f'fill="#3f6f92" letter-spacing="3" transform="rotate(-80 70 420)">ΘΑΛΑΣΣΑ</text>')
    _title(s, "Το ιερό του Απόλλωνα στη Δήλο")
    s.poly([(w - 50, 60), (w - 40, 98), (w - 50, 92), (w - 60, 98)], fill=WALL)
    s.text(w - 50, 54, "Β", size=16, family=SERIF, weight="bold", fill=WALL)
    _scale(s, 40, h - 34, 2.0, 100)
    frame(s, color=WALL, width=3)
    return s
