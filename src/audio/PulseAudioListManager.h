#pragma once

#include "audio/AudioListManager.h"

#include <cstdint>

class PulseConnection;

/// The device list of one direction, as PulseAudio knows it: the server's preferred device first.
///
/// The device that a server offers while it has none is left out. While there is no server, the
/// list stays as it was.
class PulseAudioListManager : public AudioListManager {
    Q_OBJECT

public:
    /// @param useMonitors  whether what the sinks play is offered as an input device
    /// @param connection   owns this object, on whose thread it lives
    PulseAudioListManager(bool useMonitors, PulseConnection *connection);

public slots:
    /// Asks for a new list; any number of requests until it is there costs one more.
    void asyncUpdateDeviceList(uint32_t index);

private:
    void Ask();
    /// @tparam Info  pa_source_info or pa_sink_info
    template <typename Info>
    void TakeAnswer(const Info *info, int eol);
    void TakeDevice(const ExtAudioDeviceInfo &device, bool isMonitor);
    void OnListEnd(bool isWhole);

    PulseConnection *m_connection;
    const bool m_useMonitors;
    bool m_isAsking = false;
    bool m_isAskedAgain = false;
    QString m_preferredName;
    QList<ExtAudioDeviceInfo> m_answer;
};
