#!/usr/bin/env bash
# A range-based for walks no part of what a call returned by pointer: `for (x : f()->items)`. Where f() gives an owning
# pointer, clang 19 keeps it for the loop and g++ 12 lets it go before the first round, so the owner is named first.
# Nor does it walk the inside of a JSON value that a call returned: `for (x : f().as_array())`.
# `./dev lint` asks the compiler the same for every kind of call (scripts/range-for.query).
set -euo pipefail
cd "$1"
found=$(grep -rnE --include='*.h' --include='*.cpp' \
  'for \([^;]*[^:]:[^:;][^;]*[[:alnum:]_]\([^()]*(\([^()]*\)[^()]*)*\)->' src tests bench | grep -vE '_cast<[^>]*>\([^()]*\)->' || true)
found+=$(grep -rnE --include='*.h' --include='*.cpp' \
  'for \([^;]*[^:]: *[A-Za-z_:]+\([^()]*(\([^()]*\)[^()]*)*\)\.(as|get)_(array|object)\(\)' src tests bench || true)
[ -z "$found" ] || { echo "name the owner before the loop:"; echo "$found"; exit 1; }
