#include "connection/messages/TextResult.h"

#include "core/Exception.h"

#include <QJsonArray>

TextResult::TextResult(const QJsonObject &object)
    : m_text(object[QLatin1String("Text")].toString()),
      m_isFinal(object[QLatin1String("IsFinal")].toBool()),
      m_commandId(object[QLatin1String("CommandId")].toString()) {
    const QJsonArray words = object[QLatin1String("Words")].toArray();
    m_words.reserve(words.size());
    for (const QJsonValue &word : words)
        m_words.append(WordResult(word.toObject()));
}

QJsonValue TextResult::toJson() const {
    throw Exception(QStringLiteral("Not implemented"));
}
