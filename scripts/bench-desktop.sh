#!/usr/bin/env bash
# Measures menus and keys beside dogtail and xdotool on the same editor: scripts/bench-desktop.sh PROGRAM_FOLDER [RUNS].
# Debian's Python is taken, which has dogtail where python3-dogtail is installed.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "$0")")")
folder=$(readlink -f "$1")
shift
PYTHONDONTWRITEBYTECODE=1 PYTHONPATH="$root/bench" exec "$root/scripts/apart.sh" "$root/scripts/desktop-session.sh" \
  /usr/bin/python3 -m compare.desktop "$folder/tabwright" "$@"
