#!/usr/bin/env bash
# Installs what is missing, builds and starts Velora. Arguments go to Velora, e.g.
#   ./run.sh --port /dev/ttyUSB0     or     ./run.sh --simulate
set -euo pipefail
cd "$(dirname "$0")"
scripts/deps.sh fonts-noto-cjk
scripts/build.sh
exec build/src/velora "$@"
