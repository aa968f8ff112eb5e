# Completion of novahost in fish.
function __novahost_complete
    set -l typed (commandline -ct)
    set -l words (commandline -opc)
    for line in ($words[1] --complete-words $words[2..-1] "$typed" 2>/dev/null)
        switch $line
            case ':files'
                __fish_complete_path $typed
            case ':directories'
                __fish_complete_directories $typed
            case '*'
                echo $line
        end
    end
end
complete -c novahost -f -a '(__novahost_complete)'
