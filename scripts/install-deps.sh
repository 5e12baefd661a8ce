#!/usr/bin/env bash
# Installs the Debian packages that Orvantis needs to build, run and test.
# Safe to run again: packages already present are skipped.
set -euo pipefail

PACKAGES=(
  g++ cmake ccache make pkg-config
  qt6-base-dev libqt6sql6-sqlite libqt6sql6-mysql libqt6sql6-odbc
  libsqlite3-dev
  mariadb-server mariadb-client
  unixodbc tdsodbc
  poppler-utils fonts-dejavu-core tango-icon-theme qt6-translations-l10n
)

missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

register_freetds() {
  # SQL Server is reached through ODBC with the FreeTDS driver, named "FreeTDS".
  if ! odbcinst -q -d -n FreeTDS >/dev/null 2>&1 && [ -f /usr/share/tdsodbc/odbcinst.ini ]; then
    odbcinst -i -d -f /usr/share/tdsodbc/odbcinst.ini >/dev/null
  fi
}

if [ ${#missing[@]} -eq 0 ]; then
  register_freetds
  echo "install-deps: everything is already installed"
  exit 0
fi

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
# A fresh mariadb-server package may start the system service; the tests run their own server.
if command -v systemctl >/dev/null 2>&1; then $SUDO systemctl disable --now mariadb >/dev/null 2>&1 || true; fi
register_freetds
echo "install-deps: done"
