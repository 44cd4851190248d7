#!/usr/bin/env bash
# Sets up, builds the tool and the loopback BMC, serves the bundled fixture of a two-socket server
# over HTTPS, and inventories it through Redfish into ./kestro-redfish-report (or the first argument).
set -euo pipefail
cd "$(dirname "$0")/.."
output="${1:-kestro-redfish-report}"
scripts/install-deps.sh
# Both programs build without the tests, so the folder's test and bench settings are left alone.
cmake -S . -B build -G Ninja >/dev/null
cmake --build build -j2 --target kestro kestro-fake-bmc

log=$(mktemp)
build/bin/kestro-fake-bmc --root tests/fixtures/bmc/full --https --user admin --password demo-pass \
  --page-size 8 >"$log" 2>&1 &
bmc=$!
trap 'kill $bmc 2>/dev/null; rm -f "$log"' EXIT
for _ in $(seq 50); do grep -q "^Serving" "$log" && break; sleep 0.1; done
port=$(sed -n 's|^Serving .* at https://127.0.0.1:\([0-9]*\)/.*|\1|p' "$log")
[ -n "$port" ] || { cat "$log"; exit 1; }

KESTRO_PASSWORD=demo-pass build/bin/kestro inventory --redfish "https://admin@127.0.0.1:$port" --output "$output"
echo "open $output/index.html"
