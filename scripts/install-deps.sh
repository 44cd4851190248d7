#!/usr/bin/env bash
# Installs what building and testing Kestro inventory needs on Debian 12.
# Safe to run again: packages already present are left as they are.
set -euo pipefail

packages=(
  g++ cmake ninja-build ccache pkg-config
  libboost1.81-dev libboost-filesystem1.81-dev libboost-thread1.81-dev libboost-json1.81-dev
  libboost-program-options1.81-dev libboost-url1.81-dev
  libcurl4-openssl-dev libssl-dev libsystemd-dev systemd-journal-remote
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  libxml2-utils zlib1g-dev
  clang libclang-rt-14-dev
  pci.ids usb.ids lshw
  chromium nodejs
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
# Debian's nodejs comes without npm; a nodejs from elsewhere may bring its own.
command -v npm >/dev/null 2>&1 || missing+=(npm)

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all packages present"
  exit 0
fi

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "install-deps: installing ${missing[*]}"
$sudo apt-get update -q
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
