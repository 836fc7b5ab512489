#!/usr/bin/env python3
"""Checks that every library under src/ links only libraries of the folders below it.

The layers are the order in which src/CMakeLists.txt adds the folders: a folder may use
what was added before it, never what comes after. A folder inside another (palettes/hatch)
stands just below its parent. Prints one line per offending link; exit 1 when there is one.
"""
import re
import sys
from pathlib import Path

src = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent / "src")
top = (src / "CMakeLists.txt").read_text()

# The folders in the order they are added, the optional areas of the foreach included.
order = []
for line in top.splitlines():
    line = line.split("#", 1)[0]
    m = re.search(r"add_subdirectory\((\S+)\)", line)
    if m and "${" not in m.group(1):
        order.append(m.group(1))
    m = re.search(r"foreach\(area ([^)]*)\)", line)
    if m:
        order.extend(m.group(1).split())

rank = {}
for i, folder in enumerate(order):
    rank[folder] = float(i)

libraries = {}  # library name -> (folder, rank)
links = []  # (library, linked library, cmake file)
for cmake in sorted(src.rglob("CMakeLists.txt")):
    folder = cmake.parent.relative_to(src).as_posix()
    if folder == ".":
        continue
    # A folder nested in a listed one stands just below it.
    r = rank.get(folder)
    if r is None:
        parent = next((f for f in sorted(rank, key=len, reverse=True) if folder.startswith(f + "/")), None)
        if parent is None:
            continue
        r = rank[parent] - 0.5
    text = re.sub(r"#[^\n]*", "", cmake.read_text())
    for name in re.findall(r"add_library\((tremidia_\w+)", text):
        libraries[name] = (folder, r)
    for target, body in re.findall(r"target_link_libraries\((tremidia_\w+)([^)]*)\)", text):
        for used in re.findall(r"\btremidia_(?!\$)\w+", body):
            links.append((target, used, cmake.relative_to(src).as_posix()))

problems = 0
for target, used, where in links:
    if target not in libraries or used not in libraries:
        continue
    if libraries[used][1] >= libraries[target][1]:
        problems += 1
        print(f"{where}: {target} ({libraries[target][0]}) links {used} ({libraries[used][0]}), "
              f"which stands at its level or above it")
print(f"{len(libraries)} libraries, {len(links)} links checked, {problems} upward")
sys.exit(1 if problems else 0)
