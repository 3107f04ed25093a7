#include "connection/messages/ServerListDTO.h"

#include <QJsonArray>

ServerListDTO::ServerListDTO(const QJsonObject &object)
    : m_timeStamp(
          QDateTime::fromString(object[QLatin1String("TimeStamp")].toString(), Qt::ISODateWithMs)),
      m_isValid(true),
      m_authority(object[QLatin1String("Authority")].toString()) {
    const QJsonArray servers = object[QLatin1String("ServerList")].toArray();
    for (const QJsonValue &server : servers)
        m_serverList.append(ServerInfoDTO(server.toObject()));
    const QJsonValue recommended = object[QLatin1String("RecommendedServer")];
    if (recommended.isObject())
        m_recommendedServer = ServerInfoDTO(recommended.toObject());
    const QJsonValue vac = object[QLatin1String("VacEnabled")];
    m_hasVacEnabled = !vac.isUndefined() && !vac.isNull();
    m_vacEnabled = vac.toBool();
}

QJsonValue ServerListDTO::toJson() const {
    QJsonArray servers;
    for (const ServerInfoDTO &server : m_serverList)
        servers.append(server.toJson());
    QJsonObject object{
        {QStringLiteral("TimeStamp"), m_timeStamp.toString(Qt::ISODateWithMs)},
        {QStringLiteral("ServerList"), servers},
        {QStringLiteral("Authority"), m_authority},
    };
    if (m_recommendedServer)
        object.insert(QStringLiteral("RecommendedServer"), m_recommendedServer->toJson());
    return object;
}
