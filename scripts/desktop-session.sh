#!/usr/bin/env bash
# Runs a command on a desktop of its own: scripts/desktop-session.sh COMMAND [ARGUMENT...]. It has a display without
# screen, the session's bus, which starts the accessibility bus when that is asked for, and a window manager: openbox, or
# the one that WINDOW_MANAGER names ("none": none). All of it ends with the command.
#
#     scripts/apart.sh scripts/desktop-session.sh mousepad notes.txt
#
# Behind scripts/apart.sh it has a home of its own too, and what the command leaves running ends.
set -euo pipefail
manager=${WINDOW_MANAGER:-openbox}
folder=$(mktemp -d)
started=()
cleanup() {
  local each
  for ((each = ${#started[@]} - 1; each >= 0; --each)); do
    kill "${started[each]}" 2>/dev/null && wait "${started[each]}" 2>/dev/null || true
  done
  # The desktop's portal of documents mounts a folder there, and may be slow to leave it.
  umount -l "$folder/runtime/doc" 2>/dev/null || true
  rm -rf "$folder" 2>/dev/null || true
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# until_there COMMAND...: waits until it succeeds.
until_there() {
  local attempt
  for attempt in $(seq 600); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.05
  done
  echo "desktop-session.sh: gave up waiting for: $*" >&2
  cat "$folder"/*.log >&2
  exit 1
}

mkfifo "$folder/display"
Xvfb -displayfd 3 -screen 0 "${SCREEN:-1280x900x24}" -nolisten tcp -noreset 3<>"$folder/display" 2>"$folder/server.log" &
started+=($!)
read -r number <"$folder/display"
export DISPLAY=":$number" XDG_SESSION_TYPE=x11
unset WAYLAND_DISPLAY AT_SPI_BUS_ADDRESS NO_AT_BRIDGE

export XDG_RUNTIME_DIR="$folder/runtime"
mkdir -m 700 "$XDG_RUNTIME_DIR"
export DBUS_SESSION_BUS_ADDRESS="unix:path=$XDG_RUNTIME_DIR/bus"
dbus-daemon --session --nofork --address="$DBUS_SESSION_BUS_ADDRESS" 2>"$folder/bus.log" &
started+=($!)
until_there test -S "$XDG_RUNTIME_DIR/bus"

if [ "$manager" != none ]; then
  $manager >"$folder/manager.log" 2>&1 &
  started+=($!)
  until_there sh -c 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'
fi
"$@"
