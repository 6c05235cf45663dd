#!/usr/bin/env bash
# A folder of src/ includes only itself and the folders that its CMakeLists.txt names under DEPENDS or
# links by hand. Where that file has a line `# ORDER: a b c`, the folder's own parts (folders, or files beside them by
# their names) include only those that stand before them, and each part stands there.
set -euo pipefail
cd "$1/src"
bad=0
for folder in */; do
  folder=${folder%/}
  [ "$folder" = app ] && continue # the composition root may name everything
  [ -f "$folder/CMakeLists.txt" ] || { echo "src/$folder has no CMakeLists.txt"; bad=1; continue; }
  allowed=" $folder $(sed -n 's/^ *DEPENDS \([a-z ]*\).*/\1/p' "$folder/CMakeLists.txt" | head -n 1) "
  allowed+="$(grep -o 'PUBLIC tabwright_[a-z]*' "$folder/CMakeLists.txt" | sed 's/.*_//' | tr '\n' ' ' || true)"
  while IFS=: read -r file line included; do
    target=${included#*\"}
    target=${target%%/*}
    [ -d "$target" ] || continue # generated headers stand in no folder
    case "$allowed" in
      *" $target "*) ;;
      *) echo "src/$file:$line includes $target/, which src/$folder/CMakeLists.txt does not depend on"; bad=1 ;;
    esac
  done < <(grep -rnE --include='*.h' --include='*.cpp' '^#include "[a-z]+/' "$folder" || true)
  order=$(sed -n 's/^# ORDER: //p' "$folder/CMakeLists.txt")
  [ -n "$order" ] || continue
  while IFS=: read -r file line included; do
    part=${file#"$folder"/}; part=${part%%[/.]*}
    target=${included#*\"$folder/}; target=${target%%[/.]*}
    case " ${order%%"$part"*}$part " in
      *" $target "*) [[ " $order " == *" $part "* ]] && continue ;;
    esac
    echo "src/$file:$line includes $folder/$target, which does not stand before $part in src/$folder/CMakeLists.txt"; bad=1
  done < <(grep -rnE --include='*.h' --include='*.cpp' "^#include \"$folder/" "$folder" || true)
done
exit $bad
