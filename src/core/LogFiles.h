#pragma once

#include <QString>

/// What the log leaves on the disk. It may hold what was dictated, so it is its user's alone, and
/// not for ever.
namespace LogFiles {

/// Takes all rights on a log from others than its owner. What is no plain file stays as it is.
void keepPrivate(const QString &file);
/// Does so with the program's own logs of a folder, and removes those that nothing was written to
/// for 14 days. Files of other names stay as they are.
void tidy(const QString &folder);

} // namespace LogFiles
