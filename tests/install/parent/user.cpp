#include <vexlite/jscore.h>
#include <vexlitejsapi/entry.h>
