# shellcheck shell=bash
# Completion of varnel-xml and varnel-xml-host in bash. What there is to complete is what --help of
# the program or of its sub-command tells, so nothing here knows a name.

_varnel_xml() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local -a command=("${COMP_WORDS[0]}")
  if ((COMP_CWORD > 1)) && [[ ${COMP_WORDS[1]} == [a-z]* ]]; then command+=("${COMP_WORDS[1]}"); fi
  local help value=""
  help=$("${command[@]}" --help 2>/dev/null) || return

  # What the option before the cursor takes: FILE, DIR, a choice of words or anything else.
  if [[ $previous == --[a-z]* ]]; then
    value=$(sed -nE "s/^ +$previous ([^ ]+).*/\1/p" <<<"$help")
  fi
  local -a words
  case $value in
    "")
      mapfile -t words < <(sed -nE -e 's/^ +(-h,)?(--[a-z-]+).*/\2/p' \
        -e '/^Subcommands:/,$ s/^  ([a-z][a-z-]*) .*/\1/p' <<<"$help")
      mapfile -t COMPREPLY < <(compgen -W "${words[*]}" -- "$current")
      # A word that is no option can be the name of a file or folder.
      if [[ ${#COMPREPLY[@]} == 0 ]]; then mapfile -t COMPREPLY < <(compgen -f -- "$current"); fi
      ;;
    FILE) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    DIR) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    *"|"*) mapfile -t COMPREPLY < <(compgen -W "${value//|/ }" -- "$current") ;;
    *) COMPREPLY=() ;;
  esac
}

complete -o filenames -F _varnel_xml varnel-xml varnel-xml-host
