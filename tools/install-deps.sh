#!/usr/bin/env bash
# Installs the Debian packages named in tools/packages/<set>.txt that are not installed
# yet. Usage: tools/install-deps.sh build run [test]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

wanted=()
for set in "$@"; do
    while read -r line; do
        line=${line%%#*}
        line=$(echo "$line" | xargs)
        [ -n "$line" ] && wanted+=("$line")
    done < "$here/packages/$set.txt"
done

missing=()
for pkg in "${wanted[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$pkg" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$pkg")
done

if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo_cmd=()
    [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    export DEBIAN_FRONTEND=noninteractive
    "${sudo_cmd[@]}" apt-get update -qq
    "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
