#pragma once

#include <QString>

/// What an element of a document adds around the text that it holds; nothing, in this base.
class BaseElementReader {
public:
    BaseElementReader() = default;
    BaseElementReader(const BaseElementReader &) = delete;
    BaseElementReader &operator=(const BaseElementReader &) = delete;
    virtual ~BaseElementReader() = default;

    virtual QString GetPrefixText() const { return QString(); }
    virtual QString GetPostfixText() const { return QString(); }
};
