#!/usr/bin/env bash
# Installs the Debian packages Velora needs when some are missing. As root it runs apt-get;
# otherwise it prints the exact command and stops, so nothing is changed behind a user's back.
# Usage: scripts/deps.sh [extra package...]
set -euo pipefail

packages=(cmake g++ make ninja-build qt6-base-dev qt6-serialport-dev qt6-translations-l10n "$@")

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
    echo "Velora needs these Debian packages. Install them with:" >&2
    echo "  sudo apt-get install -y ${missing[*]}" >&2
    exit 1
fi
echo "Installing ${missing[*]} ..." >&2
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}"
