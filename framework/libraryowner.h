// The parent of QObjects that nothing else owns.
#pragma once

#include <QObject>

/// Destroyed when the library is unloaded, and its children with it: their code goes, whatever event loop is
/// to delete them later. [GUI thread]
QObject* libraryOwner();
