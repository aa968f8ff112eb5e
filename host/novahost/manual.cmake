# Makes the manual pages of novahost and of each of its commands from their --help:
# cmake -DHELP2MAN=... -DDIRECTORY=... -DOUTPUT=... -DVERSION=... -P manual.cmake; DIRECTORY has novahost.
set(commands run eval repl open members policy "policy explain" completion)
set(others)
foreach(command IN LISTS commands)
    string(REPLACE " " "-" page "${command}")
    list(APPEND others "\\fBnovahost-${page}\\fR(1)")
endforeach()
list(JOIN others ", " others)
file(WRITE ${OUTPUT}/others.txt "[SEE ALSO]\n\\fBnovahost\\fR(1), ${others}\n")
foreach(command IN LISTS commands ITEMS "")
    string(STRIP "novahost ${command}" words)
    string(REPLACE " " "-" page "${words}")
    execute_process(COMMAND sh -c "./${words} --help" WORKING_DIRECTORY ${DIRECTORY}
        OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCH "^[^\n]*[^\n.]" summary "${help}")
    execute_process(
        COMMAND ${HELP2MAN} --no-info --no-discard-stderr --section=1 --version-string=${VERSION}
            "--name=${summary}" --include=${OUTPUT}/others.txt --output=${OUTPUT}/${page}.1 "./${words}"
        WORKING_DIRECTORY ${DIRECTORY} COMMAND_ERROR_IS_FATAL ANY)
    file(READ ${OUTPUT}/${page}.1 text)
    string(TOUPPER ${page} title)
    string(REPLACE ".TH NOVAHOST " ".TH ${title} " text "${text}")
    string(REPLACE "\"${words} ${VERSION}\"" "\"novahost ${VERSION}\"" text "${text}")
    string(REPLACE "${words} \\- " "${page} \\- " text "${text}")
    file(WRITE ${OUTPUT}/${page}.1 "${text}")
endforeach()
file(WRITE ${OUTPUT}/done "")
