"""The course's maps and site plans.

A map projects the outlines of geo.py (plate carrée, shrunk east-west by the
cosine of the middle latitude, as school atlases of the region do), paints sea
and land, and sets its Greek labels by hand-chosen offsets so that none of
them covers another.

Maps are for pupils to colour in the painter: the sea, each island and each
land is one flat colour, with no gradients, blurs or wave marks, so that the
fill bucket takes a whole sea or a whole island at once. Only the edges are
anti-aliased.
"""

import math

import geo
from kit import *  # noqa: F401,F403

KM_PER_DEG = 111.2


class Map:
    def __init__(self, w, h, lon0, lon1, lat0, lat1, seed=1):
        self.s = Svg(w, h)
        self.k = math.cos(math.radians((lat0 + lat1) / 2))
        sx = w / ((lon1 - lon0) * self.k)
        sy = h / (lat1 - lat0)
        self.scale = min(sx, sy)  # pixels per degree of latitude
        cx, cy = (lon0 + lon1) / 2, (lat0 + lat1) / 2
        self.cx, self.cy = cx, cy
        self.seed = seed

    def px(self, lon, lat):
        s = self.s
        return (s.w / 2 + (lon - self.cx) * self.k * self.scale,
                s.h / 2 - (lat - self.cy) * self.scale)

    def km(self, km):
        return km / KM_PER_DEG * self.scale

    # painting --------------------------------------------------------------
    def sea(self):
        s = self.s
        s.rect(0, 0, s.w, s.h, fill=MAP_SEA)

    def land(self, names=None, fill=MAP_LAND, extra=None, continent=True, fills=None):
        """The land, each piece one colour, with a thin coastline."""
        s = self.s
        fills = fills or {}
        polys = []
        if continent:
            polys.append(("", geo.CONTINENT))
        for n in (names if names is not None else geo.ISLANDS):
            polys.append((n, geo.ISLANDS[n]))
        for n, p in (extra or []):
            polys.append((n, p))
        # the continent keeps its gulfs only with a looser curve
        paths = [(n, smooth([self.px(*q) for q in p], tension=0.45 if n else 0.25))
                 for n, p in polys]
        for n, d in paths:
            s.path(d, fill=fills.get(n, fill), stroke=MAP_LAND_EDGE, stroke_width=1.1,
                   stroke_linejoin="round")
        return dict(paths)

    def label(self, text, lon, lat, dx=0, dy=0, size=14, family=SANS, fill="#3b2f22",
              weight=None, style=None, anchor="middle", halo="#fbf6e8", spacing=None):
        x, y = self.px(lon, lat)
        self.s.add(
            f"<text {attrs(x=x + dx, y=y + dy, font_family=family, font_size=size, fill=fill, text_anchor=anchor, font_weight=weight, font_style=style, letter_spacing=spacing, stroke=halo, stroke_width=3 if halo else None, stroke_linejoin='round', paint_order='stroke')}>{esc(text)}</text>")

    def sea_label(self, text, lon, lat, size=18, rotate=0, spacing=4):
        x, y = self.px(lon, lat)
        self.s.add(
            f"<text {attrs(x=x, y=y, font_family=SERIF, font_size=size, fill='#3f6f92', text_anchor='middle', font_style='italic', letter_spacing=spacing, transform=f'rotate({rotate} {fmt(x)} {fmt(y)})' if rotate else None)}>{esc(text)}</text>")

    def dot(self, lon, lat, r=4.5, fill="#c0392b"):
        x, y = self.px(lon, lat)
        self.s.circle(x, y, r, fill=fill, stroke="#ffffff", stroke_width=1.5)

    def square(self, lon, lat, a=10, fill="#c0392b"):
        x, y = self.px(lon, lat)
        self.s.rect(x - a / 2, y - a / 2, a, a, fill=fill, stroke="#ffffff", stroke_width=1.5)

    def star(self, lon, lat, r=10, fill="#c0392b"):
        x, y = self.px(lon, lat)
        p = []
        for i in range(10):
            a = -math.pi / 2 + i * math.pi / 5
            rr = r if i % 2 == 0 else r * 0.45
            p.append((x + rr * math.cos(a), y + rr * math.sin(a)))
        self.s.poly(p, fill=fill, stroke="#5a2a10", stroke_width=1)

    def volcano(self, lon, lat, size=12):
        x, y = self.px(lon, lat)
        s = self.s
        s.poly([(x - size, y + size * 0.6), (x - size * 0.25, y - size * 0.6),
                (x + size * 0.25, y - size * 0.6), (x + size, y + size * 0.6)],
               fill="#c0392b", stroke="#5a1a10", stroke_width=1)
        for a in (-50, -90, -130):
            r = math.radians(a)
            s.line(x + math.cos(r) * size * 0.7, y - size * 0.6 + math.sin(r) * size * 0.7,
                   x + math.cos(r) * size * 1.3, y - size * 0.6 + math.sin(r) * size * 1.3,
                   stroke="#c0392b", stroke_width=1.6, stroke_linecap="round")

    def relief(self, lon, lat, rx, ry, color=MAP_HILL):
        """A patch of high ground, in one colour."""
        x, y = self.px(lon, lat)
        self.s.ellipse(x, y, rx, ry, fill=color)
        for i in range(3):
            self.s.path(f"M{fmt(x - rx * 0.5 + i * rx * 0.4)},{fmt(y + 4)} l{fmt(rx * 0.15)},-9 l{fmt(rx * 0.15)},9",
                        fill="none", stroke="#9c8450", stroke_width=1.2)

    def arrow(self, a, b, bend=0.15, color="#c0392b", dash="8 5", width=2.2):
        (x1, y1), (x2, y2) = self.px(*a), self.px(*b)
        mx, my = (x1 + x2) / 2, (y1 + y2) / 2
        nx, ny = -(y2 - y1) * bend, (x2 - x1) * bend
        qx, qy = mx + nx, my + ny
        # stop short of the target so that the head does not cover the dot
        L = math.hypot(x2 - qx, y2 - qy)
        ex, ey = x2 - (x2 - qx) / L * 8, y2 - (y2 - qy) / L * 8
        self.s.path(f"M{fmt(x1)},{fmt(y1)} Q{fmt(qx)},{fmt(qy)} {fmt(ex)},{fmt(ey)}", fill="none",
                    stroke=color, stroke_width=width, stroke_dasharray=dash, stroke_linecap="round")
        ang = math.atan2(ey - qy, ex - qx)
        h = 11
        self.s.poly([(ex + math.cos(ang) * 2, ey + math.sin(ang) * 2),
                     (ex - h * math.cos(ang - 0.45), ey - h * math.sin(ang - 0.45)),
                     (ex - h * math.cos(ang + 0.45), ey - h * math.sin(ang + 0.45))], fill=color)

    # furniture -------------------------------------------------------------
    def title(self, text, sub=None, x=14, y=14, size=20, right=False):
        s = self.s
        width = len(text) * size * 0.6 + 34
        if sub:
            width = max(width, len(sub) * 13 * 0.58 + 34)
        if right:
            x = s.w - width - x
        height = size + 24 + (20 if sub else 0)
        s.rect(x + 3, y + 3, width, height, fill="#000000", opacity=0.15, rx=4)
        s.rect(x, y, width, height, fill="#fbf3dd", stroke="#7a5a30", stroke_width=1.5, rx=4)
        s.rect(x + 4, y + 4, width - 8, height - 8, fill="none", stroke=OCHRE, stroke_width=1, rx=2)
        s.text(x + width / 2, y + size + 9, text, size=size, family=SERIF, fill="#4a2e14",
               weight="bold")
        if sub:
            s.text(x + width / 2, y + size + 30, sub, size=13, family=SERIF, fill="#4a2e14",
                   style="italic")

    def compass(self, x, y, r=34):
        s = self.s
        s.circle(x, y, r * 0.78, fill="#fbf3dd", stroke="#7a5a30", stroke_width=1, opacity=0.9)
        for i in range(8):
            a = math.radians(i * 45 - 90)
            long = i % 2 == 0
            rr = r * (0.95 if long else 0.55)
            w = r * 0.16
            tip = (x + rr * math.cos(a), y + rr * math.sin(a))
            left = (x + w * math.cos(a - math.pi / 2), y + w * math.sin(a - math.pi / 2))
            right = (x + w * math.cos(a + math.pi / 2), y + w * math.sin(a + math.pi / 2))
            s.poly([tip, left, (x, y)], fill="#7a5a30" if long else OCHRE_DARK)
            s.poly([tip, right, (x, y)], fill="#fbf3dd" if long else OCHRE_LIGHT,
                   stroke="#7a5a30", stroke_width=0.7)
        s.circle(x, y, 2.5, fill="#7a5a30")
        s.text(x, y - r - 5, "Β", size=15, family=SERIF, fill="#4a2e14", weight="bold")

    def scalebar(self, x, y, km, step=None, label_unit="χλμ", meters=False):
        s = self.s
        total = self.km(km) if not meters else km
        n = 4
        seg = total / n
        s.rect(x - 8, y - 22, total + 40, 42, fill="#fbf3dd", opacity=0.85, rx=3)
        for i in range(n):
            s.rect(x + i * seg, y, seg, 6, fill="#3b2f22" if i % 2 == 0 else "#fbf3dd",
                   stroke="#3b2f22", stroke_width=1)
        s.text(x, y - 6, "0", size=11, fill="#3b2f22")
        half = step / 2
        half = str(int(half)) if half == int(half) else f"{half:g}".replace(".", ",")
        s.text(x + total / 2, y - 6, half, size=11, fill="#3b2f22")
        s.text(x + total, y - 6, f"{step}", size=11, fill="#3b2f22")
        s.text(x + total + 6, y + 16, label_unit, size=11, fill="#3b2f22", anchor="end")

    def frame(self):
        frame(self.s, color="#5a4630", width=3)



# The maps ------------------------------------------------------------------------

def cyclades(w, h):
    m = Map(w, h, 23.9, 26.15, 36.12, 38.1, seed=4)
    m.sea()
    m.land()
    for name, dx, dy in [
        ("Άνδρος", 36, -6), ("Τήνος", 42, 0), ("Μύκονος", 48, 6), ("Δήλος", 6, 20),
        ("Σύρος", -44, 2), ("Κέα", -34, 4), ("Κύθνος", -44, 4), ("Σέριφος", -50, 4),
        ("Σίφνος", -46, 6), ("Μήλος", -10, 36), ("Πάρος", 4, 5), ("Αντίπαρος", -14, 34),
        ("Νάξος", 0, 5), ("Κέρος", 20, 22), ("Αμοργός", 26, 28), ("Ίος", 0, 34),
        ("Θήρα", 44, 6), ("Φολέγανδρος", -40, 26),
    ]:
        lons, lats = zip(*geo.ISLANDS[name])
        lon, lat = sum(lons) / len(lons), sum(lats) / len(lats)
        m.label(name, lon, lat, dx, dy, size=15, weight="bold")
    # smaller islands in a lighter hand, so the eighteen named ones stand out
    for name, dx, dy in [("Ρήνεια", -32, 4), ("Κίμωλος", 24, -10), ("Σίκινος", 6, -12),
                         ("Ανάφη", 0, 22), ("Κουφονήσια", 32, -10)]:
        lons, lats = zip(*geo.ISLANDS[name])
        m.label(name, sum(lons) / len(lons), sum(lats) / len(lats), dx, dy, size=11,
                fill="#6b5a44", style="italic")
    m.label("Αττική", 23.97, 37.86, 0, 0, size=13, fill="#6b5a44", style="italic")
    m.label("Εύβοια", 24.42, 38.04, 0, 0, size=13, fill="#6b5a44", style="italic")
    m.sea_label("ΑΙΓΑΙΟ ΠΕΛΑΓΟΣ", 25.55, 37.78, size=20, spacing=5)
    m.sea_label("ΚΡΗΤΙΚΟ ΠΕΛΑΓΟΣ", 24.75, 36.38, size=15, spacing=3)
    m.title("Οι Κυκλάδες")
    m.compass(w - 56, h * 0.42)
    m.scalebar(w - 230, h - 40, 50, step=50)
    m.frame()
    return m.s


def _point(m, name, dx, dy, kind="dot", size=13, **kw):
    lon, lat = geo.PLACES[name]
    if kind == "dot":
        m.dot(lon, lat, r=kw.pop("r", 4.5), fill=kw.pop("color", "#c0392b"))
    elif kind == "square":
        m.square(lon, lat, fill=kw.pop("color", "#c0392b"))
    anchor = "start" if dx > 4 else "end" if dx < -4 else "middle"
    m.label(name, lon, lat, dx, dy + 4, size=size, anchor=anchor, **kw)


def aegean_bronze_age(w, h):
    m = Map(w, h, 20.6, 29.4, 34.45, 41.0, seed=5)
    m.sea()
    tint = {n: "#fbe7a6" for n in geo.CYCLADES}
    tint["Κρήτη"] = "#f6c9a0"
    paths = m.land(fill=MAP_LAND, fills=tint)
    # mainland Greece south of Thessaly in pale green: overlay inside the continent
    green = [(20.2, 39.9), (22.9, 39.95), (23.2, 39.3), (24.2, 38.4), (24.1, 37.5),
             (23.3, 36.3), (21.3, 36.4), (20.8, 38.3)]
    clip = m.s.define("landclip", '<clipPath id="landclip"><path d="' + paths[""] + '"/></clipPath>')
    m.s.path(smooth([m.px(*p) for p in green], tension=0.4), fill="#cfe3b0", opacity=0.85,
             clip_path=clip)
    m.s.path(paths[""], fill="none", stroke=MAP_LAND_EDGE, stroke_width=1.1)
    m.s.path(paths["Εύβοια"], fill="#cfe3b0", stroke=MAP_LAND_EDGE, stroke_width=1.1)
    m.label("Ελλαδικός", 22.05, 39.05, size=15, weight="bold", fill="#3f5a22")
    m.label("πολιτισμός", 22.05, 39.05, 0, 17, size=15, weight="bold", fill="#3f5a22")
    m.label("Κυκλαδικός", 26.55, 37.05, 0, 0, size=15, weight="bold", fill="#7a5a10")
    m.label("πολιτισμός", 26.55, 37.05, 0, 17, size=15, weight="bold", fill="#7a5a10")
    m.label("Μινωικός πολιτισμός", 24.9, 35.0, 0, 30, size=15, weight="bold", fill="#8a3f10")
    for name, dx, dy in [("Μυκήνες", -8, 0), ("Αθήνα", 8, -4), ("Κνωσός", 6, -8),
                         ("Φαιστός", -8, 2), ("Ακρωτήρι", 9, 10), ("Φυλακωπή", -9, -6),
                         ("Χαλανδριανή", -9, -4), ("Τροία", 9, 2)]:
        _point(m, name, dx, dy)
    m.label("ΜΙΚΡΑ ΑΣΙΑ", 28.4, 38.7, size=14, fill="#6b5a44", spacing=2)
    m.sea_label("ΑΙΓΑΙΟ ΠΕΛΑΓΟΣ", 25.0, 39.1, size=18, rotate=-8)
    m.sea_label("ΚΡΗΤΙΚΟ ΠΕΛΑΓΟΣ", 25.4, 35.95, size=13, spacing=3)
    m.sea_label("ΙΟΝΙΟ ΠΕΛΑΓΟΣ", 20.9, 37.0, size=13, rotate=-70, spacing=2)
    m.title("Το Αιγαίο στην Εποχή του Χαλκού", sub="3200-1100 π.Χ.")
    m.compass(w - 50, h - 150, r=30)
    m.scalebar(w - 230, h - 36, 100, step=100)
    m.frame()
    return m.s


def obsidian_routes(w, h):
    m = Map(w, h, 20.8, 27.8, 34.7, 40.2, seed=6)
    m.sea()
    m.land(fills={"Μήλος": "#1f1a17"})
    milos = (24.43, 36.71)
    targets = [("Σπήλαιο Φράγχθι", (23.12, 37.42), -0.2, -9, 4),
               ("Κρήτη", (24.9, 35.3), 0.25, 0, 0), ("Νάξος", (25.46, 37.07), -0.2, 0, 0),
               ("Θεσσαλία", (22.4, 39.5), 0.12, 0, 0), ("Αθήνα", (23.73, 37.98), -0.12, 0, 0)]
    for name, pos, bend, dx, dy in targets:
        m.arrow(milos, pos, bend=bend)
    m.dot(23.12, 37.42, r=4.5, fill="#7a2a10")
    m.dot(23.73, 37.98, r=4.5, fill="#7a2a10")
    m.label("Σπήλαιο Φράγχθι", 23.12, 37.42, -9, 4, size=13, anchor="end")
    m.label("Αθήνα", 23.73, 37.98, 8, -6, size=13, anchor="start")
    m.label("Κρήτη", 24.9, 35.3, 0, 26, size=15, weight="bold")
    m.label("Νάξος", 25.46, 37.07, 26, 6, size=13, anchor="start")
    m.label("Θεσσαλία", 22.4, 39.5, 0, -14, size=15, weight="bold")
    m.dot(22.4, 39.5, r=4.5, fill="#7a2a10")
    m.label("Μήλος", 24.43, 36.71, 0, 30, size=15, weight="bold")
    m.sea_label("ΑΙΓΑΙΟ ΠΕΛΑΓΟΣ", 25.4, 38.9, size=17, rotate=-8)
    m.title("Οι δρόμοι του οψιανού της Μήλου", right=True)
    # legend
    s = m.s
    x, y = w - 236, h - 92
    s.rect(x, y, 220, 76, fill="#fbf3dd", stroke="#7a5a30", stroke_width=1.2, rx=4)
    s.rect(x + 14, y + 16, 16, 14, fill="#1f1a17")
    s.text(x + 40, y + 28, "Πηγή οψιανού", size=13, anchor="start")
    s.path(f"M{x + 10},{y + 54} L{x + 30},{y + 54}", stroke="#c0392b", stroke_width=2.2,
           stroke_dasharray="6 4")
    s.poly([(x + 36, y + 54), (x + 28, y + 49), (x + 28, y + 59)], fill="#c0392b")
    s.text(x + 40, y + 59, "Δρόμοι του οψιανού", size=13, anchor="start")
    m.compass(50, h - 70, r=28)
    m.scalebar(100, h - 36, 100, step=100)
    m.frame()
    return m.s


def crete_palaces(w, h):
    m = Map(w, h, 23.35, 26.5, 34.55, 35.95, seed=7)
    m.sea()
    m.land()
    for lon, lat, rx, ry in [(24.02, 35.3, 55, 26), (24.8, 35.22, 50, 26), (25.5, 35.12, 46, 22)]:
        m.relief(lon, lat, rx, ry)
    m.label("Λευκά Όρη", 24.02, 35.3, 0, 34, size=13, fill="#6b4a20", style="italic")
    m.label("Ψηλορείτης", 24.8, 35.22, 0, -30, size=13, fill="#6b4a20", style="italic")
    m.label("Δίκτη", 25.5, 35.12, 0, 32, size=13, fill="#6b4a20", style="italic")
    for name, dx, dy in [("Κνωσός", -10, 22), ("Φαιστός", 12, 18), ("Μάλια", 10, -10),
                         ("Ζάκρος", -12, 4)]:
        lon, lat = geo.PLACES[name]
        m.square(lon, lat)
        anchor = "start" if dx > 4 else "end" if dx < -4 else "middle"
        m.label(name, lon, lat, dx, dy, size=16, weight="bold", anchor=anchor)
    for name, dx, dy in [("Αγία Τριάδα", -8, -8), ("Αμνισός", 10, -6), ("Χανιά", 0, -12)]:
        lon, lat = geo.PLACES[name]
        m.dot(lon, lat, r=4, fill="#2b2420")
        anchor = "start" if dx > 4 else "end" if dx < -4 else "middle"
        m.label(name, lon, lat, dx, dy, size=13, anchor=anchor)
    m.sea_label("ΚΡΗΤΙΚΟ ΠΕΛΑΓΟΣ", 24.9, 35.75, size=20, spacing=5)
    m.sea_label("ΛΙΒΥΚΟ ΠΕΛΑΓΟΣ", 24.9, 34.72, size=20, spacing=5)
    m.title("Τα μινωικά ανάκτορα", y=h - 64)
    s = m.s
    x, y = w - 200, h - 70
    s.rect(x, y, 186, 56, fill="#fbf3dd", stroke="#7a5a30", stroke_width=1.2, rx=4)
    s.rect(x + 12, y + 12, 10, 10, fill="#c0392b")
    s.text(x + 32, y + 22, "Ανάκτορο", size=13, anchor="start")
    s.circle(x + 17, y + 40, 4, fill="#2b2420")
    s.text(x + 32, y + 45, "Άλλος οικισμός", size=13, anchor="start")
    m.compass(46, 56, r=28)
    m.scalebar(w - 420, h - 36, 50, step=50)
    m.frame()
    return m.s


SANTORINI = {
    "Θήρα": [(25.372, 36.472), (25.4, 36.468), (25.428, 36.452), (25.45, 36.43), (25.465, 36.41),
             (25.48, 36.39), (25.486, 36.365), (25.476, 36.348), (25.458, 36.335),
             (25.435, 36.342), (25.41, 36.348), (25.385, 36.347), (25.356, 36.355),
             (25.365, 36.364), (25.39, 36.37), (25.412, 36.374), (25.424, 36.39),
             (25.43, 36.415), (25.425, 36.437), (25.41, 36.455), (25.39, 36.463)],
    "Θηρασιά": [(25.345, 36.452), (25.36, 36.446), (25.355, 36.43), (25.362, 36.412),
                (25.352, 36.4), (25.336, 36.41), (25.33, 36.43), (25.334, 36.446)],
    "Ασπρονήσι": [(25.345, 36.389), (25.352, 36.391), (25.355, 36.386), (25.347, 36.384)],
    "Νέα Καμένη": [(25.385, 36.412), (25.398, 36.416), (25.41, 36.41), (25.408, 36.398),
                   (25.395, 36.394), (25.384, 36.4)],
    "Παλαιά Καμένη": [(25.37, 36.403), (25.378, 36.404), (25.38, 36.396), (25.372, 36.395)],
}


def thera_caldera(w, h):
    m = Map(w, h, 25.3, 25.52, 36.325, 36.485, seed=8)
    m.sea()
    s = m.s
    # the drowned crater: darker water inside the ring
    ring = [(25.36, 36.45), (25.41, 36.458), (25.428, 36.415), (25.415, 36.376),
            (25.37, 36.362), (25.35, 36.395)]
    s.path(smooth([m.px(*p) for p in ring]), fill="#4f8db8")
    fills = {"Νέα Καμένη": "#4a3f3a", "Παλαιά Καμένη": "#4a3f3a"}
    m.land(names=[], continent=False, extra=list(SANTORINI.items()), fills=fills)
    # the cliffs of the caldera: a red-brown band along the inner coast
    inner = SANTORINI["Θήρα"][13:] + [SANTORINI["Θήρα"][0]]
    s.path(smooth([m.px(*p) for p in inner], closed=False), fill="none", stroke="#a0522d",
           stroke_width=4, opacity=0.6)
    m.label("Θήρα", 25.458, 36.39, size=22, weight="bold")
    m.label("Θηρασιά", 25.346, 36.428, -26, 0, size=15, weight="bold", anchor="end")
    m.label("Ασπρονήσι", 25.35, 36.387, -14, 6, size=13, anchor="end")
    m.label("Νέα Καμένη", 25.397, 36.405, 0, -50, size=13, fill="#ffffff", halo="#2f5f80")
    m.label("Παλαιά Καμένη", 25.374, 36.4, 0, 38, size=13, fill="#ffffff", halo="#2f5f80")
    m.label("Καλντέρα", 25.4, 36.44, 0, 0, size=16, fill="#e8f3fa", halo=None, style="italic",
            family=SERIF, spacing=3)
    for name, (lon, lat), dx, dy in [("Ακρωτήρι", (25.404, 36.355), 0, 24),
                                     ("Φηρά", (25.432, 36.418), 10, 5),
                                     ("Οία", (25.376, 36.463), 12, 5)]:
        m.dot(lon, lat, r=5)
        anchor = "start" if dx > 4 else "middle"
        m.label(name, lon, lat, dx, dy, size=14, anchor=anchor, weight="bold")
    m.sea_label("ΚΡΗΤΙΚΟ ΠΕΛΑΓΟΣ", 25.42, 36.33, size=16, spacing=4)
    m.title("Η Θήρα και η καλντέρα σήμερα")
    m.compass(w - 50, 70, r=28)
    m.scalebar(24, h - 36, 5, step=5)
    m.frame()
    return m.s


def delian_league(w, h):
    m = Map(w, h, 20.6, 29.4, 34.6, 41.1, seed=9)
    m.sea()
    member = "#f2b3a0"
    fills = {n: member for n in geo.CYCLADES}
    for n in ["Εύβοια", "Λέσβος", "Χίος", "Σάμος", "Ρόδος", "Κως", "Ικαρία", "Λήμνος",
              "Θάσος", "Σαμοθράκη", "Ίμβρος", "Τένεδος", "Σκύρος", "Σκόπελος", "Κάρπαθος",
              "Αίγινα", "Σαλαμίνα"]:
        fills[n] = member
    fills["Μήλος"] = "#b9b4ab"
    fills["Κύθηρα"] = "#b9b4ab"
    paths = m.land(fills=fills)
    clip = m.s.define("landclip2", '<clipPath id="landclip2"><path d="' + paths[""] + '"/></clipPath>')
    # coasts of the members: Ionia, Chalkidiki, Thrace, Attica; the Peloponnese in grey
    zones = [
        ([(26.0, 40.1), (26.9, 39.8), (27.6, 38.5), (28.3, 37.1), (29.3, 36.5), (28.6, 36.2),
          (27.4, 36.6), (26.9, 37.5), (26.2, 38.4), (25.9, 39.6)], member),
        ([(22.8, 40.8), (24.3, 40.7), (24.6, 40.1), (23.4, 39.8), (22.8, 40.3)], member),
        ([(24.2, 41.1), (26.6, 41.0), (26.7, 40.3), (25.3, 40.75), (24.2, 40.8)], member),
        ([(23.15, 38.3), (24.2, 38.3), (24.2, 37.55), (23.6, 37.75), (23.25, 37.9)], member),
        ([(21.0, 38.35), (22.5, 38.2), (23.0, 37.92), (23.6, 37.45), (23.3, 36.3),
          (21.5, 36.5), (20.9, 37.6)], "#b9b4ab"),
    ]
    for poly, colour in zones:
        m.s.path(smooth([m.px(*p) for p in poly], tension=0.35), fill=colour, opacity=0.95,
                 clip_path=clip)
    m.s.path(paths[""], fill="none", stroke=MAP_LAND_EDGE, stroke_width=1.1)
    m.star(23.73, 37.98, r=14, fill="#c0392b")
    m.label("Αθήνα", 23.73, 37.98, 16, -10, size=15, weight="bold", anchor="start")
    m.star(25.27, 37.4, r=11, fill="#e8b923")
    m.label("Δήλος", 25.27, 37.4, 14, -8, size=14, weight="bold", anchor="start")
    for name, lon, lat, dx, dy in [
        ("Κυκλάδες", 25.1, 36.95, 56, 36), ("Εύβοια", 23.7, 38.6, 10, -18),
        ("Λέσβος", 26.3, 39.2, 0, -24), ("Χίος", 26.0, 38.37, -24, 4),
        ("Σάμος", 26.8, 37.74, -14, 24), ("Ρόδος", 28.0, 36.17, 30, 20),
        ("Ιωνία", 27.6, 38.2, 0, 0), ("Χαλκιδική", 23.7, 40.35, -8, 2), ("Θράκη", 25.3, 40.95, 0, 0),
        ("Μήλος", 24.43, 36.71, -30, 14),
    ]:
        m.label(name, lon, lat, dx, dy, size=14, weight="bold")
    m.label("Πελοπόννησος", 22.2, 37.55, size=13, fill="#4a4640", weight="bold")
    m.label("Σπάρτη και", 22.2, 37.55, 0, 18, size=12, fill="#4a4640", style="italic")
    m.label("σύμμαχοι", 22.2, 37.55, 0, 33, size=12, fill="#4a4640", style="italic")
    m.sea_label("ΑΙΓΑΙΟ ΠΕΛΑΓΟΣ", 25.0, 39.2, size=17, rotate=-8)
    m.title("Η Συμμαχία της Δήλου", sub="478-404 π.Χ.", y=h - 78)
    s = m.s
    x, y = w - 222, h - 86
    s.rect(x, y, 206, 70, fill="#fbf3dd", stroke="#7a5a30", stroke_width=1.2, rx=4)
    s.rect(x + 12, y + 13, 18, 14, fill=member, stroke=MAP_LAND_EDGE)
    s.text(x + 38, y + 25, "Μέλη της Συμμαχίας", size=13, anchor="start")
    s.rect(x + 12, y + 41, 18, 14, fill="#b9b4ab", stroke=MAP_LAND_EDGE)
    s.text(x + 38, y + 53, "Εκτός Συμμαχίας", size=13, anchor="start")
    m.compass(48, 150, r=28)
    m.scalebar(24, h - 130, 100, step=100)
    m.frame()
    return m.s


def eruption_ash(w, h):
    m = Map(w, h, 19.5, 36.5, 29.6, 41.3, seed=10)
    m.sea()
    m.land()
    s = m.s
    thera = m.px(25.4, 36.4)
    # the plume: a fan of grey blown east and south-east by the winds of the day
    fan = [(25.2, 36.55), (26.5, 37.3), (28.5, 37.6), (30.5, 37.1), (31.5, 36.0), (30.0, 34.6),
           (27.5, 34.4), (25.8, 35.1), (25.25, 36.2)]
    s.path(smooth([m.px(*p) for p in fan]), fill="#6f6a66", opacity=0.5)
    core = [(25.3, 36.5), (27.0, 36.95), (29.0, 36.6), (29.4, 35.8), (27.5, 35.2), (25.6, 35.7)]
    s.path(smooth([m.px(*p) for p in core]), fill="#5a5552", opacity=0.35)
    m.volcano(25.4, 36.4, size=11)
    m.label("Θήρα", 25.4, 36.4, -16, 4, size=15, weight="bold", anchor="end")
    for name, lon, lat, dx, dy, size in [
        ("Κρήτη", 24.4, 35.3, 0, 5, 15), ("Ρόδος", 28.0, 36.2, 24, 14, 14),
        ("Κύπρος", 33.2, 35.05, 0, 5, 15), ("Αίγυπτος", 30.5, 30.4, 0, 0, 17),
        ("Μικρά Ασία", 32.0, 38.6, 0, 0, 17), ("Ελλάδα", 21.9, 39.3, 0, 0, 15),
    ]:
        m.label(name, lon, lat, dx, dy, size=size, weight="bold")
    m.sea_label("ΜΕΣΟΓΕΙΟΣ ΘΑΛΑΣΣΑ", 25.5, 33.4, size=20, spacing=5)
    m.sea_label("ΑΙΓΑΙΟ", 25.0, 38.7, size=14, spacing=3)
    m.title("Η τέφρα της έκρηξης", sub="17ος αι. π.Χ.")
    x, y = w - 270, h - 60
    s.rect(x, y, 254, 44, fill="#fbf3dd", stroke="#7a5a30", stroke_width=1.2, rx=4)
    s.rect(x + 12, y + 14, 20, 16, fill="#8a8580", stroke="#5a5552")
    s.text(x + 40, y + 27, "Περιοχή όπου βρέθηκε τέφρα", size=13, anchor="start")
    m.compass(w - 50, 130, r=28)
    m.scalebar(24, h - 36, 200, step=200)
    m.frame()
    return m.s
