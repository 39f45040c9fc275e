#!/bin/sh
# Static checks beyond the compilers' warnings: scripts/lint.sh [FILE...]
#
# clang-tidy and cppcheck over the given sources (all of src/ by default), with the database of the
# mingw-debug preset, which must have been configured. Exit code 0 means: nothing found.
set -eu

root=$(dirname -- "$(dirname -- "$(readlink -f -- "$0")")")
cd -- "$root"
database=build/mingw-debug

for tool in clang-tidy cppcheck x86_64-w64-mingw32-g++-posix; do
    command -v "$tool" >/dev/null || {
        echo "error: $tool is missing (packages: clang-tidy cppcheck g++-mingw-w64-x86-64-posix)" >&2
        exit 1
    }
done
if [ ! -e "$database/compile_commands.json" ]; then
    echo "error: configure first: cmake --preset mingw-debug" >&2
    exit 1
fi
if [ $# -eq 0 ]; then
    # No file name in the tree contains a blank:
    # shellcheck disable=SC2046
    set -- $(find src -name '*.cpp' | sort)
fi

# clang knows the target's C headers, and has to be told where its C++ library is.
library=$(dirname -- "$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)")/include/c++
failed=0
printf '%s\n' "$@" | xargs -P "$(nproc)" -n 4 clang-tidy -p "$database" --quiet \
    --extra-arg-before=--target=x86_64-w64-mingw32 \
    --extra-arg=-nostdinc++ \
    "--extra-arg=-isystem$library" \
    "--extra-arg=-isystem$library/x86_64-w64-mingw32" \
    --extra-arg=-Wno-unknown-warning-option || failed=1

for file in "$@"; do
    set -- "$@" "--file-filter=*$file"
    shift
done
cppcheck --platform=win64 --library=windows --enable=warning --inline-suppr --quiet --error-exitcode=1 \
    "--project=$database/compile_commands.json" "$@" || failed=1
exit "$failed"
