#!/bin/sh
# Compares how the library and Python's configparser read the settings files of Debian packages:
#
#   compare_packages.sh TEST_PROGRAM [PACKAGE...]
#
# TEST_PROGRAM is real_settings_tests.exe of a build. The packages are downloaded, not installed; by
# default some with many settings files of different kinds. Needs python3, apt and a network.
set -eu

here=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd -P)
root=$(CDPATH='' cd -- "$here/../../../.." && pwd -P)
[ $# -gt 0 ] || { sed -n '2,7s/^# \{0,1\}//p' "$0"; exit 2; }
program=$(readlink -f -- "$1")
shift
if [ $# -eq 0 ]; then
    set -- apache2 avahi-daemon bluez colord cups-daemon fail2ban freetds-common geoclue-2.0 ibus inkscape \
        lightdm mariadb-common mariadb-server modemmanager network-manager nginx-common openssh-server \
        packagekit php8.2-common postgresql-common pulseaudio samba-common supervisor systemd tint2 uwsgi-core \
        vim-common wpasupplicant zathura
fi

work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
mkdir "$work/packages" "$work/files"

for package in "$@"; do
    (cd "$work/packages" && apt-get download -q "$package" >/dev/null) || {
        echo "skipped: $package cannot be downloaded" >&2
        continue
    }
    dpkg-deb -x "$work/packages/${package}_"*.deb "$work/packages/$package"
    # Settings files have sections, whatever they are called.
    find "$work/packages/$package" -type f -size -200k \( -name '*.ini*' -o -name '*.conf' -o -name '*.cnf' \
        -o -name '*.cfg' -o -name '*.desktop' -o -name '*.service' -o -name '*.socket' -o -name '*.timer' \
        -o -name '*.target' -o -name '*.theme' \) -exec grep -lI '^\[[^]]*\]' {} + |
        while IFS= read -r file; do
            name=$(printf '%s' "${file#"$work/packages/"}" | tr / _)
            cp -- "$file" "$work/files/$name"
            python3 "$here/expected_settings.py" "$work/files/$name" ||
                echo "skipped: configparser does not read $name" >&2
        done
done

echo "$(find "$work/files" -name '*.expected' | wc -l) files," \
    "$(cat "$work/files/"*.expected | grep -c '^value') entries to compare; left out:"
cat "$work/files/"*.expected | awk -F': ' '/^# left out/ { sum[$1] += $2 } END { for (k in sum) print k ": " sum[k] }'
ARVMUI_REAL_FILES="Z:$work/files" "$root/cmake/wine-run" "$program" --gtest_brief=1
