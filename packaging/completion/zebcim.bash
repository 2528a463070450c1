# Completion of zebcim for bash. Names come from the running system.
_zebcim() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command='' i
  local commands='tree watch metrics doctor check capture serve classes instances get explain associators references modify invoke'
  local options='--json --json=typed --source --standalone --verbose --include-virtual --plugin --schema --timeout --help --version'
  COMPREPLY=()
  case $previous in
    --source | --plugin | --schema | --config | --state) mapfile -t COMPREPLY < <(compgen -f -- "$word"); return ;;
    --result-class | --assoc-class)
      mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" complete classes 2>/dev/null)" -- "$word")
      return ;;
  esac
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      --source | --plugin | --schema | --timeout) ((i++)) ;;
      -*) ;;
      *) command=${COMP_WORDS[i]}; break ;;
    esac
  done
  if [[ $word == -* ]]; then
    case $command in
      instances) options+=' --names' ;;
      associators) options+=' --names --assoc-class --result-class --role --result-role' ;;
      references) options+=' --names --result-class --role' ;;
      watch) options+=' --where --for --count --advice' ;;
      capture) options+=' --anonymize' ;;
      doctor) options+=' --config' ;;
      metrics) options+=' --openmetrics' ;;
      serve) options+=' --config --http --https --state --helpers' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    return
  fi
  case $command in
    '') mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word") ;;
    instances) mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" complete classes 2>/dev/null)" -- "$word") ;;
    get | explain | associators | references | modify | invoke)
      ((COMP_CWORD == i + 1)) || return
      mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" complete names 2>/dev/null)" -- "$word") ;;
    capture) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
  esac
}
complete -F _zebcim zebcim
