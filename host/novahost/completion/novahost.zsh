#compdef novahost
# Completion of novahost in zsh.
_novahost() {
    local line
    local -a described
    for line in "${(@f)$(${words[1]} --complete-words "${(@)words[2,CURRENT]}" 2> /dev/null)}"; do
        case $line in
        :files) _files ;;
        :directories) _files -/ ;;
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
