# The sources in local/ of the path check and of what changes the disk, which tests build in as well.
set(vexlite_path_sources filedescriptor.cpp guardedplaces.cpp pathcheck.cpp treechanges.cpp treewalk.cpp)
