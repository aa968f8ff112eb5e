# The sources of the path check and of what changes the disk, which tests build in as well.
set(vexlite_path_sources exports/newfile.cpp local/filedescriptor.cpp local/guardedplaces.cpp local/pathcheck.cpp
    local/treechanges.cpp local/treewalk.cpp)
