#pragma once

#include "core/settings/Base64Setting.h"

/// Speech synthesis. The default voice is Александр.
class TTSSettings : public Settings {
public:
    TTSSettings() : Settings(QStringLiteral("TTS")) {}

    Base64Setting Voice{this, QStringLiteral("Voice"), QStringLiteral("0JDQu9C10LrRgdCw0L3QtNGA")};
    Setting<bool> IsTtsEnabled{this, QStringLiteral("IsTtsEnabled"), true};
    Setting<double> Speed{this, QStringLiteral("Speed"), 1.0};
};
