#pragma once

#include "core/settings/Setting.h"

/// How the client connects.
class ConnectionManagerSettings : public Settings {
public:
    ConnectionManagerSettings() : Settings(QStringLiteral("ConnectionManager")) {}

    Setting<bool> QuietConnectionEnabled{this, QStringLiteral("QuietConnectionEnabled"), false};
};
