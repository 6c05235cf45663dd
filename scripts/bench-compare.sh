#!/usr/bin/env bash
# Measures the program beside others that drive a running browser from the command line, as whole processes on the same
# browser: scripts/bench-compare.sh PROGRAM_FOLDER [RUNS [TOOL...]]. The others are installed by npm, once, in the cache.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "$0")")")
folder=$(readlink -f "$1")
shift
packages=(agent-browser@0.41.2 @playwright/cli@0.1.22 chrome-devtools-mcp@1.11.0)
cache="${XDG_CACHE_HOME:-$HOME/.cache}/tabwright-bench"
if [ "$(cat "$cache/installed" 2>/dev/null)" != "${packages[*]}" ]; then
  mkdir -p "$cache"
  PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1 PUPPETEER_SKIP_DOWNLOAD=1 \
    npm install --silent --no-audit --no-fund --ignore-scripts --prefix "$cache" "${packages[@]}"
  chmod +x "$cache"/node_modules/agent-browser/bin/agent-browser-linux-*
  echo "${packages[*]}" >"$cache/installed"
fi
PYTHONDONTWRITEBYTECODE=1 PYTHONPATH="$root/bench" exec "$root/scripts/apart.sh" \
  python3 -m compare.main "$folder/tabwright" "$cache" "$@"
