#!/usr/bin/env bash
# Configures and builds Orvantis into build/ (ccache keeps rebuilds short).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cmake -S "$top" -B "$top/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$top/build" -j"$(nproc)"
