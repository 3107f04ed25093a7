#include "connection/messages/ClientClaim.h"

QJsonValue ClientClaim::toJson() const {
    return QJsonObject{
        {QStringLiteral("ThemeName"), m_themeName},
        {QStringLiteral("Email"), m_email},
        {QStringLiteral("RegionCode"), m_regionCode},
        {QStringLiteral("OrganisationFullName"), m_organisationFullName},
        {QStringLiteral("OrganisationPsrn"), m_organisationFullOgrn},
        {QStringLiteral("OrganisationOid"), m_organisationFullOid},
        {QStringLiteral("Room"), m_room},
        {QStringLiteral("OperatingSystem"), m_operatingSystem},
        {QStringLiteral("ThemeVersion"), m_themeVersion},
        {QStringLiteral("ClientId"), m_clientId},
        {QStringLiteral("HostName"), m_hostName},
        {QStringLiteral("Account"), m_account},
        {QStringLiteral("UserName"), m_userName},
        {QStringLiteral("Description"), m_description},
        {QStringLiteral("MicrophoneInfo"), m_microphoneInfo.toJson()},
    };
}
