#pragma once

#include "core/settings/Setting.h"

/// Who this client is and how it gets to the network.
class ClientInfoSettings : public Settings {
public:
    ClientInfoSettings() : Settings(QStringLiteral("ClientInfo")) {}

    Setting<QString> DesktopId{this, QStringLiteral("DesktopId"), QString()};
    Setting<bool> UseProxy{this, QStringLiteral("UseProxy"), true};

    /// The machine's stable identity, an upper-case UUID without braces; made and stored once.
    QString getOrCreateDesktopId();
};
