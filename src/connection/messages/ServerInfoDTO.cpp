#include "connection/messages/ServerInfoDTO.h"

namespace {

float number(const QJsonObject &object, QLatin1String key) {
    return static_cast<float>(object[key].toDouble());
}

} // namespace

// The balancer calls the load of one client LoadPerLevel; the client's own file says LoadPerClient.
ServerInfoDTO::ServerInfoDTO(const QJsonObject &object)
    : m_serverId(object[QLatin1String("ServerId")].toString()),
      m_connectionString(object[QLatin1String("ConnectionString")].toString()),
      m_declaredLoadLevel(number(object, QLatin1String("DeclaredLoadLevel"))),
      m_estimatedLoadLevel(number(object, QLatin1String("EstimatedLoadLevel"))),
      m_canAcceptClient(object[QLatin1String("CanAcceptClient")].toBool()),
      m_loadPerClient(number(object, QLatin1String("LoadPerLevel"))),
      m_lastUpdateDate(QDateTime::fromString(object[QLatin1String("LastUpdateDate")].toString(),
                                             Qt::ISODateWithMs)) {}

QJsonValue ServerInfoDTO::toJson() const {
    return QJsonObject{
        {QStringLiteral("ServerId"), m_serverId},
        {QStringLiteral("ConnectionString"), m_connectionString},
        {QStringLiteral("DeclaredLoadLevel"), static_cast<double>(m_declaredLoadLevel)},
        {QStringLiteral("EstimatedLoadLevel"), static_cast<double>(m_estimatedLoadLevel)},
        {QStringLiteral("CanAcceptClient"), m_canAcceptClient},
        {QStringLiteral("LoadPerClient"), static_cast<double>(m_loadPerClient)},
        {QStringLiteral("LastUpdateDate"), m_lastUpdateDate.toString(Qt::ISODateWithMs)},
    };
}
