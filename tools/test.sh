#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
tools/install-deps.sh build run test
tools/build.sh
cmake --build build --target sample-content
cd build
QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$(nproc)" --timeout 900
