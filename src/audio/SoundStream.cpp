#include "audio/SoundStream.h"

#include "audio/PulseConnection.h"
#include "core/LoggingCategories.h"

#include <utility>

SoundStream::SoundStream(int sampleRate, PulseConnection *connection)
    : QObject(connection), m_sampleRate(sampleRate), m_connection(connection) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SoundStream::OnTimeout);
    connect(connection, &PulseConnection::connected, this, [this] {
        m_timer.stop();
        Reconcile();
    });
    connect(connection, &PulseConnection::disconnected, this, &SoundStream::OnDisconnected);
    connect(connection, &PulseConnection::streamChanged, this, &SoundStream::AskForVolume);
}

SoundStream::~SoundStream() {
    m_wanted = {};
    Release();
}

void SoundStream::Open(const ExtAudioDeviceInfo &device) {
    m_wanted = device;
    m_isFailureLogged = false;
    if (!m_stream)
        m_timer.stop();
    Reconcile();
}

void SoundStream::Close() {
    m_wanted = {};
    Reconcile();
}

void SoundStream::Reconcile() {
    // A stream that were given up before the server has answered would go on there.
    if (m_stream && !m_isOpen)
        return;
    if (m_stream && !(m_opened == m_wanted))
        Release();
    if (!m_stream && !m_wanted.isNull() && m_connection->IsReady() && !m_timer.isActive())
        Create();
}

void SoundStream::Create() {
    const pa_sample_spec format{PA_SAMPLE_S16LE, static_cast<uint32_t>(m_sampleRate), 1};
    m_opened = m_wanted;
    m_stream.reset(pa_stream_new(m_connection->Context(),
                                 m_opened.Description().toUtf8().constData(), &format, nullptr));
    if (!m_stream) {
        OnFailed();
        return;
    }
    pa_stream_set_state_callback(
        m_stream.get(),
        [](pa_stream *, void *self) { static_cast<SoundStream *>(self)->OnStateChanged(); }, this);
    m_timer.start(PulseConnection::answerLimitMs);
    if (Connect(m_stream.get(), m_opened.deviceName().toUtf8().constData()) < 0)
        OnFailed();
}

void SoundStream::OnStateChanged() {
    switch (pa_stream_get_state(m_stream.get())) {
    case PA_STREAM_READY:
        OnReady();
        break;
    case PA_STREAM_FAILED:
    case PA_STREAM_TERMINATED:
        OnFailed();
        break;
    default:
        break;
    }
}

void SoundStream::OnReady() {
    m_timer.stop();
    m_isOpen = true;
    m_isFailureLogged = false;
    Log("Created audio ");
    SendVolume();
    OnOpened();
    Reconcile();
}

void SoundStream::OnFailed() {
    const pa_context *context = m_connection->Context();
    if (!m_isOpen)
        WarnOnce(context ? pa_strerror(pa_context_errno(context)) : "the connection is lost");
    Release();
    m_timer.start(PulseConnection::retryDelayMs);
    if (!m_wanted.isNull())
        emit Failed(QAudio::IOError);
}

void SoundStream::OnTimeout() {
    if (!m_stream) {
        Reconcile();
        return;
    }
    WarnOnce("no answer");
    m_connection->GiveUp();
}

void SoundStream::OnDisconnected() {
    m_timer.stop();
    if (!m_stream)
        return;
    Release();
    if (!m_wanted.isNull())
        emit Failed(QAudio::IOError);
}

void SoundStream::Release() {
    m_timer.stop();
    m_volumeRequest.reset();
    m_volumeQuestion.reset();
    if (!m_stream)
        return;
    // The library may be about to call for it, and holds it as long as it needs it.
    const PulseRef<pa_stream> stream = std::move(m_stream);
    pa_stream_set_state_callback(stream.get(), nullptr, nullptr);
    pa_stream_set_read_callback(stream.get(), nullptr, nullptr);
    pa_stream_set_write_callback(stream.get(), nullptr, nullptr);
    pa_stream_set_underflow_callback(stream.get(), nullptr, nullptr);
    pa_stream_disconnect(stream.get());
    if (!std::exchange(m_isOpen, false))
        return;
    Log("Delete audio ");
    emit StateChanged(QAudio::StoppedState);
}

bool SoundStream::IsInput() const {
    return m_connection->Mode() == QAudio::AudioInput;
}

void SoundStream::WarnOnce(const char *reason) {
    if (!std::exchange(m_isFailureLogged, true))
        qCWarning(audiodevlog).noquote().nospace()
            << "Cannot create audio device " << m_opened.deviceName() << ": " << reason;
}

void SoundStream::Log(const char *what) const {
    qCDebug(audiodevlog).noquote().nospace()
        << what << (IsInput() ? "input " : "output ") << m_opened.Description() << " "
        << static_cast<const void *>(this);
}

void SoundStream::SetVolume(int percent) {
    m_volume = qBound(0, percent, 100);
    SendVolume();
}

void SoundStream::SendVolume() {
    if (!Stream())
        return;
    pa_cvolume volume;
    pa_cvolume_set(&volume, 1, pa_sw_volume_from_linear(m_volume / 100.0));
    const auto set =
        IsInput() ? pa_context_set_source_output_volume : pa_context_set_sink_input_volume;
    m_volumeRequest.reset(
        set(m_connection->Context(), pa_stream_get_index(Stream()), &volume, nullptr, nullptr));
}

void SoundStream::AskForVolume(uint32_t index) {
    if (!Stream() || pa_stream_get_index(Stream()) != index)
        return;
    const auto take = [](pa_context *, const auto *info, int, void *self) {
        static_cast<SoundStream *>(self)->TakeVolume(info);
    };
    pa_context *context = m_connection->Context();
    m_volumeQuestion.reset(IsInput() ? pa_context_get_source_output_info(context, index, take, this)
                                     : pa_context_get_sink_input_info(context, index, take, this));
}

template <typename Info>
void SoundStream::TakeVolume(const Info *info) {
    // What the server told before it knew of this program's own choice is out of date.
    const bool isOutdated =
        m_volumeRequest && pa_operation_get_state(m_volumeRequest.get()) == PA_OPERATION_RUNNING;
    if (!info || isOutdated)
        return;
    const double linear = pa_sw_volume_to_linear(pa_cvolume_avg(&info->volume));
    const int percent = qBound(0, qRound(linear * 100), 100);
    if (std::exchange(m_volume, percent) != percent)
        emit VolumeChanged(percent);
}
