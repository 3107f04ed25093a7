#pragma once

#include "core/settings/Setting.h"

/// The speaker. Volume in percent.
class PlaybackDeviceSettings : public Settings {
public:
    PlaybackDeviceSettings() : Settings(QStringLiteral("PlaybackDevice")) {}

    Setting<QString> Name{this, QStringLiteral("Name"), QString()};
    Setting<int> Volume{this, QStringLiteral("Volume"), 100};
    Setting<bool> TrackChanges{this, QStringLiteral("TrackChanges"), false};
};
