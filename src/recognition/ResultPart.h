#pragma once

#include <QString>

/// One run of recognised text with what it demands of its neighbours. A default-built part is the
/// empty one that stands behind the end of a text.
struct ResultPart {
    ResultPart() = default;
    /// The run of `length` characters of the text from `start`; length is at least 1.
    ResultPart(const QString &text, int start, int length);

    int start = 0;
    int length = 0;
    bool isSpace = false;
    bool isEndOfSentence = false;
    /// Wants a space in front of it.
    bool spaceBefore = true;
    /// Wants a space behind it.
    bool spaceAfter = true;
    /// An opening quote right behind it gets a space.
    bool spaceBeforeQuote = false;
    /// A dash right behind it gets a space.
    bool spaceBeforeDash = false;

    /// What stands behind the end of a text.
    static const ResultPart Empty;
    static const QString NoSpaceBeforeSymbols;
    static const QString NoSpaceAfterSymbols;
    static const QString EndOfSentenceSymbols;
};
