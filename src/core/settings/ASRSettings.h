#pragma once

#include "core/AppVariables.h"
#include "core/settings/Setting.h"

/// Recognition: dictionary, punctuation, capitals.
class ASRSettings : public Settings {
public:
    ASRSettings() : Settings(QStringLiteral("ASR")) {}

    Setting<QString> SelectedTheme{this, QStringLiteral("SelectedTheme"), QString()};
    Setting<bool> SendingMode{this, QStringLiteral("SendingMode"), true};
    Setting<bool> IsThemeAutoSelect{this, QStringLiteral("IsThemeAutoSelect"), false};
    Setting<bool> CapitalLetterAfterStart{this, QStringLiteral("CapitalLetterAfterStart"), true};
    Setting<bool> CanEditAvocadoWords{
        this, QStringLiteral("CanEditAvocadoWords"),
        AppVariables::buildFlag(QStringLiteral("CanEditAvocadoWords"))};
    Setting<bool> UsePunctuation{this, QStringLiteral("UsePunctuation"), false};
    Setting<bool> PunctuationEnabled{this, QStringLiteral("PunctuationEnabled"),
                                     AppVariables::buildFlag(QStringLiteral("PunctuationEnabled"))};
};
