#!/usr/bin/env python3
"""Writes the Jet message fuzzer's seed corpus (../fuzz-corpus). Each file is one byte
that says how the stream is cut into reads and how the reader ends (jet_messages_fuzzer.cpp),
then what the reader sent. Given the reader program, also the real streams it sends for
the Jet test files: make-corpus.py READER JET_FILE..."""
import os
import sqlite3
import struct
import subprocess
import sys


def progress(done, total):
    return b"P" + struct.pack("<qq", done, total)


def error(number, text):
    t = text.encode()
    return b"E" + struct.pack("<ii", number, len(t)) + t


def data(d):
    return b"D" + struct.pack("<q", len(d)) + d


def small_database():
    db = sqlite3.connect(":memory:")
    db.execute("PRAGMA page_size=512")
    db.execute('CREATE TABLE "Πηγές" ("Κωδικός" INTEGER PRIMARY KEY, "Τίτλος" TEXT COLLATE NOCASE, "Σελίδα" INTEGER)')
    db.execute('CREATE INDEX "Τίτλος" ON "Πηγές"("Τίτλος")')
    rows = ["Αθήνα", "αθηνα", "Σπάρτη", "ΣΠΑΡΤΗ", "Ερμούπολη", "Zürich", "Ίος", "ϊ", "ΐ", "Ω", "a b", "1821"]
    for i, t in enumerate(rows):
        db.execute('INSERT INTO "Πηγές" VALUES (?,?,?)', (i + 1, t, i * 7))
    db.commit()
    return db.serialize(), len(rows)


def seeds():
    database, n = small_database()
    return {
        "small_database": b"\x07" + progress(0, n) + progress(n, n) + data(database),
        "small_database_read_by_bytes": b"\x00" + progress(0, n) + progress(n, n) + data(database),
        "unreadable_file": b"\x0f" + progress(0, 0) + error(3343, "Μη αναγνωρίσιμη μορφή βάσης δεδομένων"),
        "unknown_code_page": b"\x0b" + error(3001, "Μη έγκυρο όρισμα."),
        "reader_crashed_midway": b"\x15" + progress(0, n) + data(database)[:300],
        "many_progress_reports": b"\x46" + b"".join(progress(i, 1000) for i in range(0, 1001, 40)) + data(b""),
        "cancelled": b"\x22" + b"".join(progress(i, 5) for i in range(6)),
    }


if __name__ == "__main__":
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "fuzz-corpus")
    for name, stream in seeds().items():
        with open(os.path.join(folder, name + ".bin"), "wb") as f:
            f.write(stream)
    if len(sys.argv) > 2:
        for jet in sys.argv[2:]:
            with open(jet, "rb") as f:
                stream = subprocess.run([sys.argv[1]], stdin=f, capture_output=True, check=True).stdout
            name = os.path.splitext(os.path.basename(jet))[0]
            with open(os.path.join(folder, name + ".bin"), "wb") as f:
                f.write(b"\x06" + stream)
