#include "commands/CommandFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

namespace {

/// Far more than any list of commands; a larger file is none, and is not to fill the memory.
constexpr qint64 maximumBytes = 64LL * 1024 * 1024;

Exception invalidFormat(const QString &path, const QString &error) {
    return Exception(
        QStringLiteral("UserCommandsManager: Invalid file format, file '%1', error '%2'")
            .arg(path, error));
}

QByteArray readBytes(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw Exception(
            QStringLiteral("UserCommandsManager: Cannot open file '%1' for reading").arg(path));
    }
    const QByteArray bytes = file.read(maximumBytes + 1);
    if (bytes.size() > maximumBytes)
        throw invalidFormat(path, QStringLiteral("file too large"));
    return bytes;
}

QJsonObject readObject(const QString &path) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(readBytes(path), &error);
    if (document.isNull())
        throw invalidFormat(path, error.errorString());
    if (!document.isObject()) {
        throw Exception(
            QStringLiteral("UserCommandsManager: Invalid file format, file '%1'").arg(path));
    }
    return document.object();
}

} // namespace

QList<UserCommand> CommandFile::read(const QString &path, ClientThemeInfo *theme, bool isSystem) {
    const QJsonObject root = readObject(path);
    if (theme) {
        theme->setId(root[QLatin1String("ThemeId")].toString());
        theme->setName(root[QLatin1String("ThemeName")].toString());
    }
    QList<UserCommand> commands;
    const QJsonArray elements = root[QLatin1String("Commands")].toArray();
    commands.reserve(elements.size());
    try {
        for (const QJsonValue &element : elements) {
            commands.append(UserCommand(element.toObject()));
            commands.last().IsSystem = isSystem;
        }
    } catch (const ConveterException &error) {
        // The user is to know which file and which command it is.
        throw invalidFormat(path, QStringLiteral("command %1: %2")
                                      .arg(commands.size() + 1)
                                      .arg(QString::fromUtf8(error.what())));
    }
    return commands;
}

void CommandFile::write(const QString &path, const ClientThemeInfo &theme,
                        const QList<UserCommand> &commands) {
    QJsonArray elements;
    for (const UserCommand &command : commands)
        elements.append(command.toJson());
    const QJsonObject root{
        {QStringLiteral("ThemeId"), theme.id()},
        {QStringLiteral("ThemeName"), theme.name()},
        {QStringLiteral("Commands"), elements},
    };
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        throw Exception(
            QStringLiteral("UserCommandsManager: Cannot open file '%1' for writing").arg(path));
    }
    const QByteArray bytes = QJsonDocument(root).toJson();
    // commit() alone would take a file that a full disk has cut for a whole one.
    const bool isWhole = file.write(bytes) == bytes.size() && file.flush();
    if (!isWhole || !file.commit()) {
        throw Exception(
            QStringLiteral("UserCommandsManager: Cannot write file '%1', error '%2'")
                .arg(path, isWhole ? file.errorString() : QStringLiteral("written in part only")));
    }
}
