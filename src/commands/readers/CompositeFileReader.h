#pragma once

#include "commands/readers/BaseFileReader.h"

/// Reads a document by the reader for its suffix: OpenDocument Text for "odt", in this very case,
/// plain text for all others.
class CompositeFileReader final : public BaseFileReader {
    Q_OBJECT

public:
    QString ReadFile(const QString &path, QString *error) override;
};
