#include "audio/PulseAudioManager.h"

#include "audio/PlaybackDeviceManager.h"
#include "audio/PulseAudioListManager.h"
#include "audio/RecordingDeviceManager.h"
#include "core/LoggingCategories.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QCoreApplication>

#include <pulse/pulseaudio.h>
#include <utility>

namespace {
/// Until the connection is ready, its state only wakes Init, which waits for it.
void connecting_callback(pa_context *, void *mainLoop) {
    pa_utils::Signal(static_cast<pa_threaded_mainloop *>(mainLoop));
}

void event_callback(pa_context *, pa_subscription_event_type_t type, uint32_t index,
                    void *userdata) {
    auto *manager = static_cast<PulseAudioManager *>(userdata);
    const auto facility = type & PA_SUBSCRIPTION_EVENT_FACILITY_MASK;
    if (facility != PA_SUBSCRIPTION_EVENT_SINK && facility != PA_SUBSCRIPTION_EVENT_SOURCE)
        return;
    const bool isInput = facility == PA_SUBSCRIPTION_EVENT_SOURCE;
    switch (type & PA_SUBSCRIPTION_EVENT_TYPE_MASK) {
    case PA_SUBSCRIPTION_EVENT_NEW:
        isInput ? emit manager->inputDeviceAdded(index) : emit manager->outputDeviceAdded(index);
        break;
    case PA_SUBSCRIPTION_EVENT_CHANGE:
        isInput ? emit manager->inputDeviceChanged(index)
                : emit manager->outputDeviceChanged(index);
        break;
    case PA_SUBSCRIPTION_EVENT_REMOVE:
        isInput ? emit manager->inputDeviceRemoved(index)
                : emit manager->outputDeviceRemoved(index);
        break;
    default:
        break;
    }
}
} // namespace

PulseAudioManager::PulseAudioManager(QObject *parent) : QObject(parent) {
    m_thread.setObjectName(QStringLiteral("AudioManager"));
    const bool useMonitors = RecordingDeviceSettings().UseMonitors;
    m_inputListManager = new PulseAudioListManager(QAudio::AudioInput, useMonitors, this);
    m_outputListManager = new PulseAudioListManager(QAudio::AudioOutput, false, this);
    m_recordingDevice = std::make_unique<RecordingDeviceManager>(m_inputListManager, nullptr);
    m_playbackDevice = std::make_unique<PlaybackDeviceManager>(m_outputListManager, nullptr);

    m_reconnectTimer.setSingleShot(true);
    m_reconnectTimer.setInterval(reconnectDelayMs);
    connect(&m_reconnectTimer, &QTimer::timeout, this, &PulseAudioManager::Init);
    // An object is to be destroyed on its own thread, so it comes back before that thread ends.
    connect(
        &m_thread, &QThread::finished, this,
        [this] {
            m_reconnectTimer.stop();
            moveToThread(QCoreApplication::instance()->thread());
        },
        Qt::DirectConnection);

    StartMainLoop();
    Init();
}

PulseAudioManager::~PulseAudioManager() {
    Stop();
    m_playbackDevice.reset();
    m_recordingDevice.reset();
    Cleanup();
    if (!m_mainLoop)
        return;
    pa_threaded_mainloop_stop(m_mainLoop);
    pa_threaded_mainloop_free(m_mainLoop);
}

void PulseAudioManager::StartMainLoop() {
    pa_threaded_mainloop *mainLoop = pa_threaded_mainloop_new();
    if (!mainLoop) {
        qCWarning(pulselog) << "Unable to create pulseaudio mainloop";
        return;
    }
    const int code = pa_threaded_mainloop_start(mainLoop);
    if (code != 0) {
        qCWarning(pulselog).nospace() << "Unable to start pulseaudio mainloop, code = " << code;
        pa_threaded_mainloop_free(mainLoop);
        return;
    }
    m_mainLoop = mainLoop;
}

void PulseAudioManager::Start() {
    if (m_thread.isRunning())
        return;
    moveToThread(&m_thread);
    m_thread.start(QThread::InheritPriority);
    m_recordingDevice->LoadSettings();
    m_playbackDevice->LoadSettings();
    m_inputListManager->asyncUpdateDeviceList(PA_INVALID_INDEX);
    m_outputListManager->asyncUpdateDeviceList(PA_INVALID_INDEX);
    ConnectEvents();
}

void PulseAudioManager::Stop() {
    DisconnectEvents();
    m_thread.quit();
    m_thread.wait();
    m_recordingDevice->StopDevice();
    m_playbackDevice->StopDevice();
}

void PulseAudioManager::ConnectEvents() {
    connect(this, &PulseAudioManager::inputDeviceAdded, m_inputListManager,
            &PulseAudioListManager::asyncUpdateDeviceList, Qt::DirectConnection);
    connect(this, &PulseAudioManager::inputDeviceRemoved, m_inputListManager,
            &PulseAudioListManager::asyncUpdateDeviceList, Qt::DirectConnection);
    connect(this, &PulseAudioManager::outputDeviceAdded, m_outputListManager,
            &PulseAudioListManager::asyncUpdateDeviceList, Qt::DirectConnection);
    connect(this, &PulseAudioManager::outputDeviceRemoved, m_outputListManager,
            &PulseAudioListManager::asyncUpdateDeviceList, Qt::DirectConnection);
}

void PulseAudioManager::DisconnectEvents() {
    disconnect(this, nullptr, m_inputListManager, nullptr);
    disconnect(this, nullptr, m_outputListManager, nullptr);
}

void PulseAudioManager::Init() {
    if (!m_mainLoop)
        return;
    {
        const pa_utils::MainLoopLock lock(m_mainLoop);
        if (m_context)
            return;
        m_context = Connect().release();
        if (!m_context) {
            onContextFailed();
            return;
        }
    }
    // On the main thread: Qt's connection and the devices belong to it.
    QMetaObject::invokeMethod(&m_qtConnection, [this] { OnConnected(); });
}

pa_utils::ContextRef PulseAudioManager::Connect() {
    pa_utils::ContextRef context(
        pa_context_new(pa_threaded_mainloop_get_api(m_mainLoop),
                       QCoreApplication::applicationName().toUtf8().constData()));
    if (!context) {
        reportFailure(QStringLiteral("Unable to create new pulseaudio context"));
        return nullptr;
    }
    pa_context_set_state_callback(context.get(), connecting_callback, m_mainLoop);
    const int code = pa_context_connect(context.get(), nullptr, PA_CONTEXT_NOFLAGS, nullptr);
    if (code < 0) {
        reportFailure(QStringLiteral("pa_context_connect failed, code = %1").arg(code));
        return nullptr;
    }
    if (!WaitUntilReady(context.get()))
        return nullptr;
    qCDebug(pulselog) << "Connected to pulse audio";
    m_lastFailure.clear();
    Subscribe(context.get());
    return context;
}

void PulseAudioManager::reportFailure(const QString &text) {
    // There is a try a second, for as long as there is no server.
    if (std::exchange(m_lastFailure, text) != text)
        qCWarning(pulselog).noquote() << text;
}

bool PulseAudioManager::WaitUntilReady(pa_context *context) {
    for (;;) {
        switch (pa_context_get_state(context)) {
        case PA_CONTEXT_READY:
            return true;
        case PA_CONTEXT_TERMINATED:
            reportFailure(QStringLiteral("Connection to pulse audio terminated"));
            return false;
        case PA_CONTEXT_FAILED:
            reportFailure(QStringLiteral("Connection to pulse audio failed"));
            return false;
        default:
            pa_threaded_mainloop_wait(m_mainLoop);
        }
    }
}

void PulseAudioManager::Subscribe(pa_context *context) {
    const pa_context_notify_cb_t state_callback = [](pa_context *changed, void *userdata) {
        auto *manager = static_cast<PulseAudioManager *>(userdata);
        // A look-up that waits for its answer would wait for ever.
        pa_utils::Signal(manager->m_mainLoop);
        if (pa_context_get_state(changed) != PA_CONTEXT_FAILED)
            return;
        qCWarning(pulselog) << "pulse audio context failed, try to reconnect";
        QMetaObject::invokeMethod(manager, &PulseAudioManager::onContextFailed,
                                  Qt::QueuedConnection);
    };
    pa_context_set_state_callback(context, state_callback, this);
    pa_context_set_subscribe_callback(context, event_callback, this);
    const auto mask = static_cast<pa_subscription_mask_t>(
        PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_CARD);
    pa_operation *operation = pa_context_subscribe(context, mask, nullptr, nullptr);
    if (operation)
        pa_operation_unref(operation);
    else
        qCWarning(pulselog) << "Failed to subscribe to context notifications";
}

void PulseAudioManager::OnConnected() {
    // Qt handles events while the devices are destroyed, so this may come too late.
    if (!m_recordingDevice || !m_playbackDevice || !IsConnected())
        return;
    m_qtConnection.Connect([this] { return IsConnected(); });
    // Devices may have come and gone while nobody listened. Before Start() the wanted devices are
    // not known, so there are no lists then.
    if (!m_thread.isRunning())
        return;
    m_inputListManager->asyncUpdateDeviceList(PA_INVALID_INDEX);
    m_outputListManager->asyncUpdateDeviceList(PA_INVALID_INDEX);
}

bool PulseAudioManager::IsConnected() {
    if (!m_mainLoop)
        return false;
    const pa_utils::MainLoopLock lock(m_mainLoop);
    return m_context && pa_context_get_state(m_context) == PA_CONTEXT_READY;
}

void PulseAudioManager::onContextFailed() {
    // These live on the main thread.
    for (AudioDeviceManagerBase *device :
         {static_cast<AudioDeviceManagerBase *>(m_recordingDevice.get()),
          static_cast<AudioDeviceManagerBase *>(m_playbackDevice.get())})
        QMetaObject::invokeMethod(device, &AudioDeviceManagerBase::OnServerLost);
    Cleanup();
    m_reconnectTimer.start();
}

void PulseAudioManager::Cleanup() {
    if (!m_mainLoop)
        return;
    const pa_utils::MainLoopLock lock(m_mainLoop);
    const pa_utils::ContextRef context(std::exchange(m_context, nullptr));
    if (context)
        pa_context_disconnect(context.get());
}

PulseDeviceInfo PulseAudioManager::GetDeviceInfo(QAudio::Mode mode, const QString &name) {
    switch (mode) {
    case QAudio::AudioInput:
        return GetInputDeviceInfo(name);
    case QAudio::AudioOutput:
        return GetOutputDeviceInfo(name);
    default:
        return {};
    }
}

PulseDeviceInfo PulseAudioManager::GetInputDeviceInfo(const QString &name) {
    PulseDeviceInfo result;
    const QByteArray id = name.toUtf8();
    const bool isWhole = pa_utils::Request<pa_source_info>(
        m_mainLoop, m_context,
        [&id](pa_context *context, pa_source_info_cb_t callback, void *userdata) {
            return pa_context_get_source_info_by_name(context, id.constData(), callback, userdata);
        },
        [&result](const pa_source_info &info) {
            result = PulseDeviceInfo::From(info, info.monitor_of_sink != PA_INVALID_INDEX);
        });
    return isWhole ? result : PulseDeviceInfo();
}

PulseDeviceInfo PulseAudioManager::GetOutputDeviceInfo(const QString &name) {
    PulseDeviceInfo result;
    const QByteArray id = name.toUtf8();
    const bool isWhole = pa_utils::Request<pa_sink_info>(
        m_mainLoop, m_context,
        [&id](pa_context *context, pa_sink_info_cb_t callback, void *userdata) {
            return pa_context_get_sink_info_by_name(context, id.constData(), callback, userdata);
        },
        [&result](const pa_sink_info &info) { result = PulseDeviceInfo::From(info, false); });
    return isWhole ? result : PulseDeviceInfo();
}

std::optional<QSet<QString>> PulseAudioManager::GetDeviceNames(QAudio::Mode mode) {
    QSet<QString> names;
    const auto take = [&names](const auto &info) { names.insert(QString::fromUtf8(info.name)); };
    const bool isWhole = mode == QAudio::AudioInput
                             ? pa_utils::Request<pa_source_info>(
                                   m_mainLoop, m_context, pa_context_get_source_info_list, take)
                             : pa_utils::Request<pa_sink_info>(m_mainLoop, m_context,
                                                               pa_context_get_sink_info_list, take);
    return isWhole ? std::make_optional(names) : std::nullopt;
}
