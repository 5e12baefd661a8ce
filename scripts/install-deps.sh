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
  poppler-utils fonts-dejavu-core fonts-liberation2 cups-client
  tango-icon-theme qt6-translations-l10n
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

# The tests run a server of their own, so a system MariaDB service that the
# package install starts or enables is put back as it was. A service that was
# running or enabled before this script is the machine's own and stays so: its
# state is read before anything is installed, and only a change made by the
# install is undone. Without systemd nothing is read and nothing is stopped.
with_systemd=no
if [[ " ${missing[*]} " == *" mariadb-server "* ]] && command -v systemctl >/dev/null 2>&1 && [ -d /run/systemd/system ]; then
  with_systemd=yes
fi
mariadb_active() { systemctl is-active --quiet mariadb 2>/dev/null; }
mariadb_enabled() { [ "$(systemctl is-enabled mariadb 2>/dev/null)" = enabled ]; }
was_active=yes
was_enabled=yes
if [ "$with_systemd" = yes ]; then
  mariadb_active || was_active=no
  mariadb_enabled || was_enabled=no
fi

echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null

if [ "$with_systemd" = yes ]; then
  if [ "$was_active" = no ] && mariadb_active; then
    echo "install-deps: stopping the mariadb service that the install started"
    $SUDO systemctl stop mariadb >/dev/null 2>&1 || true
  fi
  if [ "$was_enabled" = no ] && mariadb_enabled; then
    echo "install-deps: disabling the mariadb service that the install enabled"
    $SUDO systemctl disable mariadb >/dev/null 2>&1 || true
  fi
fi
register_freetds
echo "install-deps: done"
