#pragma once

#include "core/settings/Setting.h"

#include <QList>

/// A sound file of the measuring test run.
struct SelfTestFile {
    /// Of raw sound in the microphone's format; may hold variables.
    QString path;
    /// Silence behind the file, bytes.
    int tail = 0;
    /// How many final results the server is to give.
    int results = 0;
};

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

    /// In the order of the settings file.
    QList<SelfTestFile> get_Files();
};
