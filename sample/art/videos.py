#!/usr/bin/env python3
"""Frames of the two short films of the index: the making of a caldera and a
trireme under oars. Writes one SVG per frame; make_videos.sh renders and
encodes them.

usage: videos.py caldera|trireme FOLDER
"""

import math
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from kit import *  # noqa: E402,F401,F403
import maps  # noqa: E402
import scenes  # noqa: E402

W, H = 320, 240
FPS = 12


def ease(t):
    t = max(0.0, min(1.0, t))
    return t * t * (3 - 2 * t)


def span(t, a, b):
    return ease((t - a) / (b - a))


def caption(s, text, opacity=1.0, size=15):
    if opacity <= 0:
        return
    s.rect(0, H - 34, W, 34, fill="#1c2630", opacity=0.72 * opacity)
    s.text(W / 2, H - 12, text, size=size, family=SANS, fill="#ffffff", weight="bold",
           opacity=fmt(opacity))


# The caldera ----------------------------------------------------------------------

SEA_Y = 170


def _profile(t_collapse):
    """The island's outline, from a whole cone (0) to a broken ring (1)."""
    cone = [(20, 176), (60, 150), (100, 112), (135, 82), (160, 70), (185, 82), (220, 112),
            (260, 150), (300, 176)]
    ring = [(20, 176), (60, 150), (90, 122), (112, 140), (160, 196), (208, 140), (230, 122),
            (260, 150), (300, 176)]
    return [(c[0] + (r[0] - c[0]) * t_collapse, c[1] + (r[1] - c[1]) * t_collapse)
            for c, r in zip(cone, ring)]


def caldera_frame(i):
    t = i / FPS
    s = Svg(W, H)
    sky = s.linear("sky", [(0, "#9cc7e4"), (1, "#e3f0f6")])
    dark = span(t, 2, 4) * (1 - span(t, 8, 10))
    s.rect(0, 0, W, SEA_Y, fill=sky)
    if dark > 0:
        s.rect(0, 0, W, SEA_Y, fill="#5d5650", opacity=fmt(0.55 * dark))
    sea = s.linear("sea", [(0, "#4f8fb8"), (1, "#1f5f8b")])
    s.rect(0, SEA_Y, W, H - SEA_Y, fill=sea)
    collapse = span(t, 6.0, 8.0)
    prof = _profile(collapse)
    # ash column: puffs rising from the vent, largest during the eruption
    erupt = span(t, 2.0, 3.0) * (1 - span(t, 7.0, 8.5))
    if erupt > 0:
        for k in range(14):
            phase = (t * 0.6 + k / 14) % 1.0
            y = prof[4][1] - phase * 150
            r = 8 + phase * 30
            x = 160 + math.sin(k * 2.1 + t) * (6 + phase * 14)
            s.circle(x, y, r, fill="#6e6862" if k % 2 else "#857e77",
                     opacity=fmt(erupt * (0.9 - 0.5 * phase)))
        vent = prof[4][1] + 2
        glow = erupt * (1 - collapse)
        s.ellipse(160, vent, 12, 6, fill="#ff8a3c", opacity=fmt(glow))
        s.circle(160, vent - 8, 10, fill="#ffb060", opacity=fmt(glow * 0.6), filter=s.blur("glow", 4))
    land = smooth(prof, closed=False) + f" L300,{H} L20,{H} Z"
    s.path(land, fill="#8a6a52", stroke="#4a3628", stroke_width=1.5)
    # the layers of old lava and ash inside the mountain
    for k, col in enumerate(["#a0522d", "#d9cfbf", "#5a4a40"]):
        off = 12 + k * 10
        layer = [(x, y + off) for x, y in prof[1:-1]]
        s.path(smooth(layer, closed=False), fill="none", stroke=col, stroke_width=3, opacity=0.7)
    # the empty magma chamber below, drawn in a cut-away
    chamber = 1 - span(t, 5.5, 7.0)
    if collapse < 0.5:
        s.ellipse(160, 192, 46 * (0.4 + 0.6 * chamber), 12 * (0.4 + 0.6 * chamber),
                  fill="#e0542a" if chamber > 0.1 else "#3a2a22",
                  opacity=fmt(0.9 * (1 - 2 * collapse)))
    # the sea pours into the hollow
    flood = span(t, 8.0, 9.5)
    if collapse > 0.6:
        level = 198 - (198 - SEA_Y) * flood
        clip = s.define("hollow", f'<clipPath id="hollow"><path d="{smooth(prof, closed=False)} L300,0 L20,0 Z"/></clipPath>')
        s.rect(90, level, 140, 200 - level + 4, fill="#2f6f99", clip_path=clip)
        if 0 < flood < 1:
            for side in (112, 208):
                s.path(f"M{side},{SEA_Y} q{(160 - side) * 0.3},{fmt(20 * flood)} {(160 - side) * 0.6},{fmt(30 * flood)}",
                       fill="none", stroke="#ffffff", stroke_width=2, opacity=0.8)
    # the view from above: a ring of islands round a lagoon
    top = span(t, 10.0, 11.2)
    if top > 0:
        s.group(opacity=fmt(top))
        s.rect(0, 0, W, H, fill="#8dbcd8")
        s.group(transform="translate(0,-12)")
        m = maps.Map(W, H - 30, 25.27, 25.55, 36.325, 36.49, seed=2)
        m.s = s
        ring = [(25.36, 36.45), (25.41, 36.458), (25.428, 36.415), (25.415, 36.376),
                (25.37, 36.362), (25.35, 36.395)]
        s.path(smooth([m.px(*p) for p in ring]), fill="#2f6f99")
        m.land(names=[], continent=False, extra=list(maps.SANTORINI.items()),
               fills={"Νέα Καμένη": "#4a3f3a", "Παλαιά Καμένη": "#4a3f3a"})
        s.end()
        s.end()
    labels = [(2.2, 6.0, "Έκρηξη"), (6.0, 8.2, "Το βουνό καταρρέει"),
              (8.2, 10.2, "Η θάλασσα μπαίνει")]
    for a, b, text in labels:
        if a <= t < b:
            caption(s, text, span(t, a, a + 0.4) * (1 - span(t, b - 0.4, b)))
    if t >= 10.6:
        caption(s, "Έτσι σχηματίζεται μια καλντέρα", span(t, 10.6, 11.2), size=14)
    return s


# The trireme ----------------------------------------------------------------------

def trireme_frame(i):
    t = i / FPS
    s = Svg(W, H)
    horizon = 120
    sky = s.linear("sky", [(0, SKY_HIGH), (1, "#eef5f7")])
    s.rect(0, 0, W, horizon, fill=sky)
    scenes.island(s, -20, 130, horizon, 26, "#a9a77a", seed=3)
    scenes.island(s, 210, 360, horizon, 18, "#b7b189", seed=4)
    sea = s.linear("sea", [(0, SEA), (1, AEGEAN)])
    s.rect(0, horizon, W, H - horizon, fill=sea)
    # waves drift left as the ship goes right
    for row in range(7):
        y = horizon + 10 + row * 16
        speed = 6 + row * 3
        off = -(t * speed) % 40
        d = " ".join(f"M{fmt(x + off)},{y} q5,-3 10,0 q5,3 10,0" for x in range(-40, W + 40, 40))
        s.path(d, fill="none", stroke="#ffffff", stroke_width=1.1, opacity=0.45)
    duration = 11.0
    x = -30 + (W + 120) * (t / duration)
    bob = math.sin(t * 2.2) * 1.5
    phase = (t * 0.9) % 1.0
    scenes.draw_trireme(s, x, 172 + bob, 0.42, oar_phase=phase)
    # wash at the ram
    s.path(f"M{fmt(x + 90)},{fmt(174 + bob)} q10,-6 20,2", fill="none", stroke="#ffffff",
           stroke_width=2, opacity=0.8)
    caption(s, "Τριήρης: τρεις σειρές κουπιά", span(t, 0.5, 1.2))
    return s


FILMS = {"caldera": (caldera_frame, 13.0), "trireme": (trireme_frame, 11.0)}


def main():
    name, folder = sys.argv[1], sys.argv[2]
    draw, seconds = FILMS[name]
    os.makedirs(folder, exist_ok=True)
    for i in range(int(seconds * FPS)):
        draw(i).save(os.path.join(folder, f"{i:04d}.svg"))


if __name__ == "__main__":
    main()
