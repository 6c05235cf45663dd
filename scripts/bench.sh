#!/usr/bin/env bash
# Runs the benchmarks: scripts/bench.sh BUILD_DIRECTORY [options of Google Benchmark]. Those that need a browser start one of
# their own. Nothing is left behind.
set -euo pipefail
build=$(readlink -f "$1")
shift
cd "$(dirname "$(readlink -f "$0")")"
"$build/bench/tabwright_bench" "$@"
printf '\n== HTML\n'
./bench-html.sh "$build"
printf '\n== Warm, in one process\n'
./bench-browser.sh "$build"
if command -v npm >/dev/null; then
  printf '\n== Whole processes, beside others\n'
  ./bench-compare.sh "$build/src/app"
fi
printf '\n== Menus and keys, beside others\n'
./bench-desktop.sh "$build/src/app"
printf '\n== Soak\n'
./bench-soak.sh "$build/src/app"
