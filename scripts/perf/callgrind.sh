#!/usr/bin/env bash
# Instructions, heap allocations and minor page faults of one call of each
# page after a warm-up call, on the sample gateway (Release build with
# -DCALTOFAL_BENCH=ON). Prints a Markdown table.
#
#   scripts/perf/callgrind.sh [BUILD_DIR] [PAGE...]
set -euo pipefail
build=${1:-build-bench}
shift || true
probe="$build/bench/page_probe"
[ -x "$probe" ] || { echo "callgrind.sh: no $probe (cmake -DCMAKE_BUILD_TYPE=Release -DCALTOFAL_BENCH=ON)" >&2; exit 2; }
command -v valgrind >/dev/null || { echo "callgrind.sh: valgrind is missing" >&2; exit 2; }
pages=("$@")
[ ${#pages[@]} -gt 0 ] || mapfile -t pages < <("$probe" --list)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "| call | instructions | libcaltofal | libhelper | libcal (emulator) | libc | other | heap allocations | minor faults |"
echo "|---|---:|---:|---:|---:|---:|---:|---:|---:|"
for page in "${pages[@]}"; do
  counts=$(LD_BIND_NOW=1 "$probe" "$page" 2>/dev/null | tail -1)
  allocations=$(sed -n 's/.*allocations=\([0-9]*\).*/\1/p' <<<"$counts")
  faults=$(sed -n 's/.*minor_faults=\([0-9]*\).*/\1/p' <<<"$counts")
  LD_BIND_NOW=1 valgrind --tool=callgrind --toggle-collect=measured --callgrind-out-file="$work/out" \
    "$probe" "$page" >/dev/null 2>&1
  callgrind_annotate --threshold=100 --show-percs=no "$work/out" 2>/dev/null |
    awk -v page="$page" -v allocs="$allocations" -v faults="$faults" '
      function pct(n) { return total ? sprintf("%.1f%%", 100 * n / total) : "-" }
      /PROGRAM TOTALS/ { gsub(",", "", $1); total = $1 + 0; next }
      /^ *[0-9,]+ +.*\[/ {
        n = $1; gsub(",", "", n); n += 0
        if ($0 ~ /libcaltofal\.so/) own += n
        else if ($0 ~ /libhelper\.so/) helper += n
        else if ($0 ~ /libcal\.so/) cal += n
        else if ($0 ~ /libc\.so|ld-linux/) libc += n
        else other += n
      }
      END {
        printf "| `%s` | %\047d | %s | %s | %s | %s | %s | %s | %s |\n", page, total, pct(own),
               pct(helper), pct(cal), pct(libc), pct(other), allocs, faults
      }'
done
