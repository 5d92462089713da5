# Completion of bns for bash: commands, their options, libraries, and the snippets of the library that was named.

_bns_snippets() {
  local IFS=$'\n' name
  for name in $(bns list -- "$1" 2>/dev/null); do
    [[ $name != "$2"* ]] || COMPREPLY+=("$(printf '%q' "$name")")
  done
}

# A word of the command line without its quoting; nothing in it is carried out.
_bns_unquoted() {
  local word=${1//[\\\"\']/}
  [[ $word != '~/'* ]] || word=$HOME/${word:2}
  printf '%s' "$word"
}

_bns_files() {
  local IFS=$'\n'
  compopt -o filenames
  COMPREPLY+=($(compgen -f -X "!*.$1" -- "$2") $(compgen -d -- "$2"))
}

_bns_words() { COMPREPLY+=($(compgen -W "$1" -- "$2")); }

_bns() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' library='' word
  local commands='list show search check stats add edit remove rename move convert merge export import'
  local texts='--code --code-file --description --description-file --attachment --encoding --lossy'
  local -A options=(
    [list]='--long --json' [show]='--code --description --attachment --raw --json'
    [search]='--ignore-case --word --regex --in --names --count --json' [check]='--strict --json' [stats]='--json'
    [add]="$texts --create --same-name" [edit]="$texts" [remove]='--lossy' [rename]='--same-name --lossy'
    [move]='--to --before --after --into --lossy' [convert]='--output --lossy'
    [merge]='--same-name --dry-run --create --lossy --json'
    [export]='--format --snippet --as-templates --force --dry-run --lossy --json'
    [import]='--format --templates --all-languages --same-name --encoding --dry-run --create --lossy --json')
  local positionals=0 i
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    [[ $word != -?* ]] || continue
    if [ -z "$command" ]; then
      command=$word
    else
      positionals=$((positionals + 1))
      [ $positionals != 1 ] || library=$(_bns_unquoted "$word")
    fi
  done

  COMPREPLY=()
  if [ -z "$command" ]; then
    _bns_words "$commands --help --version" "$current"
    return
  fi
  case "$command $previous" in
    *' --encoding') _bns_words 'auto utf-8 utf-16 ansi' "$current"; return ;;
    *' --format') _bns_words 'vs vscode bas' "$current"; return ;;
    *' --templates') _bns_words 'fill text skip' "$current"; return ;;
    *' --in') _bns_words 'name description code' "$current"; return ;;
    'merge --same-name' | 'import --same-name') _bns_words 'skip number' "$current"; return ;;
    *' --before' | *' --after' | *' --snippet') _bns_snippets "$library" "$current"; return ;;
    *' --into') _bns_files bns "$current"; return ;;
    *' --code-file' | *' --description-file' | *' --attachment' | *' --output') _bns_files '*' "$current"; return ;;
  esac
  if [[ $current == -* ]]; then
    _bns_words "${options[$command]} --help" "$current"
    return
  fi
  case "$command $positionals" in
    'search 0') ;;
    'export 1') _bns_files '@(snippet|code-snippets|json)' "$current" ;;
    'import '[1-9]*) _bns_files '@(snippet|code-snippets|json|bas)' "$current" ;;
    'show 1' | 'edit 1' | 'rename 1' | 'move 1' | 'remove '[1-9]*) _bns_snippets "$library" "$current" ;;
    *) _bns_files bns "$current" ;;
  esac
}

complete -F _bns bns
