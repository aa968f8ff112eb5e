#compdef novahost
# Completion of novahost in zsh.
_novahost() {
    local line tool=${(Q)words[1]/#\~\//$HOME/}
    local -a described
    for line in "${(@f)$($tool --complete-words "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2> /dev/null)}"; do
        case $line in
        :files) compset -P '--*='; _files ;;
        :directories) compset -P '--*='; _files -/ ;;
        *$'\t'*) described+=("${${line%%$'\t'*}//:/\\:}:${line#*$'\t'}") ;;
        ?*) described+=("${line//:/\\:}") ;;
        esac
    done
    (( $#described )) && _describe novahost described
}
if [ "$funcstack[1]" = _novahost ]; then
    _novahost "$@"
else
    compdef _novahost novahost
fi
