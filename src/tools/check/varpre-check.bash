# Completion of varpre-check for bash: options, directories.
_varpre_check() {
  local word=${COMP_WORDS[COMP_CWORD]}
  case $word in
    -*) mapfile -t COMPREPLY < <(compgen -W '--strict --json --jobs --help --version' -- "$word") ;;
    *) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
  esac
}
complete -o filenames -F _varpre_check varpre-check
