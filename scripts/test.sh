#!/usr/bin/env bash
# Builds both targets and runs every test: the 32-bit product under
# qemu-i386, then the native x86-64 build with the large accuracy sweeps.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
jobs=$(nproc)
for preset in i386 x86_64; do
  echo "== $preset"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs"
  ctest --preset "$preset" -j "$jobs"
done
echo "== all tests passed on i386 and x86_64"
