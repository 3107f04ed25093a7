#pragma once

#include <QString>

#include <cstdint>

/// What PulseAudio tells about one source or sink.
struct PulseDeviceInfo {
    bool found = false;
    /// A source that hears what a sink plays; false for every sink.
    bool monitor = false;
    /// PulseAudio's index, meaningful while the device is plugged.
    uint32_t index = 0;
    /// The name for display, with that of the active port if there is one.
    QString description;

    /// @tparam Info  pa_source_info or pa_sink_info
    template <typename Info>
    static PulseDeviceInfo From(const Info &info, bool isMonitor) {
        PulseDeviceInfo result;
        result.found = true;
        result.monitor = isMonitor;
        result.index = info.index;
        result.description = QString::fromUtf8(info.description);
        if (info.active_port)
            result.description = QStringLiteral("%1 – %2").arg(
                result.description, QString::fromUtf8(info.active_port->description));
        return result;
    }
};
