#!/usr/bin/env bash
# Configures (once) and builds Velora into build/. Incremental on a second run.
set -euo pipefail
cd "$(dirname "$0")/.."
if [ ! -f build/CMakeCache.txt ]; then
    cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
fi
cmake --build build -j2
