#include "commands/PhraseTokens.h"

#include <QChar>
#include <QVector>

#include <algorithm>

namespace PhraseTokens {

uint fold(uint character) {
    return QChar::toCaseFolded(character);
}

bool isWordCharacter(uint folded) {
    return QChar::isLetter(folded) || QChar::category(folded) == QChar::Number_DecimalDigit;
}

bool isSeparator(uint folded) {
    // A space to the expressions, though no longer one to Unicode.
    constexpr uint mongolianVowelSeparator = 0x180E;
    switch (folded) {
    case '.':
    case ',':
    case '!':
    case ':':
    case ';':
    case '?':
    case '-':
    case mongolianVowelSeparator:
        return true;
    default:
        return QChar::isSpace(folded);
    }
}

bool isUncertain(uint character) {
    // A mark whose folded form is a letter.
    constexpr uint combiningIota = 0x0345;
    // Escaped as \0, it takes up digits behind it, so an expression with it can match other things.
    const bool isNull = character == 0;
    return isNull || character == combiningIota ||
           QChar::category(character) == QChar::Other_NotAssigned;
}

std::optional<QStringList> of(const QString &text) {
    const QVector<uint> characters = text.toUcs4();
    if (std::any_of(characters.cbegin(), characters.cend(), isUncertain))
        return std::nullopt;
    QStringList tokens;
    bool isInWord = false;
    for (const uint character : characters) {
        const uint folded = fold(character);
        const bool isWord = isWordCharacter(folded);
        if (isWord && isInWord)
            tokens.last().append(QString::fromUcs4(&folded, 1));
        else if (!isSeparator(folded))
            tokens.append(QString::fromUcs4(&folded, 1));
        isInWord = isWord;
    }
    return tokens;
}

} // namespace PhraseTokens
