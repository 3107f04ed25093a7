#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QString>

/// The microphone that a feedback message is about. Level 0 to 100.
class MicrophoneInfo : public JsonConvertable {
public:
    MicrophoneInfo() = default;

    QString micHwId() const { return m_micHwId; }
    void setMicHwId(const QString &micHwId) { m_micHwId = micHwId; }
    QString micDisplayName() const { return m_micDisplayName; }
    void setMicDisplayName(const QString &micDisplayName) { m_micDisplayName = micDisplayName; }
    int micLevel() const { return m_micLevel; }
    void setMicLevel(int micLevel) { m_micLevel = micLevel; }

    QJsonValue toJson() const override;

private:
    QString m_micHwId;
    QString m_micDisplayName;
    int m_micLevel = 0;
};
