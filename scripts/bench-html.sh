#!/usr/bin/env bash
# Measures the conversion of HTML: scripts/bench-html.sh BUILD_DIRECTORY [PAGE...]. Without pages, documentation that Debian's
# packages ship. Beside it, where they are there, pandoc (package pandoc) and turndown (npm) as whole processes on the
# same pages.
set -euo pipefail
build=$(readlink -f "$1")
shift
pages=("$@")
if [ ${#pages[@]} -eq 0 ]; then
  for page in /usr/share/doc/fish/{language,interactive,relnotes}.html /usr/share/doc/ninja-build/manual.html \
    /usr/share/doc/groff-base/html/mom/docprocessing.html /usr/share/doc/nodejs/api/fs.html; do
    [ ! -f "$page" ] || pages+=("$page")
  done
fi
"$build/bench/tabwright_html_bench" "${pages[@]}"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
turndown=
if command -v npm >/dev/null && npm install --silent --prefix "$scratch" turndown@7.2.0 >/dev/null 2>&1; then
  cat >"$scratch/turndown.js" <<'JS'
const TurndownService = require('turndown');
const page = require('fs').readFileSync(process.argv[2], 'utf8');
process.stdout.write(new TurndownService().turndown(page));
JS
  turndown="node $scratch/turndown.js"
fi

# Seconds of processor time of a whole process, the best of three.
seconds() {
  local best= time
  for _ in 1 2 3; do
    time=$( { TIMEFORMAT='%U %S'; time "$@" >/dev/null 2>&1; } 2>&1 | awk '{print $1 + $2}')
    [ -n "$best" ] && awk "BEGIN {exit !($time >= $best)}" || best=$time
  done
  printf '%s' "$best"
}

# beside NAME COMMAND...: another program on the page, beside ours.
beside() {
  local name=$1 theirs
  shift
  if "$@" >/dev/null 2>&1; then
    theirs=$(seconds "$@")
    printf '   %s %6s (%s)' "$name" "$theirs" "$(awk "BEGIN {printf \"%.0f\", $theirs / ($ours + 0.0005)}")"
  else
    printf '   %s fails' "$name"
  fi
}

echo
echo "Whole processes, seconds of processor time, and how often ours goes into theirs:"
for page in "${pages[@]}"; do
  ours=$(seconds "$build/src/app/tabwright" markdown --gfm "$page")
  printf '%-28s tabwright --gfm %6s' "$(basename "$page")" "$ours"
  ! command -v pandoc >/dev/null || beside pandoc pandoc -f html -t gfm "$page"
  [ -z "$turndown" ] || beside turndown $turndown "$page"
  echo
done
