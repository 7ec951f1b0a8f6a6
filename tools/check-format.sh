#!/usr/bin/env bash
# Refuses C++ that clang-format would lay out otherwise. Looks at the files that changed since the
# last time all was well.
#   check-format.sh STAMP
set -euo pipefail
cd "$(dirname "$0")/.."
stamp=$1

# Each version of the program has a taste of its own; the tree follows Debian 12's.
if ! clang-format --version | grep -q 'version 14\.'; then
    echo "Skipped: needs clang-format 14"
    exit 77
fi

newer=()
[ ! -e "$stamp" ] || [ .clang-format -nt "$stamp" ] || newer=(-newer "$stamp")
started=$(mktemp)
trap 'rm -f "$started"' EXIT
mapfile -d '' files < <(
    find src tests bench demo \( -name '*.h' -o -name '*.cpp' \) "${newer[@]}" -print0
)
if [ ${#files[@]} -gt 0 ]; then
    printf '%s\0' "${files[@]}" | xargs -0 -n 40 -P "$(nproc)" clang-format --dry-run -Werror
fi
mv "$started" "$stamp"
trap - EXIT
