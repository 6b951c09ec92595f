#!/usr/bin/env bash
# Installs what building and testing both targets needs on a Debian 12 x86-64
# machine. Idempotent: does nothing when everything is present.
set -euo pipefail

packages=(cmake g++ gcc-multilib g++-multilib binutils qemu-user googletest
  libmpfr-dev libgmp-dev libmpc-dev libsleef-dev libmpfr-dev:i386 libgmp-dev:i386 libmpc-dev:i386
  libboost-dev)

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ "${#missing[@]}" -eq 0 ]; then
  exit 0
fi

echo "setup: installing ${missing[*]}"
if ! dpkg --print-foreign-architectures | grep -qx i386; then
  $sudo dpkg --add-architecture i386
fi
# One index (typically the i386 security one) may fail to download while a
# mirror syncs; what the other indexes provide is enough.
$sudo apt-get update || echo "setup: apt-get update reported a failing index; continuing"
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
