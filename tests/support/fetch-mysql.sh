#!/usr/bin/env bash
# Fetches a MySQL 9 server once into the cache of the tests. Debian stable has none, so packages of
# the unstable suite are unpacked into a folder with the C library they need; nothing is installed
# and no root is needed. About 260 MB. Why it failed is left beside the folder in a .log file.
set -euo pipefail

root=${KORVANE_MYSQL9_ROOT:-${XDG_CACHE_HOME:-$HOME/.cache}/korvane-tests/mysql9}
[ ! -x "$root/usr/sbin/mysqld" ] || exit 0

mkdir -p "$(dirname "$root")"
exec 9>"$root.lock"
flock 9
[ ! -x "$root/usr/sbin/mysqld" ] || exit 0
exec 2>"$root.log"

work=$(mktemp -d -p "$(dirname "$root")")
trap 'rm -rf "$work"' EXIT

die() {
    echo "$*" >&2
    exit 1
}

# The first Debian mirror that apt is set up with.
mirror() {
    { cat /etc/apt/sources.list.d/*.sources /etc/apt/sources.list 2>/dev/null || true; } |
        awk '/^URIs:/ {print $2}
             /^deb / {for (i = 2; i <= NF; i++) if ($i ~ /^https?:/) print $i}' |
        awk '!/security/ && /debian/ && !n++'
}

[ "$(dpkg --print-architecture)" = amd64 ] || die "only known for amd64"
url=$(mirror)
[ -n "$url" ] || die "apt has no Debian mirror set up"

mkdir -p "$work"/{lists,cache,debs}/partial "$work/root"
echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $url sid main" \
    >"$work/sid.list"
options=(-o "Dir::Etc::sourcelist=$work/sid.list" -o Dir::Etc::sourceparts=/dev/null
    -o "Dir::State::lists=$work/lists" -o Dir::State::status=/dev/null
    -o "Dir::Cache=$work/cache" -o APT::Sandbox::User=root
    -o Acquire::Retries=1 -o Acquire::http::Timeout=30)
apt-get "${options[@]}" -qq update
mapfile -t packages < <(
    apt-cache "${options[@]}" depends --recurse --no-recommends --no-suggests --no-conflicts \
        --no-breaks --no-replaces --no-enhances mysql-server-core |
        grep '^[a-z]' | sort -u | grep -vE 'perl|gdbm|gconv'
)
[ ${#packages[@]} -gt 0 ] || die "no MySQL server in $url"
(cd "$work/debs" && apt-get "${options[@]}" -qq download "${packages[@]}")
for deb in "$work"/debs/*.deb; do dpkg -x "$deb" "$work/root"; done
[ -x "$work/root/usr/sbin/mysqld" ] || die "mysqld is not in the packages"
rm -rf "$root"
mv -T "$work/root" "$root"
rm -f "$root.log"
