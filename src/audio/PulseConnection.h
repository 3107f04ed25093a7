#pragma once

#include <QAudio>
#include <QObject>
#include <QTimer>

#include <cstdint>

struct pa_context;

/// The connection to PulseAudio for the devices of one direction, kept for as long as there is a
/// server, on one thread.
///
/// Nothing here waits: requests are answered by the thread's event loop, and a server that does not
/// answer within five seconds counts as lost. A lost one is looked for once a second. Each
/// direction has its own, so that a microphone which the server cannot open leaves the speaker
/// alone.
class PulseConnection : public QObject {
    Q_OBJECT

public:
    explicit PulseConnection(QAudio::Mode mode);
    ~PulseConnection() override;

    QAudio::Mode Mode() const { return m_mode; }
    bool IsReady() const { return m_isReady; }
    /// The context, null while the connection is not ready.
    pa_context *Context() const { return m_isReady ? m_context : nullptr; }

    /// For who waits for an answer in vain: gives the connection up, with all that it was asked
    /// for.
    void GiveUp();

    /// How long an answer may take, in milliseconds.
    static constexpr int answerLimitMs = 5000;
    /// From a failure to the next attempt, in milliseconds.
    static constexpr int retryDelayMs = 1000;

public slots:
    /// Connects, unless there is a connection.
    void Init();
    /// Gives the connection up for good, unless Init() is called.
    void Cleanup();
    /// Gives the connection up and connects again in a while.
    void onContextFailed();

signals:
    void connected();
    /// The context is about to go, with every stream and request of it.
    void disconnected();
    /// An attempt to connect has failed.
    void unreachable();
    void deviceAdded(uint32_t index);
    void deviceRemoved(uint32_t index);
    /// Something about a stream has changed, its volume perhaps.
    void streamChanged(uint32_t index);

private:
    static void OnStateChanged(pa_context *context, void *connection);
    void OnReady();
    void OnEvent(bool isDevice, int event, uint32_t index);
    void Subscribe();
    /// Logs a failure once until a connection stands.
    void WarnOnce(const QString &text);

    const QAudio::Mode m_mode;
    pa_context *m_context = nullptr;
    bool m_isReady = false;
    bool m_isFailureLogged = false;
    QTimer m_deadline{this};
    QTimer m_reconnectTimer{this};
};
