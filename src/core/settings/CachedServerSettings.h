#pragma once

#include "core/settings/Setting.h"

/// The last server list, as compact JSON.
class CachedServerSettings : public Settings {
public:
    CachedServerSettings() : Settings(QStringLiteral("CachedServers")) {}

    Setting<QString> ServersList{this, QStringLiteral("ServersList"), QString()};
};
