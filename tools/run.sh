#!/usr/bin/env bash
# Installs what is missing, builds the program and the sample content, and starts the
# program on the sample content. The sample is selected through a settings file of its
# own under build/, so a database chosen for this machine is left alone.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
tools/install-deps.sh build run
tools/build.sh
cmake --build build --target sample-content

export XDG_CONFIG_HOME="$top/build/sample-config"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "No display found; starting the program on a virtual one (xvfb-run)." >&2
    "$top/tools/install-deps.sh" test
    exec xvfb-run -a -s "-screen 0 1024x768x24" "$top/build/bin/tremidia"
fi
exec "$top/build/bin/tremidia"
