"""Shared drawing kit for the sample course's illustrations.

Every picture of the course is drawn from these colours and helpers, so that
objects, sites and maps read as one book. Only the standard library is used:
the scripts write SVG text, and render.sh turns it into PNG or JPEG.
"""

import math
import os
import random

# Palette of the course: the colours of Aegean pottery, stone and sea.
INK = "#2b2420"
TERRACOTTA = "#c8553d"
TERRACOTTA_DARK = "#8e3b2a"
TERRACOTTA_LIGHT = "#e08a6a"
OCHRE = "#d9a441"
OCHRE_LIGHT = "#ecc97a"
OCHRE_DARK = "#a87a24"
AEGEAN = "#1f5f8b"
AEGEAN_DARK = "#143f5e"
SEA = "#6fa8c8"
SEA_LIGHT = "#bfd9e6"
OLIVE = "#6b7a3a"
OLIVE_LIGHT = "#9aa65a"
OLIVE_DARK = "#4a5628"
MARBLE = "#f3efe6"
MARBLE_SHADE = "#d8d2c4"
MARBLE_DARK = "#b3ab9a"
STONE = "#a89f8e"
STONE_DARK = "#756c5d"
PARCHMENT = "#f4e9d0"
SKY = "#dcebf2"
SKY_HIGH = "#a9cfe6"
BRONZE = "#b07a3a"
SILVER = "#c9cdd2"
SILVER_DARK = "#8d939a"
BLACK_GLAZE = "#2a211c"
WHITE = "#ffffff"

# Map colours.
MAP_SEA = "#a9cfe3"
MAP_SEA_DEEP = "#8dbcd8"
MAP_LAND = "#efe3bf"
MAP_LAND_EDGE = "#8a7a52"
MAP_HILL = "#dccb98"

SANS = "DejaVu Sans"
SERIF = "DejaVu Serif"

HERE = os.path.dirname(os.path.abspath(__file__))


def fmt(v):
    """Numbers short enough to keep the SVG files small."""
    if isinstance(v, float):
        s = f"{v:.1f}"
        return s[:-2] if s.endswith(".0") else s
    return str(v)


def pts(points):
    return " ".join(f"{fmt(x)},{fmt(y)}" for x, y in points)


def esc(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


def attrs(**kw):
    out = []
    for k, v in kw.items():
        if v is None:
            continue
        k = k.rstrip("_").replace("_", "-")
        out.append(f'{k}="{fmt(v) if isinstance(v, (int, float)) else v}"')
    return " ".join(out)


class Svg:
    """One picture: a size, a list of definitions and a list of shapes."""

    def __init__(self, width, height, background=None):
        self.w = width
        self.h = height
        self.defs = []
        self.body = []
        self._ids = set()
        if background:
            self.rect(0, 0, width, height, fill=background)

    # definitions -------------------------------------------------------
    def define(self, ident, text):
        if ident not in self._ids:
            self._ids.add(ident)
            self.defs.append(text)
        return f"url(#{ident})"

    def linear(self, ident, stops, x1=0, y1=0, x2=0, y2=1):
        st = "".join(
            f'<stop offset="{fmt(o)}" stop-color="{c}"'
            + (f' stop-opacity="{fmt(a)}"' if a is not None else "")
            + "/>"
            for o, c, *rest in stops
            for a in [rest[0] if rest else None]
        )
        return self.define(
            ident,
            f'<linearGradient id="{ident}" x1="{fmt(x1)}" y1="{fmt(y1)}" '
            f'x2="{fmt(x2)}" y2="{fmt(y2)}">{st}</linearGradient>',
        )

    def radial(self, ident, stops, cx=0.5, cy=0.5, r=0.5, fx=None, fy=None):
        st = "".join(
            f'<stop offset="{fmt(o)}" stop-color="{c}"'
            + (f' stop-opacity="{fmt(a)}"' if a is not None else "")
            + "/>"
            for o, c, *rest in stops
            for a in [rest[0] if rest else None]
        )
        extra = ""
        if fx is not None:
            extra = f' fx="{fmt(fx)}" fy="{fmt(fy)}"'
        return self.define(
            ident,
            f'<radialGradient id="{ident}" cx="{fmt(cx)}" cy="{fmt(cy)}" '
            f'r="{fmt(r)}"{extra}>{st}</radialGradient>',
        )

    def blur(self, ident, amount):
        return self.define(
            ident,
            f'<filter id="{ident}" x="-30%" y="-30%" width="160%" height="160%">'
            f'<feGaussianBlur stdDeviation="{fmt(amount)}"/></filter>',
        )

    # shapes -------------------------------------------------------------
    def add(self, text):
        self.body.append(text)

    def rect(self, x, y, w, h, **kw):
        self.add(f"<rect {attrs(x=x, y=y, width=w, height=h, **kw)}/>")

    def circle(self, cx, cy, r, **kw):
        self.add(f"<circle {attrs(cx=cx, cy=cy, r=r, **kw)}/>")

    def ellipse(self, cx, cy, rx, ry, **kw):
        self.add(f"<ellipse {attrs(cx=cx, cy=cy, rx=rx, ry=ry, **kw)}/>")

    def line(self, x1, y1, x2, y2, **kw):
        self.add(f"<line {attrs(x1=x1, y1=y1, x2=x2, y2=y2, **kw)}/>")

    def poly(self, points, **kw):
        self.add(f'<polygon points="{pts(points)}" {attrs(**kw)}/>')

    def polyline(self, points, **kw):
        kw.setdefault("fill", "none")
        self.add(f'<polyline points="{pts(points)}" {attrs(**kw)}/>')

    def path(self, d, **kw):
        self.add(f'<path d="{d}" {attrs(**kw)}/>')

    def text(self, x, y, s, size=14, family=SANS, fill=INK, anchor="middle",
             weight=None, style=None, **kw):
        self.add(
            f"<text {attrs(x=x, y=y, font_family=family, font_size=size, fill=fill, text_anchor=anchor, font_weight=weight, font_style=style, **kw)}>"
            f"{esc(s)}</text>"
        )

    def group(self, transform=None, **kw):
        self.add(f"<g {attrs(transform=transform, **kw)}>")

    def end(self):
        self.add("</g>")

    # output -------------------------------------------------------------
    def svg(self):
        head = (
            f'<svg xmlns="http://www.w3.org/2000/svg" width="{self.w}" '
            f'height="{self.h}" viewBox="0 0 {self.w} {self.h}">'
        )
        defs = f"<defs>{''.join(self.defs)}</defs>" if self.defs else ""
        return head + "\n" + defs + "\n" + "\n".join(self.body) + "\n</svg>\n"

    def save(self, path):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as f:
            f.write(self.svg())


# Smooth outlines -------------------------------------------------------------

def smooth(points, closed=True, tension=0.5):
    """A Catmull-Rom curve through the points, as SVG path data."""
    n = len(points)
    if n < 3:
        return "M" + " L".join(f"{fmt(x)},{fmt(y)}" for x, y in points)
    d = [f"M{fmt(points[0][0])},{fmt(points[0][1])}"]
    rng = range(n) if closed else range(n - 1)
    for i in rng:
        p0 = points[(i - 1) % n] if closed or i > 0 else points[0]
        p1 = points[i]
        p2 = points[(i + 1) % n]
        p3 = points[(i + 2) % n] if closed or i + 2 < n else points[-1]
        c1 = (p1[0] + (p2[0] - p0[0]) * tension / 3, p1[1] + (p2[1] - p0[1]) * tension / 3)
        c2 = (p2[0] - (p3[0] - p1[0]) * tension / 3, p2[1] - (p3[1] - p1[1]) * tension / 3)
        d.append(
            f"C{fmt(c1[0])},{fmt(c1[1])} {fmt(c2[0])},{fmt(c2[1])} {fmt(p2[0])},{fmt(p2[1])}"
        )
    if closed:
        d.append("Z")
    return " ".join(d)


def mirror(half, axis_x):
    """A symmetric outline from its right half (top to bottom)."""
    left = [(2 * axis_x - x, y) for x, y in reversed(half)]
    return half + left


# Scenes ------------------------------------------------------------------------

def sky_and_sea(s, horizon, sun=None, seed=1):
    """The Aegean background shared by the site and ship pictures."""
    sky = s.linear("sky", [(0, SKY_HIGH), (1, "#eef5f7")])
    sea = s.linear("sea", [(0, SEA), (1, AEGEAN)])
    s.rect(0, 0, s.w, horizon, fill=sky)
    if sun:
        s.circle(sun[0], sun[1], sun[2], fill="#fff4cf", opacity=0.9)
    s.rect(0, horizon, s.w, s.h - horizon, fill=sea)
    rnd = random.Random(seed)
    for _ in range(int(s.w * (s.h - horizon) / 2500)):
        x = rnd.uniform(0, s.w)
        y = rnd.uniform(horizon + 6, s.h)
        L = 6 + (y - horizon) / 10
        s.path(
            f"M{fmt(x)},{fmt(y)} q{fmt(L / 2)},{fmt(-L / 5)} {fmt(L)},0",
            stroke="#ffffff", stroke_width=1.2, fill="none", opacity=0.45,
        )


def paper(s, seed=3, color=PARCHMENT):
    """A warm paper ground for pictures of objects, softly speckled."""
    g = s.radial("paper", [(0, "#fbf5e6"), (1, color)], r=0.75)
    s.rect(0, 0, s.w, s.h, fill=g)
    rnd = random.Random(seed)
    for _ in range(int(s.w * s.h / 900)):
        s.circle(rnd.uniform(0, s.w), rnd.uniform(0, s.h), rnd.uniform(0.4, 1.2),
                 fill="#b59a6a", opacity=rnd.uniform(0.05, 0.15))


def museum(s, floor=0.78, wall="#e9e2d2", seed=5):
    """A plain museum wall and plinth, so a single object stands out."""
    g = s.linear("wall", [(0, "#f4efe4"), (1, wall)])
    s.rect(0, 0, s.w, s.h, fill=g)
    fy = s.h * floor
    f = s.linear("floor", [(0, "#cbbfa6"), (1, "#a99b7e")])
    s.rect(0, fy, s.w, s.h - fy, fill=f)
    s.line(0, fy, s.w, fy, stroke="#8f8167", stroke_width=1)


def shadow(s, cx, cy, rx, ry, opacity=0.3):
    b = s.blur("soft", max(2, rx / 8))
    s.ellipse(cx, cy, rx, ry, fill="#3a2e20", opacity=opacity, filter=b)


def hills(s, base, heights, color, seed=2, step=40):
    """A smooth ridge across the picture, for land behind a scene."""
    rnd = random.Random(seed)
    pts_ = [(-20, base)]
    x = -20
    i = 0
    while x < s.w + 40:
        h = heights[i % len(heights)] * rnd.uniform(0.8, 1.2)
        pts_.append((x, base - h))
        x += step * rnd.uniform(0.7, 1.3)
        i += 1
    pts_.append((s.w + 40, base))
    s.path(smooth(pts_, closed=False) + f" L{s.w + 40},{s.h + 10} L-20,{s.h + 10} Z",
           fill=color)


def frame(s, color=INK, width=2, inset=0):
    """A thin edge, so that pale pictures do not melt into the panel."""
    s.rect(inset + width / 2, inset + width / 2, s.w - 2 * inset - width,
           s.h - 2 * inset - width, fill="none", stroke=color, stroke_width=width)


def meander(s, x, y, length, size, color, vertical=False):
    """The Greek key band, used as a border on pots and frames."""
    d = []
    n = int(length // (size * 2))
    u = size / 4
    for i in range(n):
        ox = x + i * size * 2
        seg = [
            (ox, y + size), (ox, y), (ox + 4 * u, y), (ox + 4 * u, y + 3 * u),
            (ox + 2 * u, y + 3 * u), (ox + 2 * u, y + 2 * u), (ox + 3 * u, y + 2 * u),
            (ox + 3 * u, y + u), (ox + u, y + u), (ox + u, y + size),
            (ox + 2 * size, y + size),
        ]
        d.append("M" + " L".join(f"{fmt(a)},{fmt(b)}" for a, b in seg))
    s.path(" ".join(d), fill="none", stroke=color, stroke_width=max(1, size / 8),
           stroke_linejoin="miter")


def spiral(s, cx, cy, r, turns=2.2, color=INK, width=2, direction=1):
    points = []
    steps = int(40 * turns)
    for i in range(steps + 1):
        t = i / steps
        a = direction * t * turns * 2 * math.pi
        rr = r * (1 - t * 0.9)
        points.append((cx + rr * math.cos(a), cy + rr * math.sin(a)))
    s.path(smooth(points, closed=False), fill="none", stroke=color, stroke_width=width,
           stroke_linecap="round")
