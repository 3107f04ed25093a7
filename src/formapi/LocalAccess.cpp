#include "formapi/LocalAccess.h"

#include <QByteArrayList>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace {

constexpr int maximumShown = 100;

/// Scheme, host and port in one spelling; empty for what is no origin.
QString normalized(const QString &origin) {
    const QUrl url(origin, QUrl::StrictMode);
    if (url.scheme().isEmpty() || url.host().isEmpty())
        return {};
    const bool isBare =
        url.userInfo().isEmpty() && url.path().isEmpty() && !url.hasQuery() && !url.hasFragment();
    if (!isBare)
        return {};
    const int defaultPort = url.scheme() == QLatin1String("https")  ? 443
                            : url.scheme() == QLatin1String("http") ? 80
                                                                    : -1;
    return url.scheme() + QStringLiteral("://") + url.host(QUrl::FullyEncoded) + ':' +
           QString::number(url.port(defaultPort));
}

} // namespace

bool isOriginAllowed(const QString &origin, const QString &list) {
    const QString wanted = normalized(origin);
    bool isListEmpty = true;
    const QStringList entries = list.split(',');
    for (QString entry : entries) {
        entry = entry.trimmed();
        if (entry.isEmpty())
            continue;
        isListEmpty = false;
        if (entry.endsWith('/'))
            entry.chop(1);
        if (!wanted.isEmpty() && normalized(entry) == wanted)
            return true;
    }
    return isListEmpty;
}

bool namesThisMachine(const QByteArray &authority, quint16 port) {
    const QByteArray name = authority.toLower();
    const QByteArrayList own{"localhost", "127.0.0.1", "[::1]"};
    return std::any_of(own.begin(), own.end(), [&](const QByteArray &host) {
        return name == host || name == host + ':' + QByteArray::number(port);
    });
}

QString shownText(const QString &text) {
    QString shown = text.right(maximumShown);
    std::replace_if(
        shown.begin(), shown.end(),
        [](QChar character) {
            return character < ' ' || character > '~' ||
                   QStringLiteral("<>&\"'").contains(character);
        },
        QChar('?'));
    return text.size() > maximumShown ? QStringLiteral("...") + shown : shown;
}
