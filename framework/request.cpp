#include "framework/request.h"

QObject* requestOwner()
{
    static QObject owner;
    return &owner;
}
