#!/usr/bin/env bash
# Runs a command, the workbench as a rule, with the demo server beside it:
#
#   session.sh PROFILE-TOOL COMMAND [ARGUMENT...]
#
# The server is started when the user has no profiles yet or has kept the profile of the demo, which
# then gets the port of today. It is shut down when the command ends and nobody else uses it. If it
# cannot be started, the command runs all the same.
set -uo pipefail

tool=$1
shift
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
demo=
child=

end_child() {
    [[ -n $child ]] && kill -TERM "$child" 2>/dev/null
    exit "$1" # what follows is done on exit
}

clean_up() {
    trap '' INT TERM HUP
    # The child may have something to save.
    [[ -n $child ]] && wait "$child" 2>/dev/null
    [[ -n $demo ]] && "$here/server.sh" stop "$demo" $$ > /dev/null
}

start_demo() {
    local paths
    paths=$("$tool" --paths) || return
    paths=$(sed -n 's/^demo=//p' <<< "$paths")
    "$tool" --wanted "$paths"
    case $? in
    0) ;;
    3) return 0 ;;
    *) return 1 ;;
    esac
    demo=$paths
    # One at a time, else two first sessions would store two profiles.
    "$here/server.sh" start "$demo" $$ && flock "$demo/lock" "$tool" --store "$demo"
}

trap 'end_child 130' INT
trap 'end_child 143' TERM
trap 'end_child 129' HUP
trap clean_up EXIT

start_demo || echo "The demo shop is not at hand; going on without it." >&2

# In the background, since a signal to this script is looked at only between foreground commands.
"$@" &
child=$!
# The command counts as well: it goes on using the server if this script is killed. It may have
# ended already, which is no reason for a message.
[[ -n $demo ]] && "$here/server.sh" start "$demo" "$child" > /dev/null 2>&1
wait "$child"
code=$?
child=
exit "$code"
