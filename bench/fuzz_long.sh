#!/usr/bin/env bash
# Runs every libFuzzer target (fuzz/) at length, one after the other, and reports what each
# found. The suite gives each a short smoke run; this is the long one, by hand or overnight.
#
# Each target starts from its seeds in fuzz/corpus/<name> and grows a corpus of its own under
# the work folder, which later runs pick up again; the seeds in the source tree are never
# written. A crash, a leak, a sanitizer report or a timeout leaves its input there as
# crash-*, leak-*, timeout-* or oom-*.
#
#   bench/fuzz_long.sh [--seconds N] [--build DIR] [--work DIR] [name...]
#     N  seconds per target (default 600); DIR  the fuzz build tree (default build-fuzz, made
#     with clang when missing); the work folder defaults to <build>/fuzz-long; names pick
#     targets (default all)
#
# Prints one line per target (runs, corpus size, findings) and exits 1 when anything was found.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/.." && pwd)
seconds=600
build=$root/build-fuzz
work=
names=()
while [ $# -gt 0 ]; do
    case "$1" in
        --seconds) seconds=$2; shift 2 ;;
        --build) build=$2; shift 2 ;;
        --work) work=$2; shift 2 ;;
        -*) echo "usage: $0 [--seconds N] [--build DIR] [--work DIR] [name...]" >&2; exit 64 ;;
        *) names+=("$1"); shift ;;
    esac
done
work=${work:-$build/fuzz-long}

if [ ! -f "$build/CMakeCache.txt" ]; then
    cmake -S "$root" -B "$build" -DORIN_FUZZ=ON -DCMAKE_C_COMPILER=clang \
          -DCMAKE_CXX_COMPILER=clang++ >/dev/null
fi
cmake --build "$build" -j"$(nproc 2>/dev/null || echo 2)" >/dev/null

if [ ${#names[@]} -eq 0 ]; then
    for seeds in "$root"/fuzz/corpus/*/; do names+=("$(basename "$seeds")"); done
fi

found=0
printf '%-16s %10s %8s  %s\n' target runs corpus findings
for name in "${names[@]}"; do
    fuzzer=$build/bin/$name
    [ -x "$fuzzer" ] || { echo "$name: no $fuzzer" >&2; found=1; continue; }
    corpus=$work/$name/corpus
    findings=$work/$name/findings
    mkdir -p "$corpus" "$findings"
    log=$work/$name/last.log
    # -fork keeps fuzzing after a finding; every finding stays in the findings folder.
    "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -fork=1 -ignore_crashes=1 -ignore_timeouts=1 -ignore_ooms=1 \
        -artifact_prefix="$findings/" "$corpus" "$root/fuzz/corpus/$name" >"$log" 2>&1 || true
    runs=$( (grep -oE '^#[0-9]+' "$log" || true) | tail -n 1 | tr -d '#')
    size=$(find "$corpus" -type f | wc -l)
    list=$(find "$findings" -type f \( -name 'crash-*' -o -name 'leak-*' -o -name 'timeout-*' \
                -o -name 'oom-*' \) -printf '%f ' | sed 's/ $//')
    printf '%-16s %10s %8s  %s\n' "$name" "${runs:-?}" "$size" "${list:-none}"
    [ -z "$list" ] || found=1
done
if [ $found -ne 0 ]; then
    echo "findings are in $work/<target>/findings; replay one with: $build/bin/<target> <file>"
fi
exit $found
