#include "audio/PlaybackStream.h"

#include "core/LoggingCategories.h"

#include <utility>

namespace {
constexpr int sampleBytes = 2;
/// Long enough for a busy machine; what a lost device had taken is lost with it.
constexpr int bufferMs = 400;
/// What is shorter sounds a moment later; what is longer begins with a reserve.
constexpr int reserveMs = 200;
constexpr int beginDelayMs = 100;
/// Twenty minutes of speech. A device that takes nothing must not fill the memory.
constexpr qint64 maxQueuedBytes = 20LL * 60 * PlaybackStream::sampleRate * sampleBytes;
} // namespace

PlaybackStream::PlaybackStream(PulseConnection *connection) : SoundStream(sampleRate, connection) {
    m_beginTimer.setSingleShot(true);
    m_beginTimer.setInterval(beginDelayMs);
    connect(&m_beginTimer, &QTimer::timeout, this, &PlaybackStream::Begin);
}

int PlaybackStream::Connect(pa_stream *stream, const char *deviceName) {
    pa_buffer_attr buffer{};
    buffer.maxlength = static_cast<uint32_t>(-1);
    buffer.tlength = static_cast<uint32_t>(BytesPerSecond() / 1000 * bufferMs);
    buffer.minreq = buffer.tlength / 4;
    buffer.prebuf = static_cast<uint32_t>(BytesPerSecond() / 1000 * reserveMs);
    pa_stream_set_write_callback(
        stream,
        [](pa_stream *, size_t, void *self) { static_cast<PlaybackStream *>(self)->Write(); },
        this);
    pa_stream_set_underflow_callback(
        stream,
        [](pa_stream *, void *self) {
            static_cast<PlaybackStream *>(self)->SetState(QAudio::IdleState);
        },
        this);
    pa_cvolume volume;
    pa_cvolume_set(&volume, 1, pa_sw_volume_from_linear(Volume() / 100.0));
    const auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_START_UNMUTED);
    return pa_stream_connect_playback(stream, deviceName, &buffer, flags, &volume, nullptr);
}

void PlaybackStream::OnOpened() {
    m_state = QAudio::StoppedState;
    SetState(QAudio::IdleState);
    Write();
    m_beginTimer.start();
}

void PlaybackStream::Play(const QByteArray &block) {
    if (!IsOpening())
        return;
    if (m_queuedBytes + block.size() > maxQueuedBytes) {
        qCWarning(audiodevlog) << "Too much sound waits to be played, dropped:" << block.size();
        return;
    }
    m_queuedBytes += block.size();
    m_queue.append(block);
    Write();
    m_beginTimer.start();
}

void PlaybackStream::Begin() {
    if (!Stream())
        return;
    pa_operation *operation = pa_stream_trigger(Stream(), nullptr, nullptr);
    if (operation)
        pa_operation_unref(operation);
}

void PlaybackStream::Write() {
    while (Stream() && !m_queue.isEmpty()) {
        const QByteArray &block = m_queue.constFirst();
        const size_t room = pa_stream_writable_size(Stream());
        if (room == static_cast<size_t>(-1) || room < sampleBytes)
            return;
        const size_t length =
            qMin<size_t>(room / sampleBytes * sampleBytes, block.size() - m_written);
        if (pa_stream_write(Stream(), block.constData() + m_written, length, nullptr, 0,
                            PA_SEEK_RELATIVE) < 0)
            return;
        SetState(QAudio::ActiveState);
        m_written += static_cast<int>(length);
        if (m_written < block.size())
            continue;
        m_queuedBytes -= block.size();
        m_queue.removeFirst();
        m_written = 0;
    }
}

void PlaybackStream::SetState(QAudio::State state) {
    if (std::exchange(m_state, state) != state)
        emit StateChanged(state);
}
