#!/usr/bin/env bash
# Every source of src/ becomes part of one of the programs. From the objects with their main functions on, each
# undefined symbol leads to the object that defines it, as it leads the linker; the argument is the folder of the build.
set -euo pipefail
cd "$1"
awaited=( # by
  -e '^src/targets/.*/TargetContextQuery'          # the windows
)
mapfile -t objects < <(grep -o -- "-o src/[^ ]*\.o" compile_commands.json | cut -c 4- | sort -u)
unlinked=$(nm -A -P "${objects[@]}" | awk '
  { file = substr($1, 1, length($1) - 1) }
  $3 == "U" { wanted[file] = wanted[file] " " $2 }
  $3 ~ /^[A-TV-Zu]$/ && !($2 in definer) { definer[$2] = file }
  !(file in isReached) { isReached[file] = 0 }
  $2 == "main" && $3 == "T" { isReached[file] = 1; open[++last] = file }
  END {
    for (next_ = 1; next_ <= last; ++next_) {
      count = split(wanted[open[next_]], symbols, " ")
      for (each = 1; each <= count; ++each) {
        file = definer[symbols[each]]
        if (file != "" && !isReached[file]) { isReached[file] = 1; open[++last] = file }
      }
    }
    if (last < 2) print "(nothing: no main function leads anywhere)"
    for (file in isReached)
      if (!isReached[file]) print file
  }' | grep -v "${awaited[@]}" | sort || true)
[ -z "$unlinked" ] || { echo "in no program:"; echo "$unlinked"; exit 1; }
