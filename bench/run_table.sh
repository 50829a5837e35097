#!/bin/sh
# Benchmark table: builds the library and the benchmark programs of this
# source in three trees (Release -O3, RelWithDebInfo -O2 -g, Release for
# x86-64-v3), runs every benchmark of each, one thread, median of REPS runs,
# and prints one Markdown table of Mpix/s, peer rows (BM_peer_*) included when
# their libraries were found.
#
#   bench/run_table.sh [WORKDIR]        (default: build/bench-table)
#   REPS=5 FILTER=. bench/run_table.sh
#
# An existing tree (e.g. build/release) can be reused through WORKDIR/release.
set -eu
src=$(cd "$(dirname "$0")/.." && pwd)
work=${1:-$src/build/bench-table}
reps=${REPS:-5}
filter=${FILTER:-.}
mkdir -p "$work"

run_tree() {  # name, cmake options...
    name=$1
    shift
    cmake -S "$src" -B "$work/$name" "$@" -DZIL_BUILD_BENCH=ON -DZIL_BUILD_TESTS=OFF -DZIL_BUILD_TOOLS=OFF \
        -DZIL_BUILD_PYTHON=OFF >/dev/null
    cmake --build "$work/$name" -j"$(nproc)" >/dev/null
    for prog in "$work/$name"/bench/*_bench; do
        "$prog" --benchmark_filter="$filter" --benchmark_repetitions="$reps" \
            --benchmark_report_aggregates_only=true --benchmark_format=json \
            >"$work/$name/$(basename "$prog").json"
    done
}

run_tree release -DCMAKE_BUILD_TYPE=Release
run_tree relwithdebinfo -DCMAKE_BUILD_TYPE=RelWithDebInfo
if grep -q avx2 /proc/cpuinfo; then
    run_tree v3 -DCMAKE_BUILD_TYPE=Release -DZIL_ARCH=x86-64-v3
fi

python3 - "$work" <<'PY'
import json, glob, os, platform, sys
work = sys.argv[1]
trees = [t for t in ("release", "relwithdebinfo", "v3") if os.path.isdir(os.path.join(work, t))]
heads = {"release": "Release (-O3)", "relwithdebinfo": "RelWithDebInfo (-O2)", "v3": "Release x86-64-v3"}
rows, order = {}, []
for t in trees:
    for f in sorted(glob.glob(os.path.join(work, t, "*_bench.json"))):
        with open(f) as fh:
            data = json.load(fh)
        for b in data["benchmarks"]:
            if b.get("aggregate_name") != "median" or "Mpix/s" not in b:
                continue
            name = b["run_name"].removeprefix("BM_")
            if name not in rows:
                rows[name] = {}
                order.append(name)
            rows[name][t] = b["Mpix/s"]
cpu = "unknown"
with open("/proc/cpuinfo") as fh:
    for line in fh:
        if line.startswith("model name"):
            cpu = line.split(":", 1)[1].strip()
            break
print(f"Machine: {cpu}, {os.cpu_count()} cores, load average {os.getloadavg()[0]:.1f} at the end; "
      f"1920x1080, one thread, median Mpix/s (CPU time).\n")
print("| Benchmark | " + " | ".join(heads[t] for t in trees) + " |")
print("|---" * (len(trees) + 1) + "|")
for n in order:
    print(f"| {n} | " + " | ".join(f"{rows[n][t]:.0f}" if t in rows[n] else "" for t in trees) + " |")
PY
