#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QString>

/// One element of a web form.
class ElementInfo : public JsonConvertable {
public:
    ElementInfo() = default;
    explicit ElementInfo(const QJsonObject &object);

    QString key() const { return m_key; }
    void setKey(const QString &key) { m_key = key; }

    QJsonValue toJson() const override;

private:
    QString m_key;
};
