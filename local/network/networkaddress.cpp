#include "local/network/networkaddress.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <iterator>

namespace jsapi {

namespace {

struct Ip4Range {
    quint32 network;
    int bits;
};

constexpr quint32 ip4(quint32 a, quint32 b, quint32 c, quint32 d)
{
    return a << 24 | b << 16 | c << 8 | d;
}

constexpr Ip4Range PrivateIp4[] {
    { ip4(0, 0, 0, 0), 8 }, { ip4(10, 0, 0, 0), 8 },
    { ip4(100, 64, 0, 0), 10 }, // shared by customers of a provider
    { ip4(127, 0, 0, 0), 8 }, { ip4(169, 254, 0, 0), 16 }, { ip4(172, 16, 0, 0), 12 },
    { ip4(192, 0, 0, 0), 24 }, { ip4(192, 0, 2, 0), 24 },    // documentation
    { ip4(192, 88, 99, 0), 24 },                             // relays of 6to4
    { ip4(192, 168, 0, 0), 16 }, { ip4(198, 18, 0, 0), 15 }, // benchmarks
    { ip4(198, 51, 100, 0), 24 },                            // documentation
    { ip4(203, 0, 113, 0), 24 },                             // documentation
    { ip4(224, 0, 0, 0), 3 },                                // multicast, reserved, broadcast
};

bool isPrivateIp4(quint32 address)
{
    return std::any_of(std::begin(PrivateIp4), std::end(PrivateIp4),
        [&](const Ip4Range& range) { return (address ^ range.network) >> (32 - range.bits) == 0; });
}

bool isPrivateIp6(const Q_IPV6ADDR& address)
{
    const auto word = [&](int at) { return qFromBigEndian<quint32>(address.c + at); };
    const quint32 first = word(0);
    const bool isMiddleZero = word(4) == 0;
    // "::a.b.c.d" has "::" and "::1" in it; "::ffff:a.b.c.d"; "64:ff9b::a.b.c.d"
    if (first == 0 && isMiddleZero && (word(8) == 0 || word(8) == 0xffff))
        return isPrivateIp4(word(12));
    if (first == 0x64ff9b && isMiddleZero && word(8) == 0)
        return isPrivateIp4(word(12));
    if (first >> 29 != 1) // 2000::/3 is all that is given out
        return true;
    if (first >> 16 == 0x2002)
        return isPrivateIp4(first << 16 | word(4) >> 16);
    if (first == 0x20010000) // Teredo has its server, and its client inverted
        return isPrivateIp4(word(4)) || isPrivateIp4(~word(12));
    if (first >> 9 == 0x200100 >> 1 || first == 0x20010db8 || first >> 12 == 0x3fff0)
        return true;
    return (word(8) & ~quint32 { 0x02000000 }) == 0x5efe && isPrivateIp4(word(12));
}

} // namespace

bool isPrivateAddress(const QHostAddress& address)
{
    switch (address.protocol()) {
    case QAbstractSocket::IPv4Protocol:
        return isPrivateIp4(address.toIPv4Address());
    case QAbstractSocket::IPv6Protocol:
        return isPrivateIp6(address.toIPv6Address());
    default:
        return true;
    }
}

} // namespace jsapi
