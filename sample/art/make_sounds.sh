#!/bin/bash
# Speaks the Greek word of every Sounds line of the media list and stores it
# as a small mono WAV (22 kHz, 16 bit), with a short silence before and after
# so that the player does not clip the first syllable.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
sample="$(dirname "$here")"
list="$sample/media.tsv"
out="$sample/files/Sounds"

need() {
    command -v "$1" >/dev/null 2>&1 && return
    apt-get install -y "$2" >/dev/null
}
need espeak-ng espeak-ng
need ffmpeg ffmpeg

mkdir -p "$out"
tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT

while IFS=$'\t' read -r folder file _used _subject _show word; do
    [ "$folder" = "Sounds" ] || continue
    [ -n "$word" ] || { echo "no word to speak for $file" >&2; exit 1; }
    espeak-ng -v el -s 140 -p 45 -w "$tmp/raw.wav" "$word" </dev/null
    ffmpeg -nostdin -loglevel error -y -i "$tmp/raw.wav" \
        -af "adelay=250,apad=pad_dur=0.35,afade=t=in:d=0.02" \
        -ac 1 -ar 22050 -sample_fmt s16 -bitexact "$out/$file"
    echo "$out/$file"
done < "$list"
