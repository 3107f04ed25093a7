#pragma once

#include "VirtualDesk.h"

#include <QByteArray>
#include <QProcess>

/// Plugs a speaker that takes the program's own format, so that nothing is resampled.
/// @return the module's index
inline QString plugExactSpeaker(VirtualDesk &desk, const QString &name) {
    return desk.loadModule(
        {"module-null-sink", "sink_name=" + name, "rate=22050", "channels=1", "format=s16le"});
}

/// What is heard at a speaker.
class Listener {
public:
    Listener(VirtualDesk &desk, const QString &sink)
        : m_desk(desk),
          m_process(
              desk.start(QStringLiteral("parec"),
                         {QStringLiteral("--device=%1.monitor").arg(sink),
                          QStringLiteral("--rate=22050"), QStringLiteral("--channels=1"),
                          QStringLiteral("--format=s16le"), QStringLiteral("--latency-msec=20")})) {
        // From here on nothing is missed.
        if (!m_process->waitForReadyRead())
            qWarning("Nothing is heard, not even silence");
    }
    ~Listener() { m_desk.end(m_process); }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    /// To be played first: a sink forgets the first moments of a sound when it corrects what it has
    /// announced ahead as silence.
    static QByteArray leadIn() { return QByteArray(12000, leadByte); }

    /// From the first sample that is neither silence nor the lead-in.
    const QByteArray &sound() {
        m_sound += m_process->readAllStandardOutput();
        if (!m_isHearing) {
            int silence = 0;
            while (silence < m_sound.size() &&
                   (m_sound.at(silence) == 0 || m_sound.at(silence) == leadByte))
                ++silence;
            m_isHearing = silence < m_sound.size();
            m_sound.remove(0, silence - silence % 2);
        }
        return m_sound;
    }

private:
    static constexpr char leadByte = '\x11';

    VirtualDesk &m_desk;
    QProcess *m_process;
    QByteArray m_sound;
    bool m_isHearing = false;
};
