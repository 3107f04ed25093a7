#include "connection/messages/RecognitionModeCommand.h"

RecognitionModeCommand::RecognitionModeCommand(const QJsonObject &object)
    : m_parameters(object[QLatin1String("Parameters")].toObject().toVariantMap()) {
    const QJsonValue type = object[QLatin1String("Type")];
    if (!type.isUndefined() && !type.isNull())
        m_type = static_cast<RecognitionMode>(type.toInt());
}

QJsonValue RecognitionModeCommand::toJson() const {
    QJsonObject parameters;
    for (auto item = m_parameters.cbegin(); item != m_parameters.cend(); ++item)
        parameters.insert(item.key(), item.value().toString());
    return QJsonObject{
        {QStringLiteral("Type"), m_type ? QJsonValue(static_cast<int>(*m_type)) : QJsonValue()},
        {QStringLiteral("Parameters"), parameters},
    };
}
