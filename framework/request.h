// Requests that outlive the call that began them, and who ends those that are still under way when the
// library goes.
#pragma once

#include <QObject>

/// The parent of every request object. It is destroyed when the library is unloaded, and with it the requests
/// that have not ended by then. [GUI thread]
QObject* requestOwner();
