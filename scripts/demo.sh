#!/usr/bin/env bash
# Sets everything up on a fresh Debian machine and starts the program on its main job.
# Today the program's front ends are still being built: this installs every dependency,
# builds the project and runs the unit tests of what stands, so that a newcomer sees the
# foundation work. It grows into "start the demo domain controller and open the main window".
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc 2>/dev/null || echo 2)"
ctest --test-dir build -L unit --output-on-failure
