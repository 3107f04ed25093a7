#pragma once

#include "core/settings/BaseConnectionSettings.h"

/// The recognition server in use.
class ClientConnectionSettings : public BaseConnectionSettings {
public:
    ClientConnectionSettings()
        : BaseConnectionSettings(QStringLiteral("AsrClient"), builtInAddress(), 34000, 39255,
                                 false) {}
};
