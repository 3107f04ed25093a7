#pragma once

#include "core/workers/RepeatWorker.h"

#include <QDateTime>

class WebSocketClient;

/// Watches the link with pings while a connection is up. Runs on a thread of its own.
class ConnectionHeartbeat : public RepeatWorker {
    Q_OBJECT

public:
    /// @param client  not owned, outlives this object
    explicit ConnectionHeartbeat(WebSocketClient *client);

signals:
    void ping();
    /// The link is dead. Nothing is closed here.
    /// @param connectionNumber  the client's, of the connection that was watched
    void timeout(int connectionNumber);

protected:
    void initialize() override;
    void repeatableWork(CancellationCondition *cancellation) override;
    void cleanUp() override;

private:
    /// Grace period from the start in which an unanswered ping is waited for, seconds.
    const unsigned int m_timeoutDelay = 10;
    QDateTime m_startTime;
    int m_connectionNumber = 0;
    WebSocketClient *m_client;
};
