#!/usr/bin/env bash
# Times a whole local inventory (XML file and report site) of this host against `lshw -xml` alone,
# round after round in one run, and prints the medians, their ratio and each one's peak memory.
# `inxi -F` (Debian package inxi) joins the comparison when it is installed.
# usage: bench/local_inventory_vs_lshw.sh [ROUNDS] [KESTRO]   (defaults: 7, build/bin/kestro)
set -euo pipefail
cd "$(dirname "$0")/.."
rounds=${1:-7}
kestro=${2:-build/bin/kestro}
[ -x "$kestro" ] || { echo "no $kestro: build first (cmake --build build)" >&2; exit 1; }
command -v lshw >/dev/null || { echo "lshw is not installed (scripts/install-deps.sh installs it)" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Wall time in milliseconds and peak resident memory in KiB of one command, as "ms kib".
measure() {
  local start end
  start=$(date +%s%N)
  /usr/bin/time -f '%M' -o "$work/rss" "$@" >/dev/null 2>&1
  end=$(date +%s%N)
  echo "$(( (end - start) / 1000000 )) $(cat "$work/rss")"
}

median() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

: >"$work/kestro" ; : >"$work/lshw" ; : >"$work/inxi"
for round in $(seq "$rounds"); do
  measure "$kestro" inventory --output "$work/out" >>"$work/kestro"
  measure lshw -xml >>"$work/lshw"
  if command -v inxi >/dev/null; then measure inxi -F -c 0 >>"$work/inxi"; fi
done

# "name: median ms, peak KiB" of one tool's rounds.
report() {
  [ -s "$work/$1" ] || return 0
  printf '%-18s median %s ms, peak %s KiB\n' "$2:" "$(cut -d' ' -f1 "$work/$1" | median)" \
    "$(cut -d' ' -f2 "$work/$1" | sort -n | tail -1)"
}
echo "rounds: $rounds (user $(id -un), load $(cut -d' ' -f1 /proc/loadavg))"
report kestro "kestro inventory"
report lshw "lshw -xml"
report inxi "inxi -F"
awk -v k="$(cut -d' ' -f1 "$work/kestro" | median)" -v l="$(cut -d' ' -f1 "$work/lshw" | median)" \
  'BEGIN { printf "ratio kestro/lshw: %.2f\n", (l > 0) ? k / l : 0 }'
