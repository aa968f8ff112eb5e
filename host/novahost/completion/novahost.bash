# Completion of novahost in bash.
_novahost() {
    local typed=${COMP_WORDS[COMP_CWORD]} word
    COMPREPLY=()
    [ "$typed" = '=' ] && typed=
    while IFS=$'\t' read -r word _; do
        case $word in
        :files) compopt -o filenames; mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- "$typed") ;;
        :directories) compopt -o filenames; mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -d -- "$typed") ;;
        ?*) COMPREPLY+=("$word") ;;
        esac
    done < <("${COMP_WORDS[0]}" --complete-words "${COMP_WORDS[@]:1:COMP_CWORD}" 2> /dev/null)
}
complete -F _novahost novahost
