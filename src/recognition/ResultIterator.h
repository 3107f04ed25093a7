#pragma once

#include "recognition/ResultPart.h"

/// Walks the parts of a recognised text; behind the last one stands an empty part.
class ResultIterator {
public:
    enum CharType { Space = 0, Control = 1, Word = 2 };

    explicit ResultIterator(const QString &text) : m_text(text) {}

    /// @return false once the empty part has been passed
    bool MoveNext();
    const ResultPart &current() const { return m_current; }

    static int GetCharType(QChar character);

private:
    QString m_text;
    int m_position = 0;
    bool m_finished = false;
    ResultPart m_current;
};
