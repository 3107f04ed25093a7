#include "audio/RecordingStream.h"

#include "core/LoggingCategories.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <utility>

namespace {
constexpr int sampleRate = 16000;
constexpr int bytesPerMs = sampleRate * 2 / 1000;
constexpr int minBlockMs = 10;
constexpr int maxBlockMs = 2000;

/// By the length of the buffer, or by that of the interval.
int blockBytes(const RecordingDeviceSettings &settings) {
    const int bytes = settings.UseNotifyEvent
                          ? qBound(minBlockMs, settings.DataInterval.get(), maxBlockMs) * bytesPerMs
                          : settings.BufferSize.get();
    return qBound(minBlockMs * bytesPerMs, bytes / 2 * 2, maxBlockMs * bytesPerMs);
}
} // namespace

RecordingStream::RecordingStream(PulseConnection *connection)
    : SoundStream(sampleRate, connection) {}

int RecordingStream::Connect(pa_stream *stream, const char *deviceName) {
    m_blockBytes = blockBytes(RecordingDeviceSettings());
    m_block.clear();
    pa_buffer_attr buffer{};
    buffer.maxlength = static_cast<uint32_t>(-1);
    buffer.fragsize = static_cast<uint32_t>(m_blockBytes);
    pa_stream_set_read_callback(
        stream,
        [](pa_stream *, size_t, void *self) { static_cast<RecordingStream *>(self)->Read(); },
        this);
    const auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_START_UNMUTED);
    return pa_stream_connect_record(stream, deviceName, &buffer, flags);
}

void RecordingStream::OnOpened() {
    qCDebug(audiodevlog) << "Audio buffer size:  " << pa_stream_get_buffer_attr(Stream())->fragsize;
    qCDebug(audiodevlog) << "Audio data interval:" << m_blockBytes / bytesPerMs;
    emit StateChanged(QAudio::ActiveState);
}

void RecordingStream::Read() {
    const void *data = nullptr;
    size_t length = 0;
    while (Stream() && pa_stream_peek(Stream(), &data, &length) == 0 && length > 0) {
        if (m_block.isEmpty())
            m_block.reserve(m_blockBytes);
        // A hole in the sound has a length but no data.
        if (data)
            m_block.append(static_cast<const char *>(data), static_cast<int>(length));
        else
            m_block.append(static_cast<int>(length), '\0');
        pa_stream_drop(Stream());
        if (m_block.size() >= m_blockBytes)
            emit SoundRecorded(std::exchange(m_block, {}));
    }
}
