#pragma once

#include "diagnostics/ComponentInformation.h"

/// The user's logs and settings, as the folders "logs" and "configs".
class UserInformation final : public ComponentInformation {
public:
    void CollectInformation(const QString &folder) override;
};
