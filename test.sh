#!/usr/bin/env bash
# Installs what is missing, builds and runs the whole test suite (no display needed).
set -euo pipefail
cd "$(dirname "$0")"
scripts/deps.sh
scripts/build.sh
QT_QPA_PLATFORM=offscreen ctest --test-dir build --output-on-failure -j2
