#pragma once

#include "audio/AudioListManager.h"

#include <QTimer>

#include <atomic>
#include <cstdint>

class PulseAudioManager;

/// The device list of one direction, as PulseAudio knows it.
class PulseAudioListManager : public AudioListManager {
    Q_OBJECT

public:
    /// @param useMonitors  whether what the sinks play is offered as an input device
    /// @param parent       the connection to PulseAudio, owns this object
    PulseAudioListManager(QAudio::Mode mode, bool useMonitors, PulseAudioManager *parent);

public slots:
    /// Asks for a new list. Any thread; any number of requests during an update costs exactly one
    /// more update.
    void asyncUpdateDeviceList(uint32_t index);

protected:
    ExtAudioDeviceInfo CreateExtDeviceInfo(const QAudioDeviceInfo &device) override;
    QList<QAudioDeviceInfo> AvailableDevices() override;

private:
    void RunPendingUpdates();
    void Refresh();
    void LookAgain();
    void LookAgainLater();

    PulseAudioManager *m_manager;
    const bool m_useMonitors;
    std::atomic<int> m_pendingUpdates{0};
    /// The server was asked at the last look, and answered.
    bool m_isComplete = false;
    bool m_qtIsBehind = false;
    int m_looksLeft = 0;
    QTimer m_lookAgainTimer{this};
};
