#!/usr/bin/env bash
# Sets up the machine, builds the tool, and inventories this host into ./kestro-report
# (or the folder given as the first argument).
set -euo pipefail
cd "$(dirname "$0")/.."
output="${1:-kestro-report}"
scripts/install-deps.sh
cmake -S . -B build -G Ninja -DKESTRO_BUILD_TESTS=OFF -DKESTRO_BUILD_BENCH=OFF
cmake --build build -j2 --target kestro
build/bin/kestro inventory --output "$output"
