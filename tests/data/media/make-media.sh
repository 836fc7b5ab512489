#!/bin/sh
# Makes the small media and picture files of the tests once; the results are kept in the
# repository, so this runs only when they are to change. Needs ffmpeg and python3.
set -e
cd "$(dirname "$0")"
ff() { ffmpeg -hide_banner -loglevel error -y "$@"; }
tone="sine=frequency=440:duration=1:sample_rate=8000"
clip="testsrc=size=64x48:rate=12.5:duration=1"

ff -f lavfi -i "$tone" -ac 1 -c:a pcm_u8 tone.wav
ff -f lavfi -i "$tone" -ac 1 -c:a libmp3lame -b:a 8k tone.mp3
python3 midi.py tune.mid
# WAVs of the era: two whose length GStreamer's parser loses, one of a codec nothing here plays.
python3 wavs.py
ff -f lavfi -i "$clip" -f lavfi -i "$tone" -c:v msmpeg4v2 -q:v 31 -ac 1 -c:a pcm_u8 clip.avi
ff -f lavfi -i "$clip" -f lavfi -i "sine=frequency=440:duration=1" -r 25 -c:v mpeg1video -q:v 25 \
    -ac 1 -c:a mp2 -b:a 32k -f mpeg clip.mpg
ff -f lavfi -i "$clip" -f lavfi -i "$tone" -c:v wmv2 -q:v 20 -ac 1 -c:a wmav2 -b:a 24k clip.wmv
ff -f lavfi -i "$clip" -f lavfi -i "$tone" -c:v wmv1 -q:v 20 -ac 1 -c:a wmav1 -b:a 24k -f asf clip.asf

# Pictures of the era (the metafiles come from metafiles.py).
pic="testsrc=size=48x32:rate=1:duration=1"
ff -f lavfi -i "$pic" -frames:v 1 -pix_fmt bgr24 picture.bmp
ff -f lavfi -i "$pic" -frames:v 1 picture.gif
ff -f lavfi -i "$pic" -frames:v 1 -q:v 8 picture.jpg
python3 metafiles.py

# Broken files: a sound cut short, a video that is text, a picture of noise.
printf 'ID3\003\000\000\000\000\000\012abcdefghij%0300d' 0 > broken.mp3
printf 'not a video at all\n' > broken.avi
head -c 20 tone.wav > broken.wav
