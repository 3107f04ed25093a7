#pragma once

#include "core/settings/Setting.h"

/// Age limits of the server list and of a server's failure, seconds.
class ServersConnectionSettings : public Settings {
public:
    ServersConnectionSettings() : Settings(QStringLiteral("ServersConnection")) {}

    Setting<int> ServersListRefreshMinTimeout{this, QStringLiteral("ServersListRefreshMinTimeout"),
                                              600};
    Setting<int> ServerStatusRefreshMinTimeout{
        this, QStringLiteral("ServerStatusRefreshMinTimeout"), 600};
};
