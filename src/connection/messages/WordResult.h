#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QString>

/// One word of a result; the meaning of its numbers is the server's.
class WordResult : public JsonConvertable {
public:
    WordResult() = default;
    explicit WordResult(const QJsonObject &object);

    int begin() const { return m_begin; }
    int dictorNum() const { return m_dictorNum; }
    int endSentence() const { return m_endSentence; }
    int index() const { return m_index; }
    int length() const { return m_length; }
    double probabilityNorm() const { return m_probabilityNorm; }
    QString text() const { return m_text; }

    /// @throws Exception  always: the record only ever arrives
    QJsonValue toJson() const override;

private:
    int m_begin = 0;
    int m_dictorNum = 0;
    int m_endSentence = 0;
    int m_index = 0;
    int m_length = 0;
    double m_probabilityNorm = 0.0;
    QString m_text;
};
