#pragma once

#include "connection/messages/WordResult.h"

#include <QList>
#include <QMetaType>

/// One result of recognition, partial or final. A result with a command id runs that command.
class TextResult : public JsonConvertable {
public:
    TextResult() = default;
    explicit TextResult(const QJsonObject &object);

    QString text() const { return m_text; }
    void setText(const QString &text) { m_text = text; }
    bool isFinal() const { return m_isFinal; }
    void setIsFinal(bool isFinal) { m_isFinal = isFinal; }
    QString commandId() const { return m_commandId; }
    void setCommandId(const QString &commandId) { m_commandId = commandId; }
    QList<WordResult> words() const { return m_words; }
    void setWords(const QList<WordResult> &words) { m_words = words; }

    TextResult clone() const { return *this; }

    /// @throws Exception  always: the record only ever arrives
    QJsonValue toJson() const override;

private:
    QString m_text;
    bool m_isFinal = false;
    QString m_commandId;
    QList<WordResult> m_words;
};
Q_DECLARE_METATYPE(TextResult)
