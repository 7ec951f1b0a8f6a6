#!/usr/bin/env bash
# The demo server beside a program: who starts it, who stops it and what is stored for the user.
#   session-test.sh PROFILE-TOOL FOLDER    the folder is emptied and holds a home
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source-path=SCRIPTDIR
. "$here/check.sh"
session=$here/../../demo/session.sh
server=$here/../../demo/server.sh
tool=$1
folder=$2
export HOME=$folder/home
unset XDG_DATA_HOME XDG_CONFIG_HOME
demo=$("$tool" --paths | sed -n 's/^demo=//p')
profiles=$("$tool" --paths | sed -n 's/^profiles=//p')
[[ $demo == "$folder"/* && $profiles == "$folder"/* ]] || {
    echo "FAILED: the user's files lie outside of $folder: $demo, $profiles"
    exit 1
}

stop_all() {
    "$server" stop "$demo" > /dev/null 2>&1
    "$server" stop "$folder/other" > /dev/null 2>&1
}
stop_all
trap stop_all EXIT
rm -rf "$folder"
mkdir -p "$HOME"

# What the program of a session does here: tells how many orders it sees.
count_orders() {
    "$session" "$tool" mariadb --defaults-file="$demo/client.cnf" -N -B -e \
        'SELECT COUNT(*) >= 10000 FROM shop.orders' 2>&1 | grep -v '^Demo server: \(load\|ready\)'
}
is_running() { "$server" status "$demo"; }
# How many properties of the profiles file have a name and a value; texts are kept as hex digits.
stored() { grep -c "\"$1\">$2<" "$profiles"; }
hex() { printf '\xEF\xBB\xBF%s' "$1" | od -An -v -tx1 | tr -d ' \n' | tr a-f A-F; }
# in_time COMMAND...: waits until it succeeds, for a minute at most
in_time() {
    local i
    for ((i = 0; i < 600; i++)); do "$@" > /dev/null 2>&1 && return; sleep 0.1; done
    return 1
}

test_first_run() {
    is "the program sees the shop" 1 "$(count_orders)"
    fails "server after the program" is_running
    is "profiles" 2 "$(stored alias '[0-9A-F]*')"
    is "the demo's alias" 1 "$(stored alias "$(hex 'Demo shop')")"
    is "the default profile's" 1 "$(stored alias "$(hex localhost)")"
    is "port" 1 "$(stored port "$(< "$demo/port")")"
    is "password" 1 "$(stored password "$(hex "$(< "$demo/password")")")"
    is "character set" 1 "$(stored charset "$(hex utf8mb4)")"
    is "only the owner reads the profiles" 600 "$(stat -c %a "$profiles")"
}

test_second_run() {
    cp -p "$profiles" "$folder/before.xml"
    is "the program sees the shop again" 1 "$(count_orders)"
    holds "profiles as before" cmp "$profiles" "$folder/before.xml"
    is "the program's exit code" 7 "$("$session" "$tool" sh -c 'exit 7' > /dev/null; echo $?)"
}

test_two_first_runs() {
    "$server" stop "$demo" > /dev/null
    rm -rf "$demo" "$profiles"
    local first
    count_orders > "$folder/first.txt" & first=$!
    is "one of two first sessions" 1 "$(count_orders)"
    wait "$first"
    is "the other" 1 "$(< "$folder/first.txt")"
    is "profiles of both" 2 "$(stored alias '[0-9A-F]*')"
    is "the profile is known" 1 "$(stored id "$(< "$demo/profile-id")")"
}

test_other_port() {
    local before id
    before=$(< "$demo/port")
    id=$(< "$demo/profile-id")
    mkdir -p "$folder/other"
    echo "$before" > "$folder/other/port"
    "$server" start "$folder/other" > /dev/null
    is "the program sees the shop on another port" 1 "$(count_orders)"
    is "the old port in the profiles" 0 "$(stored port "$before")"
    is "the new port" 1 "$(stored port "$(< "$demo/port")")"
    is "the same profile" 1 "$(stored id "$id")"
    is "profiles" 2 "$(stored alias '[0-9A-F]*')"
    "$server" stop "$folder/other" > /dev/null
}

test_two_sessions() {
    local first second
    "$session" "$tool" sleep 600 > /dev/null & first=$!
    in_time is_running
    "$session" "$tool" sleep 601 > /dev/null & second=$!
    in_time test -e "$demo/users/$second"
    kill "$first"
    wait "$first"
    is "exit code of a session that was told to end" 143 $?
    holds "server while the second session lasts" is_running
    kill -HUP "$second"
    wait "$second"
    is "exit code of a session whose terminal went away" 129 $?
    fails "server after both" is_running
}

test_killed_program() {
    is "exit code of a killed program" 137 \
        "$("$session" "$tool" sh -c 'kill -9 $$' > /dev/null 2>&1; echo $?)"
    fails "server after a killed program" is_running
    local killed
    "$session" "$tool" sleep 5 > /dev/null & killed=$!
    in_time test -e "$demo/users/$killed"
    in_time is_running
    kill -9 "$killed"
    wait "$killed" 2> /dev/null
    is "the next session after a killed one" 1 "$(count_orders)"
}

test_unwanted() {
    cp "$profiles" "$folder/kept.xml"
    sed -i "s/$(< "$demo/profile-id")/{another}/" "$profiles"
    fails "server for a user who removed the profile" "$session" "$tool" "$server" status "$demo"
    echo '<config' > "$profiles"
    is "the program with damaged profiles" "said so, ran" "$("$session" "$tool" echo ran 2>&1 |
        sed -n "s|.*$profiles.*|said so|p; /^ran$/p" | paste -sd, | sed 's/,/, /')"
    is "damaged profiles are left alone" '<config' "$(< "$profiles")"
    cp "$folder/kept.xml" "$profiles"
    rm "$profiles"
    fails "first profile without a server" "$tool" --store "$folder"
    fails "a file made by that" test -e "$profiles"
}

for group in first_run second_run two_first_runs other_port two_sessions killed_program unwanted; do
    "test_$group"
done
finish
