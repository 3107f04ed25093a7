#pragma once

#include <QObject>
#include <QPointer>

#include <atomic>
#include <functional>

/// Keeps Qt Multimedia's own connection to PulseAudio alive.
///
/// Qt connects when it is first asked for devices, on the thread that asks, and if PulseAudio is
/// away at that moment it never tries again. When the connection breaks it tries once, 3 seconds
/// later. So Qt is first asked when PulseAudio answers, and the repair of a broken connection is
/// taken from Qt and done when PulseAudio answers again. Lives on the main thread.
class QtSoundConnection : public QObject {
    Q_OBJECT

public:
    explicit QtSoundConnection(QObject *parent = nullptr);

    /// Whether Qt has been connected once and may be asked for devices. Any thread.
    bool IsConnected() const { return m_isConnected; }

    /// Makes Qt connect, or connect again if its connection broke. To be called when PulseAudio
    /// answers.
    /// @param isPulseUp  tells whether PulseAudio answers still; asked after the attempt
    void Connect(const std::function<bool()> &isPulseUp);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void HandleFailure(QObject *engine, QEvent *event);

    std::atomic_bool m_isConnected{false};
    /// Qt's engine, known once its connection broke; null while the connection stands.
    QPointer<QObject> m_brokenEngine;
};
