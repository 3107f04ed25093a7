#pragma once

#include <QString>

/// Writes the punctuation marks that were spoken by name as the marks themselves, set apart by
/// blanks as the client expects them: «одышка запятая кашель» becomes «одышка , кашель».
QString withSpokenMarks(const QString &text);
