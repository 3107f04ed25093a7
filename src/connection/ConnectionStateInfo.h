#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>

/// The states of the connection, by number.
enum class ConnectionState {
    Failed = 0,
    Disconnected = 1,
    BalancerRequested = 2,
    WsConnectionRequested = 3,
    WsConnected = 4,
    ThemesRequested = 8,
    ThemesReceived = 9,
    ThemeCheckRequested = 13,
    Ready = 14,
};

/// What a change of the connection's state carries, by value.
class ConnectionStateInfo : public QObject {
    Q_OBJECT
    Q_PROPERTY(int oldState READ oldState WRITE setOldState)
    Q_PROPERTY(int state READ state WRITE setState)
    Q_PROPERTY(QString message READ message WRITE setMessage)
    Q_PROPERTY(QString balancerHost READ balancerHost WRITE setBalancerHost)
    Q_PROPERTY(QString serverHost READ serverHost WRITE setServerHost)

public:
    ConnectionStateInfo() = default;
    ConnectionStateInfo(const ConnectionStateInfo &other);
    ConnectionStateInfo &operator=(const ConnectionStateInfo &other);

    int oldState() const { return m_oldState; }
    void setOldState(int oldState) { m_oldState = oldState; }
    int state() const { return m_state; }
    void setState(int state) { m_state = state; }
    bool is(ConnectionState state) const { return m_state == static_cast<int>(state); }
    /// For the user; empty for most states.
    QString message() const { return m_message; }
    void setMessage(const QString &message) { m_message = message; }
    QString balancerHost() const { return m_balancerHost; }
    void setBalancerHost(const QString &host) { m_balancerHost = host; }
    QString serverHost() const { return m_serverHost; }
    void setServerHost(const QString &host) { m_serverHost = host; }
    /// The connection that this is news of.
    int connectionNumber() const { return m_connectionNumber; }
    void setConnectionNumber(int number) { m_connectionNumber = number; }

private:
    int m_oldState = static_cast<int>(ConnectionState::Disconnected);
    int m_state = static_cast<int>(ConnectionState::Disconnected);
    QString m_message;
    QString m_balancerHost;
    QString m_serverHost;
    int m_connectionNumber = 0;
};
Q_DECLARE_METATYPE(ConnectionStateInfo)
