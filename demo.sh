#!/bin/sh
# Shows what ARVMUI does: builds the library and the sample programs and runs them under Wine, in one
# language after another: ./demo.sh [--installer]
#
# With --installer it installs and removes the sample's installer package instead, in two languages.
#
# Needs Debian 12 (or a system with the same packages); missing packages are installed with apt-get, as root
# or through sudo. Asks nothing and ends by itself; exit code 0 means: every run greeted in the right language.
set -eu
. "$(dirname -- "$0")/scripts/prepare.sh"
. "$ARVMUI_ROOT/scripts/demo-installer"

part=${1:-languages}
case $part in
    languages | --installer) ;;
    *) arvmui_fail "usage: ./demo.sh [--installer]" ;;
esac
[ $# -le 1 ] || arvmui_fail "usage: ./demo.sh [--installer]"

english='Hello! This program speaks English.'
german='Hallo! Dieses Programm spricht Deutsch.'
spanish='¡Hola! Este programa habla español.'
french='Bonjour ! Ce programme parle français.' # with a no-break space
japanese='こんにちは。このプログラムは日本語で話します。'

settings='HKCU\SOFTWARE\Pelkor\MUI'
button_yes=6
failed=0

# Runs a program of the build under Wine; the time limit is for a machine where something hangs.
run_program()
{
    timeout 120 "$ARVMUI_ROOT/cmake/wine-run" "$@" </dev/null 8>&-
}

# show TITLE TIMES GREETING PROGRAM [ARGUMENT...]: runs the program and expects success and this greeting, so many
# times.
show()
{
    title=$1
    times=$2
    greeting=$3
    shift 3
    echo
    arvmui_say "$title"
    printf '   > %s\n' "$*"
    status=0
    output=$(run_program "$@" 2>&1) || status=$?
    output=$(printf '%s\n' "$output" | tr -d '\r')
    printf '%s\n' "$output"
    if [ "$status" -ne 0 ]; then
        arvmui_say "FAILED: exit code $status"
        failed=1
    elif [ "$(printf '%s\n' "$output" | grep -cxF -- "$greeting" || true)" -ne "$times" ]; then
        arvmui_say "FAILED: expected $times x \"$greeting\""
        failed=1
    fi
}

# Makes a locale for Wine to take the system's language from.
make_locale()
{
    locale_folder=$(mktemp -d)
    arvmui_at_exit "rm -rf '$locale_folder'"
    localedef -i "$1" -f UTF-8 "$locale_folder/$1.UTF-8"
}

remove_setting()
{
    run_program reg delete "$settings" /v UILocale /f >/dev/null 2>&1 || true
}

finish()
{
    echo
    if [ "$failed" -ne 0 ]; then
        arvmui_say "The demonstration failed"
    else
        arvmui_say "$1"
    fi
    exit "$failed"
}

if [ "$part" = --installer ]; then
    arvmui_require_packages
    arvmui_build mingw-release installer_sample
    arvmui_start_display
    arvmui_prepare_wine
    cd -- "$ARVMUI_ROOT/build/mingw-release/bin"
    demo_installer
    finish "Both installations spoke the expected language"
fi

arvmui_require_packages locales
arvmui_build mingw-release hello answer_box phrasebook_tour
arvmui_start_display
arvmui_prepare_wine
remove_setting

cd -- "$ARVMUI_ROOT/build/mingw-release/bin"
show "Without any choice: the language of the system, which is English here" \
    1 "$english" hello.exe

make_locale es_ES
export LOCPATH="$locale_folder" ARVMUI_WINE_LOCALE=es_ES.UTF-8
show "The same on a Spanish system" \
    1 "$spanish" hello.exe
unset LOCPATH ARVMUI_WINE_LOCALE

show "The command line asks for German" \
    1 "$german" hello.exe /uilocale:de
show "A list: nobody translated the program into \"xx\", so Japanese comes first" \
    1 "$japanese" hello.exe /uilocale:xx,ja,en
show "A Windows language identifier does as well" \
    1 "$japanese" hello.exe /uilocale:0x0411

run_program reg add "$settings" /v UILocale /d fr /f >/dev/null
arvmui_at_exit remove_setting
show "The user's setting in the registry is French ($settings, UILocale)" \
    1 "$french" hello.exe
show "The command line counts for more than the registry" \
    1 "$german" hello.exe /uilocale:de
remove_setting

# A file like any program's, which happens to name a language.
settings_file=$(mktemp)
arvmui_at_exit "rm -f '$settings_file'"
printf '[Program]\r\nUILocale = ja\r\n' >"$settings_file"
show "A settings file on the command line asks for Japanese" \
    1 "$japanese" hello.exe "Z:$settings_file"
show "A translated text file, stored in the code page of its language (932), read as Unicode" \
    1 "$japanese" hello.exe /uilocale:ja /text
if ! printf '%s\n' "$output" | grep -qF 'Unicode を受け取ります'; then
    arvmui_say "FAILED: expected the text file in Japanese"
    failed=1
fi

show "The parent is told to speak Spanish; its child is told nothing and speaks Spanish too" \
    2 "$spanish" hello.exe /uilocale:es /child
show "A message box with German buttons on an English system, answered by a helper program" \
    1 "$german" answer_box.exe "$button_yes" hello.exe /uilocale:de /box
if ! printf '%s\n' "$output" | grep -qF '[&Ja]'; then
    arvmui_say "FAILED: expected a button [&Ja]"
    failed=1
fi

german_window='  Dieses Programm spricht Deutsch (de-DE).'
japanese_window='  このプログラムは日本語で話します (ja-JP)。'
make_locale de_DE
export LOCPATH="$locale_folder" ARVMUI_WINE_LOCALE=de_DE.UTF-8
show "A program with a window on a German system; its user prefers Japanese from now on" \
    1 "$german_window" phrasebook_tour.exe /prefer:Japanese
show "The same program, started again" 1 "$japanese_window" phrasebook_tour.exe
unset LOCPATH ARVMUI_WINE_LOCALE
remove_setting

finish "Every run spoke the expected language"
