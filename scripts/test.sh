#!/usr/bin/env bash
# Installs what is missing, builds, starts a throwaway MariaDB server and runs
# the whole test suite on SQLite and MariaDB; the server is stopped at the end.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh"
bash "$top/scripts/build.sh"

dbdir=$(mktemp -d /tmp/orvantis-mariadb.XXXXXX)
port=$(( 33000 + RANDOM % 2000 ))
cleanup() { bash "$top/scripts/test-db-server.sh" stop "$dbdir"; rm -rf "$dbdir"; }
trap cleanup EXIT
bash "$top/scripts/test-db-server.sh" start "$dbdir" "$port"
echo "test.sh: MariaDB $(mariadbd --version | awk '{print $3}') on 127.0.0.1:$port"

export ORVANTIS_TEST_MYSQL="Server=127.0.0.1;Port=$port;Uid=root;Pwd="
export ORVANTIS_REQUIRE_MYSQL=1
export QT_QPA_PLATFORM=offscreen
cd "$top/build"
ctest --output-on-failure -j2 --timeout 900
