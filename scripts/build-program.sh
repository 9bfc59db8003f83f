#!/usr/bin/env bash
# Builds the program alone, optimised, with its manual, into build-release/
# (no tests, no benchmarks): what run.sh starts and install.sh installs.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
# A fresh clone elsewhere reuses what an earlier build compiled.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
    -DMORVEL_BUILD_BENCH=OFF "${launcher[@]}" >/dev/null
cmake --build build-release -j"$(nproc)" --target morvel morvel-hoja morvel-lote morvel_manual
