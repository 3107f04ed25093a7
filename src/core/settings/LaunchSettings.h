#pragma once

#include "core/settings/Setting.h"

/// Starting and stopping recognition by voice.
class LaunchSettings : public Settings {
public:
    LaunchSettings() : Settings(QStringLiteral("Launch")) {}

    Setting<bool> VoiceActivationEnabled{this, QStringLiteral("VoiceActivationEnabled"), false};
    Setting<bool> VoiceDeactivationEnabled{this, QStringLiteral("VoiceDeactivationEnabled"), false};
    Setting<bool> VoiceActivationEnabledBalancer{
        this, QStringLiteral("VoiceActivationEnabledBalancer"), false};
    Setting<bool> VoiceDeactivationEnabledBalancer{
        this, QStringLiteral("VoiceDeactivationEnabledBalancer"), false};
    Setting<QString> VoiceActivationCommand{this, QStringLiteral("VoiceActivationCommand"),
                                            QStringLiteral("Начать распознавание")};
    Setting<QString> VoiceDeactivationCommand{this, QStringLiteral("VoiceDeactivationCommand"),
                                              QStringLiteral("Закончить распознавание")};
    Setting<bool> OutputToBackground{this, QStringLiteral("OutputToBackground"), false};
    Setting<bool> GlobalEnableVAC{this, QStringLiteral("GlobalEnableVAC"), false};
};
