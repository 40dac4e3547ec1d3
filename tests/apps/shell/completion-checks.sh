# For the checks of completions in bash: what is offered, and whether that is what was wanted. Sourced.
failures=0

# offered <program> <word>...: what is offered for the last word, sorted.
offered() {
  COMP_WORDS=("$@")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  "_$1"
  printf '%s\n' "${COMPREPLY[@]}" | sort
}

# expect <what> <wanted> <got>
expect() {
  [ "$2" = "$3" ] && return
  printf 'FAILED: %s\n  wanted: %s\n  got:    %s\n' "$1" "$(tr '\n' ' ' <<<"$2")" "$(tr '\n' ' ' <<<"$3")"
  failures=$((failures + 1))
}
