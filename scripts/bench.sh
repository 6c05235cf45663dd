#!/usr/bin/env bash
# Runs the benchmarks: scripts/bench.sh BUILD_DIRECTORY [options of Google Benchmark]. Starts a browser of its own for those
# that need one, and leaves nothing behind.
set -euo pipefail
build=$(readlink -f "$1")
shift
page="file://$(readlink -f "$(dirname "$0")/../resources/demo/index.html")"
"$build/bench/tabwright_bench" "$@"
echo
"$(dirname "$0")/bench-html.sh" "$build"

scratch=$(mktemp -d)
export XDG_DATA_HOME="$scratch/data" XDG_STATE_HOME="$scratch/state" XDG_CONFIG_HOME="$scratch/config"
export PATH="$build/src/app:$PATH"
trap 'tabwright applescript - <<<"tell application \"Chromium\" to quit" >/dev/null 2>&1 || true; rm -rf "$scratch"' EXIT
tabwright browser chromium --headless "$page" -- --disable-background-networking --disable-component-update \
  --disable-sync --disable-quic >/dev/null

echo
echo "Warm, in one process:"
"$build/bench/tabwright_browser_bench"

# Whole processes, as a key binding or a pipe starts them.
whole() {
  local count=20 start end
  start=$(date +%s%N)
  for _ in $(seq $count); do "$@" >/dev/null; done
  end=$(date +%s%N)
  printf '%-60s %5.1f ms a run\n' "$*" "$(((end - start) / count / 1000))e-3"
}
echo
echo "Whole processes:"
whole tabwright --version
whole tabwright run GetListOfTabs --targetContext chromium
whole tabwright run ClickElement --targetContext chromium --cssSelector '#switch'
