#pragma once

#include "connection/messages/ServerInfoDTO.h"

#include <QList>

#include <optional>

/// The balancer's list of servers. A default-built list stands for a failed request and is not
/// valid; every list built from JSON is.
class ServerListDTO : public JsonConvertable {
public:
    ServerListDTO() = default;
    explicit ServerListDTO(const QJsonObject &object);

    QList<ServerInfoDTO> serverList() const { return m_serverList; }
    void setServerList(const QList<ServerInfoDTO> &servers) { m_serverList = servers; }
    /// When the balancer made the list.
    QDateTime timeStamp() const { return m_timeStamp; }
    void setTimeStamp(const QDateTime &timeStamp) { m_timeStamp = timeStamp; }
    std::optional<ServerInfoDTO> recommendedServer() const { return m_recommendedServer; }
    void setRecommendedServer(const std::optional<ServerInfoDTO> &server) {
        m_recommendedServer = server;
    }
    /// Whether voice activation is open to this client; counts only with hasVacEnabled().
    bool vacEnabled() const { return m_vacEnabled; }
    bool hasVacEnabled() const { return m_hasVacEnabled; }
    bool isValid() const { return m_isValid; }
    /// Host and REST port of the balancer that gave the list, joined by ":".
    QString authority() const { return m_authority; }
    void setAuthority(const QString &authority) { m_authority = authority; }

    void Clear() { *this = ServerListDTO(); }
    void Clone(const ServerListDTO &other) { *this = other; }

    QJsonValue toJson() const override;

private:
    QList<ServerInfoDTO> m_serverList;
    QDateTime m_timeStamp;
    std::optional<ServerInfoDTO> m_recommendedServer;
    bool m_vacEnabled = false;
    bool m_hasVacEnabled = false;
    bool m_isValid = false;
    QString m_authority;
};
