#!/usr/bin/env bash
# Builds the program and starts it (under a virtual display when there is no
# screen).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  exec xvfb-run -a ./build/src/morvel "$@"
fi
exec ./build/src/morvel "$@"
