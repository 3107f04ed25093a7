#pragma once

#include "diagnostics/ComponentInformation.h"

#include <memory>
#include <vector>

/// Packs what support needs to know into one archive. Made for one collection; waits for the
/// programs that it runs, up to a minute.
class GeneralSystemInformationManager {
public:
    GeneralSystemInformationManager();

    /// Writes a gzip-compressed tar archive that its owner alone can read, in place of an existing
    /// file. Failures are not reported: what cannot be had is not in the archive.
    void CollectSystemInformation(const QString &archivePath);

private:
    static void CompressDirectory(const QString &archivePath, const QString &folder);

    std::vector<std::unique_ptr<ComponentInformation>> m_components;
};
