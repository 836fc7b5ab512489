#!/bin/sh
# run_fuzzer.sh SOURCE_DIR BUILD_DIR TARGET CORPUS SECONDS CLANGXX [LIBFUZZER_OPTION...]
# Builds one fuzzing target with clang in its own build folder and runs it on a copy of
# its seed corpus for a while. Any crash, hang, leak or failed check fails the test.
set -eu
source_dir=$1
build_dir=$2
target=$3
corpus=$4
seconds=$5
compiler=$6
shift 6

mkdir -p "$build_dir"
cmake -S "$source_dir" -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER="$compiler" >"$build_dir.configure.log" 2>&1 || {
    cat "$build_dir.configure.log"
    exit 1
}
cmake --build "$build_dir" --target "$target"

work=$build_dir/corpus
rm -rf "$work"
mkdir -p "$work"
cp "$corpus"/* "$work"/
cd "$build_dir"
QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=1 \
    "./$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 "$@" "$work"
