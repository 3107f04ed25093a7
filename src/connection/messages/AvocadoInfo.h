#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QStringList>

/// The user's personal words, as the server is told of them.
class AvocadoInfo : public JsonConvertable {
public:
    AvocadoInfo() = default;
    explicit AvocadoInfo(const QStringList &words) : m_words(words) {}
    explicit AvocadoInfo(const QJsonObject &object);

    QStringList Words() const { return m_words; }
    void setWords(const QStringList &words) { m_words = words; }

    QJsonValue toJson() const override;

private:
    QStringList m_words;
};
