# Completion of varpre and the programs around it for bash: the options are those of --help; else directories where a
# program takes nothing but these, or any files.
_varpre() {
  local word=${COMP_WORDS[COMP_CWORD]} options
  COMPREPLY=()
  if [[ $word == -* ]]; then
    options=$("$1" --help 2>/dev/null </dev/null | grep -oE -- '--[a-z][a-z-]*')
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word" | sort -u)
  elif [[ ${COMP_WORDS[COMP_CWORD - 1]} == --*baseline || ${1##*/} != varpre?(-check) ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  elif [[ ${1##*/} == varpre-check ]]; then
    mapfile -t COMPREPLY < <(compgen -d -- "$word")
  fi
}
complete -o filenames -F _varpre varpre varpre-check varpre-diff varpre-export varpre-import varpre-report
