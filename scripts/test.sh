#!/usr/bin/env bash
# Sets up the machine, builds everything with warnings as errors, and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
# The browser test's packages, exactly as locked; no browser is downloaded, the system's Chromium is used.
(cd tests/browser && npm ci --no-audit --no-fund --prefer-offline)
# Tests and benches named explicitly: a build folder set up by run-inventory.sh has them off.
cmake -S . -B build -G Ninja -DKESTRO_WERROR=ON -DKESTRO_BUILD_TESTS=ON -DKESTRO_BUILD_BENCH=ON
cmake --build build -j2
ctest --test-dir build -j2 --output-on-failure --no-tests=error
