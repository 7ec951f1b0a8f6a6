#!/usr/bin/env bash
# Installs the packages of packages.txt that are missing; says nothing when there are none.
set -euo pipefail
cd "$(dirname "$0")/.."

die() {
    echo "install-packages.sh: $*" >&2
    exit 1
}

command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
    die "this is no Debian system; install what packages.txt lists by other means"

mapfile -t wanted < <(sed 's/#.*//; s/[[:blank:]]//g; /^$/d' packages.txt)
mapfile -t missing < <(
    comm -23 <(printf '%s\n' "${wanted[@]}" | sort -u) \
        <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null |
            sed -n 's/^installed //p' | sort -u)
)
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -eq 0 ]; then
    root=()
elif command -v sudo >/dev/null; then
    root=(sudo)
else
    die "these packages are missing and only root can install them: ${missing[*]}"
fi
echo "Installing ${#missing[@]} packages: ${missing[*]}"

# Fresh packages of servers start them at once and at every boot. Here they are only programs that
# the tests start for themselves: a policy of "no" forbids the first, disabling the second.
policy=/usr/sbin/policy-rc.d
if [ ! -e $policy ]; then
    printf '#!/bin/sh\nexit 101\n' | "${root[@]}" tee $policy >/dev/null
    trap '"${root[@]}" rm -f $policy' EXIT
    "${root[@]}" chmod 755 $policy
fi

apt() {
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0 "$@"
}
apt update || echo "install-packages.sh: the package lists could not all be renewed" >&2
log=$(mktemp)
if ! apt install --no-install-recommends --yes "${missing[@]}" >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    die "apt-get could not install: ${missing[*]}"
fi
rm -f "$log"

for service in mariadb-server:mariadb openssh-server:ssh; do
    case " ${missing[*]} " in
    *" ${service%:*} "*)
        if [ -d /run/systemd/system ]; then
            "${root[@]}" systemctl --quiet disable "${service#*:}"
        fi
        ;;
    esac
done
