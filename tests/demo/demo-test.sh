#!/usr/bin/env bash
# The demo server and its sample database, from an empty folder on.
#   demo-test.sh FOLDER    the folder is emptied first
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source-path=SCRIPTDIR
. "$here/check.sh"
server=$here/../../demo/server.sh
folder=$1
dir="$folder/the shop" # a blank, as in the user's real folder
other=$folder/other

stop_all() {
    "$server" stop "$dir" > /dev/null 2>&1
    "$server" stop "$other" > /dev/null 2>&1
}
stop_all
trap stop_all EXIT
rm -rf "$folder"
mkdir -p "$folder"

sql() {
    mariadb --defaults-file="$dir/client.cnf" --default-character-set=utf8mb4 -N -B shop -e "$1"
}
port() { cat "$dir/port"; }
pid() { cat "$dir/server.pid"; }
is_running() { "$server" status "$dir"; }
own_orders() { sql "SELECT COUNT(*) FROM orders WHERE ordered_at = '2026-01-01'"; }
at_least() { [[ $(sql "$2") -ge $1 ]]; }

test_content() {
    holds "first start" "$server" start "$dir"
    local row
    while IFS='|' read -r least table; do
        holds "$least rows in $table" at_least "$least" "SELECT COUNT(*) FROM $table"
    done <<'ROWS'
10000|orders
25000|order_lines
10000|payments
500|customers
500|addresses
12|categories
5|suppliers
40|products
50|stock
3|warehouses
4000|access_log
ROWS
    for row in Latin Cyrillic Greek Han Hiragana Hangul Arabic Hebrew Devanagari Thai; do
        holds "names in $row" at_least 5 \
            "SELECT COUNT(*) FROM customers WHERE name REGEXP '\\\\p{$row}'"
    done
    holds "emoji survive the load" at_least 10 \
        "SELECT COUNT(*) FROM customers WHERE LOCATE(x'F09F8E82', BINARY notes)"
    holds "three years of orders" at_least 36 "SELECT COUNT(*) FROM sales_by_month"
    holds "different pictures" at_least 12 "SELECT COUNT(DISTINCT picture) FROM products"
    is "pictures that are no PNG, GIF or JPEG" 0 "$(sql "SELECT COUNT(*) FROM products
        WHERE picture IS NOT NULL AND NOT (
            LEFT(picture, 8) = x'89504E470D0A1A0A' AND RIGHT(picture, 8) = x'49454E44AE426082'
            OR LEFT(picture, 6) = 'GIF89a' AND RIGHT(picture, 1) = ';'
            OR LEFT(picture, 3) = x'FFD8FF' AND RIGHT(picture, 2) = x'FFD9')")"
    is "orders without lines, or with another total" 0 "$(sql "SELECT COUNT(*) FROM orders o
        LEFT JOIN (SELECT order_id, SUM(amount) total FROM order_lines GROUP BY order_id) l
        ON l.order_id = o.id WHERE NOT o.total <=> l.total")"
    is "tables and columns that say nothing of themselves" 0 "$(sql "SELECT COUNT(*)
        FROM information_schema.tables
        WHERE table_schema = 'shop' AND table_type = 'BASE TABLE' AND table_comment = ''")"
    is "types of columns" "$(printf '%s\n' bigint binary bit blob char date datetime decimal \
        double enum float inet6 int longtext point set smallint text time timestamp tinyint uuid varchar \
        year)" "$(sql "SELECT DISTINCT data_type FROM information_schema.columns
        WHERE table_schema = 'shop' ORDER BY data_type")"
}

test_programs() {
    is "views, routines, triggers, events" "4 4 5 2" "$(sql "SELECT CONCAT_WS(' ',
        (SELECT COUNT(*) FROM information_schema.views WHERE table_schema = 'shop'),
        (SELECT COUNT(*) FROM information_schema.routines WHERE routine_schema = 'shop'),
        (SELECT COUNT(*) FROM information_schema.triggers WHERE trigger_schema = 'shop'),
        (SELECT COUNT(*) FROM information_schema.events WHERE event_schema = 'shop'))")"
    holds "a reference of two columns" at_least 1 "SELECT COUNT(*) FROM (SELECT 1
        FROM information_schema.key_column_usage
        WHERE table_schema = 'shop' AND referenced_table_name IS NOT NULL
        GROUP BY constraint_name HAVING COUNT(*) = 2) r"
    is "function" 119.00 "$(sql "SELECT with_tax(100, 'DE')")"
    is "results of customer_file" 2 "$(mariadb --defaults-file="$dir/client.cnf" -t shop \
        -e 'CALL customer_file(1)' | grep -c '^| *\(id\|ordered_at\)')"
    is "error of customer_file" "There is no such customer." \
        "$(sql 'CALL customer_file(0)' 2>&1 | sed -n 's/.*: //p')"
    is "move_stock moves what there is" "5 5 2" "$(sql "
        UPDATE stock SET quantity = 5 WHERE warehouse_id = 1 AND product_id = 2;
        DELETE FROM stock_moves;
        INSERT IGNORE INTO stock (warehouse_id, product_id) VALUES (2, 2);
        SET @before = (SELECT quantity FROM stock WHERE warehouse_id = 2 AND product_id = 2),
            @pieces = 99;
        CALL move_stock(2, 1, 2, @pieces, @left);
        SELECT CONCAT_WS(' ', @pieces, quantity - @before + @left,
                         (SELECT COUNT(*) FROM stock_moves))
        FROM stock WHERE warehouse_id = 2 AND product_id = 2")"
    is "a new line is in the order's total" 1 "$(sql "
        SET @before = (SELECT total FROM orders WHERE id = 7);
        INSERT INTO order_lines VALUES (7, 99, 1, 2, 10, NULL, DEFAULT);
        SELECT total - @before = 20 FROM orders WHERE id = 7")"
}

test_access() {
    is "only the owner reads the password" 600 "$(stat -c %a "$dir/password")"
    is "address" 127.0.0.1 "$(sql 'SELECT @@bind_address')"
    is "account" "demo@127.0.0.1" "$(sql 'SELECT CURRENT_USER()')"
    holds "the account can do everything" \
        sql "CREATE USER guest@localhost; DROP USER guest@localhost"
    local user
    for user in demo root nobody; do
        fails "$user without a password" \
            mariadb --no-defaults --protocol=tcp -h 127.0.0.1 -P "$(port)" -u "$user" -e 'SELECT 1'
    done
}

test_second_start() {
    local before
    before="$(pid) $(port)"
    sql "INSERT INTO orders (customer_id, ordered_at) VALUES (1, '2026-01-01')"
    holds "start of a running server" "$server" start "$dir"
    is "process and port" "$before" "$(pid) $(port)"
    is "own rows stay" 1 "$(own_orders)"
}

test_crash() {
    local victim before
    before=$(port)
    victim=$(pid)
    sql "UPDATE products SET price = 77 WHERE id = 1"
    kill -9 "$victim"
    while [[ -e /proc/$victim/exe ]]; do sleep 0.05; done
    fails "status of a killed server" is_running
    holds "start after a kill" "$server" start "$dir"
    is "port after a kill" "$before" "$(port)"
    is "rows after a kill" "77.00 1" "$(sql "SELECT CONCAT(p.price, ' ', COUNT(*))
        FROM products p, price_changes c WHERE p.id = 1 AND c.product_id = 1")"
    is "nothing loaded twice" 1 "$(own_orders)"
}

test_stop() {
    local last
    last=$(pid)
    holds "stop" "$server" stop "$dir"
    fails "the process" test -e "/proc/$last/exe"
    fails "status when stopped" is_running
    holds "stop of a stopped server" "$server" stop "$dir"
    holds "shut down in good order" grep -q 'Shutdown complete' "$dir/server.log"
    sleep 600 &
    local stranger=$!
    echo "$stranger" > "$dir/server.pid"
    fails "status with a stranger's process" is_running
    "$server" stop "$dir" > /dev/null
    holds "a stranger's process is left alone" kill "$stranger"
}

# What a load that was cut off leaves: some tables and no mark.
test_half_load() {
    "$server" start "$dir" > /dev/null
    sql "DROP TABLE payments, access_log"
    "$server" stop "$dir" > /dev/null
    rm "$dir/data/shop.loaded"
    holds "start after half a load" "$server" start "$dir"
    holds "loaded anew" at_least 10000 "SELECT COUNT(*) FROM payments"
    is "the old rows are gone" 0 "$(own_orders)"
}

test_users() {
    local first second
    sleep 600 & first=$!
    sleep 600 & second=$!
    "$server" start "$dir" "$first" > /dev/null
    "$server" start "$dir" "$second" > /dev/null
    "$server" stop "$dir" "$first" > /dev/null
    holds "runs on for the second user" is_running
    kill "$second"
    wait "$second" 2> /dev/null
    "$server" stop "$dir" "$first" > /dev/null
    fails "does not run for a user who died" is_running
    fails "user without a process" "$server" start "$dir" "$second"
    kill "$first"
}

test_port_taken() {
    local before
    before=$(port)
    mkdir -p "$other"
    echo "$before" > "$other/port"
    holds "another server takes the port" "$server" start "$other"
    holds "start without the old port" "$server" start "$dir"
    fails "the port" test "$(port)" = "$before"
    holds "answers on the new port" at_least 10000 "SELECT COUNT(*) FROM orders"
}

test_wrong_places() {
    stop_all
    touch "$folder/file"
    is "a file in place of the folder" 1 \
        "$("$server" start "$folder/file/demo" 2>&1 | grep -c 'cannot make the folder')"
    mkdir -p "$folder/strange/data"
    is "a data folder of somebody else" 1 \
        "$("$server" start "$folder/strange" 2>&1 | grep -c 'holds no databases')"
    mv "$dir/data/ibdata1" "$dir/data/ibdata1.away"
    echo "not a tablespace" > "$dir/data/ibdata1"
    is "damaged data" 1 "$("$server" start "$dir" 2>&1 | grep -c 'did not start: .*\[ERROR\]')"
    fails "status with damaged data" is_running
    is "missing arguments" 2 "$("$server" start 2> /dev/null; echo $?)"
}

for group in content programs access second_start crash stop half_load users port_taken wrong_places
do
    "test_$group"
done
finish
