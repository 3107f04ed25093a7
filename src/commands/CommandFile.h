#pragma once

#include "commands/UserCommand.h"
#include "themes/ClientThemeInfo.h"

#include <QList>

/// A file of commands: UTF-8 JSON with the dictionary that they belong to.
namespace CommandFile {

/// @param theme  if given, takes the id and the name of the file's dictionary
/// @throws Exception  the file cannot be read, or is garbled; the text names it
QList<UserCommand> read(const QString &path, ClientThemeInfo *theme, bool isSystem);

/// Replaces the file in one step.
/// @throws Exception  it cannot be written; the old one stays whole
void write(const QString &path, const ClientThemeInfo &theme, const QList<UserCommand> &commands);

} // namespace CommandFile
