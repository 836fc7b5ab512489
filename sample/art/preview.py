"""Renders chosen drawings to /tmp/preview for a look while drawing."""
import subprocess
import sys
import os

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import objects, scenes, maps, frescoes, plans  # noqa: E402

os.makedirs("/tmp/preview", exist_ok=True)
for item in sys.argv[1:]:
    name, w, h = item.split(":")
    mod, fn = name.split(".")
    s = getattr(globals()[mod], fn)(int(w), int(h))
    p = f"/tmp/preview/{fn}_{w}.svg"
    s.save(p)
    subprocess.run(["rsvg-convert", "-o", p[:-4] + ".png", p], check=True)
    print(p[:-4] + ".png")
