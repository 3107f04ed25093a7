#pragma once

#include "commands/readers/BaseElementReader.h"

/// An element that ends a line.
class ParagraphElementReader final : public BaseElementReader {
public:
    QString GetPostfixText() const override { return QStringLiteral("\r\n"); }
};
