#include "audio/PulseConnection.h"

#include "audio/PulseLoop.h"
#include "core/LoggingCategories.h"

#include <QCoreApplication>

#include <pulse/pulseaudio.h>
#include <utility>

PulseConnection::PulseConnection(QAudio::Mode mode) : m_mode(mode) {
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(answerLimitMs);
    connect(&m_deadline, &QTimer::timeout, this, &PulseConnection::GiveUp);
    m_reconnectTimer.setSingleShot(true);
    m_reconnectTimer.setInterval(retryDelayMs);
    connect(&m_reconnectTimer, &QTimer::timeout, this, &PulseConnection::Init);
}

PulseConnection::~PulseConnection() {
    Cleanup();
}

void PulseConnection::Init() {
    if (m_context)
        return;
    m_context =
        pa_context_new(pulseLoop(), QCoreApplication::applicationName().toUtf8().constData());
    if (!m_context) {
        WarnOnce(QStringLiteral("Unable to create new pulseaudio context"));
        onContextFailed();
        return;
    }
    pa_context_set_state_callback(m_context, &PulseConnection::OnStateChanged, this);
    m_deadline.start();
    const int code = pa_context_connect(m_context, nullptr, PA_CONTEXT_NOFLAGS, nullptr);
    if (code < 0) {
        WarnOnce(QStringLiteral("pa_context_connect failed, code = %1").arg(code));
        onContextFailed();
    }
}

void PulseConnection::OnStateChanged(pa_context *context, void *connection) {
    auto *self = static_cast<PulseConnection *>(connection);
    switch (pa_context_get_state(context)) {
    case PA_CONTEXT_READY:
        self->OnReady();
        break;
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED:
        self->m_deadline.stop();
        if (std::exchange(self->m_isReady, false))
            qCWarning(pulselog) << "pulse audio context failed, try to reconnect";
        else
            self->WarnOnce(QStringLiteral("Connection to pulse audio failed"));
        // The library is not done with the context yet.
        QMetaObject::invokeMethod(self, &PulseConnection::onContextFailed, Qt::QueuedConnection);
        break;
    default:
        break;
    }
}

void PulseConnection::OnReady() {
    m_deadline.stop();
    m_isReady = true;
    m_isFailureLogged = false;
    qCDebug(pulselog) << "Connected to pulse audio";
    Subscribe();
    emit connected();
}

void PulseConnection::Subscribe() {
    pa_context_set_subscribe_callback(
        m_context,
        [](pa_context *, pa_subscription_event_type_t type, uint32_t index, void *connection) {
            const auto facility = type & PA_SUBSCRIPTION_EVENT_FACILITY_MASK;
            static_cast<PulseConnection *>(connection)
                ->OnEvent(facility == PA_SUBSCRIPTION_EVENT_SOURCE ||
                              facility == PA_SUBSCRIPTION_EVENT_SINK,
                          type & PA_SUBSCRIPTION_EVENT_TYPE_MASK, index);
        },
        this);
    const auto mask = static_cast<pa_subscription_mask_t>(
        m_mode == QAudio::AudioInput
            ? PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SOURCE_OUTPUT
            : PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SINK_INPUT);
    pa_operation *operation = pa_context_subscribe(m_context, mask, nullptr, nullptr);
    if (operation)
        pa_operation_unref(operation);
    else
        qCWarning(pulselog) << "Failed to subscribe to context notifications";
}

void PulseConnection::OnEvent(bool isDevice, int event, uint32_t index) {
    if (!isDevice && event == PA_SUBSCRIPTION_EVENT_CHANGE)
        emit streamChanged(index);
    else if (isDevice && event == PA_SUBSCRIPTION_EVENT_NEW)
        emit deviceAdded(index);
    else if (isDevice && event == PA_SUBSCRIPTION_EVENT_REMOVE)
        emit deviceRemoved(index);
}

void PulseConnection::GiveUp() {
    if (!m_isReady)
        WarnOnce(QStringLiteral("Pulse audio does not answer"));
    onContextFailed();
}

void PulseConnection::onContextFailed() {
    Cleanup();
    m_reconnectTimer.start();
    emit unreachable();
}

void PulseConnection::Cleanup() {
    m_deadline.stop();
    m_reconnectTimer.stop();
    pa_context *context = std::exchange(m_context, nullptr);
    m_isReady = false;
    if (!context)
        return;
    emit disconnected();
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_set_subscribe_callback(context, nullptr, nullptr);
    pa_context_disconnect(context);
    pa_context_unref(context);
}

void PulseConnection::WarnOnce(const QString &text) {
    if (!std::exchange(m_isFailureLogged, true))
        qCWarning(pulselog).noquote() << text;
}
