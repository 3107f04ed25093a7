#include "formapi/FormMetadata.h"

#include <QJsonDocument>

FormMetadata::FormMetadata(const QJsonObject &object)
    : m_themeId(object[QLatin1String("ThemeId")].toString()),
      m_key(object[QLatin1String("Key")].toString()),
      m_childs(object[QLatin1String("Childs")].toArray()),
      m_customCommands(object[QLatin1String("CustomCommands")].toArray()),
      m_formCommands(object[QLatin1String("FormCommands")].toArray()),
      m_formSettings(
          QString::fromUtf8(QJsonDocument(object[QLatin1String("FormSettings")].toObject())
                                .toJson(QJsonDocument::Compact))),
      m_name(object[QLatin1String("Name")].toString()),
      m_cultureCode(object[QLatin1String("CultureCode")].toString()),
      m_isDeleted(object[QLatin1String("IsDeleted")].toBool()),
      m_mode(object[QLatin1String("Mode")].toInt()) {}

QJsonValue FormMetadata::toJson() const {
    return QJsonObject{
        {QStringLiteral("ThemeId"), m_themeId},
        {QStringLiteral("Key"), m_key},
        {QStringLiteral("Childs"), m_childs},
        {QStringLiteral("CustomCommands"), m_customCommands},
        {QStringLiteral("FormCommands"), m_formCommands},
        {QStringLiteral("FormSettings"), QJsonDocument::fromJson(m_formSettings.toUtf8()).object()},
        {QStringLiteral("Name"), m_name},
        {QStringLiteral("CultureCode"), m_cultureCode},
        {QStringLiteral("IsDeleted"), m_isDeleted},
        {QStringLiteral("Mode"), m_mode},
    };
}
