#pragma once

#include "core/settings/Setting.h"

/// Pauses of the text writer, milliseconds.
class TextWriterSettings : public Settings {
public:
    TextWriterSettings() : Settings(QStringLiteral("TextWriter")) {}

    Setting<int> SymbolDelay{this, QStringLiteral("SymbolDelay"), 0};
    Setting<int> EnterDelay{this, QStringLiteral("EnterDelay"), 50};
};
