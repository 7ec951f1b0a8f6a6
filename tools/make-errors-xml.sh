#!/usr/bin/env bash
# Writes data/errors.xml, the names of the error codes that servers and client libraries give, from
# the headers in which they are defined (mysqld_error.h and errmsg.h).
#
#   make-errors-xml.sh [INCLUDE_DIR...] > data/errors.xml
#
# Where two folders name a code differently the earlier one wins. The file in the repository was
# made from libmariadb-dev (the default) and, behind it, libmysqlclient-dev 9.7.
set -euo pipefail

[ $# -gt 0 ] || set -- /usr/include/mariadb
headers=()
for folder; do
    headers+=("$folder/mysqld_error.h" "$folder/errmsg.h")
done

# Codes from 10000 up only ever stand in a server's own log file. FIRST, LAST, MIN and MAX mark the
# ends of ranges, UNUSED a code that is given no more.
names() {
    awk '$1 == "#define" && $2 ~ /^(ER|WARN|CR)_/ && $3 ~ /^[0-9]+$/ && $3 < 10000 &&
         $2 !~ /^(ER|CR)_((ERROR|LAST|MYSQL|MARIADB)_(FIRST|LAST|MYSQL)|MIN_|MAX_ERROR)/ &&
         $2 !~ /UNUSED/ && !seen[$3]++ { print $3, $2 }' "$@"
}

echo '<?xml version="1.0" encoding="UTF-8"?>'
echo '<errors>'
names "${headers[@]}" | sort -n |
    while read -r code name; do
        echo "        <error code=\"$code\" name=\"$name\"/>"
    done
echo '</errors>'
