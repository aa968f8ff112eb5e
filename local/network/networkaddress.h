// Which addresses are private: not for pages unless the suite allows it. [any thread]
#pragma once

#include <QHostAddress>

namespace jsapi {

/// Whether an address leads to this machine or a network that is not the public internet, or serves a special use:
/// everything outside the ranges that are given out to public hosts. An IPv6 address that carries an IPv4 one
/// (mapped, compatible, 6to4, Teredo, NAT64, ISATAP) is as private as that.
bool isPrivateAddress(const QHostAddress& address);

} // namespace jsapi
