#!/usr/bin/env bash
# Measures warm actions in one process against a browser of its own, and counts reads that come too early behind navigations:
# scripts/bench-browser.sh BUILD_DIRECTORY [RUNS].
set -euo pipefail
if [ -z "${TABWRIGHT_BENCH_APART:-}" ]; then
  export TABWRIGHT_BENCH_APART=1
  exec "$(dirname "$(readlink -f "$0")")/apart.sh" "$0" "$@"
fi
build=$(readlink -f "$1")
shift
page="file://$(readlink -f "$(dirname "$0")/../resources/demo/index.html")"
"$build/src/app/tabwright" browser chromium --headless "$page" -- --disable-background-networking \
  --disable-component-update --disable-sync --disable-quic >/dev/null
"$build/bench/tabwright_browser_bench" "$@"
"$build/bench/tabwright_navigation_bench"
