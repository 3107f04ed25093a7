#include "connection/ConnectionHeartbeat.h"

#include "connection/WebSocketClient.h"

#include <QDebug>

namespace {
constexpr unsigned long repeatIntervalMs = 2000;
} // namespace

ConnectionHeartbeat::ConnectionHeartbeat(WebSocketClient *client)
    : RepeatWorker(repeatIntervalMs), m_client(client) {
    connect(this, &ConnectionHeartbeat::ping, client, &WebSocketClient::onPing);
}

void ConnectionHeartbeat::initialize() {
    m_startTime = QDateTime::currentDateTimeUtc();
    m_connectionNumber = m_client->connectionNumber();
    emit ping();
}

void ConnectionHeartbeat::repeatableWork(CancellationCondition *cancellation) {
    if (m_client->pongReceived()) {
        emit ping();
        return;
    }
    const auto lagTime = static_cast<unsigned int>(
        QDateTime::currentDateTimeUtc().toSecsSinceEpoch() - m_startTime.toSecsSinceEpoch());
    if (lagTime <= m_timeoutDelay)
        return;
    qDebug().nospace() << "lagTime > TimeoutDelay: " << lagTime;
    emit timeout(m_connectionNumber);
    cancellation->cancel();
}

void ConnectionHeartbeat::cleanUp() {
    m_startTime = QDateTime();
}
