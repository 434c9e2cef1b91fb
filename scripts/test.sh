#!/usr/bin/env bash
# Runs the whole test suite: unit tests, the tests against a real Samba AD domain controller
# (started and removed by the suite itself), GUI tests offscreen, and short fuzzing runs.
# Usage: scripts/test.sh [extra ctest arguments, e.g. -L unit]
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

jobs=$(nproc 2>/dev/null || echo 2)

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$jobs"

# The fuzz targets need clang's libFuzzer and AddressSanitizer: a build tree of their own.
cmake -S . -B build-fuzz -DORIN_FUZZ=ON -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++
cmake --build build-fuzz -j"$jobs"

status=0
ctest --test-dir build --output-on-failure -j"$jobs" "$@" || status=1
ctest --test-dir build-fuzz --output-on-failure || status=1
exit $status
