#pragma once

#include "core/settings/BaseConnectionSettings.h"

/// The local interface for forms on this machine.
class FormApiSettings : public BaseConnectionSettings {
public:
    FormApiSettings()
        : BaseConnectionSettings(QStringLiteral("FormApiServer"), QStringLiteral("localhost"),
                                 33999, 39256, false) {}
};
