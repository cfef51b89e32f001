#include "Address.h"

#include <QStringList>
#include <QUrl>

bool Address::IsStream(const QString& text)
{
    static const QStringList schemes{QStringLiteral("rtsp"), QStringLiteral("rtsps"), QStringLiteral("http"),
                                     QStringLiteral("https")};
    const QUrl address(text, QUrl::StrictMode);
    return address.isValid() && schemes.contains(address.scheme()) && !address.host().isEmpty();
}
