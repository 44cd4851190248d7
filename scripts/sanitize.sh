#!/usr/bin/env bash
# Builds the test suite under sanitizers, in a build folder of its own, and runs it.
#
#   scripts/sanitize.sh           AddressSanitizer (leaks included) and UndefinedBehaviorSanitizer,
#                                 the whole suite, in build-asan/
#   scripts/sanitize.sh thread    ThreadSanitizer, the tests that run more than one thread (the
#                                 logger's, and those against the loopback BMC's server thread),
#                                 in build-tsan/
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh

# Tests whose process runs a second thread: the logger's own test and every test that talks to
# the loopback BMC, which serves from a thread of the test process while one libcurl share and
# multi handle carry the run's transfers.
THREADED_TESTS='^(LogTest|RestClient|RestSession|RedfishClient|RedfishSettings|RedfishHostInterface|RunContext|JsonOverSession|JsonRead|RCFC|LogmgrRedfishCFC|SystemCheck|MockupTree|RNetworkModule|RBMCEventLog|RLSIOptModule|RedfishHardwareReader|QMMTypeAcquire|xFirmwareInventory|NetworkOutOfBand|KestroRedfish|KestroFaults|KestroSecrets)'

case "${1:-address}" in
address)
  build=build-asan
  flags=(-DKESTRO_SANITIZE=ON)
  selection=()
  export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:detect_stack_use_after_return=1}
  export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}
  ;;
thread)
  build=build-tsan
  flags=(-DKESTRO_SANITIZE_THREAD=ON)
  selection=(-R "$THREADED_TESTS")
  export TSAN_OPTIONS=${TSAN_OPTIONS:-halt_on_error=1:second_deadlock_stack=1}
  ;;
*)
  echo "usage: scripts/sanitize.sh [address|thread]" >&2
  exit 2
  ;;
esac

[ -d tests/browser/node_modules ] || (cd tests/browser && npm ci --no-audit --no-fund --prefer-offline)
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKESTRO_WERROR=ON \
  -DKESTRO_BUILD_TESTS=ON -DKESTRO_BUILD_BENCH=OFF "${flags[@]}"
cmake --build "$build" -j2
ctest --test-dir "$build" -j2 --output-on-failure --no-tests=error "${selection[@]}"
