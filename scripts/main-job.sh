#!/usr/bin/env bash
# The main job, as a user would do it: a browser on the page in resources/demo, its tabs listed, a button clicked.
# Usage: scripts/main-job.sh TABWRIGHT. Every command is shown before its result; nothing is left behind.
set -euo pipefail
tabwright=$(readlink -f "$1")
page="file://$(readlink -f "$(dirname "$0")/../resources/demo/index.html")"

# A home of its own for this run, so that the user's files and browsers are left alone.
scratch=$(mktemp -d)
export XDG_DATA_HOME="$scratch/data" XDG_STATE_HOME="$scratch/state" XDG_CONFIG_HOME="$scratch/config"
export PATH="$(dirname "$tabwright"):$PATH"
browser_pid=
cleanup() {
  if [ -n "$browser_pid" ] && kill -0 "$browser_pid" 2>/dev/null; then
    kill "$browser_pid" 2>/dev/null || true
    for _ in $(seq 50); do
      [ -e "/proc/$browser_pid" ] && ! grep -q '^State:.Z' "/proc/$browser_pid/status" 2>/dev/null || break
      sleep 0.1
    done
  fi
  rm -rf "$scratch"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

show() { # shows a command line and runs it
  printf '\n\033[1m$' >&2
  printf ' %q' "$@" >&2
  printf '\033[0m\n' >&2
  "$@"
}

window=(--headless)
[ -n "${DISPLAY:-}" ] && window=()
started=$(show tabwright browser chromium --json "${window[@]}" "$page" -- --disable-background-networking --disable-component-update --disable-sync --disable-quic)
printf '%s\n' "$started"
browser_pid=$(printf '%s' "$started" | sed -n 's/.*"pid" *: *\([0-9]*\).*/\1/p')

show tabwright run GetListOfTabs --targetContext chromium
before=$(tabwright run GetListOfTabs --targetContext chromium --json)
show tabwright run ClickElement --targetContext chromium --cssSelector '#switch'
after=$(show tabwright run GetListOfTabs --targetContext chromium --json)
printf '%s\n' "$after"

case "$before/$after" in
  *'Tabwright’s workbench'*/*'The lamp is on'*) printf '\nThe button was clicked and the page changed: “The lamp is on”.\n' ;;
  *) printf '\nThe page did not change.\n' >&2; exit 1 ;;
esac

show tabwright applescript - <<<'tell application "Chromium" to quit'
printf 'Done. Nothing is left running.\n'
