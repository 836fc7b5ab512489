#!/usr/bin/env python3
"""Builds the bundled sample course: the SQLite content database from the SQL sources
in db/, and beside it a copy of the content folders of files/.

The build refuses content that would misbehave in the program: a text or description
that the database names but that is missing, a hot word whose phrase does not stand
painted in its text, a generated text that is older than its markup. Pictures, sounds and
videos are drawn separately and may lag behind; a missing one is reported, not fatal.

Usage: build_sample.py --source SAMPLE_DIR --out OUT_DIR [--stamp FILE]
"""

import argparse
import filecmp
import os
import shutil
import sqlite3
import sys

# The helpers are imported from the source tree, which stays free of byte-code caches.
sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "tools"))
import markup_to_rtf  # noqa: E402
import rtfscan  # noqa: E402

CONTENT_FOLDERS = ("Pictures", "piges", "photos", "Photos", "Sounds", "Videos", "Actions")
DATABASE_NAME = "tremidia.sqlite"


def sql_sources(db_dir):
    names = sorted(n for n in os.listdir(db_dir) if n.endswith(".sql") and n != "schema.sql")
    return [os.path.join(db_dir, "schema.sql")] + [os.path.join(db_dir, n) for n in names]


def build_database(db_dir, target):
    partial = target + ".partial"
    if os.path.exists(partial):
        os.remove(partial)
    connection = sqlite3.connect(partial)
    try:
        for path in sql_sources(db_dir):
            with open(path, encoding="utf-8") as f:
                try:
                    connection.executescript(f.read())
                except sqlite3.Error as error:
                    raise SystemExit("%s: %s" % (path, error))
        connection.commit()
        connection.execute("VACUUM")
    finally:
        connection.close()
    os.replace(partial, target)


def mirror_folder(source, target):
    """Makes target hold exactly the files of source, copying only what changed."""
    os.makedirs(target, exist_ok=True)
    wanted = set()
    for name in sorted(os.listdir(source)):
        path = os.path.join(source, name)
        if not os.path.isfile(path):
            continue
        wanted.add(name)
        copy = os.path.join(target, name)
        if not os.path.exists(copy) or not filecmp.cmp(path, copy, shallow=False):
            shutil.copy2(path, copy)
    for name in os.listdir(target):
        if name not in wanted and os.path.isfile(os.path.join(target, name)):
            os.remove(os.path.join(target, name))


def find_file(folder, name):
    """The file's path in folder, matched without regard to case, as the program does."""
    if not name or not os.path.isdir(folder):
        return None
    for entry in os.listdir(folder):
        if entry.lower() == name.lower():
            return os.path.join(folder, entry)
    return None


class Checker:
    def __init__(self, files_dir):
        self.files_dir = files_dir
        self.errors = []
        self.missing_media = []

    def file_in(self, folder, name, what, fatal):
        if find_file(os.path.join(self.files_dir, folder), name) is None:
            message = "%s: %s/%s is missing" % (what, folder, name)
            (self.errors if fatal else self.missing_media).append(message)

    def stale_markup(self, markup_dir, folder):
        if not os.path.isdir(markup_dir):
            return
        for name in sorted(os.listdir(markup_dir)):
            if not name.endswith(".txt"):
                continue
            with open(os.path.join(markup_dir, name), encoding="utf-8") as f:
                wanted = markup_to_rtf.markup_to_rtf(f.read()).encode("ascii")
            target = os.path.join(self.files_dir, folder, name[:-4] + ".rtf")
            current = open(target, "rb").read() if os.path.exists(target) else b""
            if current != wanted:
                self.errors.append(
                    "%s/%s is not up to date with its markup: run sample/tools/markup_to_rtf.py"
                    % (folder, os.path.basename(target)))

    def manifest(self, path, connection):
        """The illustrator draws from the manifest: it must name exactly the media files
        that the database names."""
        listed = set()
        with open(path, encoding="utf-8") as f:
            for line in f.read().splitlines()[1:]:
                fields = line.split("\t")
                if len(fields) >= 2:
                    listed.add((fields[0], fields[1]))
        named = set()
        for (name,) in connection.execute("SELECT PicturePath FROM Resources WHERE PicturePath <> ''"):
            named.add(("Pictures", name))
        for (name,) in connection.execute("SELECT Picture FROM Comments WHERE Picture <> ''"):
            named.add(("photos", name))
        for picture, sound, video in connection.execute("SELECT Picture, Sound, Video FROM Euretirio"):
            for folder, name in (("Photos", picture), ("Sounds", sound), ("Videos", video)):
                if name:
                    named.add((folder, name))
        for folder, name in sorted(named - listed):
            self.errors.append("%s/%s is named in the database but not in media.tsv" % (folder, name))
        for folder, name in sorted(listed - named):
            self.errors.append("%s/%s is in media.tsv but named nowhere in the database" % (folder, name))

    def run(self, connection):
        rows = connection.execute("SELECT ResourceID, ResTypeID, TextPath, PicturePath FROM Resources")
        for resource, kind, text, picture in rows:
            what = "resource %d" % resource
            if kind == 2 or kind == 6:
                self.file_in("piges", text, what, fatal=True)
            if kind in (1, 5, 6):
                self.file_in("Pictures", picture, what, fatal=False)
        for activity, document in connection.execute("SELECT ActivityID, ActionsDocument FROM Activities"):
            if document:
                self.file_in("Actions", document, "activity %d" % activity, fatal=True)
        for comment, picture in connection.execute("SELECT CommentID, Picture FROM Comments"):
            if picture:
                self.file_in("photos", picture, "comment %d" % comment, fatal=False)
        for term, picture, sound, video in connection.execute(
                "SELECT EuretirioID, Picture, Sound, Video FROM Euretirio"):
            what = "term %d" % term
            if picture:
                self.file_in("Photos", picture, what, fatal=False)
            if sound:
                self.file_in("Sounds", sound, what, fatal=False)
            if video:
                self.file_in("Videos", video, what, fatal=False)
        self.hot_words(connection)

    def hot_words(self, connection):
        links = [("comment %d" % c, r, p, rtfscan.COMMENT_COLOUR) for c, r, p in connection.execute(
            "SELECT CommentID, ResourceID, ExactPhrase FROM RelCommentResource")]
        links += [("term %d" % e, r, p, rtfscan.TERM_COLOUR) for e, r, p in connection.execute(
            "SELECT EuretirioID, ResourceID, ExactPhrase FROM RelEuretirioResource")]
        texts = {}
        for resource, path in connection.execute("SELECT ResourceID, TextPath FROM Resources WHERE ResTypeID = 2"):
            found = find_file(os.path.join(self.files_dir, "piges"), path)
            if found:
                with open(found, "rb") as f:
                    texts[resource] = rtfscan.read_rtf(f.read())
        counts = dict.fromkeys(texts, 0)
        for what, resource, phrase, colour in links:
            if resource not in texts:
                continue
            counts[resource] += 1
            problem = rtfscan.check_hot_word(texts[resource], phrase, colour)
            if problem:
                self.errors.append("%s in resource %d, \"%s\": %s" % (what, resource, phrase, problem))
        for resource, count in sorted(counts.items()):
            if count < 3:
                self.errors.append("resource %d has only %d hot words" % (resource, count))


def main(argv):
    parser = argparse.ArgumentParser(description="Builds the sample course.")
    parser.add_argument("--source", required=True, help="the sample folder of the sources")
    parser.add_argument("--out", required=True, help="the folder to build into")
    parser.add_argument("--stamp", help="a file to touch when everything is built")
    args = parser.parse_args(argv[1:])

    db_dir = os.path.join(args.source, "db")
    files_dir = os.path.join(args.source, "files")
    markup_dir = os.path.join(args.source, "tools", "markup")
    os.makedirs(args.out, exist_ok=True)

    database = os.path.join(args.out, DATABASE_NAME)
    build_database(db_dir, database)

    checker = Checker(files_dir)
    checker.stale_markup(os.path.join(markup_dir, "piges"), "piges")
    checker.stale_markup(os.path.join(markup_dir, "Actions"), "Actions")
    connection = sqlite3.connect(database)
    try:
        checker.run(connection)
        checker.manifest(os.path.join(args.source, "media.tsv"), connection)
    finally:
        connection.close()
    for message in checker.missing_media:
        sys.stderr.write("sample: not drawn yet: %s\n" % message)
    if checker.errors:
        for message in checker.errors:
            sys.stderr.write("sample: %s\n" % message)
        os.remove(database)
        return 1

    for folder in CONTENT_FOLDERS:
        source = os.path.join(files_dir, folder)
        if os.path.isdir(source):
            mirror_folder(source, os.path.join(args.out, folder))

    if args.stamp:
        with open(args.stamp, "w") as f:
            f.write("built\n")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
