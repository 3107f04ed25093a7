#pragma once

#include "core/settings/Base64Setting.h"

/// Speech synthesis. The default voice is Александр.
class TTSSettings : public Settings {
public:
    TTSSettings() : Settings(QStringLiteral("TTS")) {}

    /// Stores what differs; a change of the speed by 0.01 or less does not count.
    /// @return whether anything was stored
    bool saveTtsSettings(const QString &voice, bool enabled, double speed) {
        constexpr double SmallestChange = 0.01;
        const bool hasVoiceChanged = Voice.get() != voice;
        const bool hasEnabledChanged = IsTtsEnabled.get() != enabled;
        const bool hasSpeedChanged = qAbs(Speed.get() - speed) > SmallestChange;
        if (hasVoiceChanged)
            Voice = voice;
        if (hasEnabledChanged)
            IsTtsEnabled = enabled;
        if (hasSpeedChanged)
            Speed = speed;
        const bool hasChanged = hasVoiceChanged || hasEnabledChanged || hasSpeedChanged;
        if (hasChanged)
            sync();
        return hasChanged;
    }

    Base64Setting Voice{this, QStringLiteral("Voice"), QStringLiteral("0JDQu9C10LrRgdCw0L3QtNGA")};
    Setting<bool> IsTtsEnabled{this, QStringLiteral("IsTtsEnabled"), true};
    Setting<double> Speed{this, QStringLiteral("Speed"), 1.0};
};
