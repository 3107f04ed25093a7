#pragma once

#include "connection/CookiesSource.h"
#include "connection/WebSocketConnection.h"

#include <atomic>
#include <memory>

class DataMessageProcessor;
class QTimer;

/// The outgoing connection to a recognition server. One socket lives as long as the client and is
/// opened anew for each connection. Lives on the socket worker's thread; open, close and the send
/// operations may be used from any thread.
class WebSocketClient : public WebSocketConnection {
    Q_OBJECT
    Q_PROPERTY(DataMessageProcessor *messageProcessor READ messageProcessor CONSTANT)

public:
    explicit WebSocketClient(QObject *parent);

    DataMessageProcessor *messageProcessor() const { return m_messageProcessor; }
    CookiesSource *getCookiesSource() const { return m_cookiesSource.get(); }

    /// Whether the last ping was answered. Callable from any thread.
    bool pongReceived() const { return m_pongReceived; }

    /// Tells one connection from the next for what crosses threads: news of an earlier connection
    /// may be handled when a later one stands already. Callable from any thread.
    int connectionNumber() const { return m_connectionNumber; }
    void endConnection() { ++m_connectionNumber; }

signals:
    /// Opens the socket; nothing happens while a connection exists or is being made.
    void open(QString ipAddress, int port, bool useTls);
    void startTimer();

public slots:
    void onOpen(const QString &ipAddress, int port, bool useTls);
    void onStartTimer();
    void onPing();
    void onPong();

private:
    void sendAtOnce();
    /// The time for opening or closing the socket is over.
    void onConnectTimeout();

    std::atomic<bool> m_pongReceived{false};
    std::atomic<int> m_connectionNumber{0};
    /// The socket has reported the end of the last connection.
    bool m_hasEnded = false;
    QTimer *m_connectTimer;
    const int m_connectTimeoutMs = 3000;
    /// For a peer that is there and reads, whatever is unsent.
    const int m_closeTimeoutMs = 300;
    DataMessageProcessor *m_messageProcessor;
    std::unique_ptr<CookiesSource> m_cookiesSource;
};
