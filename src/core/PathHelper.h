#pragma once

#include <QString>

/// Helpers on folders.
class PathHelper {
public:
    /// Copies a folder with all its content, or a single file. What exists at the destination
    /// stays as it is; failures are passed over.
    static void copyPath(const QString &source, const QString &destination);
};
