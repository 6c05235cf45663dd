#!/usr/bin/env bash
# No source written by hand is longer than 600 lines.
set -euo pipefail
cd "$1"
long=$(find src tests bench -name '*.cpp' -o -name '*.h' -o -name '*.def' | xargs wc -l | awk '$2 != "total" && $1 > 600')
[ -z "$long" ] || { echo "over 600 lines, split by idea:"; echo "$long"; exit 1; }
