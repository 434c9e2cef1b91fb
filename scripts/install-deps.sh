#!/usr/bin/env bash
# Installs every Debian package that building, testing and running the program needs.
# Idempotent: when everything is present it only checks and returns.
set -euo pipefail

PACKAGES=(
  # build
  cmake g++ make pkg-config clang libclang-rt-14-dev clang-format
  libgtest-dev libgmock-dev libbenchmark-dev
  # libraries the program links
  qt6-base-dev libqt6test6 libldap-dev libsasl2-dev libsasl2-modules-gssapi-mit libkrb5-dev
  libsmbclient-dev libsqlite3-dev
  # the test and demo domain controller, and the tools that talk to it
  samba samba-ad-dc samba-ad-provision krb5-user ldap-utils smbclient winbind
  # the desktop under test: virtual display and a Japanese font
  xvfb xauth fonts-noto-cjk
)

missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
