#pragma once

#include "core/settings/Setting.h"

/// The measuring test run; times in milliseconds.
class SelfTestSettings : public Settings {
public:
    SelfTestSettings() : Settings(QStringLiteral("SelfTest")) {}

    Setting<bool> Enabled{this, QStringLiteral("Enabled"), false};
    Setting<int> PingCount{this, QStringLiteral("PingCount"), 10};
    Setting<int> PingTimeout{this, QStringLiteral("PingTimeout"), 2000};
    Setting<int> StartTimeout{this, QStringLiteral("StartTimeout"), 5000};
    Setting<int> StopTimeout{this, QStringLiteral("StopTimeout"), 18000000};
    Setting<int> SoundPeriod{this, QStringLiteral("SoundPeriod"), 200};
};
