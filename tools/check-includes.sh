#!/usr/bin/env bash
# Refuses what neither compiler nor linker sees: a header of a room that lies above, Qt headers
# named with their module's folder (they slip past the list of what a room links), and words that
# have no place in the tree. Prints the offenders.
set -euo pipefail
cd "$(dirname "$0")/.."
failed=0

refuse() { # WHY OFFENDERS
    [ -n "$2" ] || return 0
    printf '%s\n%s\n' "$1" "$2"
    failed=1
}

search() { # as git grep, over all files that are not ignored, committed or not
    git grep --no-index --exclude-standard -nI "$@" || true
}

rooms=$(search -E '^ *# *include +"[a-z]+/' -- src tests bench demo | awk '
    BEGIN {
        below["support"] = "support"
        below["client"] = "support client"
        below["entities"] = "support entities"
        below["core"] = below["client"] " entities core"
        below["sql"] = below["core"] " sql"
        below["model"] = below["sql"] " model"
        below["jobs"] = below["model"] " jobs"
        below["app"] = below["jobs"] " app"
        below["tools"] = below["sql"] " tools"
        below["widgets"] = "support client widgets"
        below["shell"] = below["app"] " tools widgets windows shell pages"
        below["pages"] = below["windows"] = below["shell"]
    }
    # The room of a file by its path from src/ or tests/.
    function room(path) {
        if (path ~ /^model\/u(DbmEntit|DbmComparers)/) return "entities"
        if (path ~ /^jobs\/u(WorkerForm|AppWorkers)/) return "windows"
        sub("/.*", "", path)
        return path == "support_tests" ? "support" : path
    }
    {
        file = $0; sub(":.*", "", file)
        inTests = file ~ "^tests/"
        from = file; sub("^[a-z]+/", "", from)
        from = room(from)
        included = $0; sub(/^[^"]*"/, "", included); sub(/".*/, "", included)
        to = room(included)
        if (!(from in below) || !(to in below) || (inTests && from == "support" && file !~ /_tests/))
            next
        if (index(" " below[from] " ", " " to " ") == 0)
            print
        else if (from == "shell" && to == "pages" && file ~ /\.h$/)
            print
    }')
refuse "Includes that look upwards between the rooms:" "$rooms"

refuse "Qt headers with the folder of their module:" \
    "$(search -E '^ *# *include +[<"]Qt[A-Za-z0-9]*/' -- src tests bench demo)"

# The brackets keep this file from naming what it forbids.
refuse "Texts outside the tree that the tree must not mention:" "$(search -iE \
    '\b[s]pecification\b|\b[s]pec\.md\b|\bthe [s]pec\b|\bas [s]pecified\b|\b[P]arts? [1-8]\.[0-9]' \
    -- . ':!LICENSE*')"
refuse "Paths of this machine:" "$(search -F "$PWD/" -- .)"
refuse "Marks of unfinished work:" "$(search -E \
    '[T]ODO|[F]IXME|[X]XX|[H]ACK|not [i]mplemented|for [n]ow\b|[s]tub\b' -- src tests bench demo)"
exit $failed
