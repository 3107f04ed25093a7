#pragma once

#include "core/settings/BaseConnectionSettings.h"
#include "core/settings/CommaListSetting.h"

/// The local interface for forms on this machine.
class FormApiSettings : public BaseConnectionSettings {
public:
    FormApiSettings()
        : BaseConnectionSettings(QStringLiteral("FormApiServer"), QStringLiteral("localhost"),
                                 33999, 39256, false) {}

    /// The pages that may use it, each as scheme://host:port; empty allows all.
    CommaListSetting AllowedOrigins{this, QStringLiteral("AllowedOrigins"), QString()};
};
