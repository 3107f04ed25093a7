#include "audio/PulseAudioListManager.h"

#include "audio/PulseConnection.h"

#include <pulse/pulseaudio.h>
#include <utility>

namespace {
/// What stands in for a device while there is none.
const QLatin1String standIn("auto_null");

template <typename Info>
QString describe(const Info &info) {
    const QString description = QString::fromUtf8(info.description);
    return info.active_port ? QStringLiteral("%1 – %2").arg(
                                  description, QString::fromUtf8(info.active_port->description))
                            : description;
}

bool isMonitor(const pa_source_info &source) {
    return source.monitor_of_sink != PA_INVALID_INDEX;
}

bool isMonitor(const pa_sink_info & /*sink*/) {
    return false;
}
} // namespace

PulseAudioListManager::PulseAudioListManager(bool useMonitors, PulseConnection *connection)
    : AudioListManager(connection->Mode(), connection),
      m_connection(connection),
      m_useMonitors(useMonitors) {
    connect(connection, &PulseConnection::deviceAdded, this,
            &PulseAudioListManager::asyncUpdateDeviceList);
    connect(connection, &PulseConnection::deviceRemoved, this,
            &PulseAudioListManager::asyncUpdateDeviceList);
    connect(connection, &PulseConnection::connected, this,
            [this] { asyncUpdateDeviceList(PA_INVALID_INDEX); });
    connect(connection, &PulseConnection::disconnected, this,
            [this] { m_isAsking = m_isAskedAgain = false; });
    connect(connection, &PulseConnection::unreachable, this, [this] {
        if (IsFirstTime())
            UpdateDeviceList({});
    });
}

void PulseAudioListManager::asyncUpdateDeviceList(uint32_t /*index*/) {
    if (!m_connection->IsReady())
        return;
    if (m_isAsking)
        m_isAskedAgain = true;
    else
        Ask();
}

void PulseAudioListManager::Ask() {
    m_answer.clear();
    const auto takePreferred = [](pa_context *, const pa_server_info *server, void *self) {
        auto *list = static_cast<PulseAudioListManager *>(self);
        if (server)
            list->m_preferredName =
                QString::fromUtf8(list->Mode() == QAudio::AudioInput ? server->default_source_name
                                                                     : server->default_sink_name);
    };
    const auto take = [](pa_context *, const auto *info, int eol, void *self) {
        static_cast<PulseAudioListManager *>(self)->TakeAnswer(info, eol);
    };
    pa_context *context = m_connection->Context();
    // The second answer comes behind the first. Both die with the connection, as this object does.
    pa_operation *preferred = pa_context_get_server_info(context, takePreferred, this);
    pa_operation *list = Mode() == QAudio::AudioInput
                             ? pa_context_get_source_info_list(context, take, this)
                             : pa_context_get_sink_info_list(context, take, this);
    m_isAsking = list != nullptr;
    for (pa_operation *operation : {preferred, list}) {
        if (operation)
            pa_operation_unref(operation);
    }
}

template <typename Info>
void PulseAudioListManager::TakeAnswer(const Info *info, int eol) {
    if (eol != 0)
        OnListEnd(eol > 0);
    else
        TakeDevice({QString::fromUtf8(info->name), describe(*info)}, isMonitor(*info));
}

void PulseAudioListManager::TakeDevice(const ExtAudioDeviceInfo &device, bool isMonitor) {
    const QString name = device.deviceName();
    if (name == standIn || name == standIn + QStringLiteral(".monitor"))
        return;
    if (isMonitor && !m_useMonitors)
        return;
    if (name == m_preferredName)
        m_answer.prepend(device);
    else
        m_answer.append(device);
}

void PulseAudioListManager::OnListEnd(bool isWhole) {
    m_isAsking = false;
    if (isWhole)
        UpdateDeviceList(m_answer);
    if (std::exchange(m_isAskedAgain, false))
        Ask();
}
