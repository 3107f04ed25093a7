#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>

/// One recognition server, as the balancer tells of it.
class ServerInfoDTO : public JsonConvertable {
public:
    ServerInfoDTO() = default;
    explicit ServerInfoDTO(const QJsonObject &object);

    QString serverId() const { return m_serverId; }
    void setServerId(const QString &serverId) { m_serverId = serverId; }
    /// Address, WebSocket port and REST port, joined by ";".
    QString connectionString() const { return m_connectionString; }
    void setConnectionString(const QString &text) { m_connectionString = text; }
    float declaredLoadLevel() const { return m_declaredLoadLevel; }
    /// The balancer's estimate: servers are tried in its rising order.
    float estimatedLoadLevel() const { return m_estimatedLoadLevel; }
    void setEstimatedLoadLevel(float level) { m_estimatedLoadLevel = level; }
    bool canAcceptClient() const { return m_canAcceptClient; }
    float loadPerClient() const { return m_loadPerClient; }
    /// When the server last reported to the balancer.
    QDateTime lastUpdateDate() const { return m_lastUpdateDate; }
    void setLastUpdateDate(const QDateTime &date) { m_lastUpdateDate = date; }

    QJsonValue toJson() const override;

private:
    QString m_serverId;
    QString m_connectionString;
    float m_declaredLoadLevel = 0;
    float m_estimatedLoadLevel = 0;
    bool m_canAcceptClient = false;
    float m_loadPerClient = 0;
    QDateTime m_lastUpdateDate;
};
