#!/usr/bin/env bash
# Builds the program and runs every test through CTest.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
cd build
ctest --output-on-failure -j"$(nproc)" --timeout 600
