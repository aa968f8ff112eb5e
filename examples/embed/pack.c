/* Writes what comes in to the standard output, compressed in the zlib format: at most a million bytes. */
#include <vexlitejsapi/vexlitejsapi.h>

#include <stdio.h>

static char text[1000000];

int main(void)
{
    const uint32_t length = (uint32_t)fread(text, 1, sizeof text, stdin);
    void* packed = NULL;
    if (_XZlibCompress(text, length, &packed, -1) != VEXLITE_COMPRESS_OK || !packed)
        return 1;
    const size_t size = _XGblSize(packed);
    const int written = fwrite(_XGblLock(packed), 1, size, stdout) == size;
    _XGblFree(packed);
    return !written;
}
