#include "framework/libraryowner.h"

QObject* libraryOwner()
{
    static QObject owner;
    return &owner;
}
