#pragma once

#include "core/settings/Setting.h"

/// The microphone. Gain in percent, interval in milliseconds, buffer in bytes.
class RecordingDeviceSettings : public Settings {
public:
    RecordingDeviceSettings() : Settings(QStringLiteral("RecordingDevice")) {}

    Setting<QString> Name{this, QStringLiteral("Name"), QString()};
    Setting<int> Gain{this, QStringLiteral("Gain"), 100};
    Setting<bool> TrackChanges{this, QStringLiteral("TrackChanges"), false};
    Setting<int> DataInterval{this, QStringLiteral("DataInterval"), 200};
    Setting<int> BufferSize{this, QStringLiteral("BufferSize"), 6400};
    Setting<bool> UseNotifyEvent{this, QStringLiteral("UseNotifyEvent"), false};
    Setting<bool> UseMonitors{this, QStringLiteral("UseMonitors"), false};
};
