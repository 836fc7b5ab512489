#!/usr/bin/env python3
"""Writes the picture fuzzer's seed corpus (../fuzz-corpus): small bitmaps of each depth
and compression the BMP reader knows, and Windows and enhanced metafiles with the records
content drawings use (shapes, text, bitmaps, paths). The corpus also holds copies of
the era files picture.bmp, picture.wmf, picture.emf and broken.emf of tests/data/media."""
import os
import struct
import sys


def bmp(width, height, bits, pixels, palette=b"", compression=0, masks=b""):
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, compression, len(pixels),
                       2835, 2835, len(palette) // 4, 0)
    offset = 14 + len(info) + len(masks) + len(palette)
    return b"BM" + struct.pack("<IHHI", offset + len(pixels), 0, 0, offset) + info + masks + palette + pixels


def bitmaps():
    grey = b"".join(struct.pack("<BBBB", i, i, i, 0) for i in range(0, 256, 17))
    two = struct.pack("<BBBBBBBB", 0, 0, 0, 0, 255, 255, 255, 0)
    rows24 = b"".join(bytes([0, 0, 255] * 3 + [0, 255, 0]) + b"" for _ in range(3))
    return {
        "rgb24.bmp": bmp(4, 3, 24, rows24),
        "rgb32_top_down.bmp": bmp(2, -2, 32, b"\x00\x00\xff\x00\x00\xff\x00\x00\xff\x00\x00\x00\xff\xff\xff\x00"),
        "mono.bmp": bmp(8, 2, 1, b"\xaa\x00\x00\x00\x55\x00\x00\x00", two),
        "palette8.bmp": bmp(3, 2, 8, b"\x00\x05\x0f\x00\x0f\x05\x00\x00", grey),
        "palette4.bmp": bmp(4, 2, 4, b"\x01\x23\x00\x00\x45\x67\x00\x00", grey[:64]),
        # RLE8: a run, an absolute run, a line end, a move, the end.
        "rle8.bmp": bmp(6, 3, 8, b"\x03\x01\x00\x03\x02\x03\x04\x00\x00\x00\x00\x02\x01\x01\x02\x05\x00\x01",
                        grey, compression=1),
        "rle4.bmp": bmp(6, 2, 4, b"\x04\x12\x00\x00\x00\x04\x34\x56\x00\x01", grey[:64], compression=2),
        "bitfields16.bmp": bmp(2, 2, 16, b"\x1f\x00\xe0\x07\x00\xf8\xff\xff", compression=3,
                               masks=struct.pack("<III", 0xF800, 0x07E0, 0x001F)),
    }


def wmf_record(function, *words):
    return struct.pack("<IH", 3 + len(words), function) + struct.pack("<%dh" % len(words), *words)


def wmf_raw(function, payload):
    if len(payload) % 2:
        payload += b"\0"
    return struct.pack("<IH", 3 + len(payload) // 2, function) + payload


def wmf(records, width=100, height=50, objects=4):
    body = b"".join(records) + wmf_record(0x0000)
    header = struct.pack("<HHHIHIH", 1, 9, 0x0300, (18 + len(body)) // 2, objects, 64, 0)
    placeable = struct.pack("<IHhhhhHI", 0x9AC6CDD7, 0, 0, 0, width, height, 96, 0)
    checksum = 0
    for (word,) in struct.iter_unpack("<H", placeable):
        checksum ^= word
    return placeable + struct.pack("<H", checksum) + header + body


def metafiles():
    setup = [wmf_record(0x0103, 8), wmf_record(0x020B, 0, 0), wmf_record(0x020C, 50, 100)]
    brush = wmf_raw(0x02FC, struct.pack("<HIH", 0, 0x0000FF, 0))
    pen = wmf_raw(0x02FA, struct.pack("<HhhI", 0, 2, 0, 0x00FF00))
    font = wmf_raw(0x02FB, struct.pack("<hhhhhBBBBBBBB", -12, 0, 0, 0, 400, 0, 0, 0, 161, 0, 0, 0, 0)
                   + b"Arial\0")
    dib = bmp(2, 2, 24, b"\x00\x00\xff\x00\xff\x00\x00\x00\xff\x00\x00\x00\xff\xff\xff\x00")[14:]
    text = "Αθήνα".encode("cp1253")
    return {
        "shapes.wmf": wmf(setup + [brush, wmf_record(0x012D, 0), pen, wmf_record(0x012D, 1),
                                   wmf_record(0x041B, 40, 60, 10, 10), wmf_record(0x0418, 45, 95, 20, 50),
                                   wmf_record(0x0324, 3, 10, 10, 90, 10, 50, 45),  # Polygon
                                   wmf_record(0x0325, 3, 0, 0, 20, 30, 40, 0),  # Polyline
                                   wmf_record(0x0538, 2, 3, 3, 0, 0, 10, 0, 0, 10, 20, 20, 30, 20, 20, 30),
                                   wmf_record(0x0817, 40, 90, 10, 60, 45, 95, 20, 50),  # Arc
                                   wmf_record(0x0214, 5, 5), wmf_record(0x0213, 95, 45)]),  # MoveTo, LineTo
        "text.wmf": wmf(setup + [font, wmf_record(0x012D, 0), wmf_record(0x0209, -256, 0),
                                 wmf_raw(0x0521, struct.pack("<h", len(text)) + text + (b"\0" if len(text) % 2 else b"")
                                         + struct.pack("<hh", 30, 10))]),
        "bitmap.wmf": wmf(setup + [wmf_raw(0x0F43, struct.pack("<IH8h", 0x00CC0020, 0, 2, 2, 0, 0,
                                                                 40, 80, 5, 10) + dib)]),
        "clipped.wmf": wmf(setup + [wmf_record(0x0416, 40, 90, 10, 10), wmf_record(0x001E),
                                    brush, wmf_record(0x012D, 0), wmf_record(0x041B, 50, 100, 0, 0),
                                    wmf_record(0x0127, -1)]),  # IntersectClipRect, SaveDC, RestoreDC
    }


def emf_record(kind, *values):
    return struct.pack("<II", kind, 8 + 4 * len(values)) + struct.pack("<%di" % len(values), *values)


def emf_raw(kind, payload):
    payload += b"\0" * (-len(payload) % 4)
    return struct.pack("<II", kind, 8 + len(payload)) + payload


def emf(records):
    body = b"".join(records) + emf_record(14, 0, 16, 20)
    size = 88 + len(body)
    count = len(records) + 2
    header = struct.pack("<II4i4iIIIIHHIII2i2i", 1, 88, 0, 0, 99, 49, 0, 0, 2646, 1323,
                         0x464D4520, 0x10000, size, count, 3, 0, 0, 0, 0, 1024, 768, 271, 203)
    return header + body


def enhanced():
    text = "Ερμούπολη".encode("utf-16-le")
    exttext = struct.pack("<4iIff", 0, 0, 99, 49, 1, 1.0, 1.0) + struct.pack(
        "<iiIIi4iI", 10, 20, len(text) // 2, 76, 0, 0, 0, 99, 49, 0) + text
    dib = bmp(2, 2, 24, b"\x00\x00\xff\x00\xff\x00\x00\x00\xff\x00\x00\x00\xff\xff\xff\x00")[14:]
    stretch = struct.pack("<4i6i6I2i", 0, 0, 99, 49, 10, 10, 0, 0, 2, 2, 80, 40, 120, 16, 0,
                          0x00CC0020, 60, 60)
    font = struct.pack("<I", 1) + struct.pack("<iiiiiBBBBBBBB", -12, 0, 0, 0, 400, 0, 0, 0, 161, 0, 0, 0, 0) \
        + "Arial".encode("utf-16-le").ljust(64, b"\0")
    return {
        "shapes.emf": emf([emf_record(39, 1, 0, 0x0000FF, 0), emf_record(37, 1), emf_record(43, 10, 10, 60, 40),
                           emf_record(38, 2, 0, 2, 0, 0x00FF00), emf_record(37, 2),
                           emf_record(42, 50, 20, 95, 45),
                           emf_raw(86, struct.pack("<4iI", 0, 0, 99, 49, 3) + struct.pack("<6h", 10, 10, 90, 10, 50, 45)),
                           emf_raw(87, struct.pack("<4iI", 0, 0, 99, 49, 3) + struct.pack("<6h", 0, 0, 20, 30, 40, 0)),
                           emf_record(27, 5, 5), emf_record(54, 95, 45)]),
        "path.emf": emf([emf_record(59), emf_record(27, 10, 10), emf_record(54, 90, 10), emf_record(54, 50, 45),
                         emf_record(67), emf_record(60), emf_record(39, 1, 0, 0xFF0000, 0), emf_record(37, 1),
                         emf_raw(62, struct.pack("<4i", 0, 0, 99, 49))]),
        "text.emf": emf([emf_raw(82, font), emf_record(37, 1), emf_record(24, 0x00FF00), emf_raw(84, exttext)]),
        "bitmap.emf": emf([emf_raw(81, stretch + dib[:40] + dib[40:])]),
        "transform.emf": emf([emf_record(33), emf_raw(35, struct.pack("<6f", 2.0, 0.0, 0.0, 0.5, 10.0, 5.0)),
                              emf_record(43, 10, 10, 60, 40), emf_record(34, -1)]),
    }


if __name__ == "__main__":
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..", "fuzz-corpus")
    for files in (bitmaps(), metafiles(), enhanced()):
        for name, data in files.items():
            with open(os.path.join(folder, name), "wb") as f:
                f.write(data)
