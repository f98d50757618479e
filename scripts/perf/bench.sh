#!/usr/bin/env bash
# Runs the benchmark suite, each benchmark (and each size of it) in a process
# of its own, so that what an earlier, larger case left behind cannot hide
# or add a cost; prints one table. The shell-driven pages run in the device
# sandbox (root), the others anywhere.
#
#   scripts/perf/bench.sh [BUILD_DIR] [FILTER]
#   (BUILD_DIR: a Release build with -DCALTOFAL_BENCH=ON; default build-bench)
set -euo pipefail
build=${1:-build-bench}
filter=${2:-.}
for program in pages_bench parsers_bench driver_bench; do
  [ -x "$build/bench/$program" ] || {
    echo "bench.sh: no $build/bench/$program (cmake -DCMAKE_BUILD_TYPE=Release -DCALTOFAL_BENCH=ON)" >&2
    exit 2
  }
done

run() {  # PROGRAM [LAUNCHER...]: every benchmark of it, one process each
  local program=$1
  shift
  "$build/bench/$program" --benchmark_list_tests --benchmark_filter="$filter" |
    while read -r name; do
      "$@" "$build/bench/$program" --benchmark_filter="^${name}\$" \
        --benchmark_format=console --benchmark_min_time=0.2 2>/dev/null | grep -E '^BM_'
    done
}

# In the device sandbox the console is a FIFO: on a PC the real console can
# be a slow serial line that would swamp the figures of the pages that trace.
echo "Benchmark                                               Time             CPU   Iterations"
if [ "$(id -u)" -eq 0 ] && [ -x "$build/sim/device/caltofal-device" ]; then
  sandbox=("$build/sim/device/caltofal-device" --)
  run pages_bench "${sandbox[@]}"
  run parsers_bench "${sandbox[@]}"
  run driver_bench "${sandbox[@]}"
else
  run pages_bench
  run parsers_bench
  echo "(the shell-driven pages run in the device sandbox, which needs root: skipped)"
fi
