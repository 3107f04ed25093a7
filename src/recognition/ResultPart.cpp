#include "recognition/ResultPart.h"

#include "recognition/ResultCharacters.h"
#include "recognition/ResultIterator.h"

using namespace ResultCharacters;

const ResultPart ResultPart::Empty;
const QString ResultPart::NoSpaceBeforeSymbols =
    QStringLiteral("-\n") + Pilcrow + ClosingQuote + Dash + OpeningQuote;
const QString ResultPart::NoSpaceAfterSymbols = QStringLiteral("-\\/\n") + Pilcrow + OpeningQuote;
const QString ResultPart::EndOfSentenceSymbols = QStringLiteral(".!?\n") + Pilcrow;

namespace {

bool isOneOf(QChar::Category category, std::initializer_list<QChar::Category> categories) {
    for (const QChar::Category other : categories) {
        if (category == other)
            return true;
    }
    return false;
}

} // namespace

ResultPart::ResultPart(const QString &text, int partStart, int partLength)
    : start(partStart), length(partLength) {
    const QChar first = text[start];
    const QChar last = text[start + length - 1];
    if (ResultIterator::GetCharType(first) == ResultIterator::Space) {
        isSpace = true;
        spaceBefore = false;
        spaceAfter = false;
        return;
    }
    spaceBefore =
        !isOneOf(first.category(),
                 {QChar::Separator_Space, QChar::Punctuation_Connector, QChar::Punctuation_Close,
                  QChar::Punctuation_FinalQuote, QChar::Punctuation_Other}) &&
        !NoSpaceBeforeSymbols.contains(first);
    spaceAfter = !isOneOf(last.category(), {QChar::Separator_Space, QChar::Punctuation_Open,
                                            QChar::Punctuation_InitialQuote}) &&
                 !NoSpaceAfterSymbols.contains(last);
    isEndOfSentence = length == 1 && EndOfSentenceSymbols.contains(last);
    spaceBeforeQuote =
        !isOneOf(last.category(), {QChar::Separator_Space, QChar::Punctuation_Open}) &&
        last != Pilcrow;
    spaceBeforeDash = spaceBeforeQuote;
}
