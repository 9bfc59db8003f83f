#!/usr/bin/env bash
# Installs the Debian packages the program needs to build, run and test, when
# any is missing. Safe to run again: it does nothing once all are present.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config ccache
  qt6-base-dev qt6-base-dev-tools libgl-dev qt6-translations-l10n
  libsqlite3-dev libfreexl-dev libzip-dev zlib1g-dev
  libqt6svg6 p7zip-full
  xvfb xauth poppler-utils libxlsxwriter-dev
  fonts-dejavu-core libqrencode-dev zbar-tools
  clang libclang-rt-14-dev
  libpq-dev postgresql postgresql-client
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
