#!/bin/bash
# Draws every picture of the media list again: writes the SVG sources with
# build.py, then renders each to the file the list names (PNG for maps and
# plans, JPEG at quality 85 for the rest, BMP where a list asks for it).
# The rendered files are kept in the repository, so the program itself needs
# none of these tools.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
sample="$(dirname "$here")"
list="$sample/media.tsv"

need() {
    command -v "$1" >/dev/null 2>&1 && return
    apt-get install -y "$2" >/dev/null
}
need rsvg-convert librsvg2-bin
need convert imagemagick
need python3 python3
fc-list | grep -qi "DejaVu Sans" || apt-get install -y fonts-dejavu-core >/dev/null

if [ "${1:-}" != "--no-build" ]; then
    python3 "$here/build.py"
else
    shift
fi

tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT

while IFS=$'\t' read -r folder file _rest; do
    case "$folder" in Pictures|photos|Photos) ;; *) continue ;; esac
    if [ $# -gt 0 ] && [[ " $* " != *" $file "* ]]; then continue; fi
    stem="${file%.*}"
    ext="${file##*.}"
    src="$here/svg/$folder/$stem.svg"
    dest="$sample/files/$folder/$file"
    mkdir -p "$(dirname "$dest")"
    case "${ext,,}" in
        png)
            # opaque RGB: a map becomes the painter's canvas, which has no use for alpha;
            # dates are left out so that a new rendering of the same drawing is the same file
            rsvg-convert -b white -o "$tmp/out.png" "$src"
            convert "$tmp/out.png" -alpha off -strip -define png:exclude-chunks=date,time \
                "PNG24:$dest"
            ;;
        jpg|jpeg)
            rsvg-convert -b white -o "$tmp/out.png" "$src"
            convert "$tmp/out.png" -strip -sampling-factor 4:2:0 -quality 85 "$dest"
            ;;
        bmp)
            rsvg-convert -b white -o "$tmp/out.png" "$src"
            convert "$tmp/out.png" -strip -type TrueColor "BMP3:$dest"
            ;;
        *)
            echo "do not know how to render $file" >&2
            exit 1
            ;;
    esac
    echo "$dest"
done < "$list"
