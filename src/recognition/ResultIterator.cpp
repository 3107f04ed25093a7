#include "recognition/ResultIterator.h"

#include "recognition/ResultCharacters.h"

int ResultIterator::GetCharType(QChar character) {
    using namespace ResultCharacters;
    if (character.isSpace())
        return Space;
    if (character == Dash || character == OpeningQuote || character == ClosingQuote)
        return Control;
    return Word;
}

bool ResultIterator::MoveNext() {
    if (m_position >= m_text.size()) {
        if (m_finished)
            return false;
        m_finished = true;
        m_current = ResultPart::Empty;
        return true;
    }
    const int start = m_position++;
    const int type = GetCharType(m_text[start]);
    if (type != Control) {
        while (m_position < m_text.size() && GetCharType(m_text[m_position]) == type)
            ++m_position;
    }
    m_current = ResultPart(m_text, start, m_position - start);
    return true;
}
