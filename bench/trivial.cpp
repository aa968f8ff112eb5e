// A library with nothing in it but one entry.
extern "C" __attribute__((visibility("default"))) int trivialEntry();

int trivialEntry()
{
    return 1;
}
