#pragma once

#include "core/settings/Setting.h"

/// What the file dialogs remember.
class FileDialogSettings : public Settings {
public:
    FileDialogSettings() : Settings(QStringLiteral("FileDialog")) {}

    Setting<QString> LastFilePath{this, QStringLiteral("LastFilePath"), QString()};
};
