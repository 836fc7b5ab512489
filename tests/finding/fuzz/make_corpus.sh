#!/bin/sh
# make_corpus.sh BUILD_DIR CORPUS
# Makes the seed corpus: index files that the content tool builds for small contents,
# turned into pages of 512 bytes so that a mutation lands in the index's own data more
# often than in SQLite's empty space. Needs the built tremidia-content and sqlite3.
set -eu
tool=$1/bin/tremidia-content
corpus=$2
top=$(cd "$(dirname "$0")/../../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# seed NAME WORDS...: one text for each word group, a photograph with the last as its caption.
seed() {
    name=$1
    shift
    dir=$work/$name
    mkdir -p "$dir/piges"
    sqlite3 "$dir/content.sqlite" <"$top/sample/db/schema.sql"
    id=0
    for words in "$@"; do
        id=$((id + 1))
        printf '{\\rtf1\\ansi %s\\par}' "$words" >"$dir/piges/t$id.rtf"
        sqlite3 "$dir/content.sqlite" \
            "INSERT INTO Resources (ResourceID, ResTypeID, Book, TextPath) VALUES ($id, 2, 'Βιβλίο $id', 't$id.rtf')"
    done
    sqlite3 "$dir/content.sqlite" \
        "INSERT INTO Resources (ResourceID, ResTypeID, Caption) VALUES (99, 1, 'Ο ναός του Απόλλωνα')"
    XDG_CACHE_HOME=$dir/cache "$tool" fulltext "$dir/content.sqlite" ναός >/dev/null
    index=$(ls "$dir"/cache/tremidia/fulltext-*.sqlite)
    sqlite3 "$index" "PRAGMA page_size = 512; VACUUM;"
    cp "$index" "$corpus/$name.sqlite"
}

mkdir -p "$corpus"
seed delos "Τότε ο ναός της Δήλου καθαρίστηκε. Οι Δήλιοι έφυγαν με τις τριήρεις." \
    "Το ναυτικό των Αθηναίων και ο ναυτικός νόμος των θαλασσών."
seed phrases "ο ναός ο ναός της Δήλου ο ναός" "της Δήλου Απόλλωνα a b c a b c"
seed one "κ"
seed photo
