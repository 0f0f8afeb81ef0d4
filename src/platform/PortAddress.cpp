#include "platform/PortAddress.h"

#include <QUrl>
#include <algorithm>
#include <array>
#include <utility>

namespace quorvik
{

namespace
{

constexpr std::array<std::pair<const char *, PortAddress::Protocol>, 2> Schemes = {
    {{"tcp", PortAddress::Protocol::Raw}, {"rfc2217", PortAddress::Protocol::Rfc2217}}};

} // namespace

bool PortAddress::IsMeant(const QString &device)
{
    return device.contains(QLatin1String("://"));
}

std::optional<PortAddress> PortAddress::Of(const QString &device)
{
    if (!IsMeant(device) || !WhyNot(device).isEmpty())
        return std::nullopt;
    const QUrl url(device.trimmed(), QUrl::StrictMode);
    for (const auto &[scheme, protocol] : Schemes)
        if (url.scheme() == QLatin1String(scheme))
            return PortAddress{protocol, url.host(), std::uint16_t(url.port())};
    return std::nullopt;
}

QString PortAddress::WhyNot(const QString &device)
{
    const QUrl url(device.trimmed(), QUrl::StrictMode);
    const bool isScheme = std::ranges::any_of(
        Schemes, [&url](const auto &known) { return url.scheme() == QLatin1String(known.first); });
    if (!url.isValid() || !isScheme)
        return QStringLiteral("\"%1\" is no address of a serial device server. Write tcp://host:port or "
                              "rfc2217://host:port.")
            .arg(device);
    if (url.host().isEmpty())
        return QStringLiteral("\"%1\" names no host.").arg(device);
    if (url.port() < 1)
        return QStringLiteral("\"%1\" names no port, 1 to 65535.").arg(device);
    const bool isBare = (url.path().isEmpty() || url.path() == QLatin1String("/")) && !url.hasQuery() &&
                        !url.hasFragment() && url.userInfo().isEmpty();
    return isBare ? QString()
                  : QStringLiteral("\"%1\" has more than a host and a port. A name and a password are not "
                                   "known here.")
                        .arg(device);
}

QString PortAddress::PlaceOf(const QString &device)
{
    return (IsMeant(device) ? QStringLiteral("at ") : QStringLiteral("on serial port ")) + device;
}

QString PortAddress::Text() const
{
    QUrl url;
    for (const auto &[scheme, known] : Schemes)
        if (known == protocol)
            url.setScheme(QLatin1String(scheme));
    url.setHost(host);
    url.setPort(port);
    return url.toString();
}

} // namespace quorvik
