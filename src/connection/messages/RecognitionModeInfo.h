#pragma once

#include "connection/messages/JsonConvertable.h"
#include "recognition/RecognitionMode.h"

#include <QJsonObject>
#include <QMetaType>
#include <QString>

/// The server's report on a mode. The numbers are taken as they come: they may name no known mode.
class RecognitionModeInfo : public JsonConvertable {
public:
    RecognitionModeInfo() = default;
    RecognitionModeInfo(RecognitionMode mode, AsrState state, const QString &info = QString())
        : m_mode(mode), m_state(state), m_info(info) {}
    explicit RecognitionModeInfo(const QJsonObject &object);

    RecognitionMode mode() const { return m_mode; }
    AsrState state() const { return m_state; }
    QString info() const { return m_info; }

    QJsonValue toJson() const override;

private:
    RecognitionMode m_mode = RecognitionMode::Off;
    AsrState m_state = AsrState::Starting;
    QString m_info;
};
Q_DECLARE_METATYPE(RecognitionModeInfo)
