// Compresses its input to its output with the library: compress_stdin zlib LEVEL, or compress_stdin raw.
#include "exports/vexlitejsapi.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// Of the suite, whose headers are C++.
void mfxGlobalFree(void* block);

static void* readAll(void)
{
    enum { Piece = 65536 };
    void* input = _XGblAlloc(0, 0);
    uint32_t length = 0;
    size_t count;
    do {
        input = _XGblReAlloc(input, length + Piece, 0);
        if (!input)
            return NULL;
        count = fread((char*)_XGblLock(input) + length, 1, Piece, stdin);
        length += (uint32_t)count;
    } while (count);
    return _XGblReAlloc(input, length, 0);
}

int main(int argc, char** argv)
{
    int32_t code = VEXLITE_COMPRESS_STREAM_ERROR;
    void* output = NULL;
    uint32_t size = 0;
    void* input = readAll();
    if (argc == 3 && !strcmp(argv[1], "zlib")) {
        code = _XZlibCompress(input, _XGblSize(input), &output, atoi(argv[2]));
        size = _XGblSize(output);
        fwrite(output, 1, size, stdout);
        _XGblFree(output);
    } else if (argc == 2 && !strcmp(argv[1], "raw")) {
        code = _XDeflate(input, _XGblSize(input), &output, &size);
        fwrite(output, 1, size, stdout);
        mfxGlobalFree(output);
    }
    _XGblFree(input);
    return code == VEXLITE_COMPRESS_OK ? 0 : 1;
}
