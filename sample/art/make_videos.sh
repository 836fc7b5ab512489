#!/bin/bash
# Draws the frames of the index's two short films and encodes them as WebM
# (VP8, no sound), 320x240 at 12 frames a second.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
sample="$(dirname "$here")"
out="$sample/files/Videos"

need() {
    command -v "$1" >/dev/null 2>&1 && return
    apt-get install -y "$2" >/dev/null
}
need rsvg-convert librsvg2-bin
need ffmpeg ffmpeg
need python3 python3

mkdir -p "$out"
tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT

for film in caldera trireme; do
    rm -rf "${tmp:?}/$film"
    PYTHONDONTWRITEBYTECODE=1 python3 "$here/videos.py" "$film" "$tmp/$film"
    for f in "$tmp/$film"/*.svg; do
        rsvg-convert -b white -o "${f%.svg}.png" "$f"
    done
    ffmpeg -nostdin -loglevel error -y -framerate 12 -i "$tmp/$film/%04d.png" \
        -c:v libvpx -b:v 300k -crf 10 -auto-alt-ref 0 -pix_fmt yuv420p -an \
        -metadata title="" -fflags +bitexact -flags:v +bitexact "$out/term_$film.webm"
    echo "$out/term_$film.webm"
done
