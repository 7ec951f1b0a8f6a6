#!/usr/bin/env bash
# Plays a tour of the real workbench on a display of its own and saves pictures of it:
#
#   tour.sh BINARY OUTDIR
#
# Mouse and keyboard are real input events; every step is checked by what assistive technology reads
# from the screen. The first failed check ends it with an exit code other than 0 and a last picture.
set -euo pipefail

[[ $# == 2 && -x $1 ]] || {
    echo "Usage: $0 BINARY OUTDIR" >&2
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
