#!/usr/bin/env bash
# Builds the program (optimised, without tests) and starts it, under a
# virtual display when there is no screen.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build-program.sh
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  exec xvfb-run -a ./build-release/src/morvel "$@"
fi
exec ./build-release/src/morvel "$@"
