#!/bin/sh
# Builds everything and runs all tests: ./test.sh [--release-only]
#
# Needs Debian 12 (or a system with the same packages); missing packages are installed with apt-get, as root
# or through sudo. Exit code 0 means: all tests passed.
set -eu
. "$(dirname -- "$0")/scripts/prepare.sh"

debug=yes
for argument in "$@"; do
    case $argument in
        --release-only) debug=no ;;
        *) arvmui_fail "usage: ./test.sh [--release-only]" ;;
    esac
done

run_tests()
{
    (
        cd -- "$ARVMUI_ROOT"
        ctest --preset "$@" </dev/null 8>&-
    )
}

# One word for each package:
# shellcheck disable=SC2086
arvmui_require_packages $ARVMUI_SDK_PACKAGES
arvmui_build mingw-release
if [ "$debug" = yes ]; then
    # Without debug information: nobody looks at it here, and it takes a third of the time.
    ARVMUI_CONFIGURE_OPTIONS="-DCMAKE_C_FLAGS_DEBUG=-Og -DCMAKE_CXX_FLAGS_DEBUG=-Og"
    arvmui_build mingw-debug
fi
arvmui_start_display
arvmui_prepare_wine

failed=0
if [ "$debug" = yes ]; then
    arvmui_say "Tests of the debug build: undefined behaviour, smashed stacks and misused containers end them"
    run_tests mingw-debug --label-exclude '^(header|build|translations|docs|package)$' || failed=1
fi
arvmui_say "All tests of the release build"
run_tests mingw-release || failed=1

if [ "$failed" -ne 0 ]; then
    arvmui_say "Tests failed"
else
    arvmui_say "All tests passed"
fi
exit "$failed"
