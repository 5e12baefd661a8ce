#!/usr/bin/env bash
# Installs what is missing, builds, starts a throwaway MariaDB server and runs
# the whole test suite on SQLite and MariaDB; the server is stopped at the end.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh"
bash "$top/scripts/build.sh"

dbdir=$(mktemp -d /tmp/orvantis-mariadb.XXXXXX)
port=$(( 33000 + RANDOM % 2000 ))
# A port nobody listens on.
while (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; do port=$(( port + 1 )); done
cleanup() { bash "$top/scripts/test-db-server.sh" stop "$dbdir"; rm -rf "$dbdir"; }
trap cleanup EXIT
bash "$top/scripts/test-db-server.sh" start "$dbdir" "$port"
echo "test.sh: MariaDB $(mariadbd --version | awk '{print $3}') on 127.0.0.1:$port"

export ORVANTIS_TEST_MYSQL="Server=127.0.0.1;Port=$port;Uid=root;Pwd="
export ORVANTIS_REQUIRE_MYSQL=1
export QT_QPA_PLATFORM=offscreen
cd "$top/build"
# Every test row names its back end; the lines kept here show that the data
# tests ran on SQLite and on the live MariaDB. The whole log stays in build/.
set +e
ctest -V -j2 --timeout 900 >"$top/build/ctest.log" 2>&1
status=$?
set -e
grep -E "^[0-9]+: (PASS|FAIL!|SKIP|XFAIL|XPASS) .*\((sqlite|mariadb)[^)]*\)$|^[0-9]+: (FAIL!|   Loc|   Actual|   Expected|QFATAL|QWARN)|^[0-9]+: Totals" "$top/build/ctest.log" || true
echo "test.sh: back-end rows: sqlite $(grep -cE '^[0-9]+: PASS .*\(sqlite' "$top/build/ctest.log"), mariadb $(grep -cE '^[0-9]+: PASS .*\(mariadb' "$top/build/ctest.log")"
sed -n '/tests passed\|tests failed/,$p' "$top/build/ctest.log"
exit $status
