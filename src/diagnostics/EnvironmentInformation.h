#pragma once

#include "diagnostics/ComponentInformation.h"

/// The machine: version, processor, system, memory, storage, as "Environment.txt".
class EnvironmentInformation final : public ComponentInformation {
public:
    void CollectInformation(const QString &folder) override;

    /// The memory for people. May wait for up to 30 seconds.
    static QString getRamInfo();
};
