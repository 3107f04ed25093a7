#pragma once

#include "commands/readers/BaseFileReader.h"

/// Reads any file as text.
class CommonFileReader final : public BaseFileReader {
    Q_OBJECT

public:
    QString ReadFile(const QString &path, QString *error) override;
};
