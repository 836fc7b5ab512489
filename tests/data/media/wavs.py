#!/usr/bin/env python3
"""Writes two WAV sounds as the sound recorders of the era saved them, by hand:

tone-u8.wav       8-bit PCM, 11,025 Hz, mono, an odd number of samples (5,513: 500 ms),
                  so that the data chunk ends with a padding byte, and the file with it.
tone-msadpcm.wav  Microsoft ADPCM, 11,025 Hz, mono, blocks of 256 bytes (500 samples),
                  with its 'fact' chunk: 11,025 samples, 1,000 ms.
voxware.wav       a sound in Voxware's speech codec (format 0x0075) of the era, which no
                  decoder here plays; its data is only noise.
"""
import math
import struct

RATE = 11025
FREQUENCY = 440

# Microsoft ADPCM's fixed predictor pairs and step adaptation.
COEFFICIENTS = [(256, 0), (512, -256), (0, 0), (192, 64), (240, 0), (460, -208), (392, -232)]
ADAPTATION = [230, 230, 230, 230, 307, 409, 512, 614, 768, 614, 512, 409, 307, 230, 230, 230]


def chunk(tag, body):
    return tag + struct.pack("<I", len(body)) + body + (b"\0" if len(body) % 2 else b"")


def riff(name, chunks):
    body = b"WAVE" + b"".join(chunks)
    with open(name, "wb") as out:
        out.write(b"RIFF" + struct.pack("<I", len(body)) + body)


def tone(count, amplitude):
    return [amplitude * math.sin(2 * math.pi * FREQUENCY * i / RATE) for i in range(count)]


def pcm_u8(name, count):
    data = bytes(int(round(128 + s)) for s in tone(count, 100))
    fmt = struct.pack("<HHIIHH", 1, 1, RATE, RATE, 1, 8)
    riff(name, [chunk(b"fmt ", fmt), chunk(b"data", data)])


def ms_adpcm_blocks(samples, block_align):
    """Mono, always the first predictor; good enough for a test tone."""
    per_block = (block_align - 7) * 2 + 2
    c1, c2 = COEFFICIENTS[0]
    out = bytearray()
    for start in range(0, len(samples), per_block):
        block = samples[start:start + per_block]
        block += [0] * (per_block - len(block))
        delta = 16
        older, newer = block[0], block[1]
        out += struct.pack("<Bhhh", 0, delta, newer, older)
        nibbles = []
        for sample in block[2:]:
            predicted = (newer * c1 + older * c2) >> 8
            code = max(-8, min(7, round((sample - predicted) / delta)))
            older, newer = newer, max(-32768, min(32767, predicted + code * delta))
            delta = max(16, (ADAPTATION[code & 15] * delta) >> 8)
            nibbles.append(code & 15)
        for i in range(0, len(nibbles), 2):
            out.append((nibbles[i] << 4) | nibbles[i + 1])
    return bytes(out), per_block


def ms_adpcm(name, count, block_align=256):
    samples = [int(s) for s in tone(count, 12000)]
    data, per_block = ms_adpcm_blocks(samples, block_align)
    fmt = struct.pack("<HHIIHHHHH", 2, 1, RATE, RATE * block_align // per_block, block_align, 4,
                      32, per_block, len(COEFFICIENTS))
    fmt += b"".join(struct.pack("<hh", *pair) for pair in COEFFICIENTS)
    riff(name, [chunk(b"fmt ", fmt), chunk(b"fact", struct.pack("<I", count)), chunk(b"data", data)])


def voxware(name):
    fmt = struct.pack("<HHIIHHH", 0x0075, 1, 8000, 1000, 20, 0, 0)
    data = bytes((i * 37 + 11) % 256 for i in range(2000))
    riff(name, [chunk(b"fmt ", fmt), chunk(b"fact", struct.pack("<I", 16000)), chunk(b"data", data)])


if __name__ == "__main__":
    pcm_u8("tone-u8.wav", 5513)
    ms_adpcm("tone-msadpcm.wav", 11025)
    voxware("voxware.wav")
