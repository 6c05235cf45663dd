#!/usr/bin/env bash
# Thousands of actions through one background host: scripts/bench-soak.sh PROGRAM_FOLDER [ACTIONS]. Shows what the host has in
# memory, descriptors, threads and files before, between and after, and fails if any of it has grown, or if any
# answer was wrong.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "$0")")")
folder=$(readlink -f "$1")
shift
PYTHONDONTWRITEBYTECODE=1 PYTHONPATH="$root/bench" exec "$root/scripts/apart.sh" python3 -m soak.main "$folder/tabwright" "$@"
