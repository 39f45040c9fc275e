#!/bin/sh
# Builds and runs the benchmarks: ./bench.sh [NAME...]
#
# Everything, Wine's server included, is kept on one processor, and each benchmark takes turns between
# what it compares, so the ratios hold where single times do not. Nothing else should run meanwhile.
set -eu
. "$(dirname -- "$0")/scripts/prepare.sh"

names=${*:-text_file_bench decoder_bench profile_bench dialog_bench local_package_bench}

arvmui_require_packages
arvmui_say "Building the benchmarks into build/bench"
# The release build, in a folder of its own because bin/ of the release is what gets shipped.
cmake -S "$ARVMUI_ROOT" -B "$ARVMUI_ROOT/build/bench" -G Ninja \
    --toolchain "$ARVMUI_ROOT/cmake/mingw-w64-x86_64.cmake" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" -DARVMUI_BUILD_BENCHMARKS=ON -DARVMUI_BUILD_TESTS=OFF \
    -DARVMUI_BUILD_SAMPLES=OFF -DARVMUI_BUILD_TOOLS=OFF </dev/null
cmake --build "$ARVMUI_ROOT/build/bench" </dev/null

taskset -cp 0 $$ >/dev/null
arvmui_start_display
arvmui_prepare_wine
for name in $names; do
    "$ARVMUI_ROOT/cmake/wine-run" "$ARVMUI_ROOT/build/bench/bin/$name.exe" </dev/null 8>&-
done
