#pragma once

#include "commands/UserCommandType.h"
#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QString>

/// One spoken phrase bound to one effect, as command files hold it. A value type.
class UserCommand : public JsonConvertable {
public:
    explicit UserCommand(UserCommandNamespace::UserCommandType type) : Type(type) {}
    /// Reads all but IsSystem, which is the loader's to set.
    /// @throws ConveterException  the type is missing or unknown
    explicit UserCommand(const QJsonObject &object);

    /// @throws ConveterException  the type is Undefined
    QJsonValue toJson() const override;

    /// Lowered and trimmed: two commands with equal results are the same command.
    static QString NormalizePattern(const QString &pattern);
    QString get_NormalizedPattern() const { return NormalizePattern(Pattern); }
    /// True if the pattern holds only Latin and Russian letters, digits and blanks.
    static bool ValidatePatternSymbols(const QString &pattern);

    UserCommandNamespace::UserCommandType Type;
    /// The phrase as the user typed it.
    QString Pattern;
    /// The replacement, the key combination, the program or the path of the document.
    QString Text;
    /// What the server returns when the phrase is recognised.
    QString Id;
    /// From the read-only file of the system; never stored.
    bool IsSystem = false;
    /// Not in force while the server sets punctuation by itself.
    bool IsPunctuation = false;
};
