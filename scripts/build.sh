#!/usr/bin/env bash
# Configures (once) and builds Velora into build/ with Ninja. Quiet and quick when nothing
# changed; the build's output appears only when something is rebuilt or fails.
set -euo pipefail
cd "$(dirname "$0")/.."

# A build folder made before the switch to Ninja is configured afresh (one full rebuild).
if [ -f build/CMakeCache.txt ] && ! grep -q '^CMAKE_GENERATOR:INTERNAL=Ninja$' build/CMakeCache.txt; then
    echo "Reconfiguring build/ for Ninja (one full rebuild) ..." >&2
    rm -rf build/CMakeCache.txt build/CMakeFiles
fi
if [ ! -f build/CMakeCache.txt ]; then
    log=$(mktemp)
    if ! cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        exit 1
    fi
    rm -f "$log"
fi
# A dry run answers "no work to do" in a few milliseconds when everything is up to date.
if ninja -C build -n 2>/dev/null | grep -q '^ninja: no work to do\.$'; then
    exit 0
fi
cmake --build build -j2
