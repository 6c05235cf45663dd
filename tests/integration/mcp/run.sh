#!/usr/bin/env bash
# Tests the server of the Model Context Protocol with clients that others wrote, on a headless Chromium.
# Usage: tests/integration/mcp/run.sh PROGRAM_FOLDER BUILD_FOLDER: where `tabwright` is, and where the clients are
# installed. Needs Node 18 or newer and npm; the first run downloads the clients.
set -euo pipefail
sources=$(dirname "$(readlink -f "$0")")

if [ -z "${TABWRIGHT_TESTED:-}" ]; then
  TABWRIGHT_TESTED=$(readlink -f "$1")/tabwright
  [ -x "$TABWRIGHT_TESTED" ] || { echo "There is no program $TABWRIGHT_TESTED." >&2; exit 2; }
  command -v npm >/dev/null || { echo "npm isn't installed." >&2; exit 2; }
  mkdir -p "$2"
  # Modules are looked for beside the file that imports them, so the tests are run where those are installed.
  cp "$sources"/*.js "$sources"/package*.json "$2"
  if ! cmp -s "$2/package-lock.json" "$2/node_modules/installed-lock.json"; then
    timeout --foreground 240 npm --prefix "$2" ci --ignore-scripts --no-audit --no-fund --loglevel=error
    cp "$2/package-lock.json" "$2/node_modules/installed-lock.json"
  fi
  export TABWRIGHT_TESTED
  exec "$sources/../../../scripts/apart.sh" "$0" "$@"
fi

trap 'exit 130' INT TERM
cd "$2"
timeout --foreground 90 "$TABWRIGHT_TESTED" browser chromium --headless about:blank -- \
  --disable-background-networking --disable-component-update --disable-sync --disable-quic >/dev/null

# One after the other, for they share the browser.
failed=0
for tests in "$sources"/*Tests.js; do
  timeout --foreground --kill-after=5 150 node --test --test-reporter=spec "$(basename "$tests")" || failed=1
done
exit $failed
