#include "themes/ServerThemesInfo.h"

#include "core/Exception.h"

#include <QJsonArray>

ServerThemesInfo::ServerThemesInfo(const QJsonObject &object) {
    const QJsonArray themes = object[QLatin1String("ThemeInfos")].toArray();
    for (const QJsonValue &theme : themes)
        m_themeInfos.append(ThemeInfo(theme.toObject()));
}

QJsonValue ServerThemesInfo::toJson() const {
    throw Exception(QStringLiteral("not implemented"));
}
