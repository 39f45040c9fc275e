# shellcheck shell=sh
# Shell functions that test.sh and demo.sh share; read with ". scripts/prepare.sh" under "set -eu".
#
#   arvmui_require_packages [package...]  installs what building and testing need, and the packages named
#   arvmui_build preset [target...]       configures, with ARVMUI_CONFIGURE_OPTIONS, and builds into build/<preset>
#   arvmui_start_display                  starts an X server of its own and exports DISPLAY
#   arvmui_prepare_wine                   makes the Wine prefix ready; after arvmui_start_display
#   arvmui_say text...                    a line of progress
#   arvmui_at_exit command                what to do when the script ends, last named first
#
# Nothing here reads standard input or asks a question.

ARVMUI_ROOT=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd -P)
export ARVMUI_ROOT

ARVMUI_BUILD_PACKAGES="cmake ninja-build googletest libcli11-dev nlohmann-json3-dev g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix
    mingw-w64-x86-64-dev binutils-mingw-w64-x86-64 msitools gcab"
# What packing the SDK needs on top, and testing the package:
# shellcheck disable=SC2034 # used by the scripts that read this file
ARVMUI_SDK_PACKAGES="ca-certificates doxygen llvm mono-mcs pkgconf python3 strip-nondeterminism wixl"
ARVMUI_RUN_PACKAGES="wine wine64 xvfb util-linux"

arvmui_exit_commands=:
arvmui_finish()
{
    arvmui_status=$?
    trap - EXIT HUP INT TERM
    eval "$arvmui_exit_commands" || true
    exit "$arvmui_status"
}
trap arvmui_finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

arvmui_at_exit()
{
    arvmui_exit_commands="$1
$arvmui_exit_commands"
}

arvmui_say()
{
    printf '== %s\n' "$*"
}

arvmui_fail()
{
    printf 'error: %s\n' "$*" >&2
    exit 1
}

arvmui_as_root()
{
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null 2>&1; then
        sudo -n "$@"
    else
        arvmui_fail "packages are missing and neither root nor sudo is there to install them: $arvmui_missing"
    fi
}

arvmui_require_packages()
{
    arvmui_missing=
    for arvmui_package in $ARVMUI_BUILD_PACKAGES $ARVMUI_RUN_PACKAGES "$@"; do
        case $(dpkg-query -W -f='${Status}' "$arvmui_package" 2>/dev/null || true) in
            "install ok installed") ;;
            *) arvmui_missing="$arvmui_missing $arvmui_package" ;;
        esac
    done
    if [ -z "$arvmui_missing" ]; then
        return 0
    fi
    arvmui_say "Installing packages:$arvmui_missing"
    arvmui_as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q </dev/null
    # One word for each package:
    # shellcheck disable=SC2086
    arvmui_as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends $arvmui_missing </dev/null
}

arvmui_build()
{
    arvmui_preset=$1
    shift
    arvmui_say "Building preset $arvmui_preset into build/$arvmui_preset"
    (
        cd -- "$ARVMUI_ROOT" || exit
        # One word for each option:
        # shellcheck disable=SC2086
        cmake --preset "$arvmui_preset" ${ARVMUI_CONFIGURE_OPTIONS:-} </dev/null
        if [ $# -gt 0 ]; then
            cmake --build --preset "$arvmui_preset" --target "$@" </dev/null
        else
            cmake --build --preset "$arvmui_preset" </dev/null
        fi
    )
}

arvmui_stop_process()
{
    kill "$1" 2>/dev/null || return 0
    wait "$1" 2>/dev/null || true
}

# -displayfd lets the server choose a free number itself, so two runs never fight for one.
arvmui_start_display()
{
    arvmui_say "Starting a display of our own (Xvfb)"
    arvmui_display_file=$(mktemp)
    arvmui_at_exit "rm -f '$arvmui_display_file'"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp \
        3>"$arvmui_display_file" </dev/null >/dev/null 2>&1 &
    arvmui_display_pid=$!
    arvmui_at_exit "arvmui_stop_process $arvmui_display_pid"
    arvmui_tries=0
    until [ -s "$arvmui_display_file" ]; do
        kill -0 "$arvmui_display_pid" 2>/dev/null || arvmui_fail "Xvfb did not start"
        arvmui_tries=$((arvmui_tries + 1))
        [ "$arvmui_tries" -le 300 ] || arvmui_fail "Xvfb did not report a display within 30 seconds"
        sleep 0.1
    done
    DISPLAY=:$(tr -d '\n' <"$arvmui_display_file")
    export DISPLAY
}

# A Wine server decides about its display when it starts, so every run has one of its own: a prefix
# serves one run at a time, and no server from before is taken over.
arvmui_prepare_wine()
{
    ARVMUI_WINEPREFIX=${ARVMUI_WINEPREFIX:-$ARVMUI_ROOT/build/wineprefix}
    export ARVMUI_WINEPREFIX
    mkdir -p -- "$ARVMUI_WINEPREFIX"
    exec 8>"$ARVMUI_WINEPREFIX.run"
    if ! flock -n 8; then
        arvmui_say "Waiting for another run that uses $ARVMUI_WINEPREFIX"
        flock 8
    fi
    "$ARVMUI_ROOT/scripts/prepare-wine-prefix" "$ARVMUI_WINEPREFIX" </dev/null 8>&-
    arvmui_stop_wine
    arvmui_at_exit arvmui_stop_wine
}

arvmui_stop_wine()
{
    WINEPREFIX=$ARVMUI_WINEPREFIX wineserver -k </dev/null >/dev/null 2>&1 8>&- || return 0
    WINEPREFIX=$ARVMUI_WINEPREFIX wineserver -w </dev/null >/dev/null 2>&1 8>&- || true
}
