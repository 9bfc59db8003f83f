#!/usr/bin/env bash
# Builds the fuzz targets with clang into build/fuzz and runs each one.
#
#   tests/fuzz/run.sh [-t SECONDS | -r RUNS] [TARGET...]
#
# -t runs each target for SECONDS (default 30), -r for RUNS executions. With
# no TARGET every target runs (text_import, xlsx, xls, sheet_output, ...).
# Each starts from its seed corpus tests/fuzz/corpus/TARGET and keeps what it
# learns in build/fuzz/corpus/TARGET (MORVEL_FUZZ_FLAGS adds libFuzzer flags,
# such as "-jobs=2"); a crash, leak or limit hit leaves its
# input in build/fuzz/artifacts/ and makes the script fail. The figures of
# each run are in build/fuzz/logs/TARGET.log.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
out=${MORVEL_FUZZ_BUILD:-$root/build/fuzz}

limit=(-max_total_time=30)
while getopts "t:r:" opt; do
  case $opt in
    t) limit=(-max_total_time="$OPTARG") ;;
    r) limit=(-runs="$OPTARG") ;;
    *) echo "usage: $0 [-t seconds | -r runs] [target...]" >&2; exit 64 ;;
  esac
done
shift $((OPTIND - 1))

if [ ! -f "$out/build.ninja" ]; then
  cmake -S "$here" -B "$out" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)" >/dev/null
fi
mkdir -p "$out"
if ! ninja -C "$out" >"$out/build.log" 2>&1; then
  tail -40 "$out/build.log"
  echo "The fuzz targets did not build (whole log: $out/build.log)."
  exit 1
fi

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for t in "$here"/fuzz_*.cpp; do
    t=$(basename "$t" .cpp)
    targets+=("${t#fuzz_}")
  done
fi

# Whether a fault input of the target, replayed, shows a first frame that is
# not in `library`: a fault of our own among the library's. No library: any
# fault input counts.
foreign_faults() {
  local t=$1 library=$2 input
  for input in "$out/artifacts/$t"-*; do
    [ -e "$input" ] || continue
    [ -z "$library" ] && return 0
    "$out/fuzz_$t" -runs=1 "$input" 2>&1 | awk -v lib="$library" '
      /ERROR: (Address|Leak|UndefinedBehavior)Sanitizer|ERROR: libFuzzer/ { open = 1; next }
      open && /^ *#[0-9]+ / && !/interceptor|libclang_rt|sanitizer|in (malloc|free|calloc|realloc)/ {
        decided = 1; foreign = !index($0, lib); exit }
      END { exit (decided && foreign) ? 0 : 1 }' && return 0
  done
  return 1
}

# The targets' scratch files and databases live in memory where it can.
[ -z "${TMPDIR:-}" ] && [ -w /dev/shm ] && export TMPDIR=/dev/shm

# FreeXL, which the .xls target drives, reads outside its own buffers and
# frees twice on damaged files; the program runs it only inside the bounded
# helper for that reason. Its target goes on past such faults (each input in
# a child process) and fails only on a fault whose frames are not FreeXL's.
declare -A own_faults_only=([xls]=libfreexl)

mkdir -p "$out/artifacts" "$out/logs"
status=0
for t in "${targets[@]}"; do
  extra=()
  library=${own_faults_only[$t]:-}
  [ -n "$library" ] && extra=(-fork=1 -ignore_crashes=1 -ignore_ooms=1 -ignore_timeouts=1)
  mkdir -p "$out/corpus/$t"
  rm -f "$out/artifacts/$t"-*
  seeds=()
  [ -d "$here/corpus/$t" ] && seeds=("$here/corpus/$t")
  log="$out/logs/$t.log"
  # Memory and time per input are bounded as the helper bounds the program's
  # readers: 2 GB with the sanitizers' own share, 10 s.
  # shellcheck disable=SC2086 # MORVEL_FUZZ_FLAGS: more libFuzzer flags, as words
  # A target that goes on past its library's faults is judged by its fault
  # inputs alone (its exit status tells that there were some).
  if { "$out/fuzz_$t" "${limit[@]}" "${extra[@]}" ${MORVEL_FUZZ_FLAGS:-} -rss_limit_mb=2048 \
      -malloc_limit_mb=1024 -timeout=10 -print_final_stats=1 -artifact_prefix="$out/artifacts/$t-" \
      "$out/corpus/$t" "${seeds[@]}" >"$log" 2>&1 || [ -n "$library" ]; } &&
      ! foreign_faults "$t" "$library"; then
    echo "$t: $(grep -E '^Done|stat::number_of_executed_units|^INFO: fuzzed for|oom/timeout/crash' "$log" | tail -2 | tr '\n' ' ')"
    [ -n "$library" ] && echo "  faults inside $library, contained by the helper: $(ls "$out/artifacts" | grep -c "^$t-" || true)"
  else
    echo "$t: FAILED, see $log" >&2
    grep -E 'ERROR|SUMMARY|Test unit written' "$log" >&2 || tail -20 "$log" >&2
    status=1
  fi
done
exit $status
