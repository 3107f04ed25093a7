#include "commands/UserCommand.h"

#include <QRegularExpression>

using UserCommandNamespace::UserCommandType;

UserCommand::UserCommand(const QJsonObject &object)
    : Type(Enum<UserCommandType>::FromInvariantString(object[QLatin1String("Type")].toString())),
      Pattern(object[QLatin1String("Pattern")].toString()),
      Text(object[QLatin1String("Text")].toString()),
      Id(object[QLatin1String("Id")].toString()),
      IsPunctuation(object[QLatin1String("IsPunctuation")].toBool()) {}

QJsonValue UserCommand::toJson() const {
    const EnumElement<UserCommandType> *type = Enum<UserCommandType>::Values.value(Type, nullptr);
    if (!type)
        throw ConveterException::create<UserCommandType, QString>();
    return QJsonObject{
        {QStringLiteral("Type"), type->get_InvariantName()},
        {QStringLiteral("Id"), Id},
        {QStringLiteral("Pattern"), Pattern},
        {QStringLiteral("Text"), Text},
        {QStringLiteral("IsPunctuation"), IsPunctuation},
    };
}

QString UserCommand::NormalizePattern(const QString &pattern) {
    return pattern.toLower().trimmed();
}

bool UserCommand::ValidatePatternSymbols(const QString &pattern) {
    static const QRegularExpression forbidden(
        QStringLiteral("[^a-zA-Z0-9йцукенгшщзхъфывапролджэячсмитьбюёЙЦУКЕНГШЩЗХЪФЫВАПРОЛДЖЭЯЧСМИТЬБ"
                       "ЮЁ ]+"),
        QRegularExpression::UseUnicodePropertiesOption);
    return !forbidden.match(pattern).hasMatch();
}
