#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// The reference files of the user's profile. Main thread.
namespace ReferenceFile {

/// The records of a file; empty, with a line in the log, if it cannot be read.
/// @param path  an object with an array "records"
QJsonArray LoadJsonArray(const QString &path);

/// The object "data" of a record; empty if it has none.
QJsonObject dataOf(const QJsonValue &record);

} // namespace ReferenceFile
