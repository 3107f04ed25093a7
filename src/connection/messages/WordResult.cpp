#include "connection/messages/WordResult.h"

#include "core/Exception.h"

WordResult::WordResult(const QJsonObject &object)
    : m_begin(object[QLatin1String("Begin")].toInt()),
      m_dictorNum(object[QLatin1String("DictorNum")].toInt()),
      m_endSentence(object[QLatin1String("EndSentence")].toInt()),
      m_index(object[QLatin1String("Index")].toInt()),
      m_length(object[QLatin1String("Length")].toInt()),
      m_probabilityNorm(object[QLatin1String("ProbabilityNorm")].toDouble()),
      m_text(object[QLatin1String("Text")].toString()) {}

QJsonValue WordResult::toJson() const {
    throw Exception(QStringLiteral("Not implemented"));
}
