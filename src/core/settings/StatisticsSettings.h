#pragma once

#include "core/AppVariables.h"
#include "core/settings/Setting.h"

/// Whether the user's profile is asked for.
class StatisticsSettings : public Settings {
public:
    StatisticsSettings() : Settings(QStringLiteral("Statistics")) {}

    Setting<bool> FillOrganisationUserInfo{
        this, QStringLiteral("FillOrganisationUserInfo"),
        AppVariables::buildFlag(QStringLiteral("FillOrganisationUserInfo"))};
};
