# Completion of varpre-export for bash: options, directories, a file behind --output.
_varpre_export() {
  local word=${COMP_WORDS[COMP_CWORD]}
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --output) mapfile -t COMPREPLY < <(compgen -f -- "$word") ; return ;;
  esac
  case $word in
    -*) mapfile -t COMPREPLY < <(compgen -W '--output --skip-unsupported --help --version' -- "$word") ;;
    *) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
  esac
}
complete -o filenames -F _varpre_export varpre-export
