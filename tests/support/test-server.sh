#!/usr/bin/env bash
# Private MariaDB and MySQL servers on loopback for the tests. The account is root with an empty
# password; a second one is korvane with the password "secret".
#
#   test-server.sh serve KIND DIR [ARGUMENT...]  run a server with its data in DIR until standard
#                                                input ends, then remove the data; "-" is a
#                                                temporary folder that goes whole
#   test-server.sh begin ROOM                    open ROOM, a folder for the servers of one run;
#                                                they end with the calling process at the latest
#   test-server.sh share KIND ROOM               start ROOM's server of this kind unless it runs
#   test-server.sh end ROOM                      stop the servers of ROOM
#
# KIND is mariadb or mysql. serve writes "ready PORT PID" when the server answers, and then obeys
# the words kill and start on standard input, each answered by a line. The end of the input
# is the end of the server: however the process that holds the other end dies, nothing stays.
# share leaves the ready line in ROOM/KIND/state.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
cache=${XDG_CACHE_HOME:-${HOME:-/tmp}/.cache}/korvane-tests
mysql_root=${KORVANE_MYSQL9_ROOT:-$cache/mysql9}

die() {
    echo "test-server.sh: $*" >&2
    exit 1
}

# Servers refuse to run as root unless told that this is meant. Another user could not always
# read a build folder.
as_user=()
[ "$(id -u)" -ne 0 ] || as_user=(--user=root)

# mariadbd lies where only root's search path leads on Debian.
PATH=$PATH:/usr/sbin:/sbin

fast=(--innodb-flush-log-at-trx-commit=0 --innodb-doublewrite=0 --innodb-buffer-pool-size=32M
    --innodb-use-native-aio=OFF)

server_mariadb() {
    exec setpriv --pdeathsig KILL mariadbd --no-defaults "${as_user[@]}" "${fast[@]}" "$@"
}

# The unpacked packages carry their own C library.
server_mysql() {
    exec setpriv --pdeathsig KILL "$mysql_root/usr/lib64/ld-linux-x86-64.so.2" \
        --library-path "$mysql_root/usr/lib/x86_64-linux-gnu" \
        "$mysql_root/usr/sbin/mysqld" --no-defaults "${as_user[@]}" "${fast[@]}" \
        --basedir="$mysql_root/usr" --lc-messages-dir="$mysql_root/usr/share/mysql" \
        --plugin-dir="$mysql_root/usr/lib/mysql/plugin" --mysqlx=OFF --disable-log-bin \
        --innodb-redo-log-capacity=16M "$@"
}

init_mariadb() { # TARGET
    mariadb-install-db --no-defaults "${as_user[@]}" --datadir="$1/data" --skip-test-db --force \
        --auth-root-authentication-method=normal --innodb-log-file-size=8M
    openssl req -x509 -newkey rsa:2048 -nodes -days 3650 -subj /CN=127.0.0.1 \
        -addext subjectAltName=IP:127.0.0.1,DNS:localhost \
        -keyout "$1/data/test-key.pem" -out "$1/data/test-cert.pem"
}

init_mysql() { # TARGET
    (server_mysql --datadir="$1/data" --initialize-insecure)
}

version_of() { # KIND
    (server_"$1" --version)
}

# A fresh data folder takes seconds to make and is the same each time, so one is kept to copy.
template() { # KIND
    local kind=$1 name target fresh
    name=$kind-$( (version_of "$kind" && cat "$0") 2>/dev/null | cksum | cut -d' ' -f1)
    target=$cache/$name
    mkdir -p "$cache"
    if [ ! -d "$target" ]; then
        fresh=$(mktemp -d -p "$cache")
        if ! init_"$kind" "$fresh" >"$fresh/log" 2>&1; then
            tail -n 20 "$fresh/log" >&2
            rm -rf "$fresh"
            die "the data folder of $kind could not be initialised"
        fi
        # Whoever is second leaves the winner's in place.
        mv -T "$fresh" "$target" 2>/dev/null || rm -rf "$fresh"
    fi
    echo "$target"
}

prepare() { # KIND DIR
    local from
    from=$(template "$1")
    mkdir -p "$2"
    rm -rf "$2/data"
    cp -r "$from/data" "$2/data"
    # Of its own: a server that starts removes what it takes for leftovers in a shared folder, and
    # another server's temporary tables look just like that.
    mkdir -p "$2/tmp"
    rm -f "$2/data/auto.cnf" # the identity of one MySQL server
    cat >"$2/init.sql" <<'SQL'
CREATE USER IF NOT EXISTS 'korvane'@'%' IDENTIFIED BY 'secret';
GRANT ALL PRIVILEGES ON *.* TO 'korvane'@'%' WITH GRANT OPTION;
SQL
}

launch() { # KIND DIR PORT ARGUMENT...; sets pid, fails when the server ends before it is ready
    local kind=$1 dir=$2 port=$3 tls=()
    shift 3
    # MySQL makes its certificate itself.
    [ "$kind" = mysql ] || tls=(--ssl-cert=test-cert.pem --ssl-key=test-key.pem --ssl-ca=test-cert.pem)
    # The socket is named relative to the data folder: a deep path would not fit into an address.
    (server_"$kind" --datadir="$dir/data" --tmpdir="$dir/tmp" --bind-address=127.0.0.1 --port="$port" \
        --socket=test.sock --pid-file=test.pid --init-file="$dir/init.sql" --secure-file-priv= \
        --event-scheduler=OFF "${tls[@]}" "$@") </dev/null >"$dir/server.log" 2>&1 &
    pid=$!
    local i
    for ((i = 0; i < 1200; ++i)); do
        grep -q 'ready for connections' "$dir/server.log" && return 0
        kill -0 "$pid" 2>/dev/null || return 1
        sleep 0.05
    done
    kill -KILL "$pid"
    return 1
}

# A port that is free now may be taken when the server binds it, so a bind that fails is tried
# again elsewhere. The range lies below the one that outgoing connections take.
find_port() { # KIND DIR ARGUMENT...; sets port and pid
    local kind=$1 dir=$2 try
    shift 2
    for try in 1 2 3 4 5 6 7 8 9 10; do
        port=$((20000 + (RANDOM * 32768 + RANDOM) % 12000))
        launch "$kind" "$dir" "$port" "$@" && return 0
        grep -qi 'address already in use' "$dir/server.log" || break
    done
    tail -n 20 "$dir/server.log" >&2
    die "$kind did not start"
}

halt() {
    [ -n "$pid" ] || return 0
    kill -KILL "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    pid=
}

serve() { # KIND DIR ARGUMENT...
    local kind=$1 word
    pid=
    trap 'exit 0' TERM INT HUP PIPE
    if [ "$2" = - ]; then
        dir=$(mktemp -d)
        trap 'halt; rm -rf "$dir"' EXIT
    else
        mkdir -p "$2"
        dir=$(cd "$2" && pwd)
        trap 'halt; rm -rf "$dir/data" "$dir/init.sql" "$dir/state"' EXIT
    fi
    shift 2
    prepare "$kind" "$dir"
    find_port "$kind" "$dir" "$@"
    echo "ready $port $pid"
    while read -r word; do
        case $word in
        kill) halt && echo killed ;;
        start)
            # Right after an end the port may still be in its closing time.
            launch "$kind" "$dir" "$port" "$@" || { tail -n 20 "$dir/server.log" >&2; exit 1; }
            echo "ready $port $pid"
            ;;
        esac
    done
}

# A process number alone may have passed to somebody else since it was written down.
is_ours() { # PID DIR
    tr '\0' '\n' 2>/dev/null <"/proc/$1/cmdline" | grep -qxF -e "--datadir=$2/data" -e "$2"
}

clear_out() { # ROOM
    local file pid dir
    for file in "$1"/*/supervisor.pid "$1"/*/state; do
        [ -e "$file" ] || continue
        dir=$(dirname "$file")
        pid=$(awk '{print $NF}' "$file")
        if [ -n "$pid" ] && is_ours "$pid" "$dir"; then
            kill "$pid" 2>/dev/null || true
            while is_ours "$pid" "$dir"; do sleep 0.05; done
        fi
        rm -f "$file"
    done
    rm -rf "$1"/*/data
}

begin() { # ROOM
    mkdir -p "$1"
    room=$(cd "$1" && pwd)
    clear_out "$room"
    echo "$PPID" >"$room/owner"
}

share() { # KIND ROOM
    local kind=$1 room dir owner supervisor
    room=$(cd "$2" && pwd) || die "no run has begun in $2"
    dir=$room/$kind
    mkdir -p "$dir"
    exec 9>"$dir/lock"
    flock 9
    [ ! -s "$dir/state" ] || ! is_ours "$(awk '{print $NF}' "$dir/state")" "$dir" || return 0
    owner=$(cat "$room/owner")
    # The input of the supervisor ends when the owner does, even if nobody says so.
    setsid bash -c 'tail --pid="$1" -s 0.3 -f /dev/null 9>&- | {
            echo "$BASHPID" >"$4/supervisor.pid"
            exec bash "$2" serve "$3" "$4" 9>&-
        }' tail-of-owner "$owner" "$here/test-server.sh" "$kind" "$dir" \
        </dev/null >"$dir/ready" 2>"$dir/supervisor.log" 9>&- &
    supervisor=$!
    while ! grep -q '^ready' "$dir/ready"; do
        kill -0 "$supervisor" 2>/dev/null || die "$(cat "$dir/supervisor.log")"
        sleep 0.05
    done
    mv "$dir/ready" "$dir/state"
}

end() { # ROOM
    [ -d "$1" ] || return 0
    clear_out "$(cd "$1" && pwd)"
    rm -f "$1/owner"
}

case ${1:-} in
serve | begin | share | end) "$@" ;;
*)
    sed -n '2,18p' "$0"
    exit 2
    ;;
esac
