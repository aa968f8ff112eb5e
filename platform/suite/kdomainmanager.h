// The addresses of the suite's web services.
#pragma once

#include <QString>

/// The suite's domain manager. Its layout is the suite's own, since only the functions below are called, none of them
/// virtual. Had through KCoreApplication::domainManager(). [GUI thread] for all; throws nothing.
class KDomainManager {
public:
    /// The address of the service of that name, "https://account.example", without a "/" at its end; empty when there is
    /// none. Names are a page's and may be anything.
    QString domainUrl(const QString& name);
    /// Which services the suite uses: 0 the public ones, 1 those of a private installation, 2 both. Others than these are
    /// passed on as they are.
    int intranetType();
};
