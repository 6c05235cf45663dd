# Completes tabwright's words. Load it with: source <(tabwright completion bash)
_tabwright() {
  local line word files=
  local -a words=() candidates=() meanings=()
  # Bash splits words at "=" and ":"; they are put together again.
  local index
  for ((index = 1; index <= COMP_CWORD; index++)); do
    word=${COMP_WORDS[index]}
    if ((index > 1)) && [[ $word == [=:]* || ${COMP_WORDS[index - 1]} == *[=:] ]] && ((${#words[@]})); then
      words[-1]+=$word
    else
      words+=("$word")
    fi
  done
  while IFS= read -r line; do
    if [[ $line == :files ]]; then
      files=yes
    else
      candidates+=("${line%%$'\t'*}")
      meanings+=("${line#"${candidates[-1]}"}")
    fi
  done < <("${COMP_WORDS[0]}" complete "${words[@]}" 2>/dev/null)
  local current=${COMP_WORDS[COMP_CWORD]} whole=${words[-1]-}
  [[ $current == [=:] ]] && current=
  local prefix=${whole%"$current"}
  COMPREPLY=("${candidates[@]#"$prefix"}")
  # A reference says nothing by itself: while there is a choice and it is only listed, its meaning stands behind it.
  if ((${#candidates[@]} > 1)) && [[ ${COMP_TYPE-9} == 9 || ${COMP_TYPE-9} == 63 ]]; then
    for index in "${!candidates[@]}"; do
      [[ ${candidates[index]} == [a-z]*:* ]] && COMPREPLY[index]+="  (${meanings[index]#$'\t'})"
    done
  fi
  if [[ $files ]]; then
    if [[ $current == @* ]]; then
      mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -P @ -f -- "${current#@}")
    else
      mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$current")
    fi
    compopt -o filenames 2>/dev/null
  fi
  return 0
}
complete -F _tabwright tabwright
