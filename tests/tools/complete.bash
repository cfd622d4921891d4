# complete.bash SCRIPT WORD...: what the completion SCRIPT gives for the last word, one a line.
source "$1" || exit
shift
COMP_WORDS=(vokit-log "$@")
COMP_CWORD=$#
_vokit_log vokit-log "${!#}" "${COMP_WORDS[COMP_CWORD - 1]}"
((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]}"
