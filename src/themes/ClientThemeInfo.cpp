#include "themes/ClientThemeInfo.h"

ClientThemeInfo::ClientThemeInfo(const QJsonObject &object)
    : m_id(object[QLatin1String("Id")].toString()),
      m_themeId(object[QLatin1String("ThemeId")].toString()),
      m_name(object[QLatin1String("Name")].toString()),
      m_version(object[QLatin1String("Version")].toString()),
      m_newVersionInfoUrl(object[QLatin1String("NewVersionInfoUrl")].toString()),
      m_compositionType(object[QLatin1String("CompositionType")].toInt()),
      m_description(object[QLatin1String("Description")].toString()) {}

QJsonValue ClientThemeInfo::toJson() const {
    return QJsonObject{
        {QStringLiteral("Id"), m_id},
        {QStringLiteral("ThemeId"), m_themeId},
        {QStringLiteral("Name"), m_name},
        {QStringLiteral("Version"), m_version},
        {QStringLiteral("NewVersionInfoUrl"), m_newVersionInfoUrl},
        {QStringLiteral("CompositionType"), m_compositionType},
        {QStringLiteral("Description"), m_description},
    };
}
