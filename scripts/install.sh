#!/usr/bin/env bash
# Builds the program optimised and installs it stripped into a prefix
# (default ~/.local): bin/morvel, share/morvel, the desktop entry and icon.
set -euo pipefail
cd "$(dirname "$0")/.."
prefix="${1:-$HOME/.local}"
bash scripts/build-program.sh
cmake --install build-release --prefix "$prefix" --strip
