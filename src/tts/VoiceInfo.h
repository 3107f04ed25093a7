#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QString>

/// A voice of the speech synthesis.
class VoiceInfo : public JsonConvertable {
public:
    VoiceInfo() = default;
    explicit VoiceInfo(const QJsonObject &object);

    QString name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }

    QJsonValue toJson() const override;

private:
    QString m_name;
};
