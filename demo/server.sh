#!/usr/bin/env bash
# The demo server: a private MariaDB that runs as an ordinary process of this user, listens on
# loopback only and keeps everything it has in one folder.
#
#   server.sh start DIR [PID]   make it if need be, start it, load the sample database once;
#                               the process PID counts as a user of it from then on
#   server.sh stop DIR [PID]    shut it down; with PID only when no other user is left
#   server.sh status DIR        exit code 0 when it runs, 3 when not
#
# In DIR: data/ (the databases), port, password, client.cnf (both of them for command line
# clients), server.sock, server.pid, server.log, users/ (one file for each user's process).
set -euo pipefail
umask 077
# Ordinary users of Debian have no sbin on their path.
PATH=$PATH:/usr/local/sbin:/usr/sbin:/sbin

readonly firstPort=23306 lastPort=23399 # below the ports the system gives to outgoing connections
readonly patience=120                   # seconds; a recovery after a crash may take some
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
readonly here

fail() {
    echo "Demo server: $*" >&2
    exit 1
}

say() {
    echo "Demo server: $*"
}

# A pid file may outlive its server and its number may be given away again: the process counts only
# when it is a server on our data.
is_ours() {
    grep -zFxqs -e "--datadir=$dir/data" "/proc/$1/cmdline"
}

server_pid() {
    local pid
    pid=$(cat "$dir/server.pid" 2>/dev/null) || return 1
    [[ $pid =~ ^[0-9]+$ ]] && is_ours "$pid" && echo "$pid"
}

# Tells one process from a later one with the same number.
start_time() {
    local stat fields
    stat=$(cat "/proc/$1/stat" 2>/dev/null) || return 1
    read -ra fields <<< "${stat##*) }" # the name before may hold anything
    [[ ${fields[0]} != Z ]] && echo "${fields[19]}"
}

add_user() {
    local born
    born=$(start_time "$1") || fail "there is no process $1."
    mkdir -p "$dir/users"
    echo "$born" > "$dir/users/$1"
}

remove_user() {
    rm -f "$dir/users/$1"
}

has_users() {
    local file
    for file in "$dir"/users/*; do
        [[ -e $file ]] || continue
        [[ $(start_time "${file##*/}") == $(< "$file") ]] && return 0
        rm -f "$file"
    done
    return 1
}

client() {
    mariadb --defaults-file="$dir/client.cnf" --default-character-set=utf8mb4 "$@"
}

# The folder appears under its name only when it is complete.
make_data() {
    [[ -d $dir/data/mysql ]] && return
    [[ -e $dir/data ]] && fail "$dir/data holds no databases; move it away and start again."
    rm -rf "$dir/data.new"
    # Nobody can log in as root: that account asks for a socket and this user's name. The path is
    # relative because that script stumbles over blanks in one; with --rpm it leaves alone the owner
    # of the system's plugin folders.
    (cd "$dir" && mariadb-install-db --no-defaults --datadir=./data.new --user="$(id -un)" \
        --auth-root-authentication-method=socket --auth-root-socket-user="$(id -un)" \
        --skip-test-db --rpm) > "$dir/install.log" 2>&1 ||
        fail "cannot make its data: $(grep -im1 error "$dir/install.log"). See $dir/install.log."
    mv "$dir/data.new" "$dir/data"
}

# The account follows the password file at each start, so the two cannot fall apart.
write_accounts() {
    local password
    if [[ ! -s $dir/password ]]; then
        head -c 18 /dev/urandom | base64 | tr '+/' '-_' > "$dir/password.new"
        mv "$dir/password.new" "$dir/password"
    fi
    chmod 600 "$dir/password"
    password=$(< "$dir/password")
    [[ $password =~ ^[A-Za-z0-9_-]+$ ]] || fail "$dir/password is damaged; remove it."
    cat > "$dir/accounts.sql" <<SQL
CREATE USER IF NOT EXISTS demo@'127.0.0.1';
ALTER USER demo@'127.0.0.1' IDENTIFIED BY '$password' ACCOUNT UNLOCK;
GRANT ALL PRIVILEGES ON *.* TO demo@'127.0.0.1' WITH GRANT OPTION;
SQL
}

write_client_options() {
    printf '[client]\nprotocol=tcp\nhost=127.0.0.1\nport=%s\nuser=demo\npassword=%s\n' \
        "$1" "$(< "$dir/password")" > "$dir/client.new"
    mv "$dir/client.new" "$dir/client.cnf" # others may be reading it
}

is_free() {
    ! (exec 3<> "/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

# The port of the last time first, so that what was stored about it stays right.
candidate_ports() {
    local last
    last=$(cat "$dir/port" 2>/dev/null) || true
    [[ $last =~ ^[0-9]{4,5}$ ]] && echo "$last"
    seq "$firstPort" "$lastPort"
}

launch() {
    local options=(
        --no-defaults
        --datadir="$dir/data"
        --tmpdir="$dir/tmp" # a shared one is swept by every other server that starts
        --socket=../server.sock # from the data folder: a full path may be too long for a socket
        --pid-file="$dir/server.pid"
        --log-error="$dir/server.log"
        --init-file="$dir/accounts.sql"
        --bind-address=127.0.0.1
        --port="$1"
        --skip-name-resolve # 127.0.0.1 stays itself, the account is bound to it
        --character-set-server=utf8mb4
        --collation-server=utf8mb4_unicode_ci
        --event-scheduler=ON
        --max-allowed-packet=256M
        --innodb-buffer-pool-size=64M
        --innodb-log-file-size=32M
    )
    mkdir -p "$dir/tmp"
    ((EUID)) || options+=(--user=root)
    [[ -e $dir/server.log ]] && mv -f "$dir/server.log" "$dir/server.log.1"
    # A session of its own: Ctrl+C in the terminal is not for the server.
    setsid mariadbd "${options[@]}" < /dev/null > "$dir/output.log" 2>&1 9>&- &
    launched=$!
    echo "$launched" > "$dir/server.pid"
}

log_error() {
    grep -hm1 '\[ERROR\]' "$dir/server.log" "$dir/output.log" 2>/dev/null ||
        echo "it gave no reason"
}

wait_until_ready() {
    local pid=$1 answer end=$((SECONDS + patience))
    until answer=$(client -e 'SELECT 1' 2>&1); do
        is_ours "$pid" || return 1
        [[ $answer != *'Access denied'* ]] ||
            fail "refuses the password of $dir/password; stop it and start it again."
        ((SECONDS < end)) || fail "does not answer: $answer. See $dir/server.log."
        sleep 0.1
    done
}

start_process() {
    local port
    make_data
    write_accounts
    for port in $(candidate_ports); do
        is_free "$port" || continue
        write_client_options "$port"
        echo "$port" > "$dir/port" # before the launch: who finds the server running asks for it
        launch "$port"
        # Between fork and exec the process does not look like a server yet.
        while kill -0 "$launched" 2>/dev/null && ! is_ours "$launched"; do sleep 0.02; done
        wait_until_ready "$launched" && return
        # Somebody may have taken the port meanwhile.
        grep -q 'Bind on TCP/IP port' "$dir/server.log" 2>/dev/null && continue
        fail "did not start: $(log_error). See $dir/server.log."
    done
    fail "no free port from $firstPort to $lastPort."
}

# The mark lies beside the tables and is made last: a load that was cut off is done again.
load_shop() {
    [[ -e $dir/data/shop.loaded ]] && return
    say "loading the sample database."
    cat "$here"/shop/*.sql | client || {
        stop_process
        fail "cannot load the sample database."
    }
    touch "$dir/data/shop.loaded"
}

stop_process() {
    local pid end=$((SECONDS + patience))
    pid=$(server_pid) || return 0
    kill -TERM "$pid" 2>/dev/null || true
    while is_ours "$pid"; do
        ((SECONDS < end)) || fail "is still shutting down (process $pid)."
        sleep 0.1
    done
    rm -f "$dir/server.pid"
}

start() {
    local tool pid
    for tool in mariadbd mariadb mariadb-install-db flock setsid; do
        command -v "$tool" > /dev/null ||
            fail "$tool is missing; install the package mariadb-server."
    done
    [[ -z ${1-} ]] || add_user "$1"
    if pid=$(server_pid) && write_client_options "$(< "$dir/port")" && wait_until_ready "$pid"; then
        : # runs already
    else
        start_process
    fi
    load_shop
    say "ready on 127.0.0.1, port $(< "$dir/port")."
}

stop() {
    [[ -z ${1-} ]] || remove_user "$1"
    server_pid > /dev/null || { say "not running."; return; }
    if [[ -n ${1-} ]] && has_users; then
        say "left running for others."
        return
    fi
    stop_process
    say "stopped."
}

status() {
    local pid
    pid=$(server_pid) || { say "not running."; exit 3; }
    say "runs on 127.0.0.1, port $(< "$dir/port"), process $pid."
}

[[ $# -ge 2 && $# -le 3 && $1 =~ ^(start|stop|status)$ && -n $2 && ${3-1} =~ ^[0-9]+$ ]] || {
    echo "Usage: $0 start|stop|status DIR [PID]" >&2
    exit 2
}
if [[ $1 != start && ! -d $2 ]]; then
    say "not running."
    [[ $1 == stop ]] || exit 3
    exit 0
fi
mkdir -p "$2" || fail "cannot make the folder $2."
dir=$(cd "$2" && pwd -P) || fail "cannot enter the folder $2."
[[ -w $dir ]] || fail "cannot write to the folder $dir."
if [[ $1 != status ]]; then
    exec 9> "$dir/lock"
    flock -w $((patience * 2)) 9 || fail "another start or stop does not come to an end."
fi
"$1" "${3-}"
