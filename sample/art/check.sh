#!/bin/bash
# Checks that every file of the media list is there, says how large the content
# folders have grown, and fails if something is missing or the whole passes 20 MB.
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
sample="$(dirname "$here")"
missing=0
while IFS=$'\t' read -r folder file _rest; do
    [ "$folder" = "folder" ] && continue
    [ -n "$folder" ] || continue
    if [ ! -s "$sample/files/$folder/$file" ]; then
        echo "missing: $folder/$file"
        missing=$((missing + 1))
    fi
done < "$sample/media.tsv"
total=$(du -sb "$sample/files" | cut -f1)
echo "content files: $((total / 1024)) KB, missing: $missing"
[ "$missing" -eq 0 ] && [ "$total" -lt $((20 * 1024 * 1024)) ]
