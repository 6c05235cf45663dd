#!/usr/bin/env bash
# Runs a command with a home and processes of its own: scripts/apart.sh COMMAND [ARGUMENT...]. It sees no browser of the
# user's, and whatever it leaves running ends with it.
set -euo pipefail
scratch=$(mktemp -d)
runtime=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d) # in memory, as a session's is
# Lists what still runs in these surroundings, where processes can't be kept apart.
left() { grep -lasF "XDG_RUNTIME_DIR=$runtime" /proc/[0-9]*/environ | cut -d/ -f3 | grep -vx "$$" || true; }
cleanup() {
  kill $(left) 2>/dev/null || true
  for _ in $(seq 50); do
    [ -n "$(left)" ] || break
    sleep 0.1
  done
  rm -rf "$scratch" "$runtime"
}
trap cleanup EXIT
trap 'exit 130' INT TERM
mkdir -m 700 "$scratch"/{home,data,state,config,cache,tmp}
surroundings=(HOME="$scratch/home" XDG_DATA_HOME="$scratch/data" XDG_STATE_HOME="$scratch/state"
  XDG_CONFIG_HOME="$scratch/config" XDG_CACHE_HOME="$scratch/cache" XDG_RUNTIME_DIR="$runtime"
  TMPDIR="$scratch/tmp" LC_ALL=C.UTF-8)
unset DISPLAY WAYLAND_DISPLAY
[ "$(id -u)" -eq 0 ] && user=() || user=(--map-root-user)
apart=(setpriv --pdeathsig KILL unshare "${user[@]}" --pid --fork --kill-child --mount-proc --)
# A container may not allow that. Then other browsers are seen, but none is harmed by the end of this.
"${apart[@]}" true 2>/dev/null || apart=()
env "${surroundings[@]}" "${apart[@]}" "$@"
