# shellcheck shell=bash
# Read by the tests of this folder: assertions that go on after a failure and count it.
failures=0

# is WHAT EXPECTED ACTUAL
is() {
    if [[ $2 == "$3" ]]; then
        echo "ok: $1"
    else
        echo "FAILED: $1: expected '$2', got '$3'"
        failures=$((failures + 1))
    fi
}

# holds WHAT COMMAND...
holds() {
    local what=$1
    shift
    if "$@" > /dev/null 2>&1; then is "$what" yes yes; else is "$what" yes no; fi
}

# fails WHAT COMMAND...
fails() {
    local what=$1
    shift
    if "$@" > /dev/null 2>&1; then is "$what" refused accepted; else is "$what" refused refused; fi
}

finish() {
    ((failures == 0)) || echo "$failures failed"
    exit $((failures > 0))
}
