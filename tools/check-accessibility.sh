#!/usr/bin/env bash
# Starts the program on the sample course on a virtual X display with an accessibility
# bus of its own, walks it by keys alone (start screen, shell, a text, a hot word's tip
# and back, the text search) and reads every window as a screen reader does. Prints each step and every
# object that takes the focus without a name or a role; exits non-zero on any failure.
#
#   tools/check-accessibility.sh [BUILD_DIR]     (default: build)
#
# Needs Xvfb, xdotool, dbus, at-spi2-core and python3-pyatspi (tools/packages/test.txt).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$top/build}" && pwd)
program="$build/bin/tremidia"
config="$build/sample-config"
if [ ! -x "$program" ] || [ ! -f "$config/tremidia/tremidia.conf" ]; then
    echo "check-accessibility: build the program and the sample first ($program, $config)" >&2
    exit 2
fi
for tool in Xvfb xdotool dbus-run-session /usr/bin/python3; do
    command -v "$tool" >/dev/null || { echo "check-accessibility: $tool is missing" >&2; exit 2; }
done

work=$(mktemp -d)
xvfb_pid=""
cleanup() {
    if [ -n "$xvfb_pid" ]; then
        kill "$xvfb_pid" 2>/dev/null || true
        wait "$xvfb_pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT INT TERM

# A display of our own, away from the low numbers that other virtual displays take.
start_display() {
    local n
    for n in $(shuf -i 100-899 -n 20); do
        [ -e "/tmp/.X$n-lock" ] && continue
        Xvfb ":$n" -screen 0 1024x768x24 -nolisten tcp -noreset >"$work/xvfb.log" 2>&1 &
        xvfb_pid=$!
        for _ in $(seq 1 100); do
            if ! kill -0 "$xvfb_pid" 2>/dev/null; then
                break
            fi
            if DISPLAY=":$n" xdotool getmouselocation >/dev/null 2>&1; then
                export DISPLAY=":$n"
                return 0
            fi
            sleep 0.1
        done
        kill "$xvfb_pid" 2>/dev/null || true
        wait "$xvfb_pid" 2>/dev/null || true
        xvfb_pid=""
    done
    return 1
}
start_display || { echo "check-accessibility: no virtual display could be started" >&2; cat "$work/xvfb.log" >&2; exit 2; }
echo "check-accessibility: display $DISPLAY"

mkdir -m 700 "$work/runtime"
export XDG_RUNTIME_DIR="$work/runtime"
export XDG_CONFIG_HOME="$config"
export HOME="$work"
export LC_ALL=C.UTF-8
export NO_AT_BRIDGE=0
unset DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS

# The session bus starts the accessibility bus when the program asks for it; all of it
# ends with the session.
status=0
timeout --kill-after=10 150 \
    dbus-run-session -- /usr/bin/python3 "$top/tools/check-accessibility.py" "$program" || status=$?
if [ "$status" -ne 0 ] && [ -s "$work/xvfb.log" ]; then
    echo "check-accessibility: the virtual display said:" >&2
    tail -n 20 "$work/xvfb.log" >&2
fi
exit "$status"
