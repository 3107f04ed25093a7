#pragma once

#include <QChar>

/// Control characters of recognised text, which the formatting consumes.
namespace ResultCharacters {
constexpr QChar Dash(0x0001);
constexpr QChar OpeningQuote(0x0002);
constexpr QChar ClosingQuote(0x0003);
/// An ordinary word character here; it is typed as a line break.
constexpr QChar Pilcrow(0x00B6);
} // namespace ResultCharacters
