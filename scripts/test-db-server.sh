#!/usr/bin/env bash
# A throwaway MariaDB server for the tests, in a folder of its own.
#   test-db-server.sh start DIR PORT   -> prints nothing, server ready on 127.0.0.1:PORT
#   test-db-server.sh stop DIR
set -euo pipefail
cmd=${1:?start or stop}
D=${2:?folder}

case "$cmd" in
start)
  PORT=${3:?port}
  rm -rf "$D"; mkdir -p "$D"
  mariadb-install-db --no-defaults --datadir="$D/data" --user=root \
    --auth-root-authentication-method=normal --skip-test-db >"$D/install.log" 2>&1
  # Table names are case-insensitive like on the other back ends; durability
  # is traded for speed, this server lives for one test run.
  setsid /usr/sbin/mariadbd --no-defaults --datadir="$D/data" --socket="$D/mysql.sock" \
    --pid-file="$D/mysqld.pid" --port="$PORT" --bind-address=127.0.0.1 --skip-name-resolve \
    --user=root --log-error="$D/error.log" --skip-log-bin \
    --lower-case-table-names=1 --character-set-server=utf8mb4 --collation-server=utf8mb4_unicode_ci \
    --innodb-flush-log-at-trx-commit=0 --innodb-doublewrite=0 --innodb-buffer-pool-size=256M \
    --max-connections=400 </dev/null >"$D/stdout.log" 2>&1 &
  for _ in $(seq 1 300); do
    if mariadb --no-defaults --socket="$D/mysql.sock" -uroot -e 'SELECT 1' >/dev/null 2>&1; then exit 0; fi
    sleep 0.1
  done
  echo "test-db-server: MariaDB did not start; see $D/error.log" >&2
  cat "$D/error.log" >&2 || true
  exit 1
  ;;
stop)
  if [ -S "$D/mysql.sock" ]; then
    mariadb-admin --no-defaults --socket="$D/mysql.sock" -uroot shutdown >/dev/null 2>&1 || true
  fi
  ;;
*)
  echo "usage: $0 start DIR PORT | stop DIR" >&2; exit 2 ;;
esac
