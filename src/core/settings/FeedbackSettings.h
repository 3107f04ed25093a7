#pragma once

#include "core/settings/Base64Setting.h"

/// The draft of a feedback message.
class FeedbackSettings : public Settings {
public:
    FeedbackSettings() : Settings(QStringLiteral("Feedback")) {}

    Base64Setting FeedbackText{this, QStringLiteral("FeedbackText"), QString()};
    Setting<QString> Id{this, QStringLiteral("Id"), QString()};
    Setting<QString> ThemeId{this, QStringLiteral("ThemeId"), QString()};
    Setting<QString> ThemeVersion{this, QStringLiteral("ThemeVersion"), QString()};
    Base64Setting ThemeName{this, QStringLiteral("ThemeName"), QString()};
    Setting<QString> Email{this, QStringLiteral("Email"), QString()};
    Base64Setting FullName{this, QStringLiteral("FullName"), QString()};
    Setting<bool> ConsentRequested{this, QStringLiteral("ConsentRequested"), true};
};
