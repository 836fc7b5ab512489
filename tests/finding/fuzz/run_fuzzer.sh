#!/bin/sh
# run_fuzzer.sh SOURCE_DIR BUILD_DIR CORPUS SECONDS CLANGXX
# Builds the index reader's fuzzing target with clang in its own build folder and runs it
# on a copy of the seed corpus for a while. Any crash, hang, leak or failed check fails
# the test.
set -eu
source_dir=$1
build_dir=$2
corpus=$3
seconds=$4
compiler=$5

mkdir -p "$build_dir"
cmake -S "$source_dir" -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER="$compiler" >"$build_dir.configure.log" 2>&1 || {
    cat "$build_dir.configure.log"
    exit 1
}
cmake --build "$build_dir" --target index_fuzzer

work=$build_dir/corpus
rm -rf "$work"
mkdir -p "$work"
cp "$corpus"/* "$work"/
cd "$build_dir"
# The seeds are index files of a few pages; a mutation rarely needs more room than twice
# the largest.
ASAN_OPTIONS=detect_leaks=1 ./index_fuzzer -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
    -max_len=32768 -print_final_stats=1 "$work"
