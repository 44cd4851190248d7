#!/usr/bin/env bash
# Times a whole local inventory (XML file and report site) of this host against `lshw -xml` alone,
# round after round in one run, and prints both medians, their ratio and each one's peak memory.
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

: >"$work/kestro" ; : >"$work/lshw"
for round in $(seq "$rounds"); do
  measure "$kestro" inventory --output "$work/out" >>"$work/kestro"
  measure lshw -xml >>"$work/lshw"
done
k_ms=$(cut -d' ' -f1 "$work/kestro" | median); l_ms=$(cut -d' ' -f1 "$work/lshw" | median)
k_kib=$(cut -d' ' -f2 "$work/kestro" | sort -n | tail -1); l_kib=$(cut -d' ' -f2 "$work/lshw" | sort -n | tail -1)
echo "rounds: $rounds (user $(id -un))"
echo "kestro inventory: median ${k_ms} ms, peak ${k_kib} KiB"
echo "lshw -xml:        median ${l_ms} ms, peak ${l_kib} KiB"
awk -v k="$k_ms" -v l="$l_ms" 'BEGIN { printf "ratio kestro/lshw: %.2f\n", (l > 0) ? k / l : 0 }'
