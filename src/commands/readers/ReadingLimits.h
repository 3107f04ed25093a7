#pragma once

#include <QObject>
#include <QString>

/// How much of a document is read. Whatever is larger is refused as a whole.
namespace ReadingLimits {

/// Bytes of a plain file, or characters of another one's text. The program stands still while it
/// types, and this is some three hundred pages.
constexpr int TextSize = 1024 * 1024;
/// Bytes of an archive; its pictures count, though they are not read. An archive of entries without
/// any content takes six times as much memory, and is opened in less than two seconds.
constexpr qint64 ArchiveBytes = 32LL * 1024 * 1024;
/// Bytes of the part of an archive that holds the text.
constexpr int ContentBytes = 16 * 1024 * 1024;
/// Elements and texts of that part; each takes some 400 bytes while it is read.
constexpr int Nodes = 150000;
/// How deep elements may lie in one another; the text is collected by recursion.
constexpr int Depth = 256;

inline QString tooLarge() {
    return QObject::tr("Файл слишком велик");
}

inline QString unreadable() {
    return QObject::tr("Произошла ошибка при чтении из файла");
}

} // namespace ReadingLimits
