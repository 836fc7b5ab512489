#!/usr/bin/env python3
"""Writes the tests' Windows metafile and enhanced metafile: a red rectangle and a blue
ellipse on white, 100 by 50 pixels; and an enhanced metafile cut short."""
import struct


def wmf_record(function, *words):
    return struct.pack("<IH", 3 + len(words), function) + struct.pack("<%dh" % len(words), *words)


def wmf_brush(colour):
    return struct.pack("<IHHIH", 7, 0x02FC, 0, colour, 0)


def wmf():
    records = b"".join([
        wmf_record(0x0103, 8),  # SetMapMode: anisotropic
        wmf_record(0x020B, 0, 0),  # SetWindowOrg
        wmf_record(0x020C, 50, 100),  # SetWindowExt (y, x)
        wmf_brush(0x0000FF),
        wmf_record(0x012D, 0),  # SelectObject
        wmf_record(0x041B, 40, 60, 10, 10),  # Rectangle (bottom, right, top, left)
        wmf_brush(0xFF0000),
        wmf_record(0x012D, 1),
        wmf_record(0x0418, 45, 95, 20, 50),  # Ellipse
        wmf_record(0x0000),
    ])
    header = struct.pack("<HHHIHIH", 1, 9, 0x0300, (18 + len(records)) // 2, 2, 7, 0)
    placeable = struct.pack("<IHhhhhHI", 0x9AC6CDD7, 0, 0, 0, 100, 50, 96, 0)
    checksum = 0
    for (word,) in struct.iter_unpack("<H", placeable):
        checksum ^= word
    return placeable + struct.pack("<H", checksum) + header + records


def emf_record(kind, *values):
    return struct.pack("<II", kind, 8 + 4 * len(values)) + struct.pack("<%di" % len(values), *values)


def emf():
    records = b"".join([
        emf_record(39, 1, 0, 0x0000FF, 0),  # CreateBrushIndirect: solid red
        emf_record(37, 1),  # SelectObject
        emf_record(43, 10, 10, 60, 40),  # Rectangle
        emf_record(39, 2, 0, 0xFF0000, 0),  # solid blue
        emf_record(37, 2),
        emf_record(42, 50, 20, 95, 45),  # Ellipse
        emf_record(14, 0, 16, 20),  # end of file
    ])
    size = 88 + len(records)
    header = struct.pack("<II4i4iIIIIHHIII2i2i", 1, 88, 0, 0, 99, 49, 0, 0, 2646, 1323,
                         0x464D4520, 0x10000, size, 8, 3, 0, 0, 0, 0, 1024, 768, 271, 203)
    return header + records


if __name__ == "__main__":
    with open("picture.wmf", "wb") as f:
        f.write(wmf())
    whole = emf()
    with open("picture.emf", "wb") as f:
        f.write(whole)
    # The header promises more than is there, and a record runs past the end.
    with open("broken.emf", "wb") as f:
        f.write(whole[:88] + struct.pack("<II", 43, 4000) + b"\0" * 12)
