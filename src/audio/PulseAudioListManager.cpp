#include "audio/PulseAudioListManager.h"

#include "audio/PulseAudioManager.h"

#include <QSet>

#include <algorithm>

namespace {
// Qt hears of a plugged device on its own connection to PulseAudio, most often within a few
// milliseconds of ours. One look is dear, since Qt asks ALSA as well, so few are taken.
constexpr int lookAgainDelayMs = 100;
constexpr int maxLooks = 30;
} // namespace

PulseAudioListManager::PulseAudioListManager(QAudio::Mode mode, bool useMonitors,
                                             PulseAudioManager *parent)
    : AudioListManager(mode, parent), m_manager(parent), m_useMonitors(useMonitors) {
    m_lookAgainTimer.setSingleShot(true);
    m_lookAgainTimer.setInterval(lookAgainDelayMs);
    connect(&m_lookAgainTimer, &QTimer::timeout, this, &PulseAudioListManager::LookAgain);
}

void PulseAudioListManager::asyncUpdateDeviceList(uint32_t /*index*/) {
    if (m_pendingUpdates.fetch_add(1) != 0)
        return;
    QMetaObject::invokeMethod(this, &PulseAudioListManager::RunPendingUpdates,
                              Qt::QueuedConnection);
}

void PulseAudioListManager::RunPendingUpdates() {
    for (;;) {
        Refresh();
        int handled = 1;
        if (m_pendingUpdates.compare_exchange_strong(handled, 0))
            break;
        m_pendingUpdates.store(1);
    }
    m_looksLeft = maxLooks;
    LookAgainLater();
}

void PulseAudioListManager::Refresh() {
    UpdateDeviceList();
    if (m_isComplete)
        emit Refreshed();
}

void PulseAudioListManager::LookAgain() {
    Refresh();
    LookAgainLater();
}

void PulseAudioListManager::LookAgainLater() {
    if (!m_qtIsBehind || m_looksLeft == 0)
        return;
    --m_looksLeft;
    m_lookAgainTimer.start();
}

QList<QAudioDeviceInfo> PulseAudioListManager::AvailableDevices() {
    m_qtIsBehind = false;
    m_isComplete = false;
    if (!m_manager->IsQtConnected())
        return {};
    QList<QAudioDeviceInfo> devices = QAudioDeviceInfo::availableDevices(Mode());
    std::optional<QSet<QString>> plugged = m_manager->GetDeviceNames(Mode());
    m_isComplete = plugged.has_value();
    if (!plugged)
        return devices;
    // Qt keeps devices of an earlier run of PulseAudio for ever, and may name one twice after it.
    const auto isGone = [&plugged](const QAudioDeviceInfo &device) {
        return !plugged->remove(device.deviceName());
    };
    devices.erase(std::remove_if(devices.begin(), devices.end(), isGone), devices.end());
    m_qtIsBehind = !plugged->isEmpty();
    return devices;
}

ExtAudioDeviceInfo PulseAudioListManager::CreateExtDeviceInfo(const QAudioDeviceInfo &device) {
    const PulseDeviceInfo info = m_manager->GetDeviceInfo(Mode(), device.deviceName());
    if (!info.found || (info.monitor && !m_useMonitors))
        return {};
    return ExtAudioDeviceInfo(device, info.description);
}
