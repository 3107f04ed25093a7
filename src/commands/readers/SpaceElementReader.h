#pragma once

#include "commands/readers/BaseElementReader.h"

/// A blank that would not count as plain text.
class SpaceElementReader final : public BaseElementReader {
public:
    QString GetPostfixText() const override { return QStringLiteral(" "); }
};
