#!/usr/bin/env bash
# Installs what is missing, builds, and starts Orvantis on the embedded file
# database (created in the program folder on first start). Extra arguments go
# to the program, e.g.  scripts/run.sh --home /tmp/orvantis
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh"
bash "$top/scripts/build.sh"
exec "$top/build/bin/prgOrvantis" "$@"
