#include "audio/PulseAudioManager.h"

#include "audio/PlaybackDeviceManager.h"
#include "audio/PlaybackStream.h"
#include "audio/PulseAudioListManager.h"
#include "audio/PulseConnection.h"
#include "audio/RecordingDeviceManager.h"
#include "audio/RecordingStream.h"
#include "core/LoggingCategories.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QTimer>

namespace {
/// The thread waits for no server, but libpulse may start one and wait for that.
constexpr int endLimitMs = 2000;
} // namespace

PulseAudioManager::PulseAudioManager(QObject *parent)
    : QObject(parent),
      m_thread(std::make_unique<QThread>()),
      m_input(std::make_unique<PulseConnection>(QAudio::AudioInput)),
      m_output(std::make_unique<PulseConnection>(QAudio::AudioOutput)),
      m_inputListManager(
          new PulseAudioListManager(RecordingDeviceSettings().UseMonitors, m_input.get())),
      m_outputListManager(new PulseAudioListManager(false, m_output.get())),
      m_recordingDevice(std::make_unique<RecordingDeviceManager>(m_inputListManager, nullptr)),
      m_playbackDevice(std::make_unique<PlaybackDeviceManager>(m_outputListManager, nullptr)) {
    m_thread->setObjectName(QStringLiteral("AudioManager"));
    m_recordingDevice->UseStream(new RecordingStream(m_input.get()));
    m_playbackDevice->UseStream(new PlaybackStream(m_output.get()));
    for (PulseConnection *connection : {m_input.get(), m_output.get()}) {
        // What is on a thread goes with it, and is destroyed on this one.
        connect(
            m_thread.get(), &QThread::finished, connection,
            [connection, home = thread()] {
                connection->Cleanup();
                // One that ran on would be registered anew by an event that may come too late.
                for (QTimer *timer : connection->findChildren<QTimer *>())
                    timer->stop();
                connection->moveToThread(home);
            },
            Qt::DirectConnection);
    }
}

PulseAudioManager::~PulseAudioManager() {
    Stop();
    if (m_thread)
        return;
    // The thread that was left behind may still bring them news.
    [[maybe_unused]] const auto *recording = m_recordingDevice.release();
    [[maybe_unused]] const auto *playback = m_playbackDevice.release();
}

void PulseAudioManager::Start() {
    if (!m_thread || m_thread->isRunning())
        return;
    m_recordingDevice->LoadSettings();
    m_playbackDevice->LoadSettings();
    for (PulseConnection *connection : {m_input.get(), m_output.get()}) {
        connection->moveToThread(m_thread.get());
        QMetaObject::invokeMethod(connection, &PulseConnection::Init, Qt::QueuedConnection);
    }
    m_thread->start(QThread::InheritPriority);
}

void PulseAudioManager::Stop() {
    if (!m_thread)
        return;
    m_recordingDevice->StopDevice();
    m_playbackDevice->StopDevice();
    m_thread->quit();
    if (m_thread->wait(endLimitMs))
        return;
    qCWarning(pulselog) << "The thread of the sound does not end and is left behind";
    // They live as long as the process does.
    [[maybe_unused]] const auto *thread = m_thread.release();
    [[maybe_unused]] const auto *input = m_input.release();
    [[maybe_unused]] const auto *output = m_output.release();
}
