#!/usr/bin/env bash
# Installs what is missing, builds and starts Velora. Arguments go to Velora, e.g.
#   ./run.sh --port /dev/ttyUSB0     or     ./run.sh --simulate
set -euo pipefail
cd "$(dirname "$0")"
scripts/deps.sh fonts-noto-cjk
scripts/build.sh
# A first start with nothing configured meets a simulated drive instead of a missing port.
settings="${XDG_CONFIG_HOME:-$HOME/.config}/Halvern Electronics Velora.conf"
if [ $# -eq 0 ] && [ ! -f "$settings" ]; then
    echo "No settings yet: starting Velora against a simulated drive." >&2
    echo "For a real drive: ./run.sh --port /dev/ttyUSB0 (or set the port in System > Comm Settings)." >&2
    set -- --simulate
fi
exec build/src/velora "$@"
