#!/usr/bin/env bash
# Plays a tour of the real workbench on a display of its own and saves pictures of it:
#
#   tour.sh BINARY OUTDIR [--server mariadb|mysql] [--part WORD]
#
# The whole tour is played on the demo server. With "--server mysql" the scenes of a workspace (tree,
# rows, records, tables, schemas) are played on a MySQL 9 of the tour's own, which is fetched once;
# where it cannot be had, a line says so and nothing is played. With --part only the scenes play
# that are of a file of this name in tour/, and those that lead there.
#
# Mouse and keyboard are real input events; every step is checked by what assistive technology reads
# from the screen. The first failed check ends it with an exit code other than 0 and a last picture.
set -euo pipefail

[[ $# -ge 2 && -x $1 ]] || {
    echo "Usage: $0 BINARY OUTDIR [--server mariadb|mysql] [--part WORD]" >&2
    exit 2
}
here=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")" && pwd)

for tool in Xvfb:xvfb openbox:openbox xdotool:xdotool dbus-daemon:dbus mariadb:mariadb-client; do
    command -v "${tool%:*}" > /dev/null || {
        echo "tour: ${tool%:*} is missing; install the package ${tool#*:}." >&2
        exit 1
    }
done

# Debian's own modules are known to Debian's own Python only, which need not be first on the path.
for python in /usr/bin/python3 python3; do
    if "$python" -c 'import gi.repository.Gio' 2> /dev/null; then
        exec "$python" -B "$here/tour/tour.py" "$@"
    fi
done
echo "tour: Python has no GObject; install the package python3-gi." >&2
exit 1
