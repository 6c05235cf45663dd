#compdef tabwright
# Completes tabwright's words. Load it with: source <(tabwright completion zsh)
_tabwright() {
  local line files=
  local -a candidates
  while IFS= read -r line; do
    if [[ $line == :files ]]; then
      files=yes
    elif [[ $line == *$'\t'* ]]; then
      candidates+=("${${line%%$'\t'*}//:/\\:}:${line#*$'\t'}")
    else
      candidates+=("${line//:/\\:}")
    fi
  done < <("${words[1]}" complete "${(@)words[2,CURRENT]}" 2>/dev/null)
  (( ${#candidates} )) && _describe -V tabwright candidates
  if [[ -n $files ]]; then
    compset -P '--*='
    compset -P @
    _files
  fi
}
if [[ $zsh_eval_context[-1] == loadautofunc ]]; then
  _tabwright "$@"
else
  compdef _tabwright tabwright
fi
