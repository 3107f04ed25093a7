#include "audio/QtSoundConnection.h"

#include "core/LoggingCategories.h"

#include <QAbstractEventDispatcher>
#include <QAudioDeviceInfo>
#include <QCoreApplication>
#include <QEvent>

QtSoundConnection::QtSoundConnection(QObject *parent) : QObject(parent) {
    // The only way to Qt's engine: it hears of its broken connection by an event of its own.
    QCoreApplication::instance()->installEventFilter(this);
}

void QtSoundConnection::Connect(const std::function<bool()> &isPulseUp) {
    if (!m_isConnected) {
        QAudioDeviceInfo::availableDevices(QAudio::AudioInput);
        m_isConnected = true;
        return;
    }
    if (!m_brokenEngine)
        return;
    QMetaObject::invokeMethod(m_brokenEngine, "prepare");
    // Qt does not tell how that went. While PulseAudio stays up it has gone well.
    if (isPulseUp())
        m_brokenEngine.clear();
}

bool QtSoundConnection::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::MetaCall || !watched->inherits("QPulseAudioEngine"))
        return QObject::eventFilter(watched, event);
    HandleFailure(watched, event);
    return true;
}

void QtSoundConnection::HandleFailure(QObject *engine, QEvent *event) {
    const QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    const QObjectList before = dispatcher->children();
    // Closes every stream of the lost connection, and starts Qt's single attempt to reconnect.
    engine->event(event);
    const QObjectList after = dispatcher->children();
    for (QObject *child : after) {
        if (before.contains(child) || !child->inherits("QSingleShotTimer"))
            continue;
        qCDebug(pulselog) << "The sound engine lost its connection";
        // The attempt is three seconds away, so it never happens.
        child->deleteLater();
        m_brokenEngine = engine;
    }
}
