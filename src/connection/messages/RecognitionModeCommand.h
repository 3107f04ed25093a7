#pragma once

#include "connection/messages/JsonConvertable.h"
#include "recognition/RecognitionMode.h"

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVariant>

#include <optional>

/// Asks the server for a mode. Without a type the server chooses its mode of dictation.
class RecognitionModeCommand : public JsonConvertable {
public:
    RecognitionModeCommand() = default;
    explicit RecognitionModeCommand(std::optional<RecognitionMode> type) : m_type(type) {}
    explicit RecognitionModeCommand(const QJsonObject &object);

    std::optional<RecognitionMode> type() const { return m_type; }
    void setType(std::optional<RecognitionMode> type) { m_type = type; }
    QMap<QString, QVariant> parameters() const { return m_parameters; }
    void setParameters(const QMap<QString, QVariant> &parameters) { m_parameters = parameters; }

    QJsonValue toJson() const override;

private:
    std::optional<RecognitionMode> m_type;
    QMap<QString, QVariant> m_parameters;
};
