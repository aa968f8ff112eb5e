# Completion of novahost in fish.
function __novahost_words
    set -l words (commandline -opc)
    set -l tool (string replace -r '^~/' ~/ -- $words[1])
    $tool --complete-words $words[2..-1] (commandline -ct) 2>/dev/null
end
function __novahost_complete
    for line in (__novahost_words)
        switch $line
            case ':files'
            case ':directories'
                __fish_complete_directories (commandline -ct)
            case '*'
                echo $line
        end
    end
end
complete -c novahost -f -a '(__novahost_complete)'
# fish itself knows about ~, escapes and --profile=FILE.
complete -c novahost -n '__novahost_words | string match -q :files' -F
