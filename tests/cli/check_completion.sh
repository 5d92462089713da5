#!/usr/bin/env bash
# Completes command lines as bash does: check_completion.sh BNS COMPLETION LIBRARY
shopt -s extglob
bns() { "$bns" "$@"; }
compopt() { :; }  # belongs to a completion that the shell itself started
bns=$1
. "$2"
status=0

# Completes the last of the words and compares what is offered, sorted.
expect() {
  local wanted=$1
  shift
  COMP_WORDS=(bns "$@")
  COMP_CWORD=$#
  _bns
  local offered
  offered=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd' ')
  [ "$offered" = "$wanted" ] || { echo "bns $*: '$offered' in place of '$wanted'"; status=1; }
}

expect 'list' li
expect 'merge move' m
expect '--raw' show --r
expect 'Count\ occurrences' show "$3" Cou
expect 'Count\ occurrences' remove "$3" Other Cou
expect 'skip' import "$3" --same-name s
expect '' search Cou
expect "$3" list "${3%.bns}"
# Every option that is offered is one.
for command in list show search check stats add edit remove rename move convert merge export import; do
  help=$("$bns" $command --help)
  COMP_WORDS=(bns "$command" -)
  COMP_CWORD=2
  _bns
  for option in "${COMPREPLY[@]}"; do
    [[ $help == *"$option"* ]] || { echo "bns $command has no $option"; status=1; }
  done
  offered=" ${COMPREPLY[*]} "
  for option in $(grep -oE -- '--[a-z-]+' <<<"$help" | sort -u); do
    [[ $offered == *" $option "* ]] || { echo "bns $command: $option is not offered"; status=1; }
  done
done
exit $status
