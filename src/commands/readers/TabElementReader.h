#pragma once

#include "commands/readers/BaseElementReader.h"

/// A tab stop.
class TabElementReader final : public BaseElementReader {
public:
    QString GetPostfixText() const override { return QStringLiteral("\t"); }
};
