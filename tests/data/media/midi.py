#!/usr/bin/env python3
"""Writes a Standard MIDI File of a few notes: format 0, one track, a piano."""
import struct
import sys


def var_len(value):
    out = [value & 0x7F]
    value >>= 7
    while value:
        out.insert(0, (value & 0x7F) | 0x80)
        value >>= 7
    return bytes(out)


def track(events):
    data = b"".join(var_len(delta) + body for delta, body in events)
    return b"MTrk" + struct.pack(">I", len(data)) + data


def tune(notes, ticks=96):
    events = [(0, b"\xff\x51\x03" + (500000).to_bytes(3, "big")),  # 120 beats a minute
              (0, b"\xc0\x00")]  # acoustic grand piano
    for note in notes:
        events.append((0, bytes([0x90, note, 100])))
        events.append((ticks, bytes([0x80, note, 64])))
    events.append((0, b"\xff\x2f\x00"))
    header = b"MThd" + struct.pack(">IHHH", 6, 0, 1, ticks)
    return header + track(events)


if __name__ == "__main__":
    with open(sys.argv[1], "wb") as f:
        f.write(tune([60, 64, 67, 72]))
