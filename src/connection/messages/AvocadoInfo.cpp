#include "connection/messages/AvocadoInfo.h"

#include <QJsonArray>

AvocadoInfo::AvocadoInfo(const QJsonObject &object) {
    const QJsonArray words = object[QLatin1String("Words")].toArray();
    for (const QJsonValue &word : words)
        m_words.append(word.toString());
}

QJsonValue AvocadoInfo::toJson() const {
    return QJsonObject{{QStringLiteral("Words"), QJsonArray::fromStringList(m_words)}};
}
