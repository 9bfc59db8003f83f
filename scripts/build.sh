#!/usr/bin/env bash
# Configures and builds the program, its tests and benchmarks into build/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
# A fresh clone elsewhere reuses what an earlier build compiled.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >/dev/null
cmake --build build -j"$(nproc)"
