#include "themes/ThemeInfo.h"

#include "core/Exception.h"

ThemeInfo::ThemeInfo(const QJsonObject &object)
    : m_id(object[QLatin1String("Id")].toString()),
      m_themeId(object[QLatin1String("ThemeId")].toString()),
      m_name(object[QLatin1String("Name")].toString()),
      m_themeVersion(object[QLatin1String("ThemeVersion")].toString()),
      m_updateConfigName(object[QLatin1String("UpdateConfigName")].toString()),
      m_newVersionInfoUrl(object[QLatin1String("NewVersionInfoUrl")].toString()) {}

QJsonValue ThemeInfo::toJson() const {
    throw Exception(QStringLiteral("not implemented"));
}
