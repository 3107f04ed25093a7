#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// How phrases and recognised texts fall apart into what can be compared without an expression.
///
/// Whatever the expression of a phrase matches has the tokens of the phrase, whole and in a row.
/// All functions may be called from any thread.
namespace PhraseTokens {

/// A code point as it is compared: without its case.
uint fold(uint character);
/// For folded code points, letters and digits, that an expression never takes for a boundary.
bool isWordCharacter(uint folded);
/// For folded code points that may stand between the words of a phrase.
bool isSeparator(uint folded);
/// For code points about which the library of the expressions may know more than Qt does.
bool isUncertain(uint character);

/// The runs of word characters, and every other character by itself, all of them folded; without
/// separators.
/// @return  nothing if the text has an uncertain character, so that anything may match
std::optional<QStringList> of(const QString &text);

} // namespace PhraseTokens
