#!/usr/bin/env bash
# The main job, as a user would do it: runs the tour of the README as it is written there.
# Usage: scripts/main-job.sh TABWRIGHT. Every command is shown before its result; nothing is left behind.
set -euo pipefail
tabwright=$(readlink -f "$1")
cd "$(dirname "$(readlink -f "$0")")/.."

# A home of its own for this run, so that the user's files and browsers are left alone.
scratch=$(mktemp -d)
export XDG_DATA_HOME="$scratch/data" XDG_STATE_HOME="$scratch/state" XDG_CONFIG_HOME="$scratch/config"
export XDG_RUNTIME_DIR="$scratch/runtime"
mkdir -m 700 "$XDG_RUNTIME_DIR"
export PATH="$(dirname "$tabwright"):$PATH"

browsers() { grep -las -- "[-]-user-data-dir=$scratch" /proc/[0-9]*/cmdline | cut -d/ -f3 || true; }
# The background host would end by itself two minutes after the last action; here it is told to.
hosts() { grep -lasF "XDG_RUNTIME_DIR=$scratch" /proc/[0-9]*/environ | while read -r file; do
  [ "$(cat "${file%environ}comm" 2>/dev/null)" != tabwright-host ] || echo "$file" | cut -d/ -f3
done || true; }
cleanup() {
  local left
  left="$(browsers) $(hosts)"
  kill $left 2>/dev/null || true
  for _ in $(seq 50); do
    [ -n "$(browsers)$(hosts)" ] || break
    sleep 0.1
  done
  rm -rf "$scratch"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# The commands of the code block behind the README's mark, one a line; lines that end in a backslash or a bar go on.
tour() { sed -n '/<!-- tour -->/,/^```$/p' README.md | sed '1,2d;$d'; }

# Quiet and without a window where there is no desktop; the README needn't tell.
tabwright() {
  if [ "$1" = browser ]; then
    command tabwright "$@" $([ -n "${DISPLAY:-}" ] || echo --headless) -- --disable-background-networking \
      --disable-component-update --disable-sync --disable-quic
  else
    command tabwright "$@"
  fi
}

command=
answer=
while IFS= read -r line; do
  command+=$line
  if [[ $line == *[\\\|] ]]; then
    command+=$'\n'
    continue
  fi
  printf '\n\033[1m$ %s\033[0m\n' "$command"
  result=$(eval "$command")
  [ -z "$result" ] || printf '%s\n' "$result"
  answer+=$result
  command=
done < <(tour)

case "$answer" in
  *'The lamp is on'*'Good morning, Ann!'*) printf '\nThe lamp was switched on and the form answered: the page did what it was told.\n' ;;
  *) printf '\nThe page did not do what it was told.\n' >&2; exit 1 ;;
esac
[ -z "$(browsers)" ] || { printf 'A browser is left running.\n' >&2; exit 1; }
printf 'Done. Nothing is left running.\n'
