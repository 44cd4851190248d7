#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ (clang, ASan+UBSan) in build-fuzz/ and runs them.
#
#   scripts/fuzz.sh [SECONDS] [TARGET...]   each target (all by default) for SECONDS of CPU time (600), one after
#                                           another; new inputs go to build-fuzz/fuzz-work/<target>/,
#                                           crashes to build-fuzz/fuzz-artifacts/, the table to
#                                           $KESTRO_FUZZ_REPORT (build-fuzz/fuzz-report.txt); non-zero exit on a
#                                           crash, leak, hang or out-of-memory
#   scripts/fuzz.sh --replay                every committed corpus once, as ctest -L fuzz (seconds);
#                                           skipped, with status 0, when clang's libFuzzer is missing
#   scripts/fuzz.sh --seed                  test strings, fixtures and binary seeds merged into
#                                           fuzz/corpus/<target>/ (only inputs that add coverage)
#   scripts/fuzz.sh --merge TARGET...       what fuzz-work/<target>/ found merged into the corpus
set -euo pipefail
cd "$(dirname "$0")/.."

BUILD=${KESTRO_FUZZ_BUILD:-build-fuzz}
JOBS=${KESTRO_FUZZ_JOBS:-2}
CORPORA=fuzz/corpus

toolchain_works() {
  command -v clang++ >/dev/null 2>&1 || return 1
  local probe
  probe=$(mktemp -d)
  printf '%s\n' '#include <cstddef>' '#include <cstdint>' \
    'extern "C" int LLVMFuzzerTestOneInput(const uint8_t*, size_t) { return 0; }' >"$probe/p.cpp"
  clang++ -fsanitize=fuzzer,address,undefined "$probe/p.cpp" -o "$probe/p" >/dev/null 2>&1
  local status=$?
  rm -rf "$probe"
  return $status
}

build() {
  cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
    -DKESTRO_BUILD_FUZZ=ON -DKESTRO_BUILD_TESTS=OFF -DKESTRO_BUILD_BENCH=OFF >/dev/null
  cmake --build "$BUILD" -j"$JOBS" --target kestro_fuzzers kestro_fuzz_binaryseeds
}

all_targets() {
  ls fuzz/targets | sed -n 's/\.cpp$//p'
}

export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}

case "${1:-}" in
--replay)
  if ! toolchain_works; then
    echo "fuzz: clang with libFuzzer is not installed (scripts/install-deps.sh); corpus replay skipped"
    exit 0
  fi
  build
  started=$(date +%s)
  ctest --test-dir "$BUILD" -L fuzz -j"$JOBS" --output-on-failure --no-tests=error
  echo "fuzz: corpus replay took $(($(date +%s) - started)) s"
  exit 0
  ;;
--seed)
  toolchain_works || { echo "fuzz: clang with libFuzzer is needed (scripts/install-deps.sh)" >&2; exit 1; }
  build
  raw="$BUILD/fuzz-seeds"
  rm -rf "$raw"
  python3 fuzz/seeds/textseeds.py "$PWD" "$raw"
  "$BUILD/fuzz/kestro_fuzz_binaryseeds" "$raw"
  for target in $(all_targets); do
    [ -d "$raw/$target" ] || continue
    mkdir -p "$CORPORA/$target"
    "$BUILD/fuzz/fuzz_$target" -merge=1 -rss_limit_mb=2048 -timeout=10 "$CORPORA/$target" "$raw/$target" \
      >"$BUILD/fuzz-seed-$target.log" 2>&1 || { echo "fuzz: merge of $target failed, see $BUILD/fuzz-seed-$target.log" >&2; exit 1; }
    echo "$target: $(ls "$CORPORA/$target" | wc -l) inputs, $(($(cat "$CORPORA/$target"/* | wc -c) / 1024)) KiB"
  done
  exit 0
  ;;
--merge)
  shift
  build
  for target in "$@"; do
    "$BUILD/fuzz/fuzz_$target" -merge=1 -rss_limit_mb=2048 -timeout=10 "$CORPORA/$target" "$BUILD/fuzz-work/$target" \
      >"$BUILD/fuzz-merge-$target.log" 2>&1
    echo "$target: $(ls "$CORPORA/$target" | wc -l) inputs, $(($(cat "$CORPORA/$target"/* | wc -c) / 1024)) KiB"
  done
  exit 0
  ;;
esac

# The budget is CPU time, not wall time, so a run beside a build still gets all of it. libFuzzer
# prints its final figures on SIGINT and exits with 72, which here means the budget was spent.
INTERRUPTED=72
cpu_seconds_of() {
  awk -v tick="$(getconf CLK_TCK)" '{ print int(($14 + $15) / tick) }' "/proc/$1/stat" 2>/dev/null || echo 0
}
run_for_cpu_seconds() {
  local budget=$1 log=$2
  shift 2
  "$@" -max_total_time=$((budget * 4)) >"$log" 2>&1 &
  local fuzzer=$!
  while kill -0 "$fuzzer" 2>/dev/null; do
    if [ "$(cpu_seconds_of "$fuzzer")" -ge "$budget" ]; then
      kill -INT "$fuzzer" 2>/dev/null || true
      break
    fi
    sleep 2
  done
  local status=0
  wait "$fuzzer" || status=$?
  [ $status -eq $INTERRUPTED ] && status=0
  return $status
}

seconds=600
if [[ "${1:-}" =~ ^[0-9]+$ ]]; then
  seconds=$1
  shift
fi
targets=("$@")
[ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(all_targets)

toolchain_works || { echo "fuzz: clang with libFuzzer is needed (scripts/install-deps.sh)" >&2; exit 1; }
build
mkdir -p "$BUILD/fuzz-logs" "$BUILD/fuzz-artifacts"
report=${KESTRO_FUZZ_REPORT:-$BUILD/fuzz-report.txt}
printf '%-16s %12s %8s %8s %8s  %s\n' target executions cov ft rss_mb result | tee "$report"
failed=0
for target in "${targets[@]}"; do
  work="$BUILD/fuzz-work/$target"
  log="$BUILD/fuzz-logs/$target.log"
  mkdir -p "$work"
  # New inputs go to the first folder only: the committed corpus is read, never written.
  status=0
  run_for_cpu_seconds "$seconds" "$log" "$BUILD/fuzz/fuzz_$target" "$work" "$CORPORA/$target" -rss_limit_mb=2048 \
    -timeout=10 -print_final_stats=1 -artifact_prefix="$BUILD/fuzz-artifacts/$target-" || status=$?
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  rss=$(sed -n 's/^stat::peak_rss_mb: *//p' "$log" | tail -1)
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1 | cut -d' ' -f2)
  ft=$(grep -o 'ft: [0-9]*' "$log" | tail -1 | cut -d' ' -f2)
  result=ok
  if [ $status -ne 0 ]; then
    failed=1
    if grep -q 'ERROR: libFuzzer: timeout' "$log"; then result=hang
    elif grep -q 'out-of-memory' "$log"; then result=out-of-memory
    elif grep -q 'ERROR: LeakSanitizer' "$log"; then result=leak
    else result=crash
    fi
    result="$result ($(grep -o "Test unit written to .*" "$log" | tail -1 | sed 's/Test unit written to //'))"
  fi
  printf '%-16s %12s %8s %8s %8s  %s\n' "$target" "${runs:-?}" "${cov:-?}" "${ft:-?}" "${rss:-?}" "$result" | tee -a "$report"
done
echo "fuzz: report in $report, logs in $BUILD/fuzz-logs/"
exit $failed
