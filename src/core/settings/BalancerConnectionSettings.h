#pragma once

#include "core/settings/BaseConnectionSettings.h"

/// The balancer.
class BalancerConnectionSettings : public BaseConnectionSettings {
public:
    BalancerConnectionSettings()
        : BaseConnectionSettings(QStringLiteral("BalancerConnection"), builtInAddress(), 34000,
                                 39255, false) {}
};
