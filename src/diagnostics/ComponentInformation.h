#pragma once

#include <QString>

/// One share of what support needs to know about a machine.
class ComponentInformation {
public:
    ComponentInformation() = default;
    virtual ~ComponentInformation() = default;
    ComponentInformation(const ComponentInformation &) = delete;
    ComponentInformation &operator=(const ComponentInformation &) = delete;

    /// Writes the share into the folder. What cannot be had is left out.
    virtual void CollectInformation(const QString &folder) = 0;
};
