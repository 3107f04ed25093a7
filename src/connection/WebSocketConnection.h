#pragma once

#include <QJsonValue>
#include <QMutex>
#include <QObject>

#include <atomic>

class JsonConvertable;
class QWebSocket;

/// One WebSocket end: wraps a socket and gives any thread a safe way to send.
///
/// Lives on the socket's thread. The signals sendText, sendBytes and close may be emitted, and the
/// send operations called, from any thread; frames sent from one thread keep their order. What is
/// handed to a socket that is not connected is lost without a report.
class WebSocketConnection : public QObject {
    Q_OBJECT

public:
    /// @param socket  becomes a child; null makes a new one
    WebSocketConnection(QObject *parent, QWebSocket *socket);

    /// To be touched on its thread only.
    QWebSocket *socket() const { return m_socket; }

    /// Why the socket last ended. Callable from any thread.
    QString errorString() const;

    /// Bytes that are to be sent and have not left yet, about: a peer that reads slowly lets them
    /// grow. Callable from any thread.
    qint64 backlogBytes() const { return m_queuedBytes + m_unsentBytes; }

    /// Sends the envelope of a message: its type and its data.
    virtual void sendJson(int type, const QJsonValue &data);

public slots:
    void sendObject(int type, const QJsonValue &jsonObject);
    /// @param object  stays the caller's
    void sendData(int type, const JsonConvertable *object);
    void sendDataBytes(const QByteArray &bytes);
    void onClose();

signals:
    void connected();
    void disconnected();
    void sendText(QString text);
    void sendBytes(QByteArray bytes);
    void close();

private slots:
    void onSendText(const QString &text);
    void onSendBytes(const QByteArray &bytes);
    void countUnsentBytes();

protected:
    void keepErrorString();

private:
    QWebSocket *m_socket;
    /// On their way to the socket's thread, and in the socket.
    std::atomic<qint64> m_queuedBytes{0};
    std::atomic<qint64> m_unsentBytes{0};
    QString m_errorString;
    mutable QMutex m_errorMutex;
};
